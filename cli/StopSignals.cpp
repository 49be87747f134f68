#include "cli/StopSignals.h"

#include <csignal>

namespace cli {
namespace {

// A signal handler can reach nothing but a global of this type.
volatile std::sig_atomic_t stopRequested = 0;

void OnStopSignal(int signal) {
    stopRequested = 1;
    std::signal(signal, OnStopSignal);
}

}  // namespace

StopSignals::StopSignals() {
    stopRequested = 0;
    std::signal(SIGINT, OnStopSignal);
    std::signal(SIGTERM, OnStopSignal);
}

StopSignals::~StopSignals() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

bool StopSignals::TakeRequest() {
    const bool requested = stopRequested != 0;
    stopRequested = 0;
    return requested;
}

}  // namespace cli
