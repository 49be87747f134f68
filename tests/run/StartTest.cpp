#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "run/clsMain.h"
#include "tests/run/ProjectBench.h"

namespace {

using ports::MessageIcon;
using Texts = std::vector<std::string>;

/// A run of the planted sample that is initialised.
class StartBench : public ProjectBench {
  public:
    StartBench() {
        CreateFolder("Study1/Data");
        EXPECT_TRUE(main.Initialize());
        calls.Forget();
        display.calls.clear();
    }
    std::string Report() const {
        const std::string path = OutputFolder() + "Results.txt";
        return support::FileExists(path) ? support::ReadWholeFile(path) : "";
    }
    veltra::clsMain main{state};
};

/// Every acquisition starts from the method of the one before; EPI and MS3 methods are opened and saved once more.
TEST(Start, EveryAcquisitionIsNamedAndBuiltFromTheOneBefore) {
    StartBench bench;
    bench.settings.ExpectedMZ = 609.28149;
    bench.main.Start();
    bench.TakeLog();

    const Texts names{
        "C_ER_609.281",           "C_Q1MI_RampDP_609.297",   "C_Q1MI_RampEP_609.297", "C_Q1MI_RampDP(2)_609.297",
        "C_Q1MI_RampCEP_609.297", "C_EPI_CE_Spread_609.297", "C_MRM_RampCE_609.297",  "C_MS3_RampAF2_195.125",
        "C_MS3_RampAF2_448.5"};
    const auto methodPath = [&](const std::string& name) {
        return bench.Path("Study1/Acquisition Methods/" + name + ".xmt");
    };
    const auto isSavedTwice = [](const std::string& name) {
        return name.find("_EPI_") != std::string::npos || name.find("MS3_") != std::string::npos;
    };
    Texts expected;
    const auto expectMethod = [&](const std::string& from, const std::string& name) {
        const std::string save = "HostSaveMethodAs(\"" + methodPath(name) + "\", true)";
        expected.insert(expected.end(), {"HostOpenMethod(\"" + from + "\")", save});
        if (isSavedTwice(name)) expected.insert(expected.end(), {"HostOpenMethod(\"" + methodPath(name) + "\")", save});
    };
    std::string last = bench.settings.StarterMethodFilePath;
    for (const auto& name : names) {
        expectMethod(last, name);
        last = methodPath(name);
    }
    for (const std::string name : {"C_FinalMS3_195.125", "C_FinalMS3_448.5", "C_FinalOptimalMS3_448.5"})
        expectMethod(last, name);
    EXPECT_EQ(bench.calls.Only({"HostOpenMethod", "HostSaveMethodAs"}), expected);

    ASSERT_EQ(bench.fake.submitted.size(), names.size());
    Texts dataFiles;
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(bench.fake.submitted[i].name, names[i] + ".xbt");
        EXPECT_EQ(bench.fake.submitted[i].methodFileName, names[i] + ".xmt");
        EXPECT_EQ(bench.fake.submitted[i].dataFileName, "C Veltra (5-13-2024, 3h45m12 PM)/" + names[i] + ".vesk");
        const std::string opened = "ExploreSetDataFile(\"" + bench.OutputFolder() + names[i] + ".vesk\")";
        const auto& texts = bench.calls.texts;
        EXPECT_NE(std::find(texts.begin(), texts.end(), opened), texts.end()) << opened;
    }
}

TEST(Start, EndsWithReportOutcomeLogoffAndChecklist) {
    const std::string logoffFailure = "Tolm Batch: Error during Tolm logoff" + RunBench::errorSuffix;
    for (const bool logoffFails : {false, true}) {
        for (const bool aborts : {false, true}) {
            SCOPED_TRACE(testing::Message() << logoffFails << aborts);
            StartBench bench;
            bench.JoinDisplayWithHostCalls();
            std::string reportBefore = "not looked at";
            std::string reportAtLogoff;
            bench.sample.onCall = [&](const std::string& text) {
                if (aborts && text.starts_with("TolmSubmitBatch(")) bench.state.AbortRequested = true;
                if (text.ends_with("Generating Results.txt file...)")) reportBefore = bench.Report();
                if (text.starts_with("TolmLogoff(")) reportAtLogoff = bench.Report();
            };
            if (logoffFails) bench.calls.Fail("TolmLogoff", RunBench::hostError);
            bench.main.Start();

            const auto logged = [](const std::string& text) { return "AddLogEntry([3:45:12 PM]   " + text + ")"; };
            Texts expected{logged("Generating Results.txt file..."),
                           logged(aborts ? "Optimization aborted!" : "Optimization completed successfully!"),
                           "TolmLogoff(\"session1\")", "UpdateScanProgress(9, 0)", "~TolmService"};
            std::vector<RecordedMessageBoxes::Box> boxes;
            if (logoffFails) {
                expected.insert(expected.begin() + 3, logged(logoffFailure));
                boxes.push_back({logoffFailure, MessageIcon::Warning});
            }
            Texts ending = bench.calls.texts;
            std::erase(ending, "~TolmBatch");
            ending.erase(ending.begin(), std::find(ending.begin(), ending.end(), expected.front()));
            EXPECT_EQ(ending, expected);
            EXPECT_EQ(std::exchange(bench.boxes.shown, {}), boxes);
            EXPECT_EQ(reportBefore, "");
            EXPECT_NE(reportAtLogoff.find("(Start 3:45:12 PM, End 3:45:12 PM)"), std::string::npos);
            EXPECT_EQ(reportAtLogoff.ends_with("Optimization was aborted!"), aborts);
            EXPECT_EQ(bench.state.batch, nullptr);
            const Texts log = bench.TakeLog();
            EXPECT_EQ(std::count(log.begin(), log.end(), "--> Generating final MS/MS/MS methods..."), aborts ? 0 : 1);
        }
    }
}

TEST(Start, AQueueThatDoesNotStartMeansNoAcquisition) {
    for (const std::string operation : {"HostQueueServer", "HostQueuePrepare", "HostQueueRun"}) {
        SCOPED_TRACE(operation);
        StartBench bench;
        bench.calls.Fail(operation, RunBench::hostError);
        bench.main.Start();
        const std::string why = "Queue: Error starting Queue" + RunBench::errorSuffix;
        bench.ExpectReported({{why, MessageIcon::Critical}},
                             {why, "Generating Results.txt file...", "Optimization aborted!"});
        EXPECT_TRUE(bench.state.AbortRequested);
        EXPECT_EQ(bench.calls.CountOf("HostOpenMethod"), 0);
        EXPECT_EQ(bench.fake.submitted.size(), 0U);
        EXPECT_EQ(CallsOf(bench.display, {"UpdateScanProgress"}), Texts{"UpdateScanProgress(9, 0)"});
        EXPECT_TRUE(bench.Report().ends_with("Optimization was aborted!"));
        EXPECT_EQ(bench.calls.CountOf("TolmLogoff"), 1);
    }
}

}  // namespace
