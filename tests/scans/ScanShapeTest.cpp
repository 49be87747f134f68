#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "scans/clsScan1_ER.h"
#include "scans/clsScan2_Q1MI.h"
#include "scans/clsScan3_EPI.h"
#include "scans/clsScan4_MRM.h"
#include "scans/clsScan5_MS3.h"
#include "tests/support_files/ScanBench.h"

namespace {

using namespace veltra;
using ports::MessageIcon;
using testing::ElementsAre;

/// One of the five scan classes, run once.
struct Stage {
    const char* name;
    std::function<bool(ScanBench&)> scan;  // whether it has found anything
    bool savesTwice;
    bool asksForStepSize;
};

TopPeakCollection OneFragment() {
    auto record = std::make_shared<clsItem_TopPeak>();
    record->SecondPrecursor->CentroidMass = 195;
    return {record};
}

const Stage stages[] = {
    {"ER", [](ScanBench& b) { return clsScan1_ER(b.run).Scan(609.3, b.paths) != nullptr; }, false, true},
    {"Q1MI", [](ScanBench& b) { return clsScan2_Q1MI(b.run).Scan(609.3, 100, "DP", 0, 100, 5, b.paths) != 0; }, false,
     false},
    {"EPI",
     [](ScanBench& b) {
         const auto found = clsScan3_EPI(b.run).Scan(609.3, 40, 15, b.paths);
         return found && !found->empty();
     },
     true, true},
    {"MRM",
     [](ScanBench& b) {
         auto records = OneFragment();
         clsScan4_MRM(b.run).Scan(609.3, records, "CE", 5, 80, 5, b.paths);
         return records[0]->CEWasOptimized;
     },
     false, false},
    {"MS3",
     [](ScanBench& b) {
         const auto records = OneFragment();
         clsScan5_MS3(b.run).Scan(609.3, *records[0], "AF2", 0, 10, 0.5F, b.paths);
         return records[0]->AF2WasOptimized;
     },
     true, true},
};

/// Data in which every stage finds something.
class DataBench : public ScanBench {
  public:
    DataBench() {
        const FakeData::Chromatogram chromatogram{{10, 20}, {1, 2}};
        fake.data.chromatograms = {{"TIC", chromatogram}, {"overlay 0", chromatogram}, {"XIC 195 195.5", chromatogram}};
        const std::vector<FakePeak> peaks{{150, 5, 5}, {609.3, 9, 9}};
        fake.data.spectra = {{"time", {{1}, {1}, peaks}}, {"cycle 21", {{1}, {1}, peaks}}};
    }
};

TEST(ScanShape, MethodBatchWaitAndDataFollowEachOtherAndAreReleasedInBetween) {
    for (const auto& stage : stages) {
        SCOPED_TRACE(stage.name);
        DataBench bench;
        EXPECT_TRUE(stage.scan(bench));
        EXPECT_FALSE(bench.run.AbortRequested);

        std::vector<std::string> expected{"HostOpenMethod(\"/p/Starter.xmt\")"};
        const std::string saved = "\"" + bench.paths.MethodFilePath + "\"";
        if (stage.savesTwice)
            expected.insert(expected.end(), {"HostSaveMethodAs(" + saved + ", true)", "~AcquisitionMethod",
                                             "HostOpenMethod(" + saved + ")", "HostOptimizeMassRange()"});
        expected.insert(expected.end(),
                        {"HostSaveMethodAs(" + saved + ", true)", "HostGetExpectedDuration()", "~AcquisitionMethod",
                         "TolmNewBatch(\"session1\")", "TolmSubmitBatch(\"session1\")", "HostQueueServer()",
                         "~QueueServer", "CreateDataExploration()", "~DataExploration"});
        EXPECT_EQ(
            bench.calls.Only({"HostOpenMethod", "HostSaveMethodAs", "HostOptimizeMassRange", "HostGetExpectedDuration",
                              "~AcquisitionMethod", "TolmNewBatch", "TolmSubmitBatch", "HostQueueServer",
                              "~QueueServer", "CreateDataExploration", "~DataExploration", "HostQueueRun"}),
            expected);
        EXPECT_THAT(bench.display.calls,
                    ElementsAre("MessageUpdate(Creating method and submitting batch...)",
                                "MessageUpdate(Expected batch time: 12.5 sec)", "ProgressBarStart(12500)",
                                "ProgressBarUpdate(100)", "ProgressBarEnd()", "MessageUpdate(Processing results...)"));
        ASSERT_EQ(bench.fake.submitted.size(), 1U);
        const FakeBatch& batch = bench.fake.submitted[0];
        EXPECT_EQ(batch.name, "C.xbt");
        EXPECT_EQ(batch.methodFileName, "C.xmt");
        EXPECT_EQ(batch.dataFileName, "C Veltra (run)/C.vesk");
        EXPECT_EQ(bench.calls.Only({"ExploreSetDataFile"}).front(),
                  "ExploreSetDataFile(\"" + bench.paths.VeskFilePath + "\")");
    }
}

TEST(ScanShape, EveryFailedStepIsToldOnceStopsTheRunAndSkipsTheRest) {
    struct Case {
        const char* failing;
        int call;
        std::string description;
        const char* nextLogLine;  // null: none
        const char* skipped;
    };
    const char *const noMethod = "Unable to create C.xmt", *const noBatch = "Unable to create and submit batch";
    const std::string dataInit = "Explore Data: Error during initialization using /p/P1/Data/C Veltra (run)/C.vesk";
    const std::string saving = "Acquire: Error during saving of /p/P1/Acquisition Methods/C.xmt";
    const Case cases[] = {
        {"HostSetScanType", 1, "Acquire: Error during method initialization", noMethod, "HostSaveMethodAs"},
        {"HostSaveMethodAs", 1, saving, noMethod, "TolmNewBatch"},
        {"HostGetExpectedDuration", 1, "Acquire: Error getting the expected duration", noMethod, "TolmNewBatch"},
        {"TolmNewBatch", 1, "Tolm Batch: Error during creation of new Tolm Batch", noBatch, "TolmSubmitBatch"},
        {"TolmSubmitBatch", 1, "Tolm Batch: Error submitting Tolm Batch", noBatch, "RegRead"},
        {"HostSleep", 2, "Queue: Error during wait for Queue to complete", nullptr, "CreateDataExploration"},
        {"ExploreSetDataFile", 2, dataInit, nullptr, "ExplorePointCount"},
    };
    for (const auto& stage : stages) {
        for (const auto& c : cases) {
            SCOPED_TRACE(stage.name + std::string(" and ") + c.failing);
            DataBench bench;
            bench.calls.Fail(c.failing, RunBench::hostError, c.call);
            EXPECT_FALSE(stage.scan(bench));
            EXPECT_EQ(bench.calls.FiredCount(), 1);
            EXPECT_TRUE(bench.run.AbortRequested);
            const std::string text = c.description + RunBench::errorSuffix;
            std::vector<std::string> log{text};
            if (c.nextLogLine != nullptr) log.emplace_back(c.nextLogLine);
            bench.ExpectReported({{text, MessageIcon::Critical}}, log);
            EXPECT_EQ(bench.calls.CountOf(c.skipped), 0);
            EXPECT_FALSE(bench.run.batch->ErrorOccurred());
            EXPECT_EQ(bench.run.batch->ErrorDescription(), "");
        }
    }
}

TEST(ScanShape, WhicheverHostCallFailsTheRunStopsWithOneMessage) {
    for (const auto& stage : stages) {
        DataBench undisturbed;
        stage.scan(undisturbed);
        const auto calls = undisturbed.calls.Operations();
        ASSERT_GT(calls.size(), 50U);
        for (std::size_t i = 0; i < calls.size(); ++i) {
            SCOPED_TRACE(stage.name + std::string(" and ") + calls[i]);
            DataBench bench;
            bench.calls.Fail(HostCalls::anyOperation, RunBench::hostError, static_cast<int>(i) + 1);
            // An unreadable status is a status like any other, and a wait needs no queue server.
            const bool isIgnored = calls[i].starts_with("RegRead") || calls[i].starts_with("HostQueueServer");
            stage.scan(bench);
            EXPECT_EQ(bench.calls.FiredCount(), 1);
            EXPECT_EQ(bench.run.AbortRequested, !isIgnored);
            if (isIgnored) continue;
            ASSERT_EQ(bench.boxes.shown.size(), 1U);
            const auto box = bench.boxes.shown[0];
            EXPECT_EQ(box.icon, MessageIcon::Critical);
            ASSERT_FALSE(bench.display.log.empty());
            EXPECT_TRUE(bench.display.log[0].ends_with(box.text));
            bench.boxes.shown.clear();
            bench.display.log.clear();
        }
    }
}

TEST(ScanShape, AScanRateThatTheHostDoesNotKnowIsAnUnexpectedErrorThatStopsTheRunToo) {
    for (const auto& stage : stages) {
        if (!stage.asksForStepSize) continue;
        SCOPED_TRACE(stage.name);
        DataBench bench;
        bench.fake.stepSizes.clear();
        EXPECT_FALSE(stage.scan(bench));
        EXPECT_TRUE(bench.run.AbortRequested);
        const std::string text = "Error during creation of the acquisition method (Error 5: no scan rate 1000).";
        bench.ExpectReported({{text, MessageIcon::Critical}}, {text, "Unable to create C.xmt"});
        EXPECT_EQ(bench.calls.CountOf("HostSaveMethodAs") + bench.calls.CountOf("TolmNewBatch"), 0);
    }
}

TEST(ScanShape, AStopRequestAfterAnyStepSkipsTheRestWithoutAWord) {
    struct Case {
        const char* during;
        const char* skipped;
    };
    for (const auto& stage : stages) {
        for (const auto& c : {Case{"HostGetExpectedDuration", "TolmNewBatch"}, Case{"TolmSubmitBatch", "RegRead"},
                              Case{"HostSleep", "CreateDataExploration"}}) {
            SCOPED_TRACE(stage.name + std::string(" and ") + c.during);
            DataBench bench;
            bench.calls.beforeCall = [&](const std::string& text) {
                if (text.starts_with(c.during)) bench.run.AbortRequested = true;
            };
            EXPECT_FALSE(stage.scan(bench));
            EXPECT_EQ(bench.calls.CountOf(c.during), 1);
            EXPECT_EQ(bench.calls.CountOf(c.skipped), 0);
            EXPECT_EQ(std::count(bench.display.calls.begin(), bench.display.calls.end(),
                                 "MessageUpdate(Processing results...)"),
                      0);
        }
    }
}

TEST(ScanShape, ParametersAreTheCurrentOnesInThisOrderAndCEPOnlyWhereTheModelHasIt) {
    struct Case {
        const char* stage;
        std::vector<std::string> order;
        float ce, ces;
    };
    const std::vector<std::string> usual{"DP", "EP", "CEP", "CE", "AF2", "CES"};
    const Case cases[] = {{"ER", usual, 10, 0},
                          {"Q1MI", usual, 41, 0},
                          {"EPI", {"CE", "CES", "DP", "EP", "CEP", "AF2"}, 40, 15},
                          {"MRM", usual, 41, 0},
                          {"MS3", usual, 41, 0}};
    for (std::size_t i = 0; i < std::size(stages); ++i) {
        for (const bool hasCEP : {true, false}) {
            for (const int polarity : {0, 1}) {
                SCOPED_TRACE(cases[i].stage + std::to_string(hasCEP) + std::to_string(polarity));
                ASSERT_STREQ(stages[i].name, cases[i].stage);
                DataBench bench;
                bench.run.EPAndCEPSupported = hasCEP;
                bench.settings.Polarity = polarity;
                stages[i].scan(bench);
                std::vector<std::string> expected;
                for (const auto& id : cases[i].order)
                    if (hasCEP || id != "CEP") expected.push_back("HostFindParameter(\"" + id + "\")");
                EXPECT_EQ(bench.calls.Only({"HostFindParameter"}), expected);
                const float sign = polarity == 1 ? -1.0F : 1.0F;
                const FakeMethod& method = bench.Method();
                EXPECT_EQ(method.polarity, polarity);
                EXPECT_EQ(method.ranges.at(0).parameters,
                          (FakeMethod::Parameters{{"DP", sign * 60},
                                                  {"EP", sign * 11},
                                                  {"CEP", hasCEP ? sign * 16.5F : 15.5F},
                                                  {"CE", sign * cases[i].ce},
                                                  {"CES", cases[i].ces},
                                                  {"AF2", 0.25F}}));
            }
        }
    }
}

}  // namespace
