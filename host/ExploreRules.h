// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>

#include "model/clsItem_TopPeak.h"
#include "ports/DataExploration.h"

namespace veltra {

/// How the run judges chromatograms and peak lists. Functions on a chromatogram reorder its points by intensity.

/// The x of the most intense point; nothing where no point is above 0.
std::optional<double> XOfMaximum(ports::ChromatogramData& chromatogram);

/// The x of the least intense point that still reaches the percentage of the maximum, on either side of it.
std::optional<double> XAtPercentOfMaximum(ports::ChromatogramData& chromatogram, std::int16_t percentage);

/// @return the number of the most intense peak within the tolerance (Da), stepped down to the monoisotopic one where
/// the list and the areas say so; 0 when there is none
int HighestMonoisotopicPeak(const ports::PeakList& peaks, double mass, double tolerance);

/// The most intense monoisotopic peaks, most intense first.
/// @param massToExclude peaks closer to it than the tolerance (Da) are not taken; exactly -1 excludes none
/// @param areaPercentThreshold above -1: when the window around the excluded mass holds more than this percentage of
/// the area, nothing is returned and percentBelowThreshold is false
PeakCollection TopMonoisotopicPeaks(const ports::PeakList& peaks, std::int16_t count, double massToExclude,
                                    double tolerance, std::int16_t areaPercentThreshold, bool& percentBelowThreshold);

}  // namespace veltra
