// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "orvanel/explore/PeakWidths.h"
#include "orvanel/explore/ProfilePoints.h"

namespace orvanel {

/// Smooths a profile spectrum with Gaussians that are as wide everywhere in proportion to its peaks. Nothing is
/// smoothed across a gap.
class Smoothing {
  public:
    /// @param sigmaWidths standard deviation of the Gaussian, in widths of a peak
    Smoothing(const ProfilePoints& points, const PeakWidths& widths, double sigmaWidths);

    /// @param values one a point
    std::vector<double> Apply(const std::vector<double>& values) const;
    /// The sum of the squared weights, which tells what is left of a point's variance.
    double EnergyAt(std::size_t index) const { return KernelAt(index).energy; }

  private:
    static constexpr std::size_t blockPoints = 64;  // that share one Gaussian

    struct Kernel {
        int level = 0;                ///< of its standard deviation, on a scale of ratios
        std::vector<double> weights;  ///< from the middle to one side
        double energy = 0;
    };
    static Kernel MakeKernel(int level);
    const Kernel& KernelAt(std::size_t index) const { return kernels_[kernelOfBlock_[index / blockPoints]]; }

    const ProfilePoints& points_;
    std::vector<Kernel> kernels_;
    std::vector<std::uint32_t> kernelOfBlock_;
};

}  // namespace orvanel
