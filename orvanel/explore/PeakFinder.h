// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

namespace orvanel {

/// One peak of a spectrum.
struct Peak {
    double mz = 0;         ///< centroid, Da
    double intensity = 0;  ///< height of the lightly smoothed peak, cps; above 0
    double area = 0;       ///< cps times Da; for a centroid spectrum its intensity
    double ions = 0;       ///< estimated number of ions counted; for a centroid spectrum unlimited
    double widthDa = 0;    ///< full width at half maximum; for a centroid spectrum what its lines' distances allow
    int charge = 0;        ///< 0 when the isotopes do not tell
    bool monoisotopic = true;
};

/// The width that the lines of a centroid spectrum may have had, Da: what nearly all distances between them exceed.
/// @param mz in order
double LineWidthDa(const std::vector<double>& mz);

/// Finds the peaks of a spectrum that stand out of its noise, with centroids, areas and isotope assignment, as
/// docs/peak-finding.md describes. Points are in order of m/z and not negative.
/// @return in order of m/z
std::vector<Peak> FindPeaks(const std::vector<double>& mz, const std::vector<double>& intensity, bool profile);

}  // namespace orvanel
