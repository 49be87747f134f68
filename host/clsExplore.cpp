// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/clsExplore.h"

#include <utility>

#include "host/ExploreRules.h"
#include "support/NumberText.h"

namespace veltra {
namespace {

using support::GeneralText;

constexpr int sample = 1;
constexpr int period = 0;
constexpr int experiment = 0;

void CopyData(const ports::DataObject& from, ports::DataObject& to) {
    to.SetXValues(from.GetXValues());
    to.SetYValues(from.GetYValues());
    to.SetXAxisRange(from.GetXAxisRange());
    to.SetYValueRange(from.GetYValueRange());
}

}  // namespace

clsExplore::clsExplore(ports::Host& host) {
    Step(
        [&] {
            exploration_ = host.CreateDataExploration();
            chromatogram_ = Required(exploration_).CreateChromatogramData();
            spectrum_ = exploration_->CreateSpectrumData();
            Required(chromatogram_);
            Required(spectrum_);
        },
        FixedMessage("Explore Data: Error during Explore Data initialization"));
}

clsExplore::~clsExplore() = default;

void clsExplore::Initialize(const std::string& strVeskFilePath) {
    Step(
        [&] {
            dataFilePath_ = strVeskFilePath;
            chromatogram_->ExploreSetDataFile(strVeskFilePath);
            spectrum_->ExploreSetDataFile(strVeskFilePath);
        },
        [&] { return "Explore Data: Error during initialization using " + strVeskFilePath; });
}

void clsExplore::Chrom_LoadTIC() {
    Step([&] { chromatogram_->ExploreLoadTIC(sample, period, experiment); },
         FixedMessage("Explore Data: Error loading TIC"));
}

void clsExplore::Chrom_LoadXIC(double dblMassStart, double dblMassStop) {
    Step([&] { chromatogram_->ExploreLoadXIC(sample, period, experiment, dblMassStart, dblMassStop); },
         FixedMessage("Explore Data: Error loading XIC"));
}

void clsExplore::Chrom_LoadXICOverlay(std::int16_t intIndex) {
    Step([&] { chromatogram_->ExploreLoadXICOverlay(sample, period, experiment, intIndex); },
         FixedMessage("Explore Data: Error loading XIC overlay"));
}

double clsExplore::Chrom_GetOptimalValue(bool& pBlnOptimalFound) {
    double optimum = 0;
    pBlnOptimalFound = false;
    Step(
        [&] {
            const auto x = XOfMaximum(*chromatogram_);
            pBlnOptimalFound = x.has_value();
            optimum = x.value_or(0);
        },
        FixedMessage("Explore Data: Error getting optimal value"));
    return optimum;
}

double clsExplore::Chrom_GetPercentMaxIntensityValue(std::int16_t intPercentage, bool& pBlnMaxVoltageFound) {
    double value = 0;
    pBlnMaxVoltageFound = false;
    Step(
        [&] {
            const auto x = XAtPercentOfMaximum(*chromatogram_, intPercentage);
            pBlnMaxVoltageFound = x.has_value();
            value = x.value_or(0);
        },
        [&] {
            return "Explore Data: Error getting value at " + GeneralText(static_cast<int>(intPercentage)) +
                   "% of max intensity";
        });
    return value;
}

void clsExplore::Chrom_SmoothGraph(std::int16_t intNumOfSmoothes) {
    Step(
        [&] {
            const auto smoothing = exploration_->CreateSmoothingProcessor();
            const ports::SmoothingParameters parameters;
            for (int pass = 0; pass < intNumOfSmoothes; ++pass)
                Required(smoothing).ExploreSmooth(*chromatogram_, parameters);
        },
        FixedMessage("Explore Data: Error during smoothing of graph"));
}

void clsExplore::Spectrum_LoadSpectrum() {
    constexpr float secondsPerMinute = 60.0F;
    Step(
        [&] {
            Chrom_LoadTIC();
            if (ErrorOccurred()) return;
            const int count = chromatogram_->ExplorePointCount();
            if (count < 1) return;
            const auto start = static_cast<float>(Finite(chromatogram_->ExplorePointX(1))) * secondsPerMinute;
            const auto stop = static_cast<float>(Finite(chromatogram_->ExplorePointX(count))) * secondsPerMinute;
            spectrum_->ExploreLoadSpectrumByTime(sample, period, experiment, start, stop);
        },
        FixedMessage("Explore Data: Error loading spectrum"));
}

void clsExplore::Spectrum_LoadCycleDependentSpectrum(std::int16_t intCycle) {
    Step([&] { spectrum_->ExploreLoadSpectrumByCycle(sample, intCycle, intCycle); },
         FixedMessage("Explore Data: Error loading cycle dependent spectrum"));
}

std::unique_ptr<ports::PeakList> clsExplore::LoadedPeakList() const {
    return exploration_->ExplorePeakList(dataFilePath_, sample, *spectrum_);
}

std::shared_ptr<clsItem_Peak> clsExplore::Spectrum_GetHighestPeakInRange(double dblMass, double dblTolerance) {
    std::shared_ptr<clsItem_Peak> found;
    Step(
        [&] {
            const auto peaks = LoadedPeakList();
            const int peak = HighestMonoisotopicPeak(Required(peaks), dblMass, dblTolerance);
            if (peak < 1) return;
            auto record = std::make_shared<clsItem_Peak>();
            record->CentroidMass = Finite(peaks->ExplorePeakCentroid(peak, ports::PeakList::centroidMz));
            record->CentroidIntensity = Finite(peaks->ExplorePeakCentroid(peak, ports::PeakList::centroidIntensity));
            found = std::move(record);
        },
        [&] {
            return "Explore Data: Error getting highest peak in range " + GeneralText(dblMass - dblTolerance) +
                   " Da to " + GeneralText(dblMass + dblTolerance) + " Da";
        });
    return found;
}

PeakCollection clsExplore::Spectrum_GetTopPeaks(std::int16_t intNumOfPeaksToGet, double dblMassToExclude,
                                                double dblMassExclusionTolerance,
                                                std::int16_t intPeakAreaPercentThreshold,
                                                bool& pBlnPercentBelowThreshold) {
    PeakCollection top;
    Step(
        [&] {
            pBlnPercentBelowThreshold = true;
            const auto peaks = LoadedPeakList();
            top = TopMonoisotopicPeaks(Required(peaks), intNumOfPeaksToGet, dblMassToExclude, dblMassExclusionTolerance,
                                       intPeakAreaPercentThreshold, pBlnPercentBelowThreshold);
        },
        [&] {
            return "Explore Data: Error during getting of " +
                   support::GeneralText(static_cast<int>(intNumOfPeaksToGet)) + " top peaks";
        });
    return top;
}

ChromDataReference clsExplore::GetChromDataObject() {
    ChromDataReference copy;
    Step(
        [&] {
            auto data = exploration_->CreateChromatogramData();
            CopyData(*chromatogram_, Required(data));
            data->ExploreSortPoints(true, true);
            copy = std::move(data);
        },
        FixedMessage("Explore Data: Error during getting copy of chromatogram data object"));
    return copy;
}

SpecDataReference clsExplore::GetSpecDataObject() {
    SpecDataReference copy;
    Step(
        [&] {
            auto data = exploration_->CreateSpectrumData();
            CopyData(*spectrum_, Required(data));
            copy = std::move(data);
        },
        FixedMessage("Explore Data: Error during getting copy of spectrum data object"));
    return copy;
}

}  // namespace veltra
