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

TEST(PrecursorStages, ERStageRecordsTheParent) {
    StageBench bench;
    bench.settings.ExpectedMZ = 609.28125;
    veltra::RunERStage(bench.frame);
    bench.ExpectReported(
        {}, {"--> ER scan of expected parent 609.281 Da...", "Actual parent m/z:", "609.297 Da, 3.22E+06 cps"});
    EXPECT_EQ(bench.run.results->ActualPeak->CentroidMass, 609.2969);
    EXPECT_EQ(bench.Checklist(),
              (Texts{"UpdateScanProgress(0, 1)", "UpdateScanProgress(0, 2)", "UpdateResultsGraphControl(0, -1)"}));
    EXPECT_EQ(bench.StoredMethod(enumVeltraScanType::ER), "/p/C_ER_609.281.xmt");
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
    EXPECT_EQ(bench.StoredMethod(enumVeltraScanType::ER), "/p/C_ER_609.3.xmt");
}

TEST(PrecursorStages, OptimumOfEPAndPolarityDecideWhetherDPIsRampedAgain) {
    const std::string dp = "HostSetRampParameter(\"DP\", 0, 100, 5)";
    const std::string negativeDp = "HostSetRampParameter(\"DP\", -100, 0, 5)";
    const std::string ep = "HostSetRampParameter(\"EP\", 1, 12, 0.5)";
    const std::string negativeEp = "HostSetRampParameter(\"EP\", -12, -1, 0.5)";
    const std::string cep = "HostSetRampParameter(\"CEP\", 0, 100, 2)";
    const std::string negativeCep = "HostSetRampParameter(\"CEP\", -100, 0, 2)";
    struct Case {
        std::int32_t polarity;
        double ep;
        bool again;
        Texts ramps;
    };
    for (const auto& [polarity, optimalEp, again, ramps] :
         {Case{0, 9.5, true, {dp, ep, dp, cep}},
          {0, 10, false, {dp, ep, cep}},
          {0, 10.5, false, {dp, ep, cep}},
          {0, -12, true, {dp, ep, dp, cep}},
          {1, -10.5, false, {negativeDp, negativeEp, negativeCep}},
          {1, -10, false, {negativeDp, negativeEp, negativeCep}},
          {1, -9.5, true, {negativeDp, negativeEp, negativeDp, negativeCep}},
          {1, -8, true, {negativeDp, negativeEp, negativeDp, negativeCep}},
          {2, 1, false, {dp, ep, cep}},
          {2, -1, false, {dp, ep, cep}},
          {-1, 1, false, {dp, ep, cep}}}) {
        const double sign = polarity == 1 ? -1 : 1;
        SCOPED_TRACE("polarity " + std::to_string(polarity) + ", EP " + support::GeneralText(optimalEp));
        StageBench bench;
        bench.FindParent();
        bench.settings.Polarity = polarity;
        bench.sample.optima = again ? std::vector{sign * 85, optimalEp, sign * 70, sign * 32}
                                    : std::vector{sign * 85, optimalEp, sign * 32};
        veltra::RunQ1MIStage(bench.frame);

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
            EXPECT_EQ(bench.StoredMethod(subScan.stage), subScan.method);
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

TEST(PrecursorStages, OnlyDPIsRampedWhereTheModelHasNoEPAndCEPRamps) {
    StageBench bench;
    bench.FindParent();
    bench.UseModel(26, false);
    bench.run.results->EP.Current = 4;
    bench.run.results->CEP.Current = 16.5F;
    veltra::RunQ1MIStage(bench.frame);
    bench.ExpectReported({}, LogOf(allSubScans, {"85"}));
    EXPECT_EQ(bench.Checklist(),
              (Texts{"UpdateScanProgress(1, 1)", "UpdateScanProgress(1, 2)", "UpdateResultsGraphControl(1, -1)"}));
    EXPECT_EQ(bench.run.results->EP.Current, 4);
    EXPECT_EQ(bench.run.results->CEP.Current, 16.5F);
}

/// At the submit nothing has been measured yet; once the data are open, an optimum is found but no longer stored.
TEST(PrecursorStages, AbortEndsTheStageWithTheSubScanUnderWay) {
    for (const std::string operation : {"TolmSubmitBatch", "CreateDataExploration"}) {
        for (std::size_t aborted = 0; aborted < allSubScans.size(); ++aborted) {
            SCOPED_TRACE(operation + " in " + allSubScans[aborted].action);
            StageBench bench;
            bench.FindParent();
            auto& results = *bench.run.results;
            results.DP.Current = 1;
            results.EP.Current = 2;
            results.CEP.Current = 3;
            bench.AbortAt(operation, static_cast<int>(aborted) + 1);
            veltra::RunQ1MIStage(bench.frame);

            Texts lines{"85", "8.5", "70", "32"};
            lines.resize(aborted);
            lines.emplace_back("N/A");
            bench.ExpectReported({}, LogOf(allSubScans, lines));
            EXPECT_EQ(results.DP.Current, (std::vector<float>{1, 85, 85, 70}[aborted]));
            EXPECT_EQ(results.EP.Current, (std::vector<float>{2, 2, 8.5F, 8.5F}[aborted]));
            EXPECT_EQ(results.CEP.Current, 3);
            EXPECT_EQ(bench.StoredMethod(allSubScans[aborted].stage), allSubScans[aborted].method);
            EXPECT_EQ(bench.Checklist().size(), 3 * (aborted + 1));
        }
    }
}

}  // namespace
