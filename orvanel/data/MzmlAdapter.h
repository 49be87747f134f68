// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>

#include "orvanel/data/AcquiredData.h"
#include "orvanel/data/DataReader.h"

namespace orvanel {

/// The seam to the mzML library: nothing outside the two adapter sources includes it.

/// @return the bytes of an indexed mzML file
/// @throws std::exception
std::string WriteMzml(const AcquiredData& data);

/// @param text the bytes of an mzML file
/// @param pointLimit more data points than this are refused
/// @param experiment counted from 0
/// @throws std::exception that says what is wrong with the text
DataFileContent ReadMzml(std::string text, std::size_t pointLimit, std::size_t experiment);

/// Names of the user parameters that carry what no term of the vocabulary says.
namespace dataParameter {
inline constexpr const char* precursor = "precursor";  ///< of an isolation window, the first isolation listed first
inline constexpr const char* simulated = "simulated data";
inline constexpr const char* cycle = "cycle number";
inline constexpr const char* rampParameter = "ramp parameter";
inline constexpr const char* rampValue = "ramp value";
}  // namespace dataParameter

}  // namespace orvanel
