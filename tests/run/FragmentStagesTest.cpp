// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/FragmentStages.h"

#include <gtest/gtest.h>

#include "run/FinalMethodStage.h"
#include "run/PrecursorStages.h"
#include "tests/run/StageBench.h"

namespace {

using Texts = std::vector<std::string>;

const std::string noPeaks = "No peaks found.";
const std::string ms3Headings[] = {"--> MS/MS/MS scan of 2nd precursor 195.125 Da, 8.89E+05 cps...",
                                   "--> MS/MS/MS scan of 2nd precursor 397.25 Da, 6.25E+05 cps...",
                                   "--> MS/MS/MS scan of 2nd precursor 448.5 Da, 5.57E+05 cps..."};

TEST(FragmentStages, MRMStageOptimisesEveryCEInOneAcquisition) {
    for (const bool negative : {false, true}) {
        SCOPED_TRACE(negative);
        StageBench bench;
        bench.FindParent();
        bench.AddFragments();
        bench.settings.Polarity = negative ? 1 : 0;
        bench.sample.PlantCE(2, negative ? -39.5 : 39.5);
        veltra::RunMRMStage(bench.frame);
        bench.ExpectReported({}, {"--> MRM scan of 2nd precursors...", "Optimized CEs for 2nd precursors:",
                                  "50 (195.125 Da, 8.89E+05 cps)", "N/A (397.25 Da, 6.25E+05 cps)",
                                  std::string(negative ? "-40" : "40") + " (448.5 Da, 5.57E+05 cps)"});
        EXPECT_EQ(
            bench.calls.Only({"HostSetRampParameter", "TolmSubmitBatch"}),
            (Texts{negative ? "HostSetRampParameter(\"CE\", -130, -10, 2)" : "HostSetRampParameter(\"CE\", 10, 130, 2)",
                   "TolmSubmitBatch(\"session1\")"}));
    }
}

void OptimiseCE(StageBench& bench, std::size_t fragment, double ce) {
    auto& record = *bench.run.results->TopPeaksInfo.at(fragment);
    record.CEWasOptimized = true;
    record.OptimizedCE = ce;
}

/// The second one has no CE: no acquisition, no graph. The graphs are counted by acquisition.
TEST(FragmentStages, MS3StageRampsAF2ForEverySecondPrecursorWithACE) {
    StageBench bench;
    bench.FindParent();
    bench.AddFragments();
    OptimiseCE(bench, 0, 50);
    OptimiseCE(bench, 2, 40.5);
    veltra::RunMS3Stage(bench.frame);
    bench.ExpectReported(
        {}, {ms3Headings[0], "Optimized AF2 = 20", "Peak 1: 150.25 Da, 3.00E+05 cps", "Peak 2: 100.5 Da, 2.00E+05 cps",
             ms3Headings[1], "No optimal CE, MS3 skipped for this 2nd precursor.", ms3Headings[2], "Optimized AF2 = 30",
             "Peak 1: 253.375 Da, 4.50E+05 cps"});
    EXPECT_EQ(bench.Checklist(),
              (Texts{"UpdateScanProgress(7, 1)", "UpdateMS3Label(1, 3)", "UpdateResultsGraphControl(7, 1)",
                     "UpdateMS3Label(2, 3)", "UpdateMS3Label(3, 3)", "UpdateResultsGraphControl(7, 2)",
                     "UpdateScanProgress(7, 2)"}));
    const std::string first = "/p/C_MS3_RampAF2_195.125.xmt";
    const std::string second = "/p/C_MS3_RampAF2_448.5.xmt";
    EXPECT_EQ(bench.Method(first).ranges.at(0).Value("CE"), 50);
    EXPECT_EQ(bench.Method(second).ranges.at(0).Value("CE"), 40.5F);
    EXPECT_EQ(bench.Method(second).secondPrecursor, 448.5);
    EXPECT_EQ(bench.run.results->CE.Current, 40.5F);
}

TEST(FragmentStages, MS3StageLogsEveryOutcome) {
    const std::vector<FakePeak> parentRemains{{100.5, 2e5, 89}, {195.125, 8e5, 11}};
    struct Case {
        const char* name;
        std::vector<FakePeak> peaks;
        std::string outcome;
    };
    const Case cases[] = {
        {"no signal", {}, noPeaks},
        {"no peaks", {}, noPeaks},
        {"parent remains", parentRemains, "No peaks found (parent not below 10% total ion count)."},
    };
    for (const auto& [name, peaks, outcome] : cases) {
        const bool signal = std::string(name) != "no signal";
        SCOPED_TRACE(name);
        StageBench bench;
        bench.FindParent();
        bench.AddFragment(195.125, 8.891e5);
        OptimiseCE(bench, 0, 50);
        bench.fake.data.chromatograms.erase("XIC 195.125 195.625");
        if (signal) bench.sample.PlantAF2(195.125, 7.5, 5, peaks);  // 3.75 steps: the fifth cycle is the nearest
        veltra::RunMS3Stage(bench.frame);
        bench.ExpectReported({}, {ms3Headings[0], signal ? "Optimized AF2 = 7.5" : "Optimized AF2 = N/A", outcome});
    }
}

TEST(FragmentStages, AF2ScaleGoesByModelAndNotByPolarity) {
    for (const int modelCode : {14, 22, 24, 26, 27, 29, 31, 33}) {
        const int polarity = modelCode == 26 || modelCode == 27 ? 1 : 0;
        const bool smallScale = modelCode != 14 && modelCode != 27;
        SCOPED_TRACE(modelCode);
        StageBench bench;
        bench.FindParent();
        bench.UseModel(modelCode, modelCode == 27);
        bench.settings.Polarity = polarity;
        bench.AddFragment(195.125, 8.891e5);
        OptimiseCE(bench, 0, 50);
        if (smallScale) bench.sample.PlantAF2(195.125, 0.35, 36, {{150.25, 3e5}});
        veltra::RunMS3Stage(bench.frame);
        Texts log{ms3Headings[0], "Optimized AF2 = 20", "Peak 1: 150.25 Da, 3.00E+05 cps"};
        if (smallScale)
            log[1] = "Optimized AF2 = 0.35";
        else
            log.push_back("Peak 2: 100.5 Da, 2.00E+05 cps");
        bench.ExpectReported({}, log);
        EXPECT_EQ(
            Joined(bench.calls.Only({"HostSetRampParameter", "HostSetCycles", "ExploreLoadSpectrumByCycle"})),
            smallScale
                ? "HostSetRampParameter(\"AF2\", 0, 0.4, 0.01); HostSetCycles(41); ExploreLoadSpectrumByCycle(1, 36, "
                  "36)"
                : "HostSetRampParameter(\"AF2\", 0, 100, 2); HostSetCycles(51); ExploreLoadSpectrumByCycle(1, 11, 11)");
    }
}

TEST(FragmentStages, NoStageDoesAnythingInAnAbortedRun) {
    for (auto* stage : {&veltra::RunERStage, &veltra::RunQ1MIStage, &veltra::RunEPIStage, &veltra::RunMRMStage,
                        &veltra::RunMS3Stage, &veltra::RunFinalMethodStage}) {
        StageBench bench;
        bench.FindParent();
        bench.AddFragments();
        OptimiseCE(bench, 0, 50);
        bench.run.AbortRequested = true;
        stage(bench.frame);
        bench.ExpectReported({}, {});
        EXPECT_EQ(bench.display.calls, Texts());
        EXPECT_EQ(bench.calls.texts, Texts());
    }
}

}  // namespace
