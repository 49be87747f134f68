// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/queue/QueueEngine.h"

#include <algorithm>
#include <utility>

#include "orvanel/HostErrorNumbers.h"
#include "ports/HostError.h"

namespace orvanel {

QueueEngine::QueueEngine(const HostClock& clock, Actions actions) : clock_(clock), actions_(std::move(actions)) {
    // What an earlier host left published must not be taken for this one's.
    actions_.statusChanged(published_);
}

QueueEngine::~QueueEngine() {
    // Nobody is left to end what is under way, and onlookers must not wait for it.
    if (!samples_.empty()) actions_.statusChanged(QueueStatus::Stopped);
}

void QueueEngine::Prepare() {
    CatchUp();
    prepared_ = true;
}

void QueueEngine::Enable() {
    CatchUp();
    if (!prepared_)
        throw ports::HostError(errorNumber::wrongQueueOrder, "The queue cannot be enabled, prepare it first");
    enabled_ = true;
}

void QueueEngine::Run() {
    CatchUp();
    if (!prepared_ || !enabled_)
        throw ports::HostError(errorNumber::wrongQueueOrder, "The queue cannot run, prepare and enable it first");
    if (running_) return;
    running_ = true;
    runningSinceMs_ = clock_.ElapsedMs();
    Publish();
}

void QueueEngine::Reset() {
    CatchUp();
    if (!samples_.empty()) lastOutcome_ = QueueStatus::Stopped;
    for (const auto& sample : std::exchange(samples_, {}))
        actions_.sampleEnded(sample, QueueStatus::Stopped, "stopped before its end");
    running_ = false;
    enabled_ = false;
    freeSinceMs_ = clock_.ElapsedMs();
    Publish();
}

void QueueEngine::Submit(QueuedSample sample) {
    CatchUp();
    sample.submittedMs = clock_.ElapsedMs();
    samples_.push_back(std::move(sample));
    Publish();
}

QueueStatus QueueEngine::Status() {
    CatchUp();
    return published_;
}

double QueueEngine::StartOfFirst() const {
    const QueuedSample& first = samples_.front();
    return std::max({first.submittedMs, freeSinceMs_, runningSinceMs_}) + first.delayMs;
}

void QueueEngine::CatchUp() {
    while (running_ && !samples_.empty()) {
        const double start = StartOfFirst();
        const double end = start + samples_.front().durationMs;
        if (clock_.ElapsedMs() < end) break;
        QueuedSample sample = std::move(samples_.front());
        samples_.pop_front();
        sample.startedMs = start;
        Finish(std::move(sample), end);
    }
    Publish();
}

void QueueEngine::Finish(QueuedSample sample, double endMs) {
    sample.acquisitionNumber = ++acquisitions_;
    sample.nominalTimeMs = nominalTimeMs_ + sample.delayMs;
    nominalTimeMs_ = sample.nominalTimeMs + sample.durationMs;
    freeSinceMs_ = endMs;
    std::string failure;
    try {
        actions_.acquire(sample);
    } catch (const ports::HostError& error) {
        failure = std::string(error.what()) + " (" + std::to_string(error.Number()) + ")";
    } catch (const std::exception& error) {
        failure = error.what();
        if (failure.empty()) failure = "unknown reason";
    }
    lastOutcome_ = failure.empty() ? QueueStatus::Finished : QueueStatus::Failed;
    if (!failure.empty()) lastFailure_ = failure;
    actions_.sampleEnded(sample, lastOutcome_, failure);
}

void QueueEngine::Publish() {
    QueueStatus status = lastOutcome_;
    if (!samples_.empty()) {
        // All of the announced duration is spent acquiring, so that onlookers can tell how far it is. At the moment at
        // which it is submitted a sample waits.
        const bool acquiring = running_ && clock_.ElapsedMs() > StartOfFirst();
        status = acquiring ? QueueStatus::Acquiring : QueueStatus::Waiting;
    }
    if (status == published_) return;
    published_ = status;
    actions_.statusChanged(status);
}

}  // namespace orvanel
