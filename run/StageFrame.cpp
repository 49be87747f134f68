// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/StageFrame.h"

#include "support/NumberText.h"
#include "support/modFileUtils.h"

namespace veltra {

clsItem_Peak StageFrame::Parent() const {
    return runState.results->ActualPeak ? *runState.results->ActualPeak : clsItem_Peak{};
}

std::string StageFrame::MethodPath(const std::string& infix, double mz) const {
    const auto& settings = runState.settings;
    return support::GetPathToNthBackslash(settings.StarterMethodFilePath, true, 0) + settings.CompoundName + infix +
           support::MzText(mz) + ".xmt";
}

void StageFrame::Name(const std::string& lastMethodFilePath, const std::string& infix, double mz) {
    const std::string name = runState.settings.CompoundName + infix + support::MzText(mz);
    filePaths.LastMethodFilePath = lastMethodFilePath;
    filePaths.MethodFilePath = MethodPath(infix, mz);
    filePaths.BatchFileName = name + ".xbt";
    filePaths.VeskFilePath = runState.results->VeskOutputFilePath + name + ".vesk";
}

void StageFrame::NameFirstAcquisition(const std::string& infix, double mz) {
    Name(runState.settings.StarterMethodFilePath, infix, mz);
}

void StageFrame::NameNextAcquisition(const std::string& infix, double mz) {
    const std::string last = filePaths.MethodFilePath;
    Name(last, infix, mz);
}

void StageFrame::MarkRunning(ports::enumVeltraScanType stage) const {
    runState.display.UpdateScanProgress(stage, ports::enumProgressState::Running);
}

void StageFrame::MarkDone(ports::enumVeltraScanType stage) const {
    runState.display.UpdateScanProgress(stage, ports::enumProgressState::Done);
}

void StageFrame::ShowGraph(ports::enumVeltraScanType stage) const {
    constexpr std::int16_t indexShownLast = -1;
    runState.display.UpdateResultsGraphControl(stage, indexShownLast);
}

std::string StageFrame::PeakText(const clsItem_Peak& peak) {
    return support::MzText(peak.CentroidMass) + " Da, " + support::ScientificText(peak.CentroidIntensity) + " cps";
}

}  // namespace veltra
