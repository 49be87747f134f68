// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

namespace orvanel {

/// Error numbers of data files and data exploration.
enum DataError : std::int32_t {
    dataFileNotWritten = 5101,
    dataFileNotFound = 5102,
    dataFileUnreadable = 5103,
    dataFileTooLarge = 5104,
    exploreNoDataFile = 5201,
    exploreNoSuchExperiment = 5202,
    exploreNoSuchMass = 5203,
    exploreNoSuchCycle = 5204,
    exploreNoSpectra = 5205,
    exploreNoSuchPoint = 5206,
    exploreNoSuchPeak = 5207,
    exploreNoSuchAttribute = 5208,
    exploreBadRange = 5209,
    exploreUnequalArrays = 5210,
};

}  // namespace orvanel
