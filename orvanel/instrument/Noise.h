// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/instrument/Random.h"

namespace orvanel {

/// Fluctuation of the spray: lognormal with mean 1, an autoregressive process of first order in nominal time.
class Spray {
  public:
    Spray(double relativeSd, double correlationS, Random& random);
    /// The factor after a further time step. @param stepS 0 or more
    double Advance(double stepS);

  private:
    double sigma_;
    double correlationS_;
    double state_;
    Random& random_;
};

/// Chemical background: one peak at every multiple of the spacing, its height lognormal around
/// level * median * e^(-m / decay), the same in all acquisitions of a seed.
class ChemicalBackground {
  public:
    ChemicalBackground(const InstrumentModel& model, std::uint64_t seed, double level);

    double SpacingDa() const { return model_.chemicalNoiseSpacingDa; }
    double MzOf(std::int64_t multiple) const { return static_cast<double>(multiple) * SpacingDa(); }
    /// cps before any stage of isolation
    double RateOf(std::int64_t multiple) const;

  private:
    const InstrumentModel& model_;
    std::uint64_t seed_;
    double level_;
};

/// Error of the trap's mass scale in Da: what the session's calibration left plus drift.
/// @param instrumentTimeS nominal instrument time
double CalibrationErrorDa(const InstrumentModel& model, std::uint64_t seed, double instrumentTimeS, double level);

}  // namespace orvanel
