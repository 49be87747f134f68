// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <vector>

#include "orvanel/explore/PeakFinder.h"
#include "orvanel/explore/PeakFit.h"
#include "orvanel/explore/SpectrumNoise.h"

namespace orvanel {

/// Finds the local maxima of a profile spectrum and makes peaks of those that counting statistics cannot explain.
class PeakDetection {
  public:
    /// @param mz in order, not empty
    PeakDetection(const std::vector<double>& mz, const std::vector<double>& intensity);

    /// Significant peaks in order of m/z; chemical noise is still among them.
    std::vector<Peak> Peaks() const;
    /// The greatest height around each nominal mass that the spectrum covers wholly.
    std::vector<NoiseSample> NominalMaxima() const;
    /// The height that one ion adds to a peak, cps.
    double IonHeight() const;
    /// Typical full width at half maximum, in points.
    double WidthPoints() const { return widthPoints_; }

  private:
    struct Maximum {
        std::size_t index = 0;
        double saddle = 0;  ///< the higher one of the two valleys that part it from higher ground
    };

    void FindSegments();
    void EstimateIonQuantum();
    void Smooth(double sigmaPoints);
    std::vector<Maximum> FindMaxima() const;
    struct Sides {
        double left = 0;
        double right = 0;
    };
    Sides SidesAt(std::size_t index, double share) const;
    void EstimateForm();
    double HeightNear(std::size_t index) const;
    double StepAt(std::size_t index) const;
    std::vector<double> PositionsWithin(std::size_t begin, std::size_t end) const;
    Peak MakePeak(const PeakFit& fit, const FittedPeak& fitted, std::size_t begin) const;

    const std::vector<double>& mz_;
    const std::vector<double>& intensity_;
    std::vector<std::size_t> segmentEnds_;  ///< one behind the last point of each gapless stretch
    std::vector<double> smooth_;
    std::vector<Maximum> maxima_;
    double ionQuantum_ = 0;  ///< cps that one ion adds to one point
    double stepDa_ = 0;
    double widthPoints_ = 0;
    PeakForm form_;
    double kernelEnergy_ = 0;  ///< sum of the squared weights of the smoothing
};

}  // namespace orvanel
