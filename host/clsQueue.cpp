// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/clsQueue.h"

#include "support/NumberText.h"
#include "support/modRegistryUtils.h"

namespace veltra {
namespace {

constexpr std::int32_t pollMs = 100;

/// What the host publishes of its current sample. Other values say nothing that a wait could go by.
enum Status : std::int16_t { Waiting = 2, Acquiring = 3, Finished = 4, Failed = 6, Stopped = 7 };

bool IsEnd(std::int16_t status) {
    return status == Finished || status == Failed || status == Stopped;
}
bool IsKnown(std::int16_t status) {
    return status == Waiting || status == Acquiring || IsEnd(status);
}

}  // namespace

clsQueue::clsQueue(RunState& runState) : runState_(runState) {
    try {
        queueServer_ = runState.host.HostQueueServer();
        Required(queueServer_);
    } catch (...) {
        creationError_ = std::current_exception();
    }
}

clsQueue::~clsQueue() = default;

void clsQueue::CheckCreation() const {
    if (creationError_) std::rethrow_exception(creationError_);
}

void clsQueue::StartQueue() {
    constexpr std::int32_t settlingMs = 1000;
    Attempt(
        [&] {
            CheckCreation();
            queueServer_->HostQueuePrepare();
            IgnoreFailure("there may be nothing to reset", [&] { queueServer_->HostQueueReset(); });
            queueServer_->HostQueueEnable();
            PumpAndPause(settlingMs);
            queueServer_->HostQueueRun();
        },
        FixedMessage("Queue: Error starting Queue"));
}

void clsQueue::WaitForQueueComplete(double dblExpectedTimeInMSec) {
    bool announced = false;
    Step(
        [&] {
            CheckCreation();
            Wait(dblExpectedTimeInMSec, announced);
        },
        FixedMessage("Queue: Error during wait for Queue to complete"));
    if (announced) runState_.display.ProgressBarEnd();
}

void clsQueue::Wait(double expectedTimeMs, bool& announced) {
    constexpr double gracePolls = 1200;
    std::int16_t status = ReadStatus();
    PumpAndPause(pollMs);
    const std::int16_t limit = support::ToInt16(support::ToInt16(expectedTimeMs / pollMs) + gracePolls);
    if (!IsKnown(status)) return;

    std::int16_t polls = 0;
    while (!IsEnd(status) && !runState_.AbortRequested && !ErrorOccurred()) {
        ++polls;
        if (status == Acquiring && !announced) {
            announced = true;
            runState_.display.MessageUpdate("Expected batch time: " + support::MzText(expectedTimeMs / 1000) + " sec");
            runState_.display.ProgressBarStart(expectedTimeMs);
        }
        PumpAndPause(pollMs);
        if (announced) runState_.display.ProgressBarUpdate(pollMs);
        if (polls < limit)
            status = ReadStatus();
        else
            Fail(
                "Queue: The program timed out.  Please Exit program, equilibrate system with Acquisition Method and "
                "restart.");
    }
}

void clsQueue::PumpAndPause(std::int32_t milliseconds) {
    const auto pause = runState_.host.CreatePause();
    runState_.display.ProcessPendingEvents();
    Required(pause).HostSleep(milliseconds);
    runState_.display.ProcessPendingEvents();
}

std::int16_t clsQueue::ReadStatus() {
    return support::GetQueueSampleStatus([this](const std::string& path) { return runState_.host.RegRead(path); });
}

}  // namespace veltra
