// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <vector>

namespace orvanel {

/// The points of a profile spectrum: where they are gapless, and what one ion adds to one of them. Refers to the two
/// arrays, which must outlive it.
class ProfilePoints {
  public:
    /// @param mz in order, not empty
    /// @param intensity as many
    ProfilePoints(const std::vector<double>& mz, const std::vector<double>& intensity);

    const std::vector<double>& Mz() const { return mz_; }
    const std::vector<double>& Intensity() const { return intensity_; }
    /// One behind the last point of each gapless stretch.
    const std::vector<std::size_t>& StretchEnds() const { return stretchEnds_; }
    /// Intensity that one ion adds to one point, cps.
    double IonQuantum() const { return ionQuantum_; }
    /// Whether a filter has spread ions over many points, so that single points do not show how many there are.
    bool IsFiltered() const { return isFiltered_; }
    /// The distance between neighbouring points, Da, taken to the closer one, so that a gap beside it does not count.
    double StepAt(std::size_t index) const;

  private:
    void FindStretches();
    void EstimateIonQuantum();

    const std::vector<double>& mz_;
    const std::vector<double>& intensity_;
    std::vector<std::size_t> stretchEnds_;
    double ionQuantum_ = 0;
    bool isFiltered_ = false;
};

}  // namespace orvanel
