// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/explore/PeakFinder.h"
#include "ports/DataExploration.h"

namespace orvanel {

/// The peaks of one spectrum, found when it is made.
class SpectrumPeakList : public ports::PeakList {
  public:
    /// @param profile false when every point is a peak already
    /// @throws ports::HostError when the two arrays differ in length
    SpectrumPeakList(const std::vector<double>& mz, const std::vector<double>& intensity, bool profile);

    int ExplorePeakCount() const override { return static_cast<int>(peaks_.size()); }
    int ExploreFindHighestInRange(double lowMz, double highMz) const override;
    int ExploreFindNearest(double mz, double tolerance) const override;
    double ExplorePeakAttribute(int peak, int attribute) const override;
    double ExplorePeakCentroid(int peak, int which) const override;

  private:
    const Peak& At(int peak) const;

    std::vector<Peak> peaks_;
};

}  // namespace orvanel
