// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/SettingsCheck.h"

#include <algorithm>
#include <array>
#include <vector>

#include "host/HostWrapper.h"
#include "host/InstrumentModels.h"
#include "host/clsAcquire.h"
#include "scans/ScanStage.h"
#include "scans/clsScan1_ER.h"
#include "support/Text.h"

namespace veltra {
namespace {

struct Stage {
    const char* name;
    ports::PlannedAcquisition plan;
};

ports::PlannedAcquisition Plan(ScanTypeCode scanType) {
    ports::PlannedAcquisition plan;
    plan.scanType = static_cast<int>(scanType);
    plan.scansToSum = scansToSum;
    return plan;
}

Stage PlanER(const clsInfo_Settings& settings) {
    auto plan = Plan(ScanTypeCode::ER);
    plan.scanRate = settings.Advanced_ERScanRate;
    plan.start = settings.ExpectedMZ - clsScan1_ER::halfWindowDa;
    plan.stop = settings.ExpectedMZ + clsScan1_ER::halfWindowDa;
    plan.cycles = settings.Advanced_ERCycles;
    return {"ER", plan};
}

Stage PlanQ1MI(const clsInfo_Settings& settings, double parentMz) {
    auto plan = Plan(ScanTypeCode::Q1MI);
    plan.start = plan.stop = parentMz;
    plan.dwellTimeMs = settings.Advanced_Q1MIDwellTime;
    plan.ramp = {"DP", settings.Advanced_Q1MIDPRampStart, settings.Advanced_Q1MIDPRampStop,
                 settings.Advanced_Q1MIDPRampStep};
    plan.cycles = RampCycles(plan.ramp->start, plan.ramp->stop, plan.ramp->step);
    return {"Q1MI DP", plan};
}

Stage PlanEPI(const clsInfo_Settings& settings, double parentMz) {
    auto plan = Plan(ScanTypeCode::EPI);
    plan.scanRate = settings.Advanced_EPIScanRate;
    plan.start = static_cast<double>(settings.Advanced_EPIMassStart);
    plan.stop = static_cast<double>(settings.Advanced_EPIMassEnd);
    plan.optimizesMassRange = true;
    plan.firstPrecursor = parentMz;
    plan.parameters = {{"CE", settings.Advanced_EPI_CE}, {"CES", settings.Advanced_EPI_CES}};
    plan.cycles = settings.Advanced_EPICycles;
    return {"EPI", plan};
}

Stage PlanMRM(const clsInfo_Settings& settings, double parentMz) {
    auto plan = Plan(ScanTypeCode::MRM);
    plan.start = plan.step = parentMz;
    plan.dwellTimeMs = settings.Advanced_MRMDwellTime;
    return {"MRM", plan};
}

Stage PlanMS3(const clsInfo_Settings& settings, double parentMz) {
    auto plan = Plan(ScanTypeCode::MS3);
    plan.scanRate = settings.Advanced_MS3ScanRate;
    plan.start = static_cast<double>(settings.Advanced_MS3MassStart);
    plan.stop = static_cast<double>(settings.Advanced_MS3MassEnd);
    plan.optimizesMassRange = true;
    plan.firstPrecursor = plan.secondPrecursor = parentMz;
    plan.fixedFillTimeMs = settings.Advanced_MS3FixedFillTime;
    return {"MS/MS/MS", plan};
}

/// What the settings lead to when the parent is found there. What only the run finds out is left at what is possible.
std::vector<Stage> StagesOf(const clsInfo_Settings& settings, double parentMz) {
    return {PlanER(settings), PlanQ1MI(settings, parentMz), PlanEPI(settings, parentMz), PlanMRM(settings, parentMz),
            PlanMS3(settings, parentMz)};
}

/// The first stage that the host would refuse wherever the ER scan finds the parent; empty when there is none.
std::string FirstProblem(RunState& runState) {
    const auto& settings = runState.settings;
    const auto helper = runState.host.CreateInstrumentHelper();
    const auto problemOf = [&](const Stage& stage) {
        return Required(helper).HostGetAcquisitionProblem(runState.InstrumentModelCode, stage.plan);
    };
    const auto expected = StagesOf(settings, settings.ExpectedMZ);
    const std::array around = {StagesOf(settings, settings.ExpectedMZ - clsScan1_ER::parentToleranceDa),
                               StagesOf(settings, settings.ExpectedMZ + clsScan1_ER::parentToleranceDa)};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const std::string problem = problemOf(expected[i]);
        if (problem.empty()) continue;
        if (std::any_of(around.begin(), around.end(), [&](const auto& stages) { return problemOf(stages[i]).empty(); }))
            continue;
        return "The instrument cannot perform the " + std::string(expected[i].name) +
               " scan with these settings: " + problem;
    }
    return {};
}

}  // namespace

bool CanBeAcquired(RunState& runState) {
    constexpr std::size_t longestBytes = 1000;
    if (runState.InstrumentModelCode == 0) return true;
    std::string problem;
    const auto failure = FailureOf([&] { problem = FirstProblem(runState); });
    if (failure || problem.empty()) return true;  // a host that cannot tell now is found out by the run
    runState.messageBoxes.Show(support::Excerpt(problem, longestBytes) + ". Please update the Settings.",
                               ports::MessageIcon::None);
    return false;
}

}  // namespace veltra
