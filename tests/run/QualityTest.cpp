// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <cmath>

#include "bench/quality/Findings.h"

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
        WholeRun run({.compound = compound, .adjust = [fragments = fragments](auto& settings) {
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
            EXPECT_NE(fragment.node, "") << "no planted fragment at " << fragment.foundMz;
            EXPECT_GE(fragment.ceResponse, goodResponse) << fragment.node << " at CE " << fragment.ce;
            EXPECT_TRUE(fragment.CeKeeps80()) << fragment.node;
            EXPECT_TRUE(fragment.Af2Agrees())
                << fragment.node << " " << fragment.af2.value_or(-1) << " " << fragment.ruleAf2.value_or(-1);
        }
        if (findings.optimalPath > 0) {
            EXPECT_GT(findings.gain.value_or(0), 1);
        }
    }
}

/// Every shipped compound runs to its end, on the models with their different AF2 scales too.
TEST(Quality, AllCompoundsRunToTheirEndOnSeveralModels) {
    for (const auto& compound : orvanel::ListCompounds(VELTRA_APP_LOCATION)) {
        for (const std::int32_t modelCode : {27, 14, 22, 33}) {
            SCOPED_TRACE(compound.name + " on model " + std::to_string(modelCode));
            WholeRun run({.compound = compound.name, .modelCode = modelCode});
            EXPECT_EQ(run.Start(), veltra::StartButton::Outcome::Completed);
            EXPECT_EQ(run.boxes.shown, std::vector<RecordedMessageBoxes::Box>());
            EXPECT_GE(run.run.results->TopPeaksInfo.size(), 1U);
        }
    }
}

}  // namespace
