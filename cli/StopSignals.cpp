#include "cli/StopSignals.h"

#include <csignal>

#include "support/Platform.h"

namespace cli {
namespace {

// A signal handler can reach nothing but a global of this type.
volatile std::sig_atomic_t stopRequested = 0;

void OnStopSignal(int) {
    stopRequested = 1;
}

}  // namespace

StopSignals::StopSignals() {
    stopRequested = 0;
    handlers_ = support::CatchStopSignals(OnStopSignal);
}

bool StopSignals::TakeRequest() {
    if (stopRequested == 0) return false;
    stopRequested = 0;
    return true;
}

}  // namespace cli
