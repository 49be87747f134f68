// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/instrument/ScanConditions.h"

namespace orvanel {

/// Q1 multiple ion and MRM scans. A Q1 scan sees every ion that Q1 lets through, whatever the collision cell makes of
/// it.
class QuadrupoleScan {
  public:
    explicit QuadrupoleScan(const ScanConditions& conditions) : at_(conditions) {}

    /// @return cps of every mass range, its scans summed
    std::vector<double> Cycle(const ParameterTables& parameters);

  private:
    double ExpectedCps(const MassRangeRecord& range, const std::vector<Parameter>& parameters) const;
    double BackgroundThrough(const Q1Window& window, double centreMz) const;
    double Counted(double expectedCps, double dwellS);

    const ScanConditions& at_;
};

}  // namespace orvanel
