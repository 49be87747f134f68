// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ports/DataExploration.h"
#include "support/Disk.h"

namespace orvanel {

/// The data-exploration library. Sample 1, period 0 and experiment 0 of a file can be explored (data/DataReader.h says
/// which spectra these are). Its handles may outlive it. Handles of one library share the files they have read.
/// @param disk must outlive the library and its handles
/// @param check asked before a data file is opened; throws ports::HostError when it must not be. None when empty
std::unique_ptr<ports::DataExploration> CreateDataExploration(const support::Disk& disk = support::SystemDisk(),
                                                              std::function<void(const std::string& path)> check = {});

}  // namespace orvanel
