// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/TrapFill.h"

#include <algorithm>
#include <cmath>

#include "orvanel/instrument/PortableMath.h"

namespace orvanel {

double Q0Gain(const InstrumentModel& model, double nonFillMs, double fillMs) {
    const double gain = 1 + model.q0TrappingGain * std::min(nonFillMs, model.q0TrappingWindowMs) / fillMs;
    return std::min(gain, model.q0TrappingMaximum);
}

double SpaceChargeIons(const InstrumentModel& model, double rateDaPerS) {
    return model.spaceChargeIonsAt1000 * std::sqrt(rateDaPerS / 1000);
}

double DynamicFillMs(const InstrumentModel& model, const ExperimentRecord& experiment, double nonFillMs,
                     double rateCps) {
    const double targetIons = model.dynamicFillShare * SpaceChargeIons(model, experiment.scanRate);
    const double longest = std::max(experiment.fixedFillTimeMs, model.minimumFillMs);
    if (rateCps <= 0) return longest;
    double fillMs = targetIons / rateCps * 1000;
    if (experiment.q0Trapping) {
        // What Q0 stores does not depend on the fill time until the gain reaches its maximum.
        const double storedMs = model.q0TrappingGain * std::min(nonFillMs, model.q0TrappingWindowMs);
        fillMs = std::max(fillMs - storedMs, fillMs / model.q0TrappingMaximum);
    }
    return std::clamp(fillMs, model.minimumFillMs, longest);
}

TrapFill FillTrap(const InstrumentModel& model, const ExperimentRecord& experiment, double nonFillMs, double fillMs,
                  double rateCps) {
    TrapFill fill;
    fill.fillMs = fillMs;
    const double gain = experiment.q0Trapping ? Q0Gain(model, nonFillMs, fillMs) : 1;
    const double offeredPerCps = fillMs / 1000 * gain;
    const double offered = rateCps * offeredPerCps;
    fill.ionsPerCps = offeredPerCps;
    // Below, 1 - e^-x would lose its digits and saturation is nothing.
    if (offered > 1e-6 * model.trapCapacity)
        fill.ionsPerCps = model.trapCapacity * (1 - Exp(-offered / model.trapCapacity)) / rateCps;
    fill.ions = rateCps * fill.ionsPerCps;
    const double crowding = fill.ions / SpaceChargeIons(model, experiment.scanRate);
    fill.shiftDa = model.spaceChargeShiftDa * crowding;
    fill.broadening = std::sqrt(1 + crowding * crowding);
    return fill;
}

}  // namespace orvanel
