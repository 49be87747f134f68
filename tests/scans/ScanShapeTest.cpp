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
    {"Q1MI", [](auto& b) { return clsScan2_Q1MI(b.run).Scan(609.3, 100, "DP", 0, 100, 5, b.paths) != 0; }, false,
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

        const std::string saved = "\"" + bench.paths.MethodFilePath + "\"";
        const std::string optimised = "HostSaveMethodAs(" + saved + ", true); ~AcquisitionMethod; HostOpenMethod(" +
                                      saved + "); HostOptimizeMassRange(); ";
        EXPECT_EQ(Joined(bench.calls.Only({"HostOpenMethod", "HostSaveMethodAs", "HostOptimizeMassRange",
                                           "HostGetExpectedDuration", "~AcquisitionMethod", "TolmNewBatch",
                                           "TolmSubmitBatch", "HostQueueServer", "~QueueServer",
                                           "CreateDataExploration", "~DataExploration", "HostQueueRun"})),
                  "HostOpenMethod(\"/p/Starter.xmt\"); " + (stage.savesTwice ? optimised : "") + "HostSaveMethodAs(" +
                      saved +
                      ", true); HostGetExpectedDuration(); ~AcquisitionMethod; TolmNewBatch(\"session1\"); "
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
