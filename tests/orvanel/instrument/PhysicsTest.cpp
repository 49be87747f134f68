// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "orvanel/instrument/Detector.h"
#include "orvanel/instrument/Excitation.h"
#include "orvanel/instrument/Noise.h"
#include "orvanel/instrument/PeakShape.h"
#include "orvanel/instrument/Transmission.h"
#include "orvanel/instrument/TrapFill.h"
#include "tests/orvanel/instrument/InstrumentBench.h"

namespace orvanel {
namespace {

TEST(Transmission, DpIsBestHalfWayAndLosesToTheSource) {
    const Compound compound = bench::Shipped("reserpine");
    double best = 0;
    for (double dp = 0; dp < 200; dp += 0.5)
        if (DpTransmission(compound, dp) > DpTransmission(compound, best)) best = dp;
    EXPECT_DOUBLE_EQ(best, (compound.dpLow + compound.dpHigh) / 2);
    EXPECT_NEAR(DpTransmission(compound, 120), 0.5, 1e-3);
    EXPECT_NEAR(DpTransmission(compound, 150) + InSourceShare(compound, 150), 1, 1e-4);
}

TEST(Transmission, EpAndCepHaveTheirOptima) {
    const InstrumentModel model = bench::LinearTrap();
    EXPECT_DOUBLE_EQ(EpTransmission(model, 9), 1);
    EXPECT_NEAR(EpTransmission(model, 14), std::exp(-0.5), 1e-12);
    const double best = 8 + 0.033 * 300;
    const double sigma = 8 + 0.01 * 300;
    EXPECT_DOUBLE_EQ(CepTransmission(model, best, 300), 1);
    EXPECT_NEAR(CepTransmission(model, best + sigma, 300), std::exp(-0.5), 1e-12);
    EXPECT_NEAR(CepTransmission(model, best - 0.7 * sigma, 300), std::exp(-0.5), 1e-12);
}

TEST(Transmission, QuadrupoleWindows) {
    const InstrumentModel model = bench::LinearTrap();
    struct Case {
        int resolution;
        double distanceDa, expected;
    };
    for (const auto& [resolution, distanceDa, expected] :
         {Case{0, 0, 1.3 * 0.9973}, Case{1, 0, 1}, Case{2, 0, 0.4}, Case{3, 0, 1.6}, Case{1, 0.35, 0.5},
          Case{1, -0.35, 0.5}, Case{1, 1, 0.01}, Case{1, -1.6, 0.01}, Case{1, 1.7, 0}, Case{2, 1, 0.4 * 0.002},
          Case{3, 2, 1.6 * 0.99379}, Case{3, 5, 0}})
        EXPECT_NEAR(QuadrupoleTransmission(model, model.q1Windows[resolution], distanceDa), expected, 1e-4)
            << resolution << " " << distanceDa;
}

TEST(Excitation, FivePercentPointOfTheFormula) {
    const InstrumentModel model = bench::LinearTrap();
    TreeNode precursor{"P", 300, 1, "", 1, 1, {}, 1, 0};
    const Excitation plain(model, precursor);
    EXPECT_DOUBLE_EQ(plain.HalfAmplitude(), 25);
    EXPECT_NEAR(plain.RemainingShare(33.83), 0.05, 2e-4);
    precursor.backgroundShare = 0.03;
    const Excitation background(model, precursor);
    EXPECT_NEAR(background.RemainingShare(25 + 3 * std::log(0.97 / 0.02 - 1)), 0.05, 1e-9);
    precursor.backgroundShare = 0.05;
    EXPECT_GT(Excitation(model, precursor).RemainingShare(90), 0.05);
    precursor = {"P", 600, 1, "", 1, 1, {}, 1.5, 0};
    EXPECT_NEAR(Excitation(model, precursor).HalfAmplitude(), 25 * std::pow(2, 0.7) * 1.5, 1e-9);
    const InstrumentModel low = LoadInstrumentModel(bench::share + "/models/brenic_plus.ini");
    EXPECT_NEAR(Excitation(low, precursor).Width(), 0.004 * 0.12 * 25 * std::pow(2, 0.7) * 1.5, 1e-12);
}

TEST(Excitation, OffResonanceIonsFeelLess) {
    const InstrumentModel model = bench::LinearTrap();
    const Excitation excitation(model, {"P", 300, 1, "", 1, 1, {}, 1, 0});
    EXPECT_NEAR(excitation.EffectiveAmplitude(30, 0.7), 30 / std::sqrt(2), 1e-12);
    EXPECT_NEAR(excitation.KeptShare(2.2 * 25), 0.5, 1e-12);
    EXPECT_GT(excitation.KeptShare(34), 0.96);
    EXPECT_DOUBLE_EQ(Excitation::LowMassCutoff(model, 300), 78);
}

TEST(PeakShape, WidthGrowsWithTheRateAndTheCentroidStays) {
    const InstrumentModel model = bench::LinearTrap();
    for (const auto& [rate, fwhm] : {std::pair{250.0, 0.19}, {1000.0, 0.35}, {4000.0, 0.65}, {10000.0, 0.99}}) {
        EXPECT_NEAR(PeakFwhmDa(model, rate), fwhm, 0.005);
        const NormalTable table;
        const PeakShape shape(PeakFwhmDa(model, rate), 1.15);
        const BinGrid grid{300, 0.01, 1001};
        std::vector<double> bins(grid.count, 0);
        AddPeak(bins, grid, shape, table, 304.3217, 500);
        const double tallest = *std::max_element(bins.begin(), bins.end());
        double moment = 0, aboveHalf = 0;
        for (std::size_t i = 0; i < grid.count; ++i) {
            moment += bins[i] * grid.Mz(i);
            aboveHalf += bins[i] > tallest / 2 ? grid.step : 0;
        }
        EXPECT_NEAR(bench::Sum(bins), 500, 0.01);
        EXPECT_NEAR(moment / 500, 304.3217, 1e-3);
        EXPECT_NEAR(aboveHalf, PeakFwhmDa(model, rate), 0.011);
    }
}

TEST(PeakShape, SamplesFollowTheShape) {
    const NormalTable table;
    const PeakShape shape(0.35, 1.15);
    Random random{3};
    const int draws = 50000;
    double sum = 0, below = 0;
    for (int i = 0; i < draws; ++i) {
        const double uniform = random.Uniform();
        const double distance = shape.Sample(uniform, random.Normal());
        sum += distance;
        below += distance < -0.1 ? 1 : 0;
    }
    EXPECT_NEAR(sum / draws, 0, 0.003);
    EXPECT_NEAR(below / draws, shape.Below(table, -0.1), 0.008);
}

TEST(PeakShape, PeaksBeyondTheGridAreCutOff) {
    const NormalTable table;
    const PeakShape shape(0.35, 1.15);
    const BinGrid grid{300, 0.06, 100};
    std::vector<double> bins(grid.count, 0);
    for (const double mz : {290.0, 299.0, 307.5, 1e9})
        AddPeak(bins, grid, shape, table, mz, 1e6);
    EXPECT_LT(bench::Sum(bins), 1);
    AddPeak(bins, grid, shape, table, 299.97, 1e6);
    EXPECT_NEAR(bench::Sum(bins), 5e5, 5e4);
    EXPECT_EQ(grid.BinOf(299.9), grid.count);
    EXPECT_EQ(grid.BinOf(300.06 + 0.029), 1u);
}

TEST(TrapFill, SpaceChargeSaturationAndQ0Gain) {
    const InstrumentModel model = bench::LinearTrap();
    ExperimentRecord experiment;
    experiment.scanRate = 10000;
    EXPECT_NEAR(SpaceChargeIons(model, 10000), 158113.9, 0.1);
    const TrapFill fill = FillTrap(model, experiment, 150, 20, 1e6);
    EXPECT_NEAR(fill.ions, 1e6 * (1 - std::exp(-0.02)), 1e-3);
    EXPECT_NEAR(fill.shiftDa, 0.1 * fill.ions / 158113.9, 1e-6);
    EXPECT_NEAR(fill.broadening, std::hypot(1, fill.ions / 158113.9), 1e-6);
    EXPECT_NEAR(FillTrap(model, experiment, 150, 20, 1e12).ions, 1e6, 1);
    EXPECT_NEAR(FillTrap(model, experiment, 150, 20, 1e-3).ions, 2e-5, 1e-12);
    experiment.q0Trapping = true;
    EXPECT_NEAR(Q0Gain(model, 1000, 20), 8, 1e-12);
    EXPECT_NEAR(Q0Gain(model, 100, 20), 4.5, 1e-12);
    EXPECT_EQ(Q0Gain(model, 1000, 1), 10);
    EXPECT_NEAR(FillTrap(model, experiment, 1000, 20, 1e3).ions, 160, 0.1);
}

TEST(TrapFill, DynamicFillKeepsTheTrapEmptyEnough) {
    const InstrumentModel model = bench::LinearTrap();
    ExperimentRecord experiment;
    experiment.scanRate = 1000;
    experiment.fixedFillTimeMs = 20;
    for (const bool q0 : {false, true})
        for (const double rate : {2e4, 2e5, 2e6, 2e7}) {
            experiment.q0Trapping = q0;
            const double fillMs = DynamicFillMs(model, experiment, 100, rate);
            EXPECT_LE(FillTrap(model, experiment, 100, fillMs, rate).ions, std::max(2500.0, rate * 5e-5 * 10) * 1.0001);
            EXPECT_GE(fillMs, 0.05);
        }
    experiment.q0Trapping = false;
    EXPECT_NEAR(DynamicFillMs(model, experiment, 100, 2.5e5), 10, 1e-9);
    EXPECT_EQ(DynamicFillMs(model, experiment, 100, 1e3), 20);
    EXPECT_EQ(DynamicFillMs(model, experiment, 100, 0), 20);
    EXPECT_EQ(DynamicFillMs(model, experiment, 100, 1e12), 0.05);
}

TEST(Detector, DeadTimeFlattens) {
    EXPECT_NEAR(WithDeadTime(1e6, 20), 1e6 / 1.02, 1e-6);
    EXPECT_NEAR(WithDeadTime(1e15, 20), 5e7, 100);
}

TEST(Noise, SprayIsLognormalAndCorrelatedInTime) {
    Random random{5};
    Spray spray(0.04, 2, random);
    const int draws = 40000;
    double sum = 0, square = 0, product = 0, last = 1;
    for (int i = 0; i < draws; ++i) {
        const double factor = spray.Advance(1);
        sum += factor;
        square += (factor - 1) * (factor - 1);
        product += (factor - 1) * (last - 1);
        last = factor;
    }
    EXPECT_NEAR(sum / draws, 1, 0.001);
    EXPECT_NEAR(std::sqrt(square / draws), 0.04, 0.001);
    EXPECT_NEAR(product / square, std::exp(-0.5), 0.03);
    Spray steady(0, 2, random);
    EXPECT_EQ(steady.Advance(1), 1);
}

TEST(Noise, BackgroundAndMassErrorAreTheSessions) {
    const InstrumentModel model = bench::LinearTrap();
    const ChemicalBackground background(model, 1, 1), same(model, 1, 1), other(model, 2, 1), half(model, 1, 0.5);
    std::vector<double> logs;
    for (int peak = 100; peak < 1100; ++peak) {
        logs.push_back(std::log(background.RateOf(peak)) + background.MzOf(peak) / 500);
        EXPECT_EQ(background.RateOf(peak), same.RateOf(peak));
    }
    EXPECT_NEAR(bench::Sum(logs) / 1000, std::log(1000), 0.06);
    EXPECT_NE(background.RateOf(300), other.RateOf(300));
    EXPECT_NEAR(half.RateOf(300), background.RateOf(300) / 2, 1e-9);
    EXPECT_NEAR(background.MzOf(1000), 1000.5, 1e-9);
    EXPECT_NEAR(CalibrationErrorDa(model, 1, 7200, 1) - CalibrationErrorDa(model, 1, 0, 1), 0.02, 1e-12);
    EXPECT_NE(CalibrationErrorDa(model, 1, 0, 1), CalibrationErrorDa(model, 2, 0, 1));
    EXPECT_EQ(CalibrationErrorDa(model, 1, 7200, 0), 0);
}

}  // namespace
}  // namespace orvanel
