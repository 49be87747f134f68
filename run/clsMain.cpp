// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/clsMain.h"

#include <exception>

#include "host/clsQueue.h"
#include "host/clsTolmBatch.h"
#include "run/FinalMethodStage.h"
#include "run/FragmentStages.h"
#include "run/PrecursorStages.h"
#include "run/RunInitialization.h"
#include "run/StageFrame.h"

namespace veltra {

bool clsMain::Initialize() {
    return RunInitialization(runState_).Run();
}

bool clsMain::StartQueue() {
    clsQueue queue(runState_);
    queue.StartQueue();
    if (!queue.ErrorOccurred()) return true;
    runState_.AbortRequested = true;
    runState_.ReportError(queue, ports::MessageIcon::Critical);
    return false;
}

void clsMain::WriteReport() {
    auto& results = *runState_.results;
    runState_.WriteLogLine("Generating Results.txt file...");
    const ReportContext context{runState_.settings, runState_.clock, runState_.AbortRequested,
                                runState_.EPAndCEPSupported, runState_.disk};
    const std::string failure = results.GenerateResults(context);
    if (failure.empty()) return;
    results.UnwrittenFiles.push_back(failure);
    try {
        results.UnwrittenReport = results.ReportText(context);
    } catch (const std::exception&) {
        // The text itself is what failed, and the user is told why.
    }
}

void clsMain::Finish() {
    if (!toBeFinished_) return;
    toBeFinished_ = false;
    WriteReport();
    runState_.WriteLogLine(runState_.AbortRequested ? "Optimization aborted!" : "Optimization completed successfully!");

    runState_.batch->Step4_TolmLogoff();
    if (runState_.batch->ErrorOccurred()) runState_.ReportError(*runState_.batch, ports::MessageIcon::Warning);
    if (!runState_.results->UnwrittenLogLines.empty())
        runState_.results->UnwrittenFiles.push_back("The last lines are missing in " + runState_.results->LogFilePath);
    runState_.FlushLogFile();
}

void clsMain::EndNow() {
    if (toBeFinished_) runState_.AbortRequested = true;
    Finish();
    // Where the run had not begun yet, this logs off.
    runState_.batch.reset();
}

void clsMain::Start() {
    toBeFinished_ = true;
    runState_.results->StartTime = runState_.clock.Now().longTime;
    if (StartQueue()) {
        // Every stage looks at AbortRequested itself and does nothing when it is set.
        StageFrame frame(runState_);
        RunERStage(frame);
        RunQ1MIStage(frame);
        RunEPIStage(frame);
        RunMRMStage(frame);
        RunMS3Stage(frame);
        RunFinalMethodStage(frame);
    }
    Finish();
    runState_.display.UpdateScanProgress(ports::enumVeltraScanType::RunFinished, ports::enumProgressState::Pending);
    runState_.batch.reset();
    runState_.projectInUse.reset();
}

}  // namespace veltra
