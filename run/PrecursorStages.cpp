// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/PrecursorStages.h"

#include "scans/clsScan1_ER.h"
#include "scans/clsScan2_Q1MI.h"
#include "support/NumberText.h"

namespace veltra {
namespace {

using ports::enumVeltraScanType;

/// One ramp of the Q1MI stage.
struct SubScan {
    enumVeltraScanType stage;
    const char* action;
    const char* infix;
    ParameterRamp ramp;  ///< its id is the ramp identifier, "REOPTDP" included
    clsItem_CompoundParam clsInfo_Results::*record;
    const char* resultPrefix;
    void (clsInfo_Scans::*storeFilePaths)(const clsItem_FilePaths&);
};

void RunSubScan(StageFrame& frame, const SubScan& subScan) {
    RunState& run = frame.runState;
    const clsItem_Peak parent = frame.Parent();
    frame.Log("--> Q1MI scan (" + std::string(subScan.action) + ") of parent " + StageFrame::PeakText(parent) + "...");
    frame.MarkRunning(subScan.stage);
    frame.NameNextAcquisition(subScan.infix, parent.CentroidMass);

    clsScan2_Q1MI scan(run);
    const double optimum = scan.Scan(parent.CentroidMass, run.settings.Advanced_Q1MIDwellTime, subScan.ramp.id,
                                     subScan.ramp.start, subScan.ramp.stop, subScan.ramp.step, frame.filePaths);
    auto& record = (*run.results).*subScan.record;
    if (!frame.Aborted()) record.Current = static_cast<float>(optimum);
    frame.Log(subScan.resultPrefix + (frame.Aborted() ? "N/A" : support::GeneralText(record.Current)));
    frame.EndAcquisition();

    frame.MarkDone(subScan.stage);
    ((*run.scans).*subScan.storeFilePaths)(frame.filePaths);
    frame.ShowGraph(subScan.stage);
}

ParameterRamp DPRamp(const RunState& run, const char* id) {
    return {id, run.settings.Advanced_Q1MIDPRampStart, run.settings.Advanced_Q1MIDPRampStop,
            run.settings.Advanced_Q1MIDPRampStep};
}

/// DP is looked at again where EP came out low. The two polarities are judged differently on purpose; any other
/// polarity code never asks for it.
bool NeedsSecondDPRamp(const RunState& run) {
    constexpr float limit = 10;
    const float ep = run.results->EP.Current;
    return (run.settings.Polarity == 0 && ep < limit) || (run.settings.Polarity == 1 && ep > -limit);
}

}  // namespace

void RunERStage(StageFrame& frame) {
    if (frame.Aborted()) return;
    RunState& run = frame.runState;
    const double expectedMz = run.settings.ExpectedMZ;
    frame.Log("--> ER scan of expected parent " + support::MzText(expectedMz) + " Da...");
    frame.MarkRunning(enumVeltraScanType::ER);
    frame.NameFirstAcquisition("_ER_", expectedMz);

    clsScan1_ER scan(run);
    run.results->ActualPeak = scan.Scan(expectedMz, frame.filePaths);
    frame.Log("Actual parent m/z:");
    frame.Log(run.results->ActualPeak ? StageFrame::PeakText(*run.results->ActualPeak) : "N/A");
    frame.EndAcquisition();

    frame.MarkDone(enumVeltraScanType::ER);
    run.scans->ER_FilePaths(frame.filePaths);
    frame.ShowGraph(enumVeltraScanType::ER);
}

void RunQ1MIStage(StageFrame& frame) {
    using Results = clsInfo_Results;
    using Scans = clsInfo_Scans;
    if (frame.Aborted()) return;
    const RunState& run = frame.runState;

    RunSubScan(frame, {enumVeltraScanType::Q1MI_DP, "optimize DP", "_Q1MI_RampDP_", DPRamp(run, "DP"), &Results::DP,
                       "Optimized DP = ", &Scans::Q1MI_DP_FilePaths});
    if (!run.EPAndCEPSupported || frame.Aborted()) return;

    RunSubScan(frame, {enumVeltraScanType::Q1MI_EP,
                       "optimize EP",
                       "_Q1MI_RampEP_",
                       {"EP", 1.0F, 12.0F, 0.5F},
                       &Results::EP,
                       "Optimized EP = ",
                       &Scans::Q1MI_EP_FilePaths});
    if (!frame.Aborted() && NeedsSecondDPRamp(run))
        RunSubScan(frame, {enumVeltraScanType::Q1MI_REOPTDP, "re-optimize DP", "_Q1MI_RampDP(2)_",
                           DPRamp(run, "REOPTDP"), &Results::DP, "Re-optimized DP = ", &Scans::Q1MI_REOPTDP_FilePaths});
    if (frame.Aborted()) return;

    RunSubScan(frame, {enumVeltraScanType::Q1MI_CEP,
                       "optimize CEP",
                       "_Q1MI_RampCEP_",
                       {"CEP", 0.0F, 100.0F, 2.0F},
                       &Results::CEP,
                       "Optimized CEP = ",
                       &Scans::Q1MI_CEP_FilePaths});
}

}  // namespace veltra
