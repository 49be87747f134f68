// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <vector>

namespace orvanel {

/// The shape that the peaks of a spectrum share: a Gaussian of unequal sides with a full width at half maximum of 1,
/// placed by its centre of mass. Lengths are in widths.
class PeakForm {
  public:
    /// How far a peak is expected to have anything, to each side.
    static constexpr double tailWidths = 2;

    PeakForm() : PeakForm(0) {}
    /// @param lean the right side's share of the width less the left one's, within -0.3 to 0.3
    explicit PeakForm(double lean);

    /// @param distance from the centre of mass
    /// @return the density there, which adds up to 1 over all distances; 0 beyond the tails
    double At(double distance) const {
        const double place = (distance + tailWidths) * stepsPerWidth;
        if (!(place >= 0 && place < lastStep)) return 0;
        const auto step = static_cast<std::size_t>(place);
        return table_[step] + (place - static_cast<double>(step)) * (table_[step + 1] - table_[step]);
    }

  private:
    static constexpr double stepsPerWidth = 64;
    static constexpr double lastStep = 2 * tailWidths * stepsPerWidth;

    std::vector<double> table_;
};

}  // namespace orvanel
