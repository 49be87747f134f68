// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/clsTolmBatch.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "tests/host/StepTable.h"

namespace {

using testing::ElementsAre;
using veltra::clsTolmBatch;

const std::string suffix = RunBench::errorSuffix;

struct BatchBench {
    FakeHost fake;
    HostCalls calls;
    ObservedHost host{fake, calls};
    std::function<std::string()> userName = [] { return "Ann"; };
    clsTolmBatch batch{host, [this] { return userName(); }};

    void LogOn() {
        batch.Step1_TolmLogon("C:\\Projects", "P1");  // without a separator, and none is added
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

/// A session and a batch that are under way.
struct SubmitBench : BatchBench {
    SubmitBench() {
        LogOn();
        batch.Step2_CreateNewTolmBatch("old.xbt", "old.xmt", "old.vesk");
        calls.Forget();
    }
};

TEST(clsTolmBatch, ABatchHasOneSetWithOneSampleAndEveryFailureIsTold) {
    ExpectSteps<BatchBench, clsTolmBatch>(&BatchBench::batch, {{[](auto& b) { b.Step1_TolmLogon("E:\\", "P"); },
                                                                "TolmLogon(\"\", \"\", \"\", \"\", \"Veltra\"); "
                                                                "TolmSelectProject(\"session1\", \"E:\\\", \"P\")",
                                                                "Tolm Batch: Error during Tolm logon"}});
    ExpectSteps<SubmitBench, clsTolmBatch>(
        &SubmitBench::batch,
        {{[](auto& b) { b.Step2_CreateNewTolmBatch("C_ER_609.3.xbt", "C_ER_609.3.xmt", "Run\\C_ER_609.3.vesk"); },
          "TolmNewBatch(\"session1\"); TolmSetBatchName(\"C_ER_609.3.xbt\"); TolmSetBatchUser(\"Ann\"); "
          "TolmSetBatchText(\"\"); TolmSetBatchProject(\"C:\\ProjectsP1\"); TolmAddSet(\"SET1\"); "
          "TolmSetSetAcquisitionMethod(3, \"C_ER_609.3.xmt\"); TolmSetSetProcessingMethod(3, \"none\"); "
          "TolmAddSample(3); TolmSetSampleDataFile(3, 7, \"Run\\C_ER_609.3.vesk\"); "
          "TolmSetSampleField(3, 7, SampleName, \"N/A\"); TolmSetSampleField(3, 7, SampleId, \"N/A\"); "
          "TolmSetSampleField(3, 7, RackPosition, \"0\")",
          "Tolm Batch: Error during creation of new Tolm Batch"},
         {[](auto& b) { b.Step3a_SubmitTolmBatch(); }, "TolmSubmitBatch(\"session1\")",
          "Tolm Batch: Error submitting Tolm Batch"},
         {[](auto& b) {
              const std::string answer = b.Step3b_SaveTolmBatch("k.xbt");
              EXPECT_EQ(answer, b.ErrorOccurred() ? "" : "saved k.xbt of old.xbt");
          },
          "TolmSaveBatch(\"session1\", \"k.xbt\")", "Tolm Batch: Error saving Tolm Batch k.xbt"},
         {[](auto& b) { b.Step4_TolmLogoff(); }, "TolmLogoff(\"session1\")", "Tolm Batch: Error during Tolm logoff"}});
}

TEST(clsTolmBatch, AUserNameThatIsNotKnownIsUnknownAndOneThatFailsEndsTheBatch) {
    BatchBench bench;
    bench.LogOn();
    bench.userName = [] { return ""; };
    bench.batch.Step2_CreateNewTolmBatch("a.xbt", "a.xmt", "a.vesk");
    EXPECT_THAT(bench.calls.Only({"TolmSetBatchUser"}), ElementsAre("TolmSetBatchUser(\"Unknown\")"));
    bench.calls.Forget();
    bench.userName = []() -> std::string { throw RunBench::hostError; };
    bench.batch.Step2_CreateNewTolmBatch("a.xbt", "a.xmt", "a.vesk");
    EXPECT_EQ(bench.batch.ErrorDescription(), "Tolm Batch: Error getting current user name" + suffix);
    EXPECT_THAT(bench.calls.texts,
                ElementsAre("~TolmBatch", "TolmNewBatch(\"session1\")", "TolmSetBatchName(\"a.xbt\")"));
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
    bench.calls.Fail("TolmLogoff", RunBench::hostError);
    for (const std::string& told : {"Tolm Batch: Error during Tolm logoff" + suffix, std::string()}) {
        bench.batch.ResetError();
        bench.batch.Step4_TolmLogoff();
        EXPECT_EQ(bench.batch.ErrorDescription(), told);
    }
    EXPECT_THAT(bench.calls.Operations(), ElementsAre("TolmLogoff(\"session1\")", "TolmLogoff(\"session1\")"));
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
