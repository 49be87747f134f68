// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "support/Files.h"
#include "tests/support_files/WholeRun.h"

namespace {

/// A data file up to its index, without the one time of day in it.
std::string WithoutTime(std::string text) {
    const std::string attribute = "startTimeStamp=\"";
    const auto at = text.find(attribute) + attribute.size();
    EXPECT_GT(at, attribute.size());
    text.erase(at, text.find('"', at) - at);
    return text.substr(0, text.find("<indexList"));
}

/// Noise, drift and interruptions of the spray go by nominal instrument time, not by how fast or how idle the clock is.
TEST(WholeRun, GivesTheSameDataAtEveryClockFactor) {
    const auto dataOf = [](double clockFactor) {
        const auto configure = [clockFactor](auto& config) {
            config.clockFactor = clockFactor;
            config.faults.dropoutsPerMinute = 20;
            config.faults.sprayInstability = 0.25;
        };
        WholeRun run({.compound = "caffeine", .configure = configure, .adjust = [](auto& settings) {
                          settings.Advanced_EPINum2ndPrec = 1;
                      }});
        EXPECT_EQ(run.Start(), veltra::StartButton::Outcome::Completed);
        const std::string folder = run.run.results->VeskOutputFilePath;
        std::map<std::string, std::string> data;
        for (const auto& name : support::FilesIn(folder))
            if (name.ends_with(".vesk")) data[name] = WithoutTime(support::ReadWholeFile(folder + name));
        return data;
    };
    const auto atVirtualTime = dataOf(0);
    EXPECT_GE(atVirtualTime.size(), 7U);  // ER, three or four ramps in Q1, EPI, MRM, MS3
    EXPECT_TRUE(dataOf(60) == atVirtualTime);
    EXPECT_TRUE(dataOf(1000) == atVirtualTime);
}

}  // namespace
