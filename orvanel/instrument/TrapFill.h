// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/methods/MethodDocument.h"

namespace orvanel {

/// What one fill of the trap holds and what so many ions do to the mass peaks.
struct TrapFill {
    double fillMs = 0;
    double ions = 0;        ///< N, everything that was let in
    double ionsPerCps = 0;  ///< of each kind, per cps of its beam
    double shiftDa = 0;     ///< upwards
    double broadening = 1;  ///< of the peak width
};

/// 1 + q0TrappingGain * min(time without filling, window) / fill time, at most q0TrappingMaximum.
double Q0Gain(const InstrumentModel& model, double nonFillMs, double fillMs);

/// The ions that disturb each other noticeably at a scan rate: spaceChargeIonsAt1000 * sqrt(rate / 1000).
double SpaceChargeIons(const InstrumentModel& model, double rateDaPerS);

/// The fill time that keeps the trap at dynamicFillShare of SpaceChargeIons, between the minimum and the method's.
/// @param rateCps everything that is let in
double DynamicFillMs(const InstrumentModel& model, const ExperimentRecord& experiment, double nonFillMs,
                     double rateCps);

/// Fills for a given time: N = Nmax * (1 - e^(-R t / Nmax)), shift = spaceChargeShiftDa * N / Nsc, width times
/// sqrt(1 + (N / Nsc)^2).
TrapFill FillTrap(const InstrumentModel& model, const ExperimentRecord& experiment, double nonFillMs, double fillMs,
                  double rateCps);

}  // namespace orvanel
