// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/data/DataReader.h"

namespace orvanel {

struct SpectrumPoints {
    std::vector<double> mz;
    std::vector<double> intensity;
};

/// The mean of spectra, each with its points in order of m/z. A point that a spectrum does not have counts as zero.
/// Points of different spectra become one at their mean m/z when they lie within one step of the grid (profile) or
/// within half a line's width (centroid); no two points of the same spectrum do. Costs n log n in the number of points.
SpectrumPoints MeanSpectrum(const std::vector<const StoredSpectrum*>& spectra, bool profile);

}  // namespace orvanel
