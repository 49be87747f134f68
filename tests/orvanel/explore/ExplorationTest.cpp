// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/Exploration.h"

#include <gmock/gmock.h>

#include <cmath>

#include "orvanel/data/DataFile.h"
#include "orvanel/explore/MeanSpectrum.h"
#include "ports/HostError.h"
#include "tests/orvanel/data/SampleData.h"
#include "tests/orvanel/instrument/InstrumentBench.h"
#include "tests/support_files/TempFolder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Values = std::vector<double>;

class ExplorationTest : public testing::Test {
  protected:
    std::string Write(const orvanel::AcquiredData& data) {
        auto path = folder_.File("Sample" + std::to_string(++files_) + ".vesk");
        orvanel::WriteDataFile(path, data);
        return path;
    }
    std::unique_ptr<ports::ChromatogramData> Chromatogram(const orvanel::AcquiredData& data) {
        auto handle = library_->CreateChromatogramData();
        handle->ExploreSetDataFile(Write(data));
        return handle;
    }
    std::unique_ptr<ports::SpectrumData> Spectrum(const orvanel::AcquiredData& data) {
        auto handle = library_->CreateSpectrumData();
        handle->ExploreSetDataFile(Write(data));
        return handle;
    }

    TempFolder folder_;
    std::unique_ptr<ports::DataExploration> library_ = orvanel::CreateDataExploration();
    int files_ = 0;
};

TEST_F(ExplorationTest, ChromatogramsSumThePointsWithinInclusiveBounds) {
    auto ramp = Chromatogram(SampleRamp(13, "AF2", 0, 0.5F, 3));
    ramp->ExploreLoadTIC(1, 0, 0);
    EXPECT_THAT(ramp->GetXValues(), ElementsAre(0, 0.5, 1));
    EXPECT_THAT(ramp->GetYValues(), ElementsAre(40, 80, 120));
    struct Case {
        double start, stop;
        Values sums;
    };
    for (const Case& window : {Case{100, 100.25, {30, 60, 90}}, Case{100.0001, 100.2499, {0, 0, 0}},
                               Case{99.75, 99.75, {10, 20, 30}}, Case{0, 5000, {40, 80, 120}}}) {
        ramp->ExploreLoadXIC(1, 0, 0, window.start, window.stop);
        EXPECT_EQ(ramp->GetYValues(), window.sums) << window.start;
    }
    auto plain = Chromatogram(SampleScan(2));
    plain->ExploreLoadTIC(1, 0, 0);
    EXPECT_THAT(plain->GetXValues(), ElementsAre(0.1 / 3, 0.1 * 2 / 3));

    auto traces = Chromatogram(SampleTraces(4, 2));
    traces->ExploreLoadXICOverlay(1, 0, 0, 2);
    EXPECT_THAT(traces->GetXValues(), ElementsAre(10, 12));
    EXPECT_THAT(traces->GetYValues(), ElementsAre(300, 301));
    traces->ExploreLoadTIC(1, 0, 0);
    EXPECT_THAT(traces->GetYValues(), ElementsAre(600, 603));
    traces->ExploreLoadXIC(1, 0, 0, 201.5, 202.5);
    EXPECT_THAT(traces->GetYValues(), ElementsAre(500, 502));
    traces->ExploreLoadXIC(1, 0, 0, 1, 2);
    EXPECT_THAT(traces->GetYValues(), ElementsAre(0, 0));
}

TEST_F(ExplorationTest, SortsAreStableAndSmoothingWorksInOrderOfX) {
    auto handle = library_->CreateChromatogramData();
    handle->SetXValues({3, 1, 2, 4, 5});
    handle->SetYValues({8, 4, 0, 8, 0});
    EXPECT_EQ(handle->GetXAxisRange(), (ports::AxisRange{1, 5}));
    handle->ExploreSortPoints(false, false);
    EXPECT_THAT(handle->GetXValues(), ElementsAre(3, 4, 1, 2, 5));
    EXPECT_EQ(handle->ExplorePointX(1), 3);
    EXPECT_EQ(handle->ExplorePointY(5), 0);
    handle->ExploreSortPoints(false, true);
    EXPECT_THAT(handle->GetXValues(), ElementsAre(2, 5, 1, 3, 4));
    library_->CreateSmoothingProcessor()->ExploreSmooth(*handle, {});
    EXPECT_THAT(handle->GetXValues(), ElementsAre(1, 2, 3, 4, 5));
    EXPECT_THAT(handle->GetYValues(), ElementsAre(4, 3, 6, 6, 0));
    EXPECT_EQ(handle->GetYValueRange(), (ports::AxisRange{0, 6}));
    handle->SetYValueRange({-1, 9});
    EXPECT_EQ(handle->GetYValueRange(), (ports::AxisRange{-1, 9}));

    const auto empty = library_->CreateChromatogramData();
    library_->CreateSmoothingProcessor()->ExploreSmooth(*empty, {});
    EXPECT_EQ(empty->ExplorePointCount(), 0);
    EXPECT_EQ(empty->GetYValueRange(), ports::AxisRange{});
}

TEST_F(ExplorationTest, SpectraByTimeFollowTheChromatogramsAxisWithHalfACycleOfTolerance) {
    auto ramp = Spectrum(SampleRamp(13, "AF2", 0, 0.01F, 36));
    auto falling = Spectrum(SampleRamp(13, "DP", 0, -5, 3));
    struct Case {
        ports::SpectrumData* spectrum;
        float start, stop;
        double apex;
    };
    for (const Case& range :
         {Case{ramp.get(), 0, static_cast<float>(0.35) * 60.0F, 20 * 18.5}, Case{ramp.get(), 0, 0, 20},
          Case{ramp.get(), 0.5F, 0.7F, 40}, Case{falling.get(), 0, -600, 40}, Case{falling.get(), -550, -600, 60}}) {
        range.spectrum->ExploreLoadSpectrumByTime(1, 0, 0, range.start, range.stop);
        EXPECT_THAT(range.spectrum->GetXValues(), ElementsAre(99.5, 99.75, 100, 100.25, 100.5));
        EXPECT_DOUBLE_EQ(range.spectrum->GetYValueRange().maximum, range.apex) << range.start << " " << range.stop;
    }
    EXPECT_THROW(ramp->ExploreLoadSpectrumByTime(1, 0, 0, 100, 200), ports::HostError);
}

TEST_F(ExplorationTest, AMeanTakesMissingPointsAsZeroAndJoinsForeignGrids) {
    auto data = SampleScan(3);
    data.cycles[1].mz = {99.75, 100, 100.25, 108, 108.25, 108.5};
    data.cycles[1].intensity = {0, 30, 0, 0, 9, 0};
    data.cycles[2].mz = {99.6, 99.85, 100.1};
    data.cycles[2].intensity = {3, 6, 9};
    auto spectrum = Spectrum(data);
    spectrum->ExploreLoadSpectrumByCycle(1, 1, 2);
    EXPECT_THAT(spectrum->GetXValues(), ElementsAre(99.5, 99.75, 100, 100.25, 100.5, 108, 108.25, 108.5));
    EXPECT_THAT(spectrum->GetYValues(), ElementsAre(0, 5, 25, 5, 0, 0, 4.5, 0));
    spectrum->ExploreLoadSpectrumByCycle(1, 3, 3);
    EXPECT_THAT(spectrum->GetYValues(), ElementsAre(3, 6, 9));
    data.cycles.erase(data.cycles.begin() + 1);
    auto shifted = Spectrum(data);
    shifted->ExploreLoadSpectrumByTime(1, 0, 0, 0, 100);
    EXPECT_THAT(shifted->GetXValues(), ElementsAre(99.55, 99.8, 100.05, 100.25, 100.5));
    EXPECT_THAT(shifted->GetYValues(), ElementsAre(1.5, 8, 14.5, 5, 0));
}

TEST_F(ExplorationTest, AMeanJoinsLinesThatScatterLessThanTheyAreWide) {
    for (const double distanceDa : {1.0, 0.1}) {
        orvanel::StoredSpectrum first;
        for (int k = 0; k < 60; ++k)
            first.mz.push_back(400 + distanceDa * k);
        first.intensity.assign(first.mz.size(), 1.0);
        auto second = first;
        for (double& mz : second.mz)
            mz += 0.12 * distanceDa;
        EXPECT_EQ(orvanel::MeanSpectrum({&first, &second}, false).mz.size(), 60U) << distanceDa;
        for (double& mz : second.mz)
            mz += 0.38 * distanceDa;
        EXPECT_GT(orvanel::MeanSpectrum({&first, &second}, false).mz.size(), 100U) << distanceDa;
    }
}

TEST_F(ExplorationTest, EveryWrongCallIsRefusedWithItsReason) {
    auto chromatogram = Chromatogram(SampleTraces(1, 2));
    auto spectrum = Spectrum(SampleScan(4));
    const auto tracePath = Write(SampleTraces(4, 2));
    auto empty = library_->CreateSpectrumData();
    auto unequal = library_->CreateChromatogramData();
    unequal->SetXValues({1, 2});
    const auto peaks = library_->ExplorePeakList(tracePath, 1, *empty);
    struct Case {
        std::string text;
        std::function<void()> call;
    };
    const std::string only = "A data file holds sample 1, period 0, experiment 0 only; asked for were ";
    const std::vector<Case> cases = {
        {"No data file was set, so nothing can be loaded", [&] { empty->ExploreLoadSpectrumByCycle(1, 1, 1); }},
        {only + "sample 2, period 0, experiment 0", [&] { chromatogram->ExploreLoadTIC(2, 0, 0); }},
        {only + "sample 1, period 1, experiment 0", [&] { chromatogram->ExploreLoadXIC(1, 1, 0, 1, 2); }},
        {"The experiment has 3 masses, counted from 0; there is no mass number 3",
         [&] { chromatogram->ExploreLoadXICOverlay(1, 0, 0, 3); }},
        {"The experiment has 3 masses, counted from 0; there is no mass number -1",
         [&] { chromatogram->ExploreLoadXICOverlay(1, 0, 0, -1); }},
        {"The mass range from 3 Da to 2.5 Da is empty", [&] { chromatogram->ExploreLoadXIC(1, 0, 0, 3, 2.5); }},
        {"The data file holds cycles 1 to 4; asked for were cycles 4 to 5",
         [&] { spectrum->ExploreLoadSpectrumByCycle(1, 4, 5); }},
        {"The data file holds cycles 1 to 4; asked for were cycles 0 to 1",
         [&] { spectrum->ExploreLoadSpectrumByCycle(1, 0, 1); }},
        {"The chromatogram has 0 points, counted from 1; there is no point 1", [&] { chromatogram->ExplorePointX(1); }},
        {"There are 2 x values but 0 y values", [&] { unequal->ExploreSortPoints(true, true); }},
        {"The peak list has 0 peaks, counted from 1; there is no peak 1", [&] { peaks->ExplorePeakCentroid(1, 0); }},
        {only + "sample 0, period 0, experiment 0", [&] { library_->ExplorePeakList(tracePath, 0, *empty); }},
        {"The data file holds no spectra of this experiment",
         [&] {
             empty->ExploreSetDataFile(tracePath);
             empty->ExploreLoadSpectrumByCycle(1, 1, 1);
         }},
    };
    for (const Case& wrong : cases) {
        EXPECT_EQ(orvanel::bench::ErrorOf(wrong.call), wrong.text);
    }
    EXPECT_THAT(empty->GetXValues(), IsEmpty());
}

TEST_F(ExplorationTest, ThePeakListAnswersByRangeNearnessAndAttribute) {
    auto data = SampleScan(1);
    data.cycles[0].mz.clear();
    data.cycles[0].intensity.clear();
    const std::vector<std::pair<double, double>> lines = {{100, 300}, {102, 900}, {104, 600}};
    for (const auto& [mz, counts] : lines)
        for (int k = -5; k <= 5; ++k) {
            data.cycles[0].mz.push_back(mz + 0.1 * k);
            data.cycles[0].intensity.push_back(std::round(counts * std::exp(-0.5 * k * k / 2.25)));
        }
    auto spectrum = Spectrum(data);
    spectrum->ExploreLoadSpectrumByCycle(1, 1, 1);
    const auto peaks = library_->ExplorePeakList(Write(data), 1, *spectrum);
    ASSERT_EQ(peaks->ExplorePeakCount(), 3);
    EXPECT_EQ(peaks->ExploreFindHighestInRange(90, 110), 2);
    EXPECT_EQ(peaks->ExploreFindHighestInRange(peaks->ExplorePeakCentroid(1, 0), 101), 1);
    EXPECT_EQ(peaks->ExploreFindHighestInRange(100.2, 101.5), 0);
    EXPECT_EQ(peaks->ExploreFindNearest(103.2, 0.9), 3);
    EXPECT_EQ(peaks->ExploreFindNearest(102.9, 0.5), 0);
    EXPECT_NEAR(peaks->ExplorePeakAttribute(2, 0), 102, 0.001);
    EXPECT_NEAR(peaks->ExplorePeakAttribute(2, 4), 900 * 0.15 * 2.5066, 0.01 * 338);
    EXPECT_EQ(peaks->ExplorePeakAttribute(2, 3), 0);
    EXPECT_EQ(peaks->ExplorePeakAttribute(2, 8), 1);
    EXPECT_NEAR(peaks->ExplorePeakCentroid(2, 1), 900, 120);
    for (const int wrong : {1, 2, 6, 9, -1})
        EXPECT_THROW(peaks->ExplorePeakAttribute(1, wrong), ports::HostError);
    EXPECT_THROW(peaks->ExplorePeakCentroid(1, 2), ports::HostError);
    EXPECT_THROW(peaks->ExplorePeakAttribute(0, 0), ports::HostError);
    EXPECT_THROW(peaks->ExplorePeakAttribute(4, 0), ports::HostError);
}

}  // namespace
