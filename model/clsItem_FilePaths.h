// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace veltra {

/// The files of one acquisition.
struct clsItem_FilePaths {
    std::string LastMethodFilePath;  ///< the method the acquisition's own method is built from
    std::string BatchFileName;       ///< bare file name
    std::string MethodFilePath;      ///< full path
    std::string VeskFilePath;        ///< full path
};

}  // namespace veltra
