#include "run/FragmentStages.h"

#include <gtest/gtest.h>

#include "run/FinalMethodStage.h"
#include "run/PrecursorStages.h"
#include "tests/run/StageBench.h"

namespace {

using ports::enumVeltraScanType;
using ports::MessageIcon;
using Texts = std::vector<std::string>;

const std::string epiHeading = "--> EPI CE spread scan of parent 609.297 Da, 3.22E+06 cps...";
const std::string mrmHeading = "--> MRM scan of 2nd precursors...";
const std::string noPeaks = "No peaks found.";
const std::string ms3Headings[] = {"--> MS/MS/MS scan of 2nd precursor 195.125 Da, 8.89E+05 cps...",
                                   "--> MS/MS/MS scan of 2nd precursor 397.25 Da, 6.25E+05 cps...",
                                   "--> MS/MS/MS scan of 2nd precursor 448.5 Da, 5.57E+05 cps..."};

TEST(FragmentStages, EPIStagePicksTheSecondPrecursors) {
    StageBench bench;
    bench.FindParent();
    veltra::RunEPIStage(bench.frame);
    bench.ExpectReported({}, {epiHeading, "2nd precursors:", "195.125 Da, 8.89E+05 cps", "397.25 Da, 6.25E+05 cps",
                              "448.5 Da, 5.57E+05 cps"});
    EXPECT_EQ(bench.Checklist(), (Texts{"UpdateScanProgress(5, 1)", "UpdateMS3Label(0, 3)", "UpdateScanProgress(5, 2)",
                                        "UpdateResultsGraphControl(5, -1)"}));
    const std::string path = "/p/C_EPI_CE_Spread_609.297.xmt";
    EXPECT_EQ(bench.StoredMethod(enumVeltraScanType::EPI), path);
    EXPECT_EQ(bench.Method(path).ranges.at(0).Value("CE"), bench.settings.Advanced_EPI_CE);
    EXPECT_EQ(bench.Method(path).ranges.at(0).Value("CES"), bench.settings.Advanced_EPI_CES);
}

TEST(FragmentStages, WithoutSecondPrecursorsNothingFollows) {
    const std::string failure = "Tolm Batch: Error submitting Tolm Batch" + RunBench::errorSuffix;
    for (const bool fails : {false, true}) {
        SCOPED_TRACE(fails);
        StageBench bench;
        bench.FindParent();
        bench.fake.data.spectra["time"].peaks.clear();
        if (fails) bench.calls.Fail("TolmSubmitBatch", RunBench::hostError);
        veltra::RunEPIStage(bench.frame);
        if (fails)
            bench.ExpectReported({{failure, MessageIcon::Critical}},
                                 {epiHeading, failure, "Unable to create and submit batch", "2nd precursors: N/A"});
        else
            bench.ExpectReported({{"No EPI spectrum peaks found.", MessageIcon::None}},
                                 {epiHeading, "No EPI spectrum peaks found.", "2nd precursors: N/A"});
        EXPECT_EQ(bench.Checklist(),
                  (Texts{"UpdateScanProgress(5, 1)", "UpdateScanProgress(5, 2)", "UpdateResultsGraphControl(5, -1)"}));
        veltra::RunMRMStage(bench.frame);
        veltra::RunMS3Stage(bench.frame);
        EXPECT_EQ(bench.Checklist().size(), 3U);
    }
}

TEST(FragmentStages, MRMStageOptimisesEveryCEInOneAcquisition) {
    for (const bool negative : {false, true}) {
        SCOPED_TRACE(negative);
        StageBench bench;
        bench.FindParent();
        bench.AddFragments();
        bench.settings.Polarity = negative ? 1 : 0;
        bench.sample.PlantCE(2, negative ? -39.5 : 39.5);
        veltra::RunMRMStage(bench.frame);
        bench.ExpectReported(
            {}, {mrmHeading, "Optimized CEs for 2nd precursors:", "50 (195.125 Da, 8.89E+05 cps)",
                 "N/A (397.25 Da, 6.25E+05 cps)", std::string(negative ? "-40" : "40") + " (448.5 Da, 5.57E+05 cps)"});
        EXPECT_EQ(bench.calls.Only({"HostSetRampParameter"}),
                  (Texts{negative ? "HostSetRampParameter(\"CE\", -130, -10, 2)"
                                  : "HostSetRampParameter(\"CE\", 10, 130, 2)"}));
        EXPECT_EQ(bench.calls.CountOf("TolmSubmitBatch"), 1);
        EXPECT_EQ(bench.Checklist(),
                  (Texts{"UpdateScanProgress(6, 1)", "UpdateScanProgress(6, 2)", "UpdateResultsGraphControl(6, -1)"}));
        EXPECT_EQ(bench.StoredMethod(enumVeltraScanType::MRM), "/p/C_MRM_RampCE_609.297.xmt");
    }
}

TEST(FragmentStages, AbortedMRMStageListsEverySecondPrecursor) {
    StageBench bench;
    bench.FindParent();
    bench.AddFragments();
    bench.AbortAt("TolmSubmitBatch", 1);
    veltra::RunMRMStage(bench.frame);
    bench.ExpectReported({}, {mrmHeading, "Optimized CEs for 2nd precursors:", "N/A (195.125 Da, 8.89E+05 cps)",
                              "N/A (397.25 Da, 6.25E+05 cps)", "N/A (448.5 Da, 5.57E+05 cps)"});
    veltra::RunMS3Stage(bench.frame);
    EXPECT_EQ(bench.Checklist().size(), 3U);
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
    EXPECT_EQ(bench.StoredMethod(enumVeltraScanType::MS3, 1), first);
    EXPECT_EQ(bench.StoredMethod(enumVeltraScanType::MS3, 2), second);
    EXPECT_EQ(bench.Method(first).ranges.at(0).Value("CE"), 50);
    EXPECT_EQ(bench.Method(second).ranges.at(0).Value("CE"), 40.5F);
    EXPECT_EQ(bench.Method(second).secondPrecursor, 448.5);
    EXPECT_EQ(bench.run.results->CE.Current, 40.5F);
}

TEST(FragmentStages, MS3StageLogsEveryOutcome) {
    const std::vector<FakePeak> onlyParent{{195.125, 8e5}};
    const std::vector<FakePeak> parentRemains{{100.5, 2e5, 89}, {195.125, 8e5, 11}};
    const std::vector<FakePeak> tenPercentRemain{{100.5, 2e5, 90}, {195.125, 8e5, 10}};
    struct Case {
        const char* name;
        bool signal;
        std::vector<FakePeak> peaks;
        Texts log;
    };
    for (const auto& [name, signal, peaks, log] :
         {Case{"no signal", false, {}, {"Optimized AF2 = N/A", noPeaks}},
          {"no peaks", true, {}, {"Optimized AF2 = 7.5", noPeaks}},
          {"parent alone", true, onlyParent, {"Optimized AF2 = 7.5", noPeaks}},
          {"parent remains",
           true,
           parentRemains,
           {"Optimized AF2 = 7.5", "No peaks found (parent not below 10% total ion count)."}},
          {"ten percent remain", true, tenPercentRemain, {"Optimized AF2 = 7.5", "Peak 1: 100.5 Da, 2.00E+05 cps"}}}) {
        SCOPED_TRACE(name);
        StageBench bench;
        bench.FindParent();
        bench.AddFragment(195.125, 8.891e5);
        OptimiseCE(bench, 0, 50);
        bench.fake.data.chromatograms.erase("XIC 195.125 195.625");
        if (signal) bench.sample.PlantAF2(195.125, 7.5, 5, peaks);  // 3.75 steps: the fifth cycle is the nearest
        veltra::RunMS3Stage(bench.frame);
        Texts expected{ms3Headings[0]};
        expected.insert(expected.end(), log.begin(), log.end());
        bench.ExpectReported({}, expected);
    }
}

TEST(FragmentStages, AF2ScaleGoesByModelAndNotByPolarity) {
    struct Case {
        std::int32_t modelCode;
        bool smallScale;
        std::int32_t polarity = 0;
    };
    for (const auto& [modelCode, smallScale, polarity] : {Case{14, false},
                                                          {22, true},
                                                          {24, true},
                                                          {26, true},
                                                          {27, false},
                                                          {29, true},
                                                          {31, true},
                                                          {33, true},
                                                          {27, false, 1},
                                                          {26, true, 1}}) {
        SCOPED_TRACE("model " + std::to_string(modelCode) + ", polarity " + std::to_string(polarity));
        StageBench bench;
        bench.FindParent();
        bench.UseModel(modelCode, modelCode == 27);
        bench.settings.Polarity = polarity;
        bench.AddFragment(195.125, 8.891e5);
        OptimiseCE(bench, 0, 50);
        if (smallScale) bench.sample.PlantAF2(195.125, 0.35, 36, {{150.25, 3e5}});
        veltra::RunMS3Stage(bench.frame);
        bench.ExpectReported({}, smallScale
                                     ? Texts{ms3Headings[0], "Optimized AF2 = 0.35", "Peak 1: 150.25 Da, 3.00E+05 cps"}
                                     : Texts{ms3Headings[0], "Optimized AF2 = 20", "Peak 1: 150.25 Da, 3.00E+05 cps",
                                             "Peak 2: 100.5 Da, 2.00E+05 cps"});
        EXPECT_EQ(bench.calls.Only({"HostSetRampParameter", "HostSetCycles", "ExploreLoadSpectrumByCycle"}),
                  smallScale ? (Texts{"HostSetRampParameter(\"AF2\", 0, 0.4, 0.01)", "HostSetCycles(41)",
                                      "ExploreLoadSpectrumByCycle(1, 36, 36)"})
                             : (Texts{"HostSetRampParameter(\"AF2\", 0, 100, 2)", "HostSetCycles(51)",
                                      "ExploreLoadSpectrumByCycle(1, 11, 11)"}));
    }
}

TEST(FragmentStages, AbortIsNoticedBeforeTheNextSecondPrecursor) {
    StageBench bench;
    bench.FindParent();
    bench.AddFragments();
    OptimiseCE(bench, 0, 50);
    OptimiseCE(bench, 1, 45);
    bench.AbortAt("TolmSubmitBatch", 1);
    veltra::RunMS3Stage(bench.frame);
    bench.ExpectReported({}, {ms3Headings[0], "Optimized AF2 = N/A", noPeaks});
    EXPECT_EQ(bench.Checklist(), (Texts{"UpdateScanProgress(7, 1)", "UpdateMS3Label(1, 3)",
                                        "UpdateResultsGraphControl(7, 1)", "UpdateScanProgress(7, 2)"}));
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
        EXPECT_EQ(bench.frame.filePaths.MethodFilePath, RunBench::starterPath);
    }
}

}  // namespace
