// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "support/Disk.h"

namespace orvanel {

/// The extension of a compound file.
inline constexpr const char* compoundFileExtension = ".ini";

/// Where the program's shared data lie below the application's folder.
std::string ElementTablePath(const std::string& appLocation);
std::string ModelsFolder(const std::string& appLocation);
std::string CompoundsFolder(const std::string& appLocation);

/// The names of the compounds that ship, sorted. @throws ports::HostError when the folder cannot be listed
std::vector<std::string> CompoundNames(const std::string& appLocation,
                                       const support::Disk& disk = support::SystemDisk());

/// @param compound a name, without regard to case, or the path of a compound file (with a separator in it)
/// @throws ports::HostError when there is no such compound; the text lists those there are
std::string FindCompoundFile(const std::string& appLocation, const std::string& compound,
                             const support::Disk& disk = support::SystemDisk());

}  // namespace orvanel
