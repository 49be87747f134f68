// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/Files.h"
#include "support/Platform.h"

namespace support {

/// Both kinds of separator count as "\" in these functions. Each traps its own errors.

/// The left part of the path ending at the (N+1)-th "\" from the end, with that "\" when blnIncludeBackslash; empty
/// when the path has N or fewer.
std::string GetPathToNthBackslash(const std::string& strPath, bool blnIncludeBackslash, std::int16_t intN);
/// The text between the (N+1)-th and the N-th "\" from the end (the end of the text for N = 0); empty when there are
/// not enough.
std::string GetFolderNameAtDepth(const std::string& strPath, std::int16_t intN);
/// Everything after the second "\" from the end; empty when there is none.
std::string GetLastTwoPathParts(const std::string& strPath);

/// What FileExists of support/Files.h answers without its errors.
namespace modFileUtils {
/// False on any error.
bool FileExists(const std::string& strPath, const Disk& disk = SystemDisk()) noexcept;
}  // namespace modFileUtils

/// At most 255 bytes of the value; empty when file, section or key is missing.
std::string ReadIniString(const std::string& strIniPath, const std::string& strSection, const std::string& strKey,
                          const Disk& disk = SystemDisk());
/// Failures are ignored; the file then stays as it was.
void WriteIniString(const std::string& strIniPath, const std::string& strSection, const std::string& strKey,
                    const std::string& strValue, const Disk& disk = SystemDisk());
/// The same for several values: all of them are written at once, or none is.
void WriteIniStrings(const std::string& strIniPath, const std::vector<IniEntry>& entries,
                     const Disk& disk = SystemDisk());

/// Starts the text editor on a file and does not wait: "Notepad.exe " + path on Windows, the desktop's text viewer
/// elsewhere. @return false when none could be started
bool OpenInNotepad(const std::string& strPath);

}  // namespace support
