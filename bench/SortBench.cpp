// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

#include "model/clsItem_Peak.h"
#include "support/modSorts.h"

namespace {

using Peaks = std::vector<std::shared_ptr<veltra::clsItem_Peak>>;

Peaks MakePeaks(std::int64_t count, bool sorted) {
    std::mt19937_64 random(1);
    Peaks peaks;
    for (std::int64_t i = 0; i < count; ++i) {
        auto peak = std::make_shared<veltra::clsItem_Peak>();
        peak->CentroidMass = static_cast<double>(i);
        peak->CentroidIntensity = sorted ? static_cast<double>(i) : static_cast<double>(random() % 100000);
        peaks.push_back(std::move(peak));
    }
    return peaks;
}

/// The second argument tells whether the records are in order already: that must not be slower.
void QuickSortPeaks(benchmark::State& state) {
    const Peaks peaks = MakePeaks(state.range(0), state.range(1) != 0);
    for (auto _ : state) {
        Peaks copy = peaks;
        support::QuickSortPeaks(1, static_cast<std::int32_t>(copy.size()), "Centroid Intensity", copy);
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(QuickSortPeaks)->ArgsProduct({{10000, 100000, 1000000}, {0, 1}})->Unit(benchmark::kMillisecond);

}  // namespace
