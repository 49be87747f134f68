// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <benchmark/benchmark.h>

#include <filesystem>

#include "orvanel/methods/MethodFile.h"
#include "tests/support_files/NewProject.h"

namespace {

void MethodLoad(benchmark::State& state) {
    const NewProject project("reserpine");
    for (auto _ : state)
        benchmark::DoNotOptimize(orvanel::ReadMethodFile(project.facts.starterMethodPath));
}
BENCHMARK(MethodLoad)->Unit(benchmark::kMicrosecond);

/// Flushing to disk included: a saved method survives a power cut.
void MethodSave(benchmark::State& state) {
    const NewProject project("reserpine");
    const auto document = orvanel::ReadMethodFile(project.facts.starterMethodPath);
    const std::string path = project.folder.File("Saved.xmt");
    for (auto _ : state)
        orvanel::WriteMethodFile(path, document);
}
BENCHMARK(MethodSave)->Unit(benchmark::kMicrosecond);

}  // namespace
