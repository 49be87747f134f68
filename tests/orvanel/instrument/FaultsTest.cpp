// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "orvanel/instrument/faults/FaultySpray.h"

namespace orvanel {
namespace {

/// 20 interruptions a minute of 0.6 s on average cover 1 - e^-0.2 of the time, also across the borders of minutes.
TEST(Faults, DropoutsCoverTheirShareOfTimeAndBelongToIt) {
    EXPECT_NEAR(DropoutShare(1, 20, 0, 36000), 0.181, 0.004);
    double covered = 0;
    for (int minute = 1; minute < 3000; ++minute)
        covered += DropoutShare(1, 20, 60 * minute - 0.01, 60 * minute + 0.01) / 2999;
    EXPECT_NEAR(covered, 0.181, 0.02);

    double sum = 0;
    int steady = 0;
    for (int step = 0; step < 1000; ++step) {
        const double share = DropoutShare(1, 20, 100 + 0.05 * step, 100.05 + 0.05 * step);
        sum += share / 1000;
        steady += share == 0 || share > 0.9999 ? 1 : 0;
    }
    EXPECT_NEAR(sum, DropoutShare(1, 20, 100, 150), 1e-9);
    EXPECT_GT(steady,
              930);  // of 0.05 s each only those where an interruption of 0.2 s or more begins or ends are mixed
    EXPECT_EQ(DropoutShare(1, 0, 100, 150), 0);
    EXPECT_NE(DropoutShare(1, 20, 100, 150), DropoutShare(2, 20, 100, 150));
}

}  // namespace
}  // namespace orvanel
