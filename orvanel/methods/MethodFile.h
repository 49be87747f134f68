// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "orvanel/methods/MethodDocument.h"
#include "support/Disk.h"

namespace orvanel {

/// Reads a ".xmt" acquisition method (docs/formats.md). Whether an instrument can acquire it is not looked at.
/// @param path full path, UTF-8
/// @throws ports::HostError naming file, line, what is wrong and what is expected
MethodDocument ReadMethodFile(const std::string& path, const support::Disk& disk = support::SystemDisk());

/// Writes the whole document, or leaves an existing file untouched.
/// @throws ports::HostError
void WriteMethodFile(const std::string& path, const MethodDocument& document,
                     const support::Disk& disk = support::SystemDisk());

/// How many of each part a method may have.
inline constexpr std::size_t maximumDevices = 32;
inline constexpr std::size_t maximumSettings = 256;
inline constexpr std::size_t maximumPeriods = 16;
inline constexpr std::size_t maximumExperiments = 16;
inline constexpr std::size_t maximumMassRanges = 1000;
inline constexpr std::size_t maximumParameters = 64;

}  // namespace orvanel
