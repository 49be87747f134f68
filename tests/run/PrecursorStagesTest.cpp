// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/PrecursorStages.h"

#include <gtest/gtest.h>

#include "tests/run/StageBench.h"

namespace {

using ports::enumVeltraScanType;
using ports::MessageIcon;
using Texts = std::vector<std::string>;

const std::string ofParent = " of parent 609.297 Da, 3.22E+06 cps...";

/// The log and the ramps of the Q1 multiple ion stage, sub-scan by sub-scan.
struct SubScan {
    std::string action, result;
    enumVeltraScanType stage;
    std::string method;
};
const std::vector<SubScan> allSubScans{
    {"optimize DP", "Optimized DP = ", enumVeltraScanType::Q1MI_DP, "/p/C_Q1MI_RampDP_609.297.xmt"},
    {"optimize EP", "Optimized EP = ", enumVeltraScanType::Q1MI_EP, "/p/C_Q1MI_RampEP_609.297.xmt"},
    {"re-optimize DP", "Re-optimized DP = ", enumVeltraScanType::Q1MI_REOPTDP, "/p/C_Q1MI_RampDP(2)_609.297.xmt"},
    {"optimize CEP", "Optimized CEP = ", enumVeltraScanType::Q1MI_CEP, "/p/C_Q1MI_RampCEP_609.297.xmt"}};

/// @param results one a sub-scan
Texts LogOf(const std::vector<SubScan>& subScans, const Texts& results) {
    Texts log;
    for (std::size_t i = 0; i < results.size(); ++i) {
        log.push_back("--> Q1MI scan (" + subScans[i].action + ")" + ofParent);
        log.push_back(subScans[i].result + results[i]);
    }
    return log;
}

TEST(PrecursorStages, ERStageWithoutAParentStillShowsItsGraph) {
    StageBench bench;
    bench.fake.data.spectra["time"].peaks.pop_back();
    veltra::RunERStage(bench.frame);
    const std::string why = "No peaks found within 608.3 - 610.3 Da mass range of ER spectrum.";
    bench.ExpectReported({{why, MessageIcon::None}},
                         {"--> ER scan of expected parent 609.3 Da...", why, "Actual parent m/z:", "N/A"});
    EXPECT_EQ(bench.run.results->ActualPeak, nullptr);
    EXPECT_TRUE(bench.run.AbortRequested);
    EXPECT_EQ(bench.Checklist().back(), "UpdateResultsGraphControl(0, -1)");
}

TEST(PrecursorStages, OptimumOfEPAndPolarityDecideWhetherDPIsRampedAgain) {
    struct Case {
        std::int32_t polarity;
        double ep;
        bool again;
    };
    const Case cases[] = {{0, 9.5, true},    {0, 10, false},  {0, 10.5, false}, {0, -12, true},
                          {1, -10.5, false}, {1, -10, false}, {1, -9.5, true},  {1, -8, true},
                          {2, 1, false},     {2, -1, false},  {-1, 1, false}};
    for (const auto& [polarity, optimalEp, again] : cases) {
        const double sign = polarity == 1 ? -1 : 1;
        SCOPED_TRACE("polarity " + std::to_string(polarity) + ", EP " + support::GeneralText(optimalEp));
        StageBench bench;
        bench.FindParent();
        bench.settings.Polarity = polarity;
        bench.sample.optima = again ? std::vector{sign * 85, optimalEp, sign * 70, sign * 32}
                                    : std::vector{sign * 85, optimalEp, sign * 32};
        veltra::RunQ1MIStage(bench.frame);

        const auto ramp = [](const std::string& values) { return "HostSetRampParameter(" + values + ")"; };
        const std::string dp = ramp(sign > 0 ? "\"DP\", 0, 100, 5" : "\"DP\", -100, 0, 5");
        Texts ramps{dp, ramp(sign > 0 ? "\"EP\", 1, 12, 0.5" : "\"EP\", -12, -1, 0.5"),
                    ramp(sign > 0 ? "\"CEP\", 0, 100, 2" : "\"CEP\", -100, 0, 2")};
        if (again) ramps.insert(ramps.begin() + 2, dp);
        EXPECT_EQ(bench.calls.Only({"HostSetRampParameter"}), ramps);
        Texts results{support::GeneralText(sign * 85), support::GeneralText(optimalEp), support::GeneralText(sign * 70),
                      support::GeneralText(sign * 32)};
        auto subScans = allSubScans;
        if (!again) {
            subScans.erase(subScans.begin() + 2);
            results.erase(results.begin() + 2);
        }
        bench.ExpectReported({}, LogOf(subScans, results));
        EXPECT_EQ(bench.run.results->DP.Current, static_cast<float>(sign * (again ? 70 : 85)));
        EXPECT_EQ(bench.run.results->EP.Current, static_cast<float>(optimalEp));
        EXPECT_EQ(bench.run.results->CEP.Current, static_cast<float>(sign * 32));
        Texts checklist;
        for (const auto& subScan : subScans) {
            const std::string stage = std::to_string(static_cast<int>(subScan.stage));
            checklist.insert(checklist.end(),
                             {"UpdateScanProgress(" + stage + ", 1)", "UpdateScanProgress(" + stage + ", 2)",
                              "UpdateResultsGraphControl(" + stage + ", -1)"});
        }
        EXPECT_EQ(bench.Checklist(), checklist);
    }
}

TEST(PrecursorStages, RampsComeFromTheSettingsAndEachMethodHoldsTheOptimaBeforeIt) {
    StageBench bench;
    bench.FindParent();
    bench.settings.Advanced_Q1MIDPRampStart = 20;
    bench.settings.Advanced_Q1MIDPRampStop = 150.5F;
    bench.settings.Advanced_Q1MIDPRampStep = 2.5F;
    bench.settings.Advanced_Q1MIDwellTime = 42;
    veltra::RunQ1MIStage(bench.frame);
    bench.ExpectReported({}, LogOf(allSubScans, {"85", "8.5", "70", "32"}));
    EXPECT_EQ(bench.Method(allSubScans[2].method).ramp, (FakeMethod::Ramp{"DP", 20, 150.5F, 2.5F}));
    const struct {
        std::size_t subScan;
        const char* id;
        float value;
    } held[] = {{1, "DP", 85}, {2, "EP", 8.5F}, {3, "DP", 70}, {3, "EP", 8.5F}};
    for (const auto& [subScan, id, value] : held)
        EXPECT_EQ(bench.Method(allSubScans[subScan].method).ranges.at(0).Value(id), value) << subScan << id;
    EXPECT_EQ(bench.Method(allSubScans[0].method).ranges.at(0).dwellTimeMs, 42);
}

}  // namespace
