// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/methods/MethodDocument.h"

namespace orvanel {

/// What an instrument model can take. Every check throws ports::HostError, which names the value and what is allowed.
/// Voltages are judged by their magnitude: their sign follows the polarity.

inline constexpr int maximumCycles = 100000;
inline constexpr int maximumScansToSum = 1000;
inline constexpr double maximumDwellTimeMs = 10000;
inline constexpr double maximumFillTimeMs = 10000;
inline constexpr double maximumExcitationTimeMs = 1000;
inline constexpr double maximumPointsPerRange = 200000;
inline constexpr double maximumPointsPerFile = 40'000'000;  ///< more could not be explored
inline constexpr double maximumHours = 168;

void CheckScanType(const InstrumentModel& model, int scanType);
void CheckScanRate(const InstrumentModel& model, int scanType, double scanRate);
/// A trap scan's range may reach beyond the instrument here: HostOptimizeMassRange clips it.
void CheckMassRange(const InstrumentModel& model, int scanType, double start, double stop, double step);
void CheckPrecursor(const InstrumentModel& model, double mass);
/// @param value a single's decimal value (DecimalValue), so that 0.4 is within a limit of 0.4
void CheckParameter(const InstrumentModel& model, const std::string& id, double value);
/// @param table the parameters that there are to ramp
void CheckRamp(const InstrumentModel& model, const std::vector<Parameter>& table, const RampRecord& ramp);
void CheckPolarity(int polarity);
void CheckQ1Resolution(int resolution);
void CheckScansToSum(int count);
void CheckCycles(std::int64_t count);
void CheckDwellTime(double dwellTimeMs);
void CheckFillTime(const InstrumentModel& model, double fillTimeMs);
void CheckExcitationTime(double excitationTimeMs);
/// @param what for the error text, such as "Q0 trapping"
void CheckFlag(const std::string& what, int value);

/// Whether the first experiment of the first period can be put into the queue: all of it can be acquired, and the ramp
/// has as many values as the period has cycles. A method with a mass range that was added and never set passes; its
/// acquisition fails.
void CheckSubmittable(const InstrumentModel& model, const MassSpecRecord& method);

}  // namespace orvanel
