// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <cmath>

#include "fuzz/Fuzz.h"
#include "orvanel/data/DataReader.h"
#include "orvanel/explore/Exploration.h"
#include "support/Files.h"

namespace {

void CheckSpectrum(const orvanel::StoredSpectrum& spectrum) {
    fuzz::Require(spectrum.mz.size() == spectrum.intensity.size(), "every m/z has an intensity");
    fuzz::Require(std::is_sorted(spectrum.mz.begin(), spectrum.mz.end()), "m/z ascend");
    fuzz::Require(spectrum.cycle >= 1, "cycles count from 1");
    for (const double intensity : spectrum.intensity)
        fuzz::Require(std::isfinite(intensity) && intensity >= 0, "an intensity is a number from 0");
}

/// The peaks of the mean of all spectra lie within it and are numbers.
void CheckPeaks(ports::DataExploration& exploration, const orvanel::DataFileContent& content, const std::string& path) {
    if (content.spectra.empty()) return;
    const auto spectrum = exploration.CreateSpectrumData();
    spectrum->ExploreSetDataFile(path);
    spectrum->ExploreLoadSpectrumByCycle(1, content.spectra.front().cycle, content.spectra.back().cycle);
    const auto mz = spectrum->GetXValues();
    const auto peaks = exploration.ExplorePeakList(path, 1, *spectrum);
    for (int peak = 1; peak <= peaks->ExplorePeakCount(); ++peak) {
        const double peakMz = peaks->ExplorePeakCentroid(peak, ports::PeakList::centroidMz);
        fuzz::Require(peakMz >= mz.front() - 1 && peakMz <= mz.back() + 1, "a peak lies within its spectrum");
        fuzz::Require(peaks->ExplorePeakCentroid(peak, ports::PeakList::centroidIntensity) > 0, "a peak has a height");
        fuzz::Require(std::isfinite(peaks->ExplorePeakAttribute(peak, ports::PeakList::attributeArea)),
                      "a peak's area is a number");
    }
}

}  // namespace

void fuzz::Try(std::string_view input) {
    const std::string path = FileWith("d.vesk", input);
    if (const auto cycle = ReadOrRefuse(path, [&] { return orvanel::ReadCycle(path, 0, 1); }))
        for (const auto& spectrum : cycle->spectra) {
            CheckSpectrum(spectrum);
            fuzz::Require(spectrum.cycle == 1, "only the cycle that was asked for is read");
        }
    const auto content = ReadOrRefuse(path, [&] { return orvanel::ReadDataFile(path); });
    if (!content) return;
    for (const auto& spectrum : content->spectra)
        CheckSpectrum(spectrum);
    for (const auto& trace : content->traces)
        Require(trace.X().size() == trace.intensity.size(), "every time has an intensity");
    const auto exploration = orvanel::CreateDataExploration();
    const auto chromatogram = exploration->CreateChromatogramData();
    chromatogram->ExploreSetDataFile(path);
    chromatogram->ExploreLoadTIC(1, 0, 0);
    for (const double sum : chromatogram->GetYValues())
        Require(std::isfinite(sum), "a total is a number");
    CheckPeaks(*exploration, *content, path);
}
