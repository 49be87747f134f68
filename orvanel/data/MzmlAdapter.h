// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "orvanel/data/AcquiredData.h"
#include "orvanel/data/DataReader.h"

namespace orvanel {

/// The seam to the mzML library: nothing outside the adapter's sources (Mzml*.cpp) includes it.

/// @return the bytes of an indexed mzML file
/// @throws std::exception
std::string WriteMzml(const AcquiredData& data);

/// What of a document is read.
struct MzmlSelection {
    std::size_t pointLimit;  ///< more data points than this are refused
    std::size_t experiment = 0;
    std::optional<int> cycle;  ///< the one whose spectra are read, all where there is none
};

/// @param text the bytes of an mzML file
/// @throws std::exception that says what is wrong with the text
DataFileContent ReadMzml(std::string text, const MzmlSelection& selection);

/// A document of which it is costly to have all.
struct MzmlParts {
    std::string outline;      ///< all but the arrays of the spectra
    std::size_t spectra = 0;  ///< how many it holds
    /// Gives a document with the spectra of these numbers (from 0) only, in that order.
    std::function<std::string(const std::vector<std::size_t>& wanted)> documentWith;
};

/// @throws std::exception also where the outline does not tell what the spectra are
DataFileContent ReadMzmlParts(MzmlParts parts, const MzmlSelection& selection);

/// Names of the user parameters that carry what no term of the vocabulary says.
namespace dataParameter {
inline constexpr const char* precursor = "precursor";  ///< of an isolation window, the first isolation listed first
inline constexpr const char* msLevel = "ms level";     ///< ... or of which level an isolation was, in other files
inline constexpr const char* simulated = "simulated data";
inline constexpr const char* cycle = "cycle number";
inline constexpr const char* rampParameter = "ramp parameter";
inline constexpr const char* rampValue = "ramp value";
}  // namespace dataParameter

}  // namespace orvanel
