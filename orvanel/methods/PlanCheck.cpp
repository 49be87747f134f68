// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/PlanCheck.h"

#include "orvanel/instrument/Timing.h"
#include "orvanel/methods/ExperimentPorts.h"
#include "orvanel/methods/Ramp.h"
#include "orvanel/methods/Validation.h"

namespace orvanel {
namespace {

MassRangeRecord PlannedRange(const InstrumentModel& model, const ports::PlannedAcquisition& plan,
                             ExperimentRecord& experiment) {
    MassRangeRecord range{plan.start, plan.stop, plan.step, plan.dwellTimeMs, {}};
    if (IsTrapScan(plan.scanType)) {
        const ScanRateStep& rate = *FindScanRate(model, plan.scanType, plan.scanRate);
        experiment.scanRate = rate.rate;
        range.step = rate.stepDa;
        range.dwellTimeMs = rate.stepDa / rate.rate * 1000;
    }
    CheckMassRange(model, plan.scanType, range.start, range.stop, range.step);
    CheckDwellTime(range.dwellTimeMs);
    for (const auto& [id, value] : plan.parameters) {
        CheckParameter(model, id, DecimalValue(value));
        range.compoundParameters.push_back({id, value});
    }
    if (plan.ramp) range.compoundParameters.push_back({plan.ramp->id, plan.ramp->start});
    return plan.optimizesMassRange ? OptimizedRange(model, range) : range;
}

ExperimentRecord PlannedExperiment(const InstrumentModel& model, const ports::PlannedAcquisition& plan) {
    ExperimentRecord experiment;
    experiment.scanType = plan.scanType;
    CheckScansToSum(plan.scansToSum);
    experiment.scansToSum = plan.scansToSum;
    if (plan.firstPrecursor != 0) CheckPrecursor(model, plan.firstPrecursor);
    experiment.firstPrecursor = plan.firstPrecursor;
    if (plan.secondPrecursor != 0) CheckPrecursor(model, plan.secondPrecursor);
    experiment.secondPrecursor = plan.secondPrecursor;
    experiment.dynamicFillTime = plan.fixedFillTimeMs == 0;
    if (!experiment.dynamicFillTime) {
        CheckFillTime(model, plan.fixedFillTimeMs);
        experiment.fixedFillTimeMs = plan.fixedFillTimeMs;
    }
    experiment.excitationTimeMs = model.excitationTimeMs;
    experiment.massRanges.push_back(PlannedRange(model, plan, experiment));
    return experiment;
}

}  // namespace

void CheckPlan(const InstrumentModel& model, const ports::PlannedAcquisition& plan) {
    PeriodRecord period;
    period.experiments.push_back(PlannedExperiment(model, plan));
    if (plan.ramp) {
        period.ramp = RampRecord{plan.ramp->id, plan.ramp->start, plan.ramp->stop, plan.ramp->step};
        CheckRamp(model, period.experiments.front().massRanges.front().compoundParameters, *period.ramp);
    }
    CheckCycles(plan.cycles);
    period.cycles = plan.cycles;
    CheckSubmittable(model, {model.operatingModes.front(), {period}});
}

}  // namespace orvanel
