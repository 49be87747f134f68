// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

namespace orvanel {

/// The distance of chemical-noise peaks in Da: the mean mass of a nominal mass unit in organic ions.
inline constexpr double nominalMassDa = 1.0005;

/// The greatest height around one nominal mass, real peak or not.
struct NoiseSample {
    double mz = 0;
    double height = 0;  ///< cps
};

/// The noise of a spectrum, estimated from the heights of its own maxima.
///
/// Chemical noise puts one peak on nearly every nominal mass, with heights spread log-normally around a level that
/// falls slowly with m/z. So within a window of m/z there is noise at the median of the maxima, where masses without a
/// maximum count as zero, and its spread is read from the half below the median, where signals cannot reach. Where
/// fragments stand on most masses of a window they look like noise; but noise does not end within a few hundred Da, so
/// the neighbouring windows limit the estimate.
class SpectrumNoise {
  public:
    /// @param samples in order of m/z
    /// @param ionHeight the height that a single ion adds to a peak, cps; 0 when unknown
    SpectrumNoise(const std::vector<NoiseSample>& samples, double lowMz, double highMz, double ionHeight);

    /// The height that chemical noise exceeds in one spectrum out of twenty; 0 where there is no noise.
    double ThresholdAt(double mz) const;

  private:
    struct Window {
        double centerMz = 0;
        double threshold = 0;
    };
    void LimitByNeighbours();

    std::vector<Window> windows_;  ///< in order of m/z
};

}  // namespace orvanel
