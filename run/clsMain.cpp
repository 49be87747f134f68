#include "run/clsMain.h"

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

void clsMain::Start() {
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

    runState_.WriteLogLine("Generating Results.txt file...");
    runState_.results->GenerateResults(
        {runState_.settings, runState_.clock, runState_.AbortRequested, runState_.EPAndCEPSupported, runState_.disk});
    runState_.WriteLogLine(runState_.AbortRequested ? "Optimization aborted!" : "Optimization completed successfully!");

    runState_.batch->Step4_TolmLogoff();
    if (runState_.batch->ErrorOccurred()) runState_.ReportError(*runState_.batch, ports::MessageIcon::Warning);
    runState_.display.UpdateScanProgress(ports::enumVeltraScanType::RunFinished, ports::enumProgressState::Pending);
    runState_.batch.reset();
}

}  // namespace veltra
