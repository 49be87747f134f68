// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <string>

#include "orvanel/clock/HostClock.h"
#include "orvanel/methods/MethodDocument.h"

namespace orvanel {

/// The published status of the queue's current sample.
enum class QueueStatus { Idle = 0, Waiting = 2, Acquiring = 3, Finished = 4, Failed = 6, Stopped = 7 };

/// One sample in the acquisition queue.
struct QueuedSample {
    std::string methodPath;
    std::string dataFilePath;
    MassSpecRecord method;                ///< as it stood when the sample was submitted
    std::string methodText;               ///< the document it was read from
    double delayMs = 0;                   ///< before the acquisition begins, beyond what its method announces
    double durationMs = 0;                ///< as its method announces it: start, equilibration and all cycles
    double submittedMs = 0;               ///< on the clock; set by the queue, as are those below
    double startedMs = 0;                 ///< on the clock, the delay over
    std::uint64_t acquisitionNumber = 0;  ///< counted from 1
    /// Nominal instrument time at the start: what was acquired before, with its delays. It does not depend on how fast
    /// the clock runs or how long the queue was idle, so that the same run gives the same data.
    double nominalTimeMs = 0;
};

/// The acquisition queue, a function of the clock: no thread runs. What has happened since the last call is caught up
/// with at the next one, and a sample's data are acquired as soon as its time is found to be over.
class QueueEngine {
  public:
    struct Actions {
        std::function<void(const QueuedSample&)> acquire;  ///< simulates and writes; throws when it cannot
        std::function<void(QueueStatus)> statusChanged;
        /// @param failure empty when the sample was finished
        std::function<void(const QueuedSample&, QueueStatus outcome, const std::string& failure)> sampleEnded;
    };

    /// @param clock must outlive the queue
    QueueEngine(const HostClock& clock, Actions actions);
    ~QueueEngine();
    QueueEngine(const QueueEngine&) = delete;
    QueueEngine& operator=(const QueueEngine&) = delete;

    /// Preparing, enabling and running go in this order; repeating one that stands does nothing.
    /// @throws ports::HostError when the one before is missing
    void Prepare();
    void Enable();
    void Run();
    /// Stops the sample under way, drops what is waiting and disables the queue, which stays prepared.
    void Reset();

    void Submit(QueuedSample sample);
    QueueStatus Status();
    /// Why the last sample that failed did so; empty when none has.
    const std::string& LastFailure() const { return lastFailure_; }

  private:
    void CatchUp();
    void Finish(QueuedSample sample, double endMs);
    /// When the first sample begins to be acquired, or did.
    double StartOfFirst() const;
    void Publish();

    const HostClock& clock_;
    Actions actions_;
    bool prepared_ = false;
    bool enabled_ = false;
    bool running_ = false;
    double runningSinceMs_ = 0;
    double freeSinceMs_ = 0;    ///< end of the previous sample
    double nominalTimeMs_ = 0;  ///< of all acquisitions so far
    std::uint64_t acquisitions_ = 0;
    std::deque<QueuedSample> samples_;
    QueueStatus lastOutcome_ = QueueStatus::Idle;
    QueueStatus published_ = QueueStatus::Idle;
    std::string lastFailure_;
};

}  // namespace orvanel
