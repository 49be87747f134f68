// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace support {

/// Reads one registry value given its whole path; nothing when it is missing. May throw; these functions trap it.
using RegistryReader = std::function<std::optional<std::string>(const std::string& strPath)>;

/// The host's projects folder, ending in a separator; empty when the host does not say where its data are.
std::string GetHostDataLocation(const RegistryReader& regRead);
/// The folder of the project (and sub-project) used last, ending in a separator; the projects folder when there was
/// none.
std::string GetLastUsedProjectPath(const RegistryReader& regRead);
/// The host's element-data file; empty when the host does not say where it is installed.
std::string GetElementTablePath(const RegistryReader& regRead);
/// 0 when it cannot be read.
std::int16_t GetQueueSampleStatus(const RegistryReader& regRead);

}  // namespace support
