// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <exception>
#include <memory>

#include "host/HostWrapper.h"
#include "host/RunState.h"
#include "ports/QueueServer.h"

namespace veltra {

/// The host's acquisition queue: start it once a run, then wait for the sample of every acquisition.
class clsQueue : public HostWrapper {
  public:
    /// A queue server that the host cannot give is told by the first operation.
    explicit clsQueue(RunState& runState);
    ~clsQueue();

    /// Runs even when an earlier operation has failed.
    void StartQueue();
    /// Polls the queue status every 100 ms until the sample has ended, the run is aborted, or the expected time plus
    /// 120 s has gone by. Returns at once when the queue is in no state to wait for. An abort is no error.
    /// @param dblExpectedTimeInMSec above about 3,156,750 the poll limit overflows, which is reported as the wait's
    /// error
    void WaitForQueueComplete(double dblExpectedTimeInMSec);

  private:
    /// @throws what the host threw when it was asked for its queue server
    void CheckCreation() const;
    /// @param announced gets whether the progress bar has been started, also when the wait fails
    void Wait(double expectedTimeMs, bool& announced);
    void PumpAndPause(std::int32_t milliseconds);
    std::int16_t ReadStatus();

    RunState& runState_;
    std::unique_ptr<ports::QueueServer> queueServer_;
    std::exception_ptr creationError_;
};

}  // namespace veltra
