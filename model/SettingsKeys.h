// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "model/clsInfo_Settings.h"
#include "support/IniDocument.h"

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

/// Overlays the file's values on the current ones, in the order of the keys. A missing key or value keeps what there
/// is; the first text that does not convert ends the reading.
/// @return one line for that text and each value behind it that would have changed a setting: what is ignored and what
/// is used instead
std::vector<std::string> ReadSettings(const support::IniDocument& document, clsInfo_Settings& settings);

}  // namespace veltra
