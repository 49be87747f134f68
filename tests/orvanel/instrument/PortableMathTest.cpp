// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/PortableMath.h"

#include <gtest/gtest.h>

#include <cmath>

#include "orvanel/instrument/Random.h"

namespace orvanel {
namespace {

TEST(PortableMath, AgreesWithTheLibrary) {
    for (double x = -700; x <= 700; x += 0.37)
        EXPECT_NEAR(Exp(x) / std::exp(x), 1, 1e-14) << x;
    for (double x = 1e-300; x < 1e300; x *= 7.3)
        EXPECT_NEAR(Log(x), std::log(x), 1e-14 * std::max(1.0, std::fabs(std::log(x)))) << x;
    for (double x = -7; x <= 7; x += 0.013)
        EXPECT_NEAR(Erf(x), std::erf(x), 1e-14) << x;
    EXPECT_NEAR(Log(1 + 1e-9), std::log1p(1e-9), 1e-16);
    EXPECT_NEAR(Pow(2.03, 0.7), std::pow(2.03, 0.7), 1e-14);
    for (const double n : {0.0, 1.0, 9.0, 10.0, 170.0, 1e6})
        EXPECT_NEAR(LogFactorial(n), std::lgamma(n + 1), 1e-11 * std::max(1.0, std::lgamma(n + 1))) << n;
}

TEST(PortableMath, EndsOfTheRangeStayFinite) {
    EXPECT_EQ(Exp(-1e6), 0);
    EXPECT_TRUE(std::isinf(Exp(1e6)));
    EXPECT_EQ(Sigmoid(-1e6), 0);
    EXPECT_EQ(Sigmoid(1e6), 1);
    EXPECT_DOUBLE_EQ(Sigmoid(3) + Sigmoid(-3), 1);
}

// Reference output of the published xoshiro256** and SplitMix64 algorithms, computed independently: one key 42 is mixed
// to SplitMix64(42) and fills the state by four further calls.
TEST(Random, StreamIsTheSameEverywhere) {
    Random random{42};
    EXPECT_EQ(random.Next(), 1865750160070900731ULL);
    EXPECT_EQ(random.Next(), 6791145067590612263ULL);
    EXPECT_EQ(random.Next(), 14118064813682728970ULL);
    EXPECT_NE((Random{1, 2}.Next()), (Random{2, 1}.Next()));
}

TEST(Random, NormalHasItsMoments) {
    Random random{7};
    const int draws = 200000;
    double sum = 0, square = 0, beyondTwo = 0;
    for (int i = 0; i < draws; ++i) {
        const double value = random.Normal();
        sum += value;
        square += value * value;
        beyondTwo += std::fabs(value) > 2 ? 1 : 0;
    }
    EXPECT_NEAR(sum / draws, 0, 0.01);
    EXPECT_NEAR(square / draws, 1, 0.015);
    EXPECT_NEAR(beyondTwo / draws, 0.0455, 0.002);
}

TEST(Random, PoissonHasMeanAndVarianceOnBothSidesOfTheMethodChange) {
    for (const double mean : {0.05, 1.0, 9.9, 10.1, 35.0, 1000.0, 3e6}) {
        Random random{11, static_cast<std::uint64_t>(mean * 100)};
        const int draws = 40000;
        double sum = 0, square = 0;
        for (int i = 0; i < draws; ++i) {
            const double deviation = random.Poisson(mean) - mean;
            sum += deviation;
            square += deviation * deviation;
        }
        EXPECT_NEAR(sum / draws, 0, 4 * std::sqrt(mean / draws)) << mean;
        EXPECT_NEAR(square / draws / mean, 1, 4 * std::sqrt((2 + 1 / mean) / draws)) << mean;
    }
    Random random{1};
    EXPECT_EQ(random.Poisson(0), 0);
}

}  // namespace
}  // namespace orvanel
