// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "orvanel/explore/DataPoints.h"

namespace orvanel {

/// A mass spectrum: the mean of one or more cycles of a file.
class Spectrum : public DataHandle<ports::SpectrumData> {
  public:
    using DataHandle::DataHandle;

    void ExploreLoadSpectrumByTime(int sample, int period, int experiment, float startSeconds,
                                   float stopSeconds) override;
    void ExploreLoadSpectrumByCycle(int sample, int firstCycle, int lastCycle) override;

  private:
    void Load(const std::vector<const StoredSpectrum*>& chosen, bool profile);
};

}  // namespace orvanel
