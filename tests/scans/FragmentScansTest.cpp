// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>

#include "scans/clsScan3_EPI.h"
#include "scans/clsScan4_MRM.h"
#include "scans/clsScan5_MS3.h"
#include "tests/support_files/ScanBench.h"

namespace {

using namespace veltra;
using ports::enumVeltraScanType;
using ports::MessageIcon;
using Graphs = std::vector<std::vector<double>>;
using Masses = std::vector<double>;

TEST(clsScan3_EPI, SecondPrecursorsAreTheHighestPeaksOutsideFiveDaAroundTheFirst) {
    // The first precursor is 600; its window leaves out what lies within 2.5 Da.
    const std::vector<FakePeak> spectrum{{195, 50, 5}, {597.4, 20, 5}, {597.6, 99, 5}, {600, 100, 5}, {602.5, 30, 5}};
    struct Case {
        std::int16_t wanted;
        std::vector<FakePeak> peaks;
        Masses masses;
    };
    for (const auto& c : {Case{9, spectrum, {195, 602.5, 597.4}}, Case{2, spectrum, {195, 602.5}},
                          Case{3, {{599, 9, 9}, {601, 8, 8}}, {}}, Case{3, {}, {}}}) {
        ScanBench bench;
        bench.settings.Advanced_EPINum2ndPrec = c.wanted;
        bench.fake.data.chromatograms["TIC"] = {{1}, {1}};
        bench.fake.data.spectra["time"] = {{225, 226}, {1, 2}, c.peaks};
        const auto records = clsScan3_EPI(bench.run).Scan(600, 40, 15, bench.paths);
        ASSERT_TRUE(records);
        Masses masses;
        for (const auto& record : *records) {
            masses.push_back(record->SecondPrecursor->CentroidMass);
            EXPECT_GT(record->SecondPrecursor->CentroidIntensity, 0);
            EXPECT_FALSE(record->CEWasOptimized);
        }
        EXPECT_EQ(masses, c.masses);
        EXPECT_EQ(bench.run.AbortRequested, c.masses.empty());
        const std::string nothing = "No EPI spectrum peaks found.";
        if (c.masses.empty()) bench.ExpectReported({{nothing, MessageIcon::None}}, {nothing});
        EXPECT_EQ(bench.Graphs(enumVeltraScanType::EPI), (Graphs{{225, 226}}));
    }
    const auto peak = std::make_shared<clsItem_Peak>();
    EXPECT_EQ(clsScan3_EPI::RecordsOf({peak}).at(0)->SecondPrecursor, peak) << "itself, not a copy";
}

TEST(clsScan4_MRM, EachTransitionsApexIsRoundedHalfToEvenAndAMissingOneIsNoFailure) {
    ScanBench bench;
    bench.fake.data.chromatograms = {{"overlay 0", {{30, 34.5}, {1, 2}}},
                                     {"overlay 1", {{35.5, 40}, {2, 1}}},
                                     {"overlay 2", {{30, 50}, {0, 0}}},
                                     {"overlay 3", {{-30.5, -25.5}, {1, 2}}}};
    auto records = Fragments({195, 448, 174, 100});
    records[2]->OptimizedCE = 77;
    clsScan4_MRM(bench.run).Scan(609.281, records, "CE", 5, 80, 5, bench.paths);
    EXPECT_FALSE(bench.run.AbortRequested);
    const std::vector<std::pair<double, bool>> expected{{34, true}, {36, true}, {0, false}, {-26, true}};
    for (std::size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(records[i]->OptimizedCE, expected[i].first) << i;
        EXPECT_EQ(records[i]->CEWasOptimized, expected[i].second) << i;
    }
    EXPECT_EQ(bench.Graphs(enumVeltraScanType::MRM), (Graphs{{30, 34.5}, {35.5, 40}, {30, 50}, {-30.5, -25.5}}));
    EXPECT_EQ(bench.calls.CountOf("ExploreSmooth"), 8);

    TopPeakCollection none;
    clsScan4_MRM(bench.run).Scan(609.281, none, "CE", 5, 80, 5, bench.paths);
    EXPECT_EQ(bench.Graphs(enumVeltraScanType::MRM), Graphs());
    EXPECT_EQ(bench.calls.CountOf("ExploreLoadXICOverlay"), 4);
}

TEST(clsScan4_MRM, AFailureKeepsTheChromatogramsSoFarAndLeavesLaterRecordsAlone) {
    ScanBench bench;
    for (const std::string overlay : {"overlay 0", "overlay 1", "overlay 2"})
        bench.fake.data.chromatograms[overlay] = {{30, 40}, {1, 2}};
    bench.calls.Fail("ExploreLoadXICOverlay", RunBench::hostError, 2);
    auto records = Fragments({195, 448, 174});
    records[2]->OptimizedCE = 77;
    clsScan4_MRM(bench.run).Scan(609.281, records, "CE", 5, 80, 5, bench.paths);
    EXPECT_TRUE(bench.run.AbortRequested);
    const std::string text = "Explore Data: Error loading XIC overlay" + RunBench::errorSuffix;
    bench.ExpectReported({{text, MessageIcon::Critical}}, {text});
    EXPECT_TRUE(records[0]->CEWasOptimized);
    EXPECT_FALSE(records[1]->CEWasOptimized);
    EXPECT_EQ(records[2]->OptimizedCE, 77);
    EXPECT_EQ(bench.Graphs(enumVeltraScanType::MRM), (Graphs{{30, 40}}));
}

TEST(clsScan5_MS3, ThirdPrecursorsComeFromTheCycleThatLeavesFivePercent) {
    // The 2nd precursor is 300; what lies within 5 Da of it is never picked.
    const std::vector<FakePeak> peaks{{250, 40, 30}, {294.9, 60, 30}, {295.1, 99, 1}, {300, 90, 1}, {305, 50, 1}};
    const std::vector<FakePeak> parentLeft{{250, 40, 88}, {300, 90, 12}};
    struct Case {
        const char* name;
        double af2;
        float rampStep;
        std::vector<FakePeak> peaks;
        std::string cycle;  // where they are
        Masses masses;
        bool below;
    };
    const Case cases[] = {
        {"14.5 steps", 7.25, 0.5F, peaks, "15", {294.9, 305}, true},
        {"15.5 steps", 7.75, 0.5F, peaks, "17", {294.9, 305}, true},
        {"the first cycle", 0, 0.5F, peaks, "1", {294.9, 305}, true},
        {"hundredths", 0.35, 0.01F, peaks, "36", {294.9, 305}, true},
        {"too much of the parent left", 7.25, 0.5F, parentLeft, "15", {}, false},
        {"exactly 10 % of it left", 7.25, 0.5F, {{250, 40, 90}, {300, 90, 10}}, "15", {250}, true},
        {"no peaks", 7.25, 0.5F, {}, "15", {}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ScanBench bench;
        bench.fake.data.chromatograms["XIC 300 300.5"] = {{c.af2 + 100, c.af2, c.af2 + 200}, {100, 5, 4.9}};
        bench.fake.data.spectra["cycle " + c.cycle] = {{100, 101}, {1, 2}, c.peaks};
        const auto records = Fragments({300});
        auto& record = *records[0];
        clsScan5_MS3(bench.run).Scan(609.281, record, "AF2", 0, 10, c.rampStep, bench.paths);
        EXPECT_FALSE(bench.run.AbortRequested);
        EXPECT_EQ(record.OptimizedAF2, c.af2);
        EXPECT_TRUE(record.AF2WasOptimized);
        EXPECT_EQ(record.MS3PercentBelowThreshold, c.below);
        Masses masses;
        for (const auto& peak : record.MS3PeaksCollection)
            masses.push_back(peak->CentroidMass);
        EXPECT_EQ(masses, c.masses);
        EXPECT_EQ(bench.calls.CountOf("ExploreSmooth"), 2);
        EXPECT_EQ(bench.calls.CountOf("ExploreLoadSpectrumByTime"), 0);
        EXPECT_EQ(bench.Graphs(enumVeltraScanType::MS3), (Graphs{{100, 101}}));
        EXPECT_TRUE(bench.Graphs(enumVeltraScanType::MS3, 2).empty()) << "exactly one graph a scan";
    }
}

TEST(clsScan5_MS3, WithoutAnAF2TheWholeSpectrumIsShownAndTheRunGoesOn) {
    ScanBench bench;
    bench.fake.data.chromatograms["TIC"] = {{0, 1}, {1, 1}};
    bench.fake.data.spectra["time"] = {{100, 105}, {1, 2}, {{250, 9, 9}}};
    const auto records = Fragments({300});
    auto& record = *records[0];
    record.MS3PeaksCollection.push_back(std::make_shared<clsItem_Peak>());
    record.MS3PercentBelowThreshold = false;
    clsScan5_MS3(bench.run).Scan(609.281, record, "AF2", 0, 10, 0.5F, bench.paths);
    EXPECT_FALSE(bench.run.AbortRequested);
    EXPECT_FALSE(record.AF2WasOptimized);
    EXPECT_EQ(record.OptimizedAF2, 0);
    EXPECT_TRUE(record.MS3PercentBelowThreshold);
    EXPECT_TRUE(record.MS3PeaksCollection.empty());
    EXPECT_EQ(bench.calls.CountOf("ExplorePeakList"), 0);
    EXPECT_EQ(bench.Graphs(enumVeltraScanType::MS3), (Graphs{{100, 105}}));
}

TEST(clsScan5_MS3, AFailureWhileExploringStillWritesWhatWasFoundAndOneBeforeItNothing) {
    for (const std::string operation : {"ExplorePeakList", "TolmSubmitBatch"}) {
        const bool beforeData = operation == "TolmSubmitBatch";
        ScanBench bench;
        bench.fake.data.chromatograms["XIC 300 300.5"] = {{0, 7}, {100, 5}};
        bench.calls.Fail(operation, RunBench::hostError);
        const auto records = Fragments({300});
        records[0]->OptimizedAF2 = 3;
        clsScan5_MS3(bench.run).Scan(609.281, *records[0], "AF2", 0, 10, 0.5F, bench.paths);
        EXPECT_TRUE(bench.run.AbortRequested);
        EXPECT_EQ(records[0]->OptimizedAF2, beforeData ? 3 : 7);
        EXPECT_EQ(records[0]->AF2WasOptimized, !beforeData);
        const std::string text = (beforeData ? "Tolm Batch: Error submitting Tolm Batch"
                                             : "Explore Data: Error during getting of 2 top peaks") +
                                 RunBench::errorSuffix;
        std::vector<std::string> log{text};
        if (beforeData) log.push_back("Unable to create and submit batch");
        bench.ExpectReported({{text, MessageIcon::Critical}}, log);
    }
}

}  // namespace
