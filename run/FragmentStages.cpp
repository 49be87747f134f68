// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/FragmentStages.h"

#include "host/InstrumentModels.h"
#include "scans/clsScan3_EPI.h"
#include "scans/clsScan4_MRM.h"
#include "scans/clsScan5_MS3.h"
#include "support/NumberText.h"

namespace veltra {
namespace {

using ports::enumVeltraScanType;
using support::GeneralText;

void UpdateMS3Label(const RunState& run, std::size_t current) {
    run.display.UpdateMS3Label(static_cast<std::int16_t>(current),
                               static_cast<std::int16_t>(run.results->TopPeaksInfo.size()));
}

void LogMS3Outcome(const StageFrame& frame, const clsItem_TopPeak& record) {
    if (!record.AF2WasOptimized) {
        frame.Log("Optimized AF2 = N/A");
        frame.Log("No peaks found.");
        return;
    }
    frame.Log("Optimized AF2 = " + GeneralText(record.OptimizedAF2));
    if (!record.MS3PercentBelowThreshold) {
        frame.Log("No peaks found (parent not below 10% total ion count).");
    } else if (record.MS3PeaksCollection.empty()) {
        frame.Log("No peaks found.");
    }
    for (std::size_t i = 0; i < record.MS3PeaksCollection.size(); ++i)
        frame.Log("Peak " + std::to_string(i + 1) + ": " + StageFrame::PeakText(*record.MS3PeaksCollection[i]));
}

ParameterRamp AF2Ramp(const RunState& run) {
    // The Dasmyr series takes AF2 on a scale of its own. Both ramps start at 0, which turns an AF2 into a cycle number.
    if (IsDasmyrSeries(run.InstrumentModelCode)) return {"AF2", 0.0F, 0.4F, 0.01F};
    return {"AF2", 0.0F, 100.0F, 2.0F};
}

void RunOneMS3(StageFrame& frame, clsItem_TopPeak& record) {
    RunState& run = frame.runState;
    frame.NameNextAcquisition("_MS3_RampAF2_", record.SecondPrecursor->CentroidMass);
    run.results->CE.Current = static_cast<float>(record.OptimizedCE);

    const ParameterRamp ramp = AF2Ramp(run);
    clsScan5_MS3 scan(run);
    scan.Scan(frame.Parent().CentroidMass, record, ramp.id, ramp.start, ramp.stop, ramp.step, frame.filePaths);
    LogMS3Outcome(frame, record);
    frame.EndAcquisition();

    run.scans->MS3_FilePathsAddOne(frame.filePaths);
    run.display.UpdateResultsGraphControl(enumVeltraScanType::MS3, run.scans->Scan5_MS3_GetFilePathsCount());
}

}  // namespace

void RunEPIStage(StageFrame& frame) {
    if (frame.Aborted()) return;
    RunState& run = frame.runState;
    const clsItem_Peak parent = frame.Parent();
    frame.Log("--> EPI CE spread scan of parent " + StageFrame::PeakText(parent) + "...");
    frame.MarkRunning(enumVeltraScanType::EPI);
    frame.NameNextAcquisition("_EPI_CE_Spread_", parent.CentroidMass);

    clsScan3_EPI scan(run);
    run.results->TopPeaksInfo =
        scan.Scan(parent.CentroidMass, run.settings.Advanced_EPI_CE, run.settings.Advanced_EPI_CES, frame.filePaths)
            .value_or(TopPeakCollection{});
    const auto& secondPrecursors = run.results->TopPeaksInfo;
    if (secondPrecursors.empty()) {
        frame.Log("2nd precursors: N/A");
    } else {
        frame.Log("2nd precursors:");
        for (const auto& record : secondPrecursors)
            frame.Log(StageFrame::PeakText(*record->SecondPrecursor));
        UpdateMS3Label(run, 0);
    }
    frame.EndAcquisition();

    frame.MarkDone(enumVeltraScanType::EPI);
    run.scans->EPI_FilePaths(frame.filePaths);
    frame.ShowGraph(enumVeltraScanType::EPI);
}

void RunMRMStage(StageFrame& frame) {
    if (frame.Aborted()) return;
    RunState& run = frame.runState;
    frame.Log("--> MRM scan of 2nd precursors...");
    frame.MarkRunning(enumVeltraScanType::MRM);
    frame.NameNextAcquisition("_MRM_RampCE_", frame.Parent().CentroidMass);

    clsScan4_MRM scan(run);
    scan.Scan(frame.Parent().CentroidMass, run.results->TopPeaksInfo, "CE", 10.0F, 130.0F, 2.0F, frame.filePaths);
    frame.Log("Optimized CEs for 2nd precursors:");
    for (const auto& record : run.results->TopPeaksInfo)
        frame.Log((record->CEWasOptimized ? GeneralText(record->OptimizedCE) : "N/A") + " (" +
                  StageFrame::PeakText(*record->SecondPrecursor) + ")");
    frame.EndAcquisition();

    frame.MarkDone(enumVeltraScanType::MRM);
    run.scans->MRM_FilePaths(frame.filePaths);
    frame.ShowGraph(enumVeltraScanType::MRM);
}

void RunMS3Stage(StageFrame& frame) {
    if (frame.Aborted()) return;
    RunState& run = frame.runState;
    frame.MarkRunning(enumVeltraScanType::MS3);
    std::size_t position = 0;
    for (const auto& record : run.results->TopPeaksInfo) {
        if (frame.Aborted()) break;
        UpdateMS3Label(run, ++position);
        frame.Log("--> MS/MS/MS scan of 2nd precursor " + StageFrame::PeakText(*record->SecondPrecursor) + "...");
        if (record->CEWasOptimized)
            RunOneMS3(frame, *record);
        else
            frame.Log("No optimal CE, MS3 skipped for this 2nd precursor.");
    }
    frame.MarkDone(enumVeltraScanType::MS3);
}

}  // namespace veltra
