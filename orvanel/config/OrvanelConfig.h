// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvanel/instrument/faults/FaultSettings.h"
#include "support/Disk.h"

namespace orvanel {

struct SampleEntry {
    std::string compound;  ///< name of a shipped compound, or the path of a compound file
    double amount = 1;     ///< above 0
};

/// Orvanel.ini: how the shipped host and its instrument are set up. Every key has the default given here.
struct OrvanelConfig {
    std::string iniPath;  ///< full path of the file this was read from; the registry file lies beside it
    bool running = true;  ///< false: the host application cannot be attached to
    std::int32_t modelCode = 27;
    int operatingMode = 0;
    std::vector<SampleEntry> sample;
    std::uint64_t seed = 1;
    double clockFactor = 1;  ///< 1 real time, 60 sixty times faster, 0 virtual: only pauses advance the clock
    double noiseLevel = 1;
    FaultSettings faults;
    std::string dataLocation;  ///< folder that holds "Projects"
    std::string appLocation;   ///< folder that holds "bin/QvElements.ini", "compounds" and "models"
};

/// @param defaultAppLocation used when the file names none
/// @throws ports::HostError naming file, line and key, and what is allowed
OrvanelConfig ReadOrvanelConfig(const std::string& iniPath, const std::string& defaultAppLocation,
                                const support::Disk& disk = support::SystemDisk());

}  // namespace orvanel
