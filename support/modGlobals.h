// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>

#include "support/Disk.h"

namespace support {

/// Appends the text and CR LF; nothing when the path is blank. Failures are dropped silently. The line outlasts the
/// process; FlushFile makes the lines so far outlast a power cut.
/// @return whether the file has it, or the path is blank
bool AppendLineToFile(const std::string& strFilePath, const std::string& strText, const Disk& disk = SystemDisk());

/// "(" + the date and time + ")" made fit for a folder name: the first blank becomes ", ", every "/" a "-", the first
/// ":" an "h" and the next one an "m".
/// @param strGeneralDate the current date and time in the general date form
std::string GetRunTimeTag(const std::string& strGeneralDate);

/// The folder path (one trailing separator removed) + " " + the time tag, with a separator behind it.
std::string OutputFolderPath(const std::string& strPath, const std::string& strGeneralDate);
/// Makes that folder anew. @return its path; empty when it cannot be made, as when it is there already or the folder it
/// belongs in is missing
std::string MakeOutputFolder(const std::string& strPath, const std::string& strGeneralDate,
                             const Disk& disk = SystemDisk());

/// How many characters the compound name is too long for the names of a run's files; 0 when it fits.
std::int32_t GetCompoundNameExcess(const std::string& strCompoundName);

}  // namespace support
