// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "orvanel/explore/DataPoints.h"

namespace orvanel {

/// A chromatogram over the cycles of a file: sums of the spectra's points, or of the stored traces.
class Chromatogram : public DataHandle<ports::ChromatogramData> {
  public:
    using DataHandle::DataHandle;

    void ExploreLoadTIC(int sample, int period, int experiment) override;
    /// Where the file holds traces, the sum of those whose measured m/z (Q3, or the single mass) lies in the range.
    void ExploreLoadXIC(int sample, int period, int experiment, double massStart, double massStop) override;
    void ExploreLoadXICOverlay(int sample, int period, int experiment, int massNumber) override;
    int ExplorePointCount() const override;
    double ExplorePointX(int point) const override;
    double ExplorePointY(int point) const override;
    void ExploreSortPoints(bool byX, bool ascending) override;

  private:
    void Load(const DataFileContent& content, double massStart, double massStop);
    std::size_t IndexOf(int point) const;
};

}  // namespace orvanel
