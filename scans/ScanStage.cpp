// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scans/ScanStage.h"

#include "host/clsQueue.h"
#include "host/clsTolmBatch.h"
#include "support/modFileUtils.h"

namespace veltra {
namespace {

constexpr const char* batchNotSubmitted = "Unable to create and submit batch";

}  // namespace

void ScanStage::StopAfterFailure(HostWrapper& wrapper) {
    runState_.AbortRequested = true;
    runState_.ReportError(wrapper, ports::MessageIcon::Critical);
}

void ScanStage::StopWithoutFinding(const std::string& text) {
    runState_.messageBoxes.Show(text, ports::MessageIcon::None);
    runState_.WriteLogLine(text);
    runState_.AbortRequested = true;
}

bool ScanStage::Guarded(const std::string& message, const std::function<void()>& step) {
    const auto failure = FailureOf(step);
    if (!failure) return true;
    runState_.AbortRequested = true;
    runState_.messageBoxes.Show(message + *failure, ports::MessageIcon::Critical);
    runState_.WriteLogLine(message + *failure);
    return false;
}

void ScanStage::LogMethodNotCreated(const clsItem_FilePaths& filePaths) const {
    runState_.WriteLogLine("Unable to create " + support::GetFolderNameAtDepth(filePaths.MethodFilePath, 0));
}

bool ScanStage::Acquire(const clsItem_FilePaths& filePaths, const MethodBuild& buildMethod) {
    return AcquireWith(filePaths, [&] { return CreateMethod(filePaths, buildMethod); });
}

bool ScanStage::AcquireTrapScan(const clsItem_FilePaths& filePaths, ScanTypeCode scanType,
                                const std::string& strScanRate, const TrapMethodBuild& buildMethod) {
    return AcquireWith(filePaths, [&] {
        const ScanRate scanRate = GetScanRate(runState_, scanType, strScanRate);
        return CreateMethod(filePaths, [&](clsAcquire& acquire) { buildMethod(acquire, scanRate); });
    });
}

bool ScanStage::AcquireWith(const clsItem_FilePaths& filePaths, const std::function<double()>& createMethod) {
    runState_.display.MessageUpdate("Creating method and submitting batch...");
    double expectedDurationMs = 0;
    if (!Guarded("Error during creation of the acquisition method", [&] { expectedDurationMs = createMethod(); }))
        LogMethodNotCreated(filePaths);
    if (runState_.AbortRequested) return false;
    if (!Guarded("Error during creation and submission of the batch", [&] { CreateAndSubmitBatch(filePaths); }))
        runState_.WriteLogLine(batchNotSubmitted);
    if (runState_.AbortRequested) return false;
    Guarded("Error during the wait for the acquisition", [&] { WaitForAcquisition(expectedDurationMs); });
    if (runState_.AbortRequested) return false;
    runState_.display.MessageUpdate("Processing results...");
    return true;
}

double ScanStage::CreateMethod(const clsItem_FilePaths& filePaths, const MethodBuild& buildMethod) {
    clsAcquire acquire(runState_);
    buildMethod(acquire);
    const double expectedDurationMs = acquire.GetExpectedDuration();
    if (!acquire.ErrorOccurred()) return expectedDurationMs;
    StopAfterFailure(acquire);
    LogMethodNotCreated(filePaths);
    return 0;
}

void ScanStage::CreateAndSubmitBatch(const clsItem_FilePaths& filePaths) {
    clsTolmBatch& batch = *runState_.batch;
    batch.Step2_CreateNewTolmBatch(filePaths.BatchFileName, support::GetFolderNameAtDepth(filePaths.MethodFilePath, 0),
                                   support::GetLastTwoPathParts(filePaths.VeskFilePath));
    batch.Step3a_SubmitTolmBatch();
    if (!batch.ErrorOccurred()) return;
    StopAfterFailure(batch);
    runState_.WriteLogLine(batchNotSubmitted);
}

void ScanStage::WaitForAcquisition(double expectedDurationMs) {
    clsQueue queue(runState_);
    queue.WaitForQueueComplete(expectedDurationMs);
    if (queue.ErrorOccurred()) StopAfterFailure(queue);
}

bool ScanStage::Explore(const std::string& strVeskFilePath, const std::function<void(clsExplore&)>& steps) {
    bool succeeded = false;
    Guarded("Error during exploration of " + strVeskFilePath, [&] {
        clsExplore explore(runState_.host);
        explore.Initialize(strVeskFilePath);
        steps(explore);
        succeeded = !explore.ErrorOccurred();
        if (!succeeded) StopAfterFailure(explore);
    });
    return succeeded;
}

}  // namespace veltra
