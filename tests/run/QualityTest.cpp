// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "bench/quality/Findings.h"
#include "bench/quality/Tables.h"

namespace {

constexpr double goodResponse = 0.95;

/// With as many 2nd precursors asked for as the compound has fragments, exactly its fragments are found, and every
/// voltage costs next to nothing against the best one.
TEST(Quality, FindingsAreGoodOnTheNoiseFreeInstrument) {
    struct Case {
        const char* compound;
        std::int16_t fragments;
    };
    for (const auto& [compound, fragments] : {Case{"reserpine", 7},
                                              {"caffeine", 5},
                                              {"verapamil", 5},
                                              {"clenbuterol", 4},
                                              {"chloramphenicol", 6},
                                              {"warfarin", 3}}) {
        SCOPED_TRACE(compound);
        WholeRun run({.compound = compound, .asNewProject = true, .adjust = [fragments = fragments](auto& settings) {
                          settings.Advanced_EPINum2ndPrec = fragments;
                      }});
        const auto findings = quality::Judge(run);
        ASSERT_TRUE(findings.completed);
        EXPECT_EQ(run.boxes.shown.size(), 0U);
        EXPECT_NEAR(findings.parentErrorDa, 0, 0.1);
        EXPECT_GE(findings.dp, goodResponse) << run.run.results->DP.Current;
        EXPECT_GE(findings.ep, goodResponse) << run.run.results->EP.Current;
        EXPECT_GE(findings.cep, goodResponse) << run.run.results->CEP.Current;
        EXPECT_TRUE(findings.strongestChosen) << findings.strongestNode;
        EXPECT_EQ(findings.missedNodes, std::vector<std::string>());
        for (const auto& fragment : findings.fragments) {
            EXPECT_TRUE(fragment.IsIon()) << "no planted fragment at " << fragment.foundMz;
            EXPECT_EQ(fragment.foreignThirdPrecursors, 0) << fragment.node;
            EXPECT_NEAR(fragment.signalAtAf2, fragment.precursorAtAf2, 0.005) << fragment.node;
            EXPECT_GE(fragment.ceCounts.share, goodResponse) << fragment.node << " at CE " << fragment.ce;
            EXPECT_TRUE(fragment.ceCounts.Keeps80(fragment.ce)) << fragment.node;
            EXPECT_GT(fragment.ceShare.high80, fragment.ceCounts.high80) << "what is lost does not count here";
            EXPECT_TRUE(fragment.Af2Agrees())
                << fragment.node << " " << fragment.af2.value_or(-1) << " " << fragment.exact.af2.value_or(-1);
        }
        EXPECT_TRUE(findings.NoPathEither() || findings.SamePath())
            << findings.optimalPath << " " << findings.bestPath << " " << findings.bestThirdMz;
        if (findings.optimalPath > 0) {
            EXPECT_GT(findings.gain.value_or(0), 1);
        }
    }
}

quality::FragmentFindings GoodFragment() {
    quality::FragmentFindings fragment;
    fragment.node = "138.0662";
    fragment.ce = 30;
    fragment.ceCounts = {1, 25, 35};
    fragment.ceShare = {0.5, 40, 50};
    fragment.af2 = 20;
    fragment.af2Step = 2;
    fragment.exact.af2 = 19;
    fragment.thirdPrecursors = 2;
    return fragment;
}

quality::Findings GoodRun(const std::string& compound) {
    quality::Findings run;
    run.compound = compound;
    run.completed = run.parentFound = run.strongestChosen = true;
    run.dp = run.ep = run.cep = 1;
    run.fragments = {GoodFragment()};
    run.optimalPath = run.bestPath = 1;
    run.optimalThirdMz = run.bestThirdMz = 110.07;
    run.gain = 7;
    return run;
}

/// The words of the table's line that starts with a name.
std::string LineOf(const std::vector<quality::Findings>& runs, const std::string& name) {
    std::ostringstream table;
    quality::PrintTable(runs, table);
    std::istringstream lines(table.str());
    std::string found;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(name + " ")) continue;
        std::istringstream words(line);
        for (std::string word; words >> word;)
            found += (found.empty() ? "" : " ") + word;
    }
    return found;
}

/// Columns: dm/z DP EP CEP CE CEs | frag. CE80 CE80s AF2 ions path same none gain of.
TEST(Quality, TheTableCountsWhatIsMissing) {
    const auto line = [](const quality::Findings& run) { return LineOf({GoodRun("a"), run}, "b"); };
    auto run = GoodRun("b");
    EXPECT_EQ(line(run), "b 1 of 1 0.000 100.0 100.0 100.0 100.0 50.0 100.0 100.0 0.0 100.0 100.0 100.0 100.0 0 7.0 1");
    run.fragments[0].foreignThirdPrecursors = 1;
    EXPECT_EQ(line(run), "b 1 of 1 0.000 100.0 100.0 100.0 100.0 50.0 100.0 100.0 0.0 0.0 66.7 100.0 100.0 0 7.0 1");
    run.fragments[0] = {};
    run.fragments[0].af2Step = 2;
    EXPECT_EQ(line(run), "b 1 of 1 0.000 100.0 100.0 100.0 0.0 0.0 100.0 0.0 0.0 0.0 0.0 100.0 100.0 0 7.0 1");
    run = GoodRun("b");
    run.bestThirdMz = 83.06;
    EXPECT_EQ(line(run), "b 1 of 1 0.000 100.0 100.0 100.0 100.0 50.0 100.0 100.0 0.0 100.0 100.0 100.0 0.0 0 7.0 1");
    run.bestPath = run.optimalPath = 0;
    run.gain.reset();
    EXPECT_EQ(line(run), "b 1 of 1 0.000 100.0 100.0 100.0 100.0 50.0 100.0 100.0 0.0 100.0 100.0 0.0 - 1 - 0");
    run = {};
    run.compound = "b";
    EXPECT_EQ(line(run), "b 0 of 1 - - - - - - - - - - - - - - - 0");
    EXPECT_EQ(LineOf({GoodRun("a"), run}, "all"),
              "all 1 of 2 0.000 100.0 100.0 100.0 100.0 50.0 50.0 100.0 0.0 100.0 100.0 50.0 50.0 0 7.0 1");
}

/// Whatever the run found: right is where 5 % of the precursor is left, even if the signal at its mass is near 5 % too.
TEST(Quality, Af2IsJudgedByWhatIsLeftOfThePrecursor) {
    auto fragment = GoodFragment();
    EXPECT_TRUE(fragment.Af2Agrees());
    fragment.af2 = 26;
    fragment.signalAtAf2 = 0.04;
    EXPECT_FALSE(fragment.Af2Agrees());
    EXPECT_TRUE(fragment.IsOnFlatTail());
    fragment.signalAtAf2 = 0.001;
    EXPECT_FALSE(fragment.IsOnFlatTail());
    fragment.exact.af2.reset();
    EXPECT_TRUE(fragment.IsOnFlatTail());
}

/// Every shipped compound runs to its end, on the models with their different AF2 scales too.
TEST(Quality, AllCompoundsRunToTheirEndOnSeveralModels) {
    for (const auto& compound : orvanel::ListCompounds(VELTRA_APP_LOCATION)) {
        for (const std::int32_t modelCode : {27, 14, 22, 33}) {
            SCOPED_TRACE(compound.name + " on model " + std::to_string(modelCode));
            WholeRun run({.compound = compound.name, .modelCode = modelCode, .asNewProject = true});
            EXPECT_EQ(run.Start(), veltra::StartButton::Outcome::Completed);
            EXPECT_EQ(run.boxes.shown, std::vector<RecordedMessageBoxes::Box>());
            EXPECT_GE(run.run.results->TopPeaksInfo.size(), 1U);
        }
    }
}

}  // namespace
