// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <vector>

#include "orvanel/explore/FormEstimate.h"
#include "orvanel/explore/PeakFinder.h"
#include "orvanel/explore/PeakFit.h"
#include "orvanel/explore/ProfilePoints.h"
#include "orvanel/explore/Smoothing.h"
#include "orvanel/explore/SpectrumNoise.h"

namespace orvanel {

/// Finds the local maxima of a profile spectrum and makes peaks of those that counting statistics cannot explain.
class PeakDetection {
  public:
    /// @param mz in order, not empty; both arrays must outlive this
    PeakDetection(const std::vector<double>& mz, const std::vector<double>& intensity);

    /// Significant peaks in order of m/z; chemical noise is still among them.
    const std::vector<Peak>& Peaks() const { return peaks_; }
    /// What stands on each nominal mass that the spectrum covers wholly: the highest peak there, or else what is left
    /// beside the flanks of others.
    std::vector<NoiseSample> NominalMaxima() const;
    /// The height that one ion adds to a peak, cps.
    double IonHeight() const;

  private:
    /// Peaks that may overlap, and the points around them.
    struct Cluster {
        std::size_t begin = 0;
        PeakFit fit;
    };

    void MakeClusters(const std::vector<Maximum>& maxima);
    void MakeCluster(std::size_t begin, std::size_t end, std::vector<FittedPeak> peaks);
    FormMisfit MeasureMisfit() const;
    double MeasureTail() const;
    std::vector<double> Tails() const;
    double HeightNear(std::size_t index) const;
    Peak MakePeak(const Cluster& cluster, const FittedPeak& fitted) const;

    ProfilePoints points_;
    FormEstimate estimate_;
    std::vector<double> smooth_;
    std::vector<double> rest_;   ///< what the peaks leave of smooth_
    std::vector<double> tails_;  ///< what the far tails of peaks may add to each point
    std::vector<Cluster> clusters_;
    std::vector<Peak> peaks_;
    double kernelEnergy_ = 0;
};

}  // namespace orvanel
