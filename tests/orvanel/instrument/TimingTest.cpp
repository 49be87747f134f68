// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Timing.h"

#include <gtest/gtest.h>

#include "tests/orvanel/instrument/InstrumentBench.h"

namespace orvanel {
namespace {

ExperimentRecord Trap(ScanType scanType, double start, double stop, double rate, double fillMs) {
    ExperimentRecord experiment;
    experiment.scanType = static_cast<int>(scanType);
    experiment.scanRate = rate;
    experiment.fixedFillTimeMs = fillMs;
    experiment.massRanges = {{start, stop, 0.1, 0, {}}};
    return experiment;
}

TEST(Timing, ScansTakeTheTimesOfTheDesign) {
    const InstrumentModel model = bench::LinearTrap();
    EXPECT_DOUBLE_EQ(ScanMs(model, Trap(ScanType::EnhancedResolution, 300, 330, 250, 20)), 168);
    EXPECT_DOUBLE_EQ(ScanMs(model, Trap(ScanType::EnhancedResolution, 300, 330, 10000, 20)), 51);
    EXPECT_DOUBLE_EQ(ScanMs(model, Trap(ScanType::EnhancedProductIon, 50, 1000, 4000, 20)), 285.5);
    EXPECT_DOUBLE_EQ(ScanMs(model, Trap(ScanType::Ms3, 100, 400, 10000, 100)), 253);
}

TEST(Timing, AcquisitionsAddPreparationCyclesAndScans) {
    const InstrumentModel model = bench::LinearTrap();
    MassSpecRecord method;
    method.periods.resize(1);
    EXPECT_DOUBLE_EQ(ExpectedDurationMs(method, model), 13000);
    ExperimentRecord experiment;
    experiment.scanType = 1;
    experiment.massRanges = {{195, 195, 0, 100, {}}};
    method.periods[0] = {41, std::nullopt, {experiment}};
    EXPECT_DOUBLE_EQ(ExpectedDurationMs(method, model), 13000 + 41 * 105);
    method.periods[0].experiments[0].scansToSum = 3;
    EXPECT_DOUBLE_EQ(ExpectedDurationMs(method, model), 13000 + 3 * 41 * 105);
    experiment.scanType = 4;
    experiment.massRanges.assign(5, {609, 0, 195, 50, {}});
    method.periods[0] = {61, std::nullopt, {experiment}};
    EXPECT_DOUBLE_EQ(ExpectedDurationMs(method, model), 13000 + 61 * 275);
    method.periods[0].experiments[0].polarity = 1;
    EXPECT_DOUBLE_EQ(PreparationMs(method, model), 13700);
    EXPECT_DOUBLE_EQ(ExpectedDurationMs(method, model), 13700 + 61 * 275);
}

}  // namespace
}  // namespace orvanel
