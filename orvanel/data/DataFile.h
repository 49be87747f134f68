// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "orvanel/data/AcquiredData.h"
#include "support/Disk.h"

namespace orvanel {

/// Writes one acquisition as a ".vesk" data file: indexed mzML 1.1 (docs/formats.md). The file is put in place as a
/// whole and replaces one of the same name. The same data give the same bytes.
/// @param path full path, UTF-8; its folder must exist
/// @throws ports::HostError when the data contradict themselves or the file cannot be written
void WriteDataFile(const std::string& path, const AcquiredData& data,
                   const support::Disk& disk = support::SystemDisk());

}  // namespace orvanel
