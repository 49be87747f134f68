// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/Ramp.h"

#include <gtest/gtest.h>

namespace {

using orvanel::RampRecord;
using orvanel::RampValues;

TEST(RampValues, AreDecimalNumbers) {
    const struct {
        RampRecord ramp;
        int cycles;
        double last;
    } cases[] = {
        {{"AF2", 0, 0.35F, 0.01F}, 36, 0.35},
        {{"DP", -150, -20, 2}, 66, -20},
        {{"CE", 10.5F, 130, 0.1F}, 1196, 130},
        {{"DP", 20, 10, -2.5F}, 5, 10},
        {{"AF2", 0.004F, 0.4F, 0.002F}, 199, 0.4},
        {{"DP", 5, 5, 1}, 1, 5},
        {{"X", 1e-7F, 1, 1e-7F}, 3, 3e-7},  // texts with an exponent
        {{"X", 0, 1, 1e20F}, 2, 1e20},      // beyond what whole doubles hold
    };
    for (const auto& one : cases) {
        const auto values = RampValues(one.ramp, one.cycles);
        ASSERT_EQ(values.size(), static_cast<std::size_t>(one.cycles));
        EXPECT_DOUBLE_EQ(values.back(), one.last) << one.ramp.step;
        EXPECT_EQ(values.front(), orvanel::DecimalValue(one.ramp.start));
    }
    EXPECT_EQ(RampValues({"AF2", 0, 0.35F, 0.01F}, 36)[35], 0.35);
    EXPECT_EQ(RampValues({"AF2", 0, 0.35F, 0.01F}, 36)[7], 0.07);
    EXPECT_TRUE(RampValues({"AF2", 0, 1, 1}, -3).empty());
}

}  // namespace
