// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/StopSignals.h"

#include <atomic>
#include <csignal>

#include "support/Platform.h"

namespace support {
namespace {

// A signal handler can reach nothing but globals, of such types as these.
volatile std::sig_atomic_t stopRequested = 0;
volatile std::sig_atomic_t stopRequestedBefore = 0;
std::atomic<const char*> whatIsLeftUndone = "";
static_assert(std::atomic<const char*>::is_always_lock_free);

void OnStopSignal(int signal) {
    // Other requests come in pairs: a closing terminal's from the system and from the shell, for one.
    if (signal == SIGINT && stopRequestedBefore != 0) EndAtOnce(whatIsLeftUndone);
    stopRequested = 1;
    stopRequestedBefore = 1;
}

}  // namespace

StopSignals::StopSignals(const char* leftUndone) {
    stopRequested = 0;
    stopRequestedBefore = 0;
    whatIsLeftUndone = leftUndone;
    handlers_ = CatchStopSignals(OnStopSignal);
}

bool StopSignals::TakeRequest() {
    if (stopRequested == 0) return false;
    stopRequested = 0;
    return true;
}

}  // namespace support
