// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <bit>

#include "orvanel/instrument/faults/FaultySample.h"
#include "tests/orvanel/instrument/InstrumentBench.h"

namespace orvanel {
namespace {

/// FNV-1a over the bits of all numbers.
struct Checksum {
    void Add(double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        for (int shift = 0; shift < 64; shift += 8)
            sum = (sum ^ ((bits >> shift) & 0xFF)) * 1099511628211ULL;
    }
    void Add(const std::vector<double>& values) {
        for (const double value : values)
            Add(value);
    }

    std::uint64_t sum = 14695981039346656037ULL;
};

/// Every scan type with its ramp, near the best voltages of reserpine.
std::vector<MassSpecRecord> Methods(const Compound& compound) {
    std::vector<MassSpecRecord> methods = {
        bench::Method(ScanType::EnhancedResolution, compound, {594.3, 624.3, 0.06, 0.06, {}}, 10),
        bench::Method(ScanType::EnhancedProductIon, compound, {150, 620, 0.06, 0.06, {}}, 40),
        bench::Method(ScanType::Ms3, compound, {150, 420, 0.06, 0.06, {}}, 39),
        bench::Method(ScanType::Q1MultipleIon, compound, {609.28, 609.28, 0, 100, {}}, 10),
        bench::Method(ScanType::MultipleReaction, compound, {609.28, 0, 397.21, 50, {}}, 20)};
    bench::Experiment(methods[1]).massRanges[0].compoundParameters[4].value = 15;
    bench::Experiment(methods[2]).secondPrecursor = 397.2;
    bench::Experiment(methods[2]).dynamicFillTime = false;
    bench::Experiment(methods[2]).q0Trapping = true;
    bench::SetRamp(methods[2], "AF2", 10, 60, 10);
    bench::SetRamp(methods[3], "DP", 0, 120, 2.5F);
    bench::SetRamp(methods[4], "CE", 10, 60, 0.1F);
    return methods;
}

std::uint64_t ChecksumOf(const AcquisitionContext& context) {
    const auto elements = bench::Elements();
    const InstrumentModel model = bench::LinearTrap();
    const Compound compound = bench::Shipped("reserpine");
    const auto sample = WithFaults({{compound, 1}}, context.faults, *elements);
    Checksum checksum;
    for (const MassSpecRecord& method : Methods(compound)) {
        const AcquiredData data = Acquire(method, model, sample, *elements, context);
        for (const CycleRecord& cycle : data.cycles) {
            checksum.Add(cycle.rampValue);
            checksum.Add(cycle.mz);
            checksum.Add(cycle.intensity);
        }
        for (const MassTrace& trace : data.traces)
            checksum.Add(trace.intensity);
    }
    return checksum.sum;
}

/// The same seed gives the same numbers, bit by bit, with every compiler and system library. The expected values
/// without counting show any difference in the last place; a change of the model or of what ships changes both sums.
TEST(Reproducibility, ReferenceAcquisitionsAreTheSameOnEveryMachine) {
    AcquisitionContext context;
    context.seed = 7;
    context.acquisitionNumber = 3;
    context.instrumentTimeS = 1000;
    context.faults.dropoutsPerMinute = 20;
    context.faults.sprayInstability = 0.25;
    context.faults.interferenceDa = 0.4;
    context.faults.interferenceAmount = 0.5;
    context.faults.sodiumAdduct = 1;
    EXPECT_EQ(ChecksumOf(context), 18075763565086433559ULL);
    context.countingStatistics = false;
    EXPECT_EQ(ChecksumOf(context), 13448940248821010531ULL);
}

}  // namespace
}  // namespace orvanel
