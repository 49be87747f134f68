// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/FinalMethodStage.h"

#include "run/clsScan_SaveFinalMS3.h"
#include "support/NumberText.h"
#include "support/modFileUtils.h"

namespace veltra {
namespace {

using ports::enumVeltraScanType;

bool HasFinalMethod(const clsItem_TopPeak& record) {
    return record.CEWasOptimized && record.AF2WasOptimized && !record.MS3PeaksCollection.empty();
}

std::string ReasonForNone(const clsItem_TopPeak& record) {
    if (!record.CEWasOptimized) return "No optimal CE, final method not generated for ";
    if (!record.AF2WasOptimized) return "No optimal AF2, final method not generated for ";
    if (record.MS3PercentBelowThreshold) return "No peaks found, final method not generated for ";
    return "Parent not below 10% total ion count, final method not generated for ";
}

void UseOptimaOf(RunState& run, const clsItem_TopPeak& record) {
    run.results->CE.Current = static_cast<float>(record.OptimizedCE);
    run.results->AF2.Current = static_cast<float>(record.OptimizedAF2);
}

void SaveFinalMethod(const StageFrame& frame, clsItem_TopPeak& record) {
    RunState& run = frame.runState;
    const double mass = record.SecondPrecursor->CentroidMass;
    UseOptimaOf(run, record);
    record.FinalMS3Method = frame.MethodPath("_FinalMS3_", mass);
    clsScan_SaveFinalMS3 final(run);
    if (final.GenerateFinalMethod(frame.Parent().CentroidMass, mass, frame.filePaths.MethodFilePath,
                                  record.FinalMS3Method))
        frame.Log(record.FinalMS3Method);
    else
        record.FinalMS3Method = "\\Unable to create " + support::GetFolderNameAtDepth(record.FinalMS3Method, 0);
}

void SaveOptimalMethod(const StageFrame& frame) {
    RunState& run = frame.runState;
    auto& results = *run.results;
    const auto& optimal = *results.TopPeaksInfo[static_cast<std::size_t>(results.OptimalMS3PeakIndex - 1)];
    const double mass = optimal.SecondPrecursor->CentroidMass;
    UseOptimaOf(run, optimal);
    results.OptimalMS3Method = frame.MethodPath("_FinalOptimalMS3_", mass);
    clsScan_SaveFinalMS3 final(run);
    final.GenerateFinalOptimalMethod(frame.Parent().CentroidMass, mass,
                                     optimal.MS3PeaksCollection.front()->CentroidMass, frame.filePaths.MethodFilePath,
                                     results.OptimalMS3Method);
}

}  // namespace

void RunFinalMethodStage(StageFrame& frame) {
    if (frame.Aborted()) return;
    RunState& run = frame.runState;
    auto& results = *run.results;
    frame.Log("--> Generating final MS/MS/MS methods...");
    frame.MarkRunning(enumVeltraScanType::FinalMethods);
    results.OptimalMS3PeakIndex = 0;
    double bestIntensity = 0;

    std::int16_t position = 0;
    for (const auto& record : results.TopPeaksInfo) {
        ++position;
        if (run.settings.Advanced_MS3SaveAllFinalMethods) {
            if (HasFinalMethod(*record))
                SaveFinalMethod(frame, *record);
            else
                frame.Log(ReasonForNone(*record) + support::MzText(record->SecondPrecursor->CentroidMass) + " Da.");
        }
        // Only the first peak of each spectrum competes; on a tie the earlier 2nd precursor stays.
        if (record->MS3PeaksCollection.empty()) continue;
        const double intensity = record->MS3PeaksCollection.front()->CentroidIntensity;
        if (intensity > bestIntensity) {
            bestIntensity = intensity;
            results.OptimalMS3PeakIndex = position;
        }
    }

    if (results.OptimalMS3PeakIndex < 1)
        frame.Log("No optimal MS3 quantitation path, final optimal method not generated.");
    else
        SaveOptimalMethod(frame);
    frame.MarkDone(enumVeltraScanType::FinalMethods);
}

}  // namespace veltra
