// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>

#include "tests/support_files/FaultyDisk.h"
#include "tests/support_files/WholeRun.h"

namespace {

bool IsFlush(const DiskOperation& operation) {
    return operation.call == DiskCall::Flush || operation.call == DiskCall::FlushFolder;
}

/// One whole optimisation of reserpine on a virtual clock: 12 acquisitions, 7 of them ramps of up to 61 steps. The
/// counters are the process's largest memory so far, and how often a run waits for the disk.
void WholeVirtualRun(benchmark::State& state) {
    for (auto _ : state) {
        const FaultyDisk disk;
        WholeRun run({.disk = disk});
        if (run.Start() != veltra::StartButton::Outcome::Completed) state.SkipWithError("the run did not complete");
        const auto& operations = disk.Operations();
        state.counters["flushes"] = static_cast<double>(std::count_if(operations.begin(), operations.end(), IsFlush));
    }
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    state.counters["MB"] = static_cast<double>(usage.ru_maxrss) / 1024;
}
BENCHMARK(WholeVirtualRun)->Unit(benchmark::kMillisecond);

}  // namespace
