// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

#include "orvanel/instrument/Noise.h"
#include "orvanel/instrument/faults/FaultSettings.h"

namespace orvanel {

/// The share of a time span in which the spray is interrupted. Interruptions are a Poisson process in nominal time that
/// the seed fixes, each of 0.2 to 1 s.
/// @param fromS, toS nominal instrument time, 0 or more; toS above fromS
double DropoutShare(std::uint64_t seed, double perMinute, double fromS, double toS);

/// Spray fluctuation with interruptions and with what is lost of a ramp.
class FaultySpray {
  public:
    FaultySpray(const Spray& spray, const FaultSettings& faults, std::uint64_t seed)
        : spray_(spray), faults_(faults), seed_(seed) {}

    /// @param instrumentTimeS nominal instrument time
    /// @param rampShare of the ramp that lies behind, 0 without a ramp
    void StartCycle(double instrumentTimeS, double rampShare);
    /// The factor on all ion currents after a further time step. @param stepS above 0
    double Advance(double stepS);

  private:
    Spray spray_;
    FaultSettings faults_;
    std::uint64_t seed_;
    double nowS_ = 0;
    bool lost_ = false;
};

}  // namespace orvanel
