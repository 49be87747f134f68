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
    double tails = 0;      ///< what the far tails of other peaks may add up to there, cps
    /// Height by that of the chemical background's usual peaks there; 0 where no background is seen.
    double signalToNoise = 0;
    int charge = 0;  ///< 0 when the isotopes do not tell
    bool monoisotopic = true;
};

/// The width that the lines of a centroid spectrum may have had, Da: what nearly all distances between them exceed.
/// @param mz in order
double LineWidthDa(const std::vector<double>& mz);

/// Finds the peaks of a spectrum with centroids, areas and isotope assignment, as docs/peak-finding.md describes: those
/// that stand out of its chemical background, and where there are many, the strongest of the rest too, which are never
/// taken as monoisotopic. Points are in order of m/z and not negative.
/// @return in order of m/z
std::vector<Peak> FindPeaks(const std::vector<double>& mz, const std::vector<double>& intensity, bool profile);

}  // namespace orvanel
