// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include "tests/support_files/WholeRun.h"

namespace {

/// One whole optimisation of reserpine on a virtual clock: 12 acquisitions, 7 of them ramps of up to 61 steps. The
/// counter is the process's largest memory so far.
void WholeVirtualRun(benchmark::State& state) {
    for (auto _ : state) {
        WholeRun run({});
        if (run.Start() != veltra::StartButton::Outcome::Completed) state.SkipWithError("the run did not complete");
    }
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    state.counters["MB"] = static_cast<double>(usage.ru_maxrss) / 1024;
}
BENCHMARK(WholeVirtualRun)->Unit(benchmark::kMillisecond);

}  // namespace
