#pragma once

#include <functional>
#include <string>
#include <vector>

#include "model/clsInfo_Settings.h"

namespace veltra {

/// One key of the settings file.
struct SettingsKey {
    const char* section;
    const char* key;
    bool takesEmpty;  ///< an empty or missing value is stored too
    std::function<std::string(const clsInfo_Settings&)> write;
    /// @return false when the text does not convert; the setting then keeps its value
    std::function<bool(clsInfo_Settings&, const std::string&)> read;
};

/// Every key of the file, in the order in which it is read and written.
const std::vector<SettingsKey>& SettingsKeys();

}  // namespace veltra
