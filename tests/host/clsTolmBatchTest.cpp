#include "host/clsTolmBatch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/Platform.h"
#include "tests/support_files/RunBench.h"

namespace {

using testing::ElementsAre;
using veltra::clsTolmBatch;

const std::string suffix = RunBench::errorSuffix;

struct BatchBench {
    FakeHost fake;
    HostCalls calls;
    ObservedHost host{fake, calls};
    clsTolmBatch batch{host};

    void LogOn() {
        batch.Step1_TolmLogon("C:\\Projects\\", "P1");
        calls.Forget();
    }
};

TEST(clsTolmBatch, CreationAndLogonMakeTheseCalls) {
    BatchBench bench;
    EXPECT_THAT(bench.calls.texts, ElementsAre("TolmCreateService()", "TolmInitialize()"));
    bench.calls.Forget();
    bench.batch.Step4_TolmLogoff();
    EXPECT_THAT(bench.calls.texts, ElementsAre()) << "no session, nothing to log off";
    bench.batch.Step1_TolmLogon("C:\\Projects\\", "P1");
    bench.batch.Step1_TolmLogon("D:\\", "P2");
    bench.batch.Step4_TolmLogoff();
    bench.batch.Step4_TolmLogoff();
    EXPECT_THAT(bench.calls.texts,
                ElementsAre("TolmLogon(\"\", \"\", \"\", \"\", \"Veltra\")",
                            "TolmSelectProject(\"session1\", \"C:\\Projects\\\", \"P1\")", "TolmLogoff(\"session1\")",
                            "TolmLogon(\"\", \"\", \"\", \"\", \"Veltra\")",
                            "TolmSelectProject(\"session2\", \"D:\\\", \"P2\")", "TolmLogoff(\"session2\")"));
    EXPECT_FALSE(bench.batch.ErrorOccurred());
}

TEST(clsTolmBatch, ABatchHasOneSetWithOneSampleAndTheLastOneIsReleasedFirst) {
    const std::string current = support::CurrentUserName();
    const std::string user = current.empty() ? "Unknown" : current;
    BatchBench bench;
    bench.LogOn();
    bench.batch.Step2_CreateNewTolmBatch("old.xbt", "old.xmt", "old.vesk");
    bench.calls.Forget();
    bench.batch.Step2_CreateNewTolmBatch("C_ER_609.3.xbt", "C_ER_609.3.xmt", "Run\\C_ER_609.3.vesk");
    bench.batch.Step3a_SubmitTolmBatch();
    EXPECT_EQ(bench.batch.Step3b_SaveTolmBatch("kept.xbt"), "saved kept.xbt of C_ER_609.3.xbt");
    EXPECT_THAT(
        bench.calls.texts,
        ElementsAre("~TolmBatch", "TolmNewBatch(\"session1\")", "TolmSetBatchName(\"C_ER_609.3.xbt\")",
                    "TolmSetBatchUser(\"" + user + "\")", "TolmSetBatchText(\"\")",
                    "TolmSetBatchProject(\"C:\\Projects\\P1\")", "TolmAddSet(\"SET1\")",
                    "TolmSetSetAcquisitionMethod(3, \"C_ER_609.3.xmt\")", "TolmSetSetProcessingMethod(3, \"none\")",
                    "TolmAddSample(3)", "TolmSetSampleDataFile(3, 7, \"Run\\C_ER_609.3.vesk\")",
                    "TolmSetSampleField(3, 7, SampleName, \"N/A\")", "TolmSetSampleField(3, 7, SampleId, \"N/A\")",
                    "TolmSetSampleField(3, 7, RackPosition, \"0\")", "TolmSubmitBatch(\"session1\")",
                    "TolmSaveBatch(\"session1\", \"kept.xbt\")"));
    ASSERT_EQ(bench.fake.submitted.size(), 1U);
    EXPECT_EQ(bench.fake.submitted[0].name, "C_ER_609.3.xbt");
}

TEST(clsTolmBatch, PathAndNameOfTheProjectAreJoinedAsTheyAre) {
    BatchBench bench;
    bench.batch.Step1_TolmLogon("C:\\Projects", "P1");
    bench.batch.Step2_CreateNewTolmBatch("a.xbt", "a.xmt", "a.vesk");
    EXPECT_THAT(bench.calls.Only({"TolmSetBatchProject"}), ElementsAre("TolmSetBatchProject(\"C:\\ProjectsP1\")"));
}

TEST(clsTolmBatch, EveryFailureIsToldAndLeavesTheObjectInert) {
    struct Case {
        std::vector<std::string> operations;
        std::string message;
        std::function<void(clsTolmBatch&)> step;
    };
    const Case cases[] = {
        {{"TolmLogon", "TolmSelectProject"},
         "Tolm Batch: Error during Tolm logon",
         [](auto& batch) { batch.Step1_TolmLogon("E:\\", "P"); }},
        {{"TolmLogoff"},
         "Tolm Batch: Error during Tolm logoff",
         [](auto& batch) { batch.Step1_TolmLogon("E:\\", "P"); }},
        {{"TolmNewBatch", "TolmSetBatchName", "TolmSetBatchUser", "TolmSetBatchText", "TolmSetBatchProject",
          "TolmAddSet", "TolmSetSetAcquisitionMethod", "TolmSetSetProcessingMethod", "TolmAddSample",
          "TolmSetSampleDataFile", "TolmSetSampleField"},
         "Tolm Batch: Error during creation of new Tolm Batch",
         [](auto& batch) { batch.Step2_CreateNewTolmBatch("a", "b", "c"); }},
        {{"TolmSubmitBatch"},
         "Tolm Batch: Error submitting Tolm Batch",
         [](auto& batch) { batch.Step3a_SubmitTolmBatch(); }},
        {{"TolmSaveBatch"},
         "Tolm Batch: Error saving Tolm Batch kept.xbt",
         [](auto& batch) { EXPECT_EQ(batch.Step3b_SaveTolmBatch("kept.xbt"), ""); }},
        {{"TolmLogoff"}, "Tolm Batch: Error during Tolm logoff", [](auto& batch) { batch.Step4_TolmLogoff(); }},
    };
    for (const auto& c : cases) {
        for (const auto& operation : c.operations) {
            SCOPED_TRACE(c.message + " by " + operation);
            BatchBench bench;
            bench.LogOn();
            bench.batch.Step2_CreateNewTolmBatch("first.xbt", "a", "b");
            bench.calls.Fail(operation, RunBench::hostError);
            c.step(bench.batch);
            EXPECT_EQ(bench.calls.FiredCount(), 1);
            EXPECT_TRUE(bench.batch.ErrorOccurred());
            EXPECT_EQ(bench.batch.ErrorDescription(), c.message + suffix);
            EXPECT_EQ(bench.calls.Operations().back().substr(0, operation.size()), operation) << "nothing after it";

            bench.calls.Forget();
            for (const auto& other : cases)
                other.step(bench.batch);
            EXPECT_THAT(bench.calls.Operations(), ElementsAre());
            EXPECT_EQ(bench.batch.ErrorDescription(), c.message + suffix);
        }
    }
}

TEST(clsTolmBatch, AFailedObjectStillReleasesItsBatchAndWorksAgainAfterAReset) {
    BatchBench bench;
    bench.LogOn();
    bench.batch.Step2_CreateNewTolmBatch("a.xbt", "a.xmt", "a.vesk");
    bench.calls.Fail("TolmSubmitBatch", std::runtime_error("connection lost"));
    bench.batch.Step3a_SubmitTolmBatch();
    EXPECT_EQ(bench.batch.ErrorDescription(), "Tolm Batch: Error submitting Tolm Batch (Error 51: connection lost).");
    bench.calls.Forget();
    bench.batch.Step3c_ClearTolmBatch();
    EXPECT_THAT(bench.calls.texts, ElementsAre("~TolmBatch"));
    bench.batch.ResetError();
    bench.batch.Step4_TolmLogoff();
    EXPECT_EQ(bench.batch.ErrorDescription(), "");
    EXPECT_THAT(bench.calls.Operations(), ElementsAre("TolmLogoff(\"session1\")"));
}

TEST(clsTolmBatch, ACreationThatFailsIsKept) {
    for (const std::string operation : {"TolmCreateService", "TolmInitialize"}) {
        FakeHost fake;
        HostCalls calls;
        ObservedHost host{fake, calls};
        calls.Fail(operation, RunBench::hostError);
        clsTolmBatch batch(host);
        EXPECT_EQ(batch.ErrorDescription(), "Tolm Batch: Error during Tolm initialization" + suffix);
        calls.Forget();
        batch.Step1_TolmLogon("C:\\", "P");
        EXPECT_THAT(calls.Operations(), ElementsAre());
    }
}

TEST(clsTolmBatch, SubmittingWithoutABatchIsAnError) {
    BatchBench bench;
    bench.LogOn();
    bench.batch.Step3a_SubmitTolmBatch();
    EXPECT_EQ(bench.batch.ErrorDescription(),
              "Tolm Batch: Error submitting Tolm Batch (Error 91: Object variable or With block variable not set).");
}

}  // namespace
