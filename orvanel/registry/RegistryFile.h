// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "support/Disk.h"
#include "support/Files.h"

namespace orvanel {

/// Names of registry values are hive, key and value name joined by "\", without regard to case.
namespace registryPath {
inline constexpr std::string_view queueStatus =
    R"(HKEY_LOCAL_MACHINE\SOFTWARE\Dravik\Orvanel\QueueSvr\Current Sample Status)";
inline constexpr std::string_view dataLocation = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Dravik\Orvanel\Install\DataLocation)";
inline constexpr std::string_view appLocation = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Dravik\Orvanel\Install\AppLocation)";
inline constexpr std::string_view lastProject =
    R"(HKEY_CURRENT_USER\Software\Dravik\Orvanel\Orvanel\LastFiles\Project)";
inline constexpr std::string_view lastSubProject =
    R"(HKEY_CURRENT_USER\Software\Dravik\Orvanel\Orvanel\LastFiles\SubProject)";
}  // namespace registryPath

/// The host's registry values where the system has no registry: an INI text with one section a key.
class RegistryFile {
  public:
    /// @param disk must outlive this
    explicit RegistryFile(std::string path, const support::Disk& disk = support::SystemDisk())
        : path_(std::move(path)), disk_(disk) {}

    /// @return nothing when there is no such value, or no readable file
    std::optional<std::string> Read(std::string_view valuePath) const;
    /// @param durability what the file outlasts afterwards, with all its values
    /// @return whether it was written
    bool Write(std::string_view valuePath, const std::string& value,
               support::Durability durability = support::Durability::PowerCut) const noexcept;
    /// Lets the values that were written so far outlast a power cut.
    void Flush() const noexcept {
        support::FlushFile(path_, disk_);
        support::FlushFolderOf(path_, disk_);
    }

  private:
    std::string path_;
    const support::Disk& disk_;
};

}  // namespace orvanel
