// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>

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
    bool asksForStepSize;
};

const Stage stages[] = {
    {"ER", [](ScanBench& b) { return clsScan1_ER(b.run).Scan(609.3, b.paths) != nullptr; }, true},
    {"Q1MI", [](auto& b) { return clsScan2_Q1MI(b.run).Scan(609.3, 100, "DP", 0, 100, 5, b.paths) != 0; }, false},
    {"EPI",
     [](ScanBench& b) {
         const auto found = clsScan3_EPI(b.run).Scan(609.3, 40, 15, b.paths);
         return found && !found->empty();
     },
     true},
    {"MRM",
     [](ScanBench& b) {
         auto records = Fragments({195});
         clsScan4_MRM(b.run).Scan(609.3, records, "CE", 5, 80, 5, b.paths);
         return records[0]->CEWasOptimized;
     },
     false},
    {"MS3",
     [](ScanBench& b) {
         const auto records = Fragments({195});
         clsScan5_MS3(b.run).Scan(609.3, *records[0], "AF2", 0, 10, 0.5F, b.paths);
         return records[0]->AF2WasOptimized;
     },
     true},
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

TEST(ScanShape, ExistingDataAreExploredWithoutARun) {
    DataBench bench;
    bench.run.results.reset();
    bench.run.scans.reset();
    bench.run.batch.reset();
    EXPECT_EQ(clsScan3_EPI(bench.run).ExploreGeneratedVesk(bench.paths.VeskFilePath).size(), 2U);
    bench.fake.data.spectra["time"].peaks = {{0.5, 5, 5}};
    EXPECT_NE(clsScan1_ER(bench.run).ExploreGeneratedVesk(bench.paths.VeskFilePath), nullptr);
}

TEST(ScanShape, MethodBatchWaitAndDataFollowEachOtherAndAreReleasedInBetween) {
    for (const auto& stage : stages) {
        SCOPED_TRACE(stage.name);
        DataBench bench;
        EXPECT_TRUE(stage.scan(bench));
        EXPECT_FALSE(bench.run.AbortRequested);

        const std::string calls = Joined(bench.calls.Only(
            {"HostGetExpectedDuration", "~AcquisitionMethod", "TolmNewBatch", "TolmSubmitBatch", "HostQueueServer",
             "~QueueServer", "CreateDataExploration", "~DataExploration", "HostQueueRun"}));
        EXPECT_EQ(calls.substr(calls.find("HostGetExpectedDuration")),
                  "HostGetExpectedDuration(); ~AcquisitionMethod; TolmNewBatch(\"session1\"); "
                  "TolmSubmitBatch(\"session1\"); HostQueueServer(); ~QueueServer; CreateDataExploration(); "
                  "~DataExploration");
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

TEST(ScanShape, AScanRateThatTheHostDoesNotKnowStopsTheRun) {
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

}  // namespace
