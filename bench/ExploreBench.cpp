// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "orvanel/data/DataFile.h"
#include "orvanel/data/DataReader.h"
#include "orvanel/data/ExperimentIndex.h"
#include "orvanel/explore/Exploration.h"
#include "tests/support_files/TempFolder.h"

namespace {

/// A peak every 5 Da over noise, as a trap scan would leave it.
std::vector<double> Intensities(std::size_t points, double stepDa) {
    std::mt19937_64 random(7);
    std::vector<double> intensity(points);
    for (std::size_t i = 0; i < points; ++i) {
        const double offset = std::remainder(static_cast<double>(i) * stepDa, 5.0) / 0.15;
        intensity[i] = std::floor(static_cast<double>(random() % 4) + 5000 * std::exp(-0.5 * offset * offset)) * 100;
    }
    return intensity;
}

std::vector<double> Grid(std::size_t points, double stepDa) {
    std::vector<double> mz(points);
    for (std::size_t i = 0; i < points; ++i)
        mz[i] = 50 + static_cast<double>(i) * stepDa;
    return mz;
}

orvanel::AcquiredData ManySpectra(int count, std::size_t points = 500) {
    constexpr double stepDa = 0.06;
    orvanel::AcquiredData data;
    data.startTimestamp = "2024-05-13T15:45:12Z";
    data.experiment.scanType = static_cast<int>(orvanel::ScanType::EnhancedResolution);
    data.experiment.massRanges.push_back({50, 50 + stepDa * static_cast<double>(points - 1), stepDa, 0.06, {}});
    for (int cycle = 1; cycle <= count; ++cycle) {
        orvanel::CycleRecord record;
        record.cycle = cycle;
        record.timeMinutes = cycle * 0.005;
        record.applied.resize(1);
        record.mz = Grid(points, stepDa);
        record.intensity = Intensities(points, stepDa);
        data.cycles.push_back(std::move(record));
    }
    return data;
}

void PeakListOfSpectrum(benchmark::State& state) {
    constexpr double stepDa = 0.06;
    const auto points = static_cast<std::size_t>(state.range(0));
    const TempFolder folder;
    const std::string path = folder.File("one.vesk");
    orvanel::WriteDataFile(path, ManySpectra(1));
    const auto exploration = orvanel::CreateDataExploration();
    const auto spectrum = exploration->CreateSpectrumData();
    spectrum->SetXValues(Grid(points, stepDa));
    spectrum->SetYValues(Intensities(points, stepDa));
    for (auto _ : state)
        benchmark::DoNotOptimize(exploration->ExplorePeakList(path, 1, *spectrum));
}
BENCHMARK(PeakListOfSpectrum)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// The file is read once by the first load; what is measured is the extraction.
void XicOverSpectra(benchmark::State& state) {
    const TempFolder folder;
    const std::string path = folder.File("many.vesk");
    orvanel::WriteDataFile(path, ManySpectra(static_cast<int>(state.range(0))));
    const auto exploration = orvanel::CreateDataExploration();
    const auto chromatogram = exploration->CreateChromatogramData();
    chromatogram->ExploreSetDataFile(path);
    chromatogram->ExploreLoadTIC(1, 0, 0);
    for (auto _ : state) {
        chromatogram->ExploreLoadXIC(1, 0, 0, 60, 60.5);
        benchmark::DoNotOptimize(chromatogram->ExplorePointCount());
    }
}
BENCHMARK(XicOverSpectra)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

constexpr std::size_t pointsOfFile = 5000;

/// The whole file, for the ratio to OneCycleByIndex.
void WholeFile(benchmark::State& state) {
    const TempFolder folder;
    const std::string path = folder.File("many.vesk");
    orvanel::WriteDataFile(path, ManySpectra(static_cast<int>(state.range(0)), pointsOfFile));
    for (auto _ : state)
        benchmark::DoNotOptimize(orvanel::ReadDataFile(path).spectra.size());
}
BENCHMARK(WholeFile)->Arg(500)->Unit(benchmark::kMillisecond);

void OneCycleByIndex(benchmark::State& state) {
    const TempFolder folder;
    const std::string path = folder.File("many.vesk");
    orvanel::WriteDataFile(path, ManySpectra(static_cast<int>(state.range(0)), pointsOfFile));
    for (auto _ : state)
        benchmark::DoNotOptimize(orvanel::ReadCycle(path, 0, 250).spectra.size());
}
BENCHMARK(OneCycleByIndex)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);

/// Every precursor is near to every other, so that a search through those that are near would take all.
void SortCrowdedSpectra(benchmark::State& state) {
    constexpr std::size_t isolations = 12;
    std::mt19937_64 random(7);
    std::vector<orvanel::ExperimentKind> kinds(static_cast<std::size_t>(state.range(0)));
    for (auto& kind : kinds) {
        kind.msLevel = 2;
        for (std::size_t i = 0; i < isolations; ++i)
            kind.isolations.push_back({400 + 0.06 * static_cast<double>(random() % 3)});
    }
    for (auto _ : state) {
        orvanel::ExperimentIndex index;
        for (const auto& kind : kinds)
            benchmark::DoNotOptimize(index.Count(kind));
    }
}
BENCHMARK(SortCrowdedSpectra)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
