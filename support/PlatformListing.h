// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/Disk.h"

namespace support {

/// What the standard library does for the disks of all systems.

/// @param path UTF-8
std::filesystem::path SystemPath(const std::string& path);

/// Disk::List. @throws DiskError
std::vector<FolderEntry> ListFolder(const std::string& path);
/// Disk::RealPath. @throws DiskError
std::string FollowLinks(const std::string& path);

}  // namespace support
