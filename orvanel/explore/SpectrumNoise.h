// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

namespace orvanel {

/// The distance of chemical-noise peaks in Da: the mean mass of a nominal mass unit in organic ions.
inline constexpr double nominalMassDa = 1.0005;

/// The greatest height on one nominal mass, without the flanks of peaks on others.
struct NoiseSample {
    double mz = 0;
    double height = 0;  ///< cps; 0 where there is nothing
    double doubt = 0;   ///< cps that flanks may hide
};

/// The chemical background of a spectrum, estimated from what stands on its nominal masses.
///
/// Chemical noise puts one peak on nearly every nominal mass, with heights spread log-normally around a level that
/// falls slowly with m/z. Peaks that stand out of that are left aside and the rest is looked at again, until nothing
/// more stands out. What is left is a background only if it looks like one: most of the remaining masses hold
/// something, and their heights do not differ more than noise does. Otherwise none is assumed, for a peak of noise too
/// many costs less than a lost signal. Background does not end within a few hundred Da, so neighbouring windows limit
/// the estimate.
class SpectrumNoise {
  public:
    /// @param samples in order of m/z
    /// @param ionHeight the height that a single ion adds to a peak, cps; 0 when unknown
    SpectrumNoise(const std::vector<NoiseSample>& samples, double lowMz, double highMz, double ionHeight);

    /// The usual height of the background's own peaks, cps; 0 where there is no background.
    double LevelAt(double mz) const;
    /// The height that the background exceeds in one spectrum out of twenty; 0 where there is no background.
    double ThresholdAt(double mz) const;

  private:
    struct Window {
        double centerMz = 0;
        double level = 0;
        double threshold = 0;
        bool known = false;  ///< false where too little or something else than a background is there to tell
    };
    void FillUnknown();
    void LimitByNeighbours();
    double Interpolated(double mz, double Window::*what) const;

    std::vector<Window> windows_;  ///< in order of m/z
};

}  // namespace orvanel
