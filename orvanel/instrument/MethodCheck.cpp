// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/MethodCheck.h"

#include <algorithm>
#include <cmath>

#include "orvanel/instrument/InstrumentErrors.h"
#include "orvanel/instrument/Timing.h"
#include "orvanel/methods/Ramp.h"
#include "ports/HostError.h"
#include "support/NumberText.h"

namespace orvanel {
namespace {

constexpr double maximumPoints = 2e6;
constexpr int maximumCycles = 100000;
constexpr int maximumScans = 1000;

[[noreturn]] void Refuse(const std::string& text) {
    throw ports::HostError(methodNotPossible, "The method cannot be acquired: " + text);
}

void Require(bool condition, const std::string& what, double value, double minimum, double maximum) {
    if (!condition || !std::isfinite(value))
        Refuse(what + " is " + support::GeneralText(value) + ", allowed is " + support::GeneralText(minimum) + " to " +
               support::GeneralText(maximum));
}

void RequireWithin(const Limits& limits, const std::string& what, double value) {
    Require(limits.Contains(value), what, value, limits.minimum, limits.maximum);
}

void CheckParameter(const InstrumentModel& model, const std::string& id, double value) {
    const auto limits = model.parameterLimits.find(id);
    if (limits != model.parameterLimits.end())
        RequireWithin(limits->second, "the absolute value of parameter " + id, std::fabs(value));
}

void CheckQuadrupoleRange(const ExperimentRecord& experiment, const MassRangeRecord& range,
                          const InstrumentModel& model) {
    const bool transition = experiment.scanType == static_cast<int>(ScanType::MultipleReaction);
    RequireWithin(model.quadrupoleMz, transition ? "a transition's Q1 mass" : "the mass", range.start);
    if (transition) RequireWithin(model.quadrupoleMz, "a transition's Q3 mass", range.step);
    RequireWithin({0.01, 1e6}, "the dwell time in ms", range.dwellTimeMs);
}

void CheckTrapRange(const ExperimentRecord& experiment, std::size_t index, const InstrumentModel& model) {
    const MassRangeRecord& range = experiment.massRanges[index];
    RequireWithin(model.trapMz, "the start of a mass range", range.start);
    RequireWithin(model.trapMz, "the end of a mass range", range.stop);
    if (range.stop <= range.start || (index > 0 && range.start <= experiment.massRanges[index - 1].stop))
        Refuse("the mass ranges do not ascend; every range must begin below its end and above the one before");
    RequireWithin({0.001, 10}, "the step of a mass range in Da", range.step);
    Require((range.stop - range.start) / range.step < maximumPoints, "the number of points of a mass range",
            (range.stop - range.start) / range.step, 1, maximumPoints);
}

void CheckTrapSettings(const ExperimentRecord& experiment, const InstrumentModel& model) {
    if (!model.linearIonTrap)
        Refuse("scan type " + std::to_string(experiment.scanType) + " needs a linear ion trap, and " + model.name +
               " is none");
    if (FindScanRate(model, experiment.scanType, experiment.scanRate) == nullptr) {
        std::string offered;
        for (const auto& step : model.scanRates.at(experiment.scanType))
            offered += (offered.empty() ? "" : ", ") + step.rateText;
        Refuse("the scan rate is " + support::GeneralText(experiment.scanRate) + " Da/s, offered are " + offered);
    }
    RequireWithin({0.01, 10000}, "the fill time in ms", experiment.fixedFillTimeMs);
    if (experiment.scanType != static_cast<int>(ScanType::EnhancedResolution))
        RequireWithin(model.quadrupoleMz, "the first precursor", experiment.firstPrecursor);
    if (experiment.scanType != static_cast<int>(ScanType::Ms3)) return;
    RequireWithin(model.trapMz, "the second precursor", experiment.secondPrecursor);
    RequireWithin({0, 10000}, "the excitation time in ms", experiment.excitationTimeMs);
}

void CheckExperiment(const ExperimentRecord& experiment, const InstrumentModel& model) {
    const bool trapScan = IsTrapScan(experiment.scanType);
    if (!trapScan && experiment.scanType != static_cast<int>(ScanType::Q1MultipleIon) &&
        experiment.scanType != static_cast<int>(ScanType::MultipleReaction))
        Refuse("scan type " + std::to_string(experiment.scanType) + " is unknown; 1, 4, 11, 12 and 13 are known");
    RequireWithin({1, maximumScans}, "the number of scans to sum", experiment.scansToSum);
    RequireWithin({0, 1}, "the polarity", experiment.polarity);
    RequireWithin({0, 3}, "the Q1 resolution", experiment.q1Resolution);
    if (experiment.massRanges.empty()) Refuse("its experiment has no mass range");
    if (trapScan) CheckTrapSettings(experiment, model);
    for (std::size_t i = 0; i < experiment.massRanges.size(); ++i) {
        if (trapScan)
            CheckTrapRange(experiment, i, model);
        else
            CheckQuadrupoleRange(experiment, experiment.massRanges[i], model);
        for (const Parameter& parameter : experiment.massRanges[i].compoundParameters)
            CheckParameter(model, parameter.id, DecimalValue(parameter.value));
    }
}

}  // namespace

void CheckAcquirable(const MassSpecRecord& method, const InstrumentModel& model) {
    if (method.periods.empty() || method.periods[0].experiments.empty()) Refuse("it has no experiment");
    if (std::find(model.operatingModes.begin(), model.operatingModes.end(), method.operatingMode) ==
        model.operatingModes.end())
        Refuse("operating mode " + std::to_string(method.operatingMode) + " is not one of " + model.name);
    const PeriodRecord& period = method.periods[0];
    RequireWithin({1, maximumCycles}, "the number of cycles", period.cycles);
    if (period.ramp) {
        CheckParameter(model, period.ramp->id, DecimalValue(period.ramp->start));
        CheckParameter(model, period.ramp->id, DecimalValue(period.ramp->stop));
    }
    CheckExperiment(period.experiments[0], model);
}

std::size_t PointCount(const MassRangeRecord& range) {
    return static_cast<std::size_t>(std::floor((range.stop - range.start) / range.step + 1e-6)) + 1;
}

}  // namespace orvanel
