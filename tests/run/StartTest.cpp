// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <algorithm>

#include "run/clsMain.h"
#include "tests/run/ProjectBench.h"
#include "tests/support_files/RecordedGraphControl.h"

namespace {

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

    using enum ports::enumVeltraScanType;
    RecordedGraphControl control(1);
    std::size_t stored = 0;
    for (const auto& [stage, ms3Index] : {std::pair{ER, 0},
                                          {Q1MI_DP, 0},
                                          {Q1MI_EP, 0},
                                          {Q1MI_REOPTDP, 0},
                                          {Q1MI_CEP, 0},
                                          {EPI, 0},
                                          {MRM, 0},
                                          {MS3, 1},
                                          {MS3, 2}})
        EXPECT_EQ(bench.state.scans->GetGraphData(stage, control, static_cast<std::int16_t>(ms3Index)).MethodFilePath,
                  methodPath(names.at(stored++)));
}

TEST(Start, EndsWithReportOutcomeLogoffAndChecklist) {
    StartBench bench;
    bench.JoinDisplayWithHostCalls();
    const std::string reportPath = bench.OutputFolder() + "Results.txt";
    bench.sample.onCall = [&](const std::string& text) {
        const bool isLogoff = text.starts_with("TolmLogoff(");
        if (!isLogoff && !text.ends_with("Generating Results.txt file...)")) return;
        EXPECT_EQ(support::FileExists(reportPath), isLogoff);
    };
    bench.main.Start();
    Texts ending = bench.calls.texts;
    ending.erase(ending.begin(), ending.end() - 6);
    EXPECT_EQ(ending, (Texts{"AddLogEntry([3:45:12 PM]   Generating Results.txt file...)",
                             "AddLogEntry([3:45:12 PM]   Optimization completed successfully!)",
                             "TolmLogoff(\"session1\")", "UpdateScanProgress(9, 0)", "~TolmBatch", "~TolmService"}));
    bench.TakeLog();
}

}  // namespace
