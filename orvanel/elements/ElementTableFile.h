// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>

#include "ports/ElementTable.h"
#include "support/Disk.h"

namespace orvanel {

/// Opens an element-data file (docs/formats.md), read and validated whole.
/// @throws ports::HostError naming file, line and what is wrong
std::unique_ptr<ports::ElementTable> OpenElementTableFile(const std::string& path,
                                                          const support::Disk& disk = support::SystemDisk());

}  // namespace orvanel
