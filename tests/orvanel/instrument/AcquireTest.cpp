// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "orvanel/instrument/Excitation.h"
#include "orvanel/instrument/Isotopes.h"
#include "tests/orvanel/instrument/InstrumentBench.h"

namespace orvanel {
namespace {

class Acquisition : public ::testing::Test {
  protected:
    AcquiredData Run(const MassSpecRecord& method, const Compound& compound,
                     const AcquisitionContext& context = bench::Silent()) {
        return Acquire(method, model_, {{compound, 1}}, *elements_, context);
    }

    /// A product-ion or MS/MS/MS method over the range that the client asks for by default.
    static MassSpecRecord TrapMethod(ScanType type, const Compound& compound, float ce, double low = 100) {
        MassSpecRecord method = bench::Method(type, compound, {low, 1000, 0.06, 0.06, {}}, ce);
        bench::Experiment(method).scanRate = 1000;
        return method;
    }

    std::unique_ptr<ports::ElementTable> elements_ = bench::Elements();
    InstrumentModel model_ = bench::LinearTrap();
};

TEST_F(Acquisition, EnhancedResolutionShowsTheIsotopeEnvelope) {
    const Compound compound = bench::Shipped("reserpine");
    MassSpecRecord method = bench::Method(ScanType::EnhancedResolution, compound, {594.3, 624.3, 0.03, 0.12, {}}, 10);
    bench::Experiment(method).scanRate = 250;
    bench::Experiment(method).q1Resolution = 3;
    const AcquiredData data = Run(method, compound);
    ASSERT_EQ(data.cycles.size(), 1u);
    const CycleRecord& cycle = data.cycles[0];
    EXPECT_NEAR(bench::CentroidNear(cycle, 609.2807, 0.5), 609.2807, 0.01);
    const double tallest = bench::Area(cycle, 608.8, 609.78);
    EXPECT_NEAR(bench::Area(cycle, 609.79, 610.78) / tallest, 0.372, 0.01);
    EXPECT_NEAR(bench::Area(cycle, 610.79, 611.78) / tallest, 0.086, 0.005);
    for (std::size_t i = 1; i < cycle.mz.size(); ++i)
        EXPECT_GT(cycle.mz[i], cycle.mz[i - 1]);
    EXPECT_LT(cycle.mz.size(), 400u);
    EXPECT_EQ(cycle.mz.front(), 594.3);
    EXPECT_EQ(cycle.intensity.front(), 0);
    EXPECT_NEAR(cycle.mz.back(), 624.3, 1e-9);
}

TEST_F(Acquisition, ProductIonSpectrumOfReserpine) {
    const Compound compound = bench::Shipped("reserpine");
    MassSpecRecord method = TrapMethod(ScanType::EnhancedProductIon, compound, 40);
    bench::Experiment(method).massRanges[0].compoundParameters[4].value = 15;
    const CycleRecord cycle = Run(method, compound).cycles[0];
    double expected[4];
    const double fragments[] = {397.2122, 448.1966, 195.0652, 174.0913};
    const char* const names[] = {"397.2122", "448.1966", "195.0652", "174.0913"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_NEAR(bench::CentroidNear(cycle, fragments[i]), fragments[i], 0.05) << fragments[i];
        expected[i] = 0;
        for (const double ce : {25, 40, 55})
            expected[i] += FragmentYield(compound, names[i], ce) / 3;
    }
    for (int i = 1; i < 4; ++i)
        EXPECT_NEAR(bench::Area(cycle, fragments[i] - 1, fragments[i] + 1.5) /
                        bench::Area(cycle, fragments[0] - 1, fragments[0] + 1.5),
                    expected[i] / expected[0], 0.04 * expected[i] / expected[0])
            << fragments[i];
}

TEST_F(Acquisition, IonsOfUnknownFormulaGetAnAveragedEnvelope) {
    Compound compound = bench::Shipped("clenbuterol");
    const MassSpecRecord method = TrapMethod(ScanType::EnhancedProductIon, compound, 23);
    const CycleRecord known = Run(method, compound).cycles[0];
    for (auto& [name, node] : compound.nodes)
        if (name != compound.root) node.formula.clear();
    const CycleRecord averaged = Run(method, compound).cycles[0];
    EXPECT_NEAR(bench::Area(averaged, 202.3, 206) / bench::Area(known, 202.3, 206), 1, 0.01);
}

TEST_F(Acquisition, Q1RampFollowsTransmissionNotCollisionEnergy) {
    const Compound compound = bench::Shipped("warfarin");
    MassSpecRecord method = bench::Method(ScanType::Q1MultipleIon, compound, {307.0976, 307.0976, 0, 100, {}}, 80);
    bench::SetRamp(method, "DP", -150, 0, 5);
    const AcquiredData data = Run(method, compound);
    ASSERT_EQ(data.traces.size(), 1u);
    ASSERT_EQ(data.traces[0].intensity.size(), 31u);
    ASSERT_EQ(data.cycles.size(), 31u);
    const auto& trace = data.traces[0].intensity;
    EXPECT_EQ(std::max_element(trace.begin(), trace.end()) - trace.begin(), 19);
    EXPECT_EQ(data.cycles[19].rampValue, -55);
    EXPECT_EQ(FindParameter(data.cycles[19].applied[0], "DP"), -55.0F);
    EXPECT_EQ(FindParameter(data.cycles[19].applied[0], "CE"), -80.0F);
    EXPECT_TRUE(data.cycles[19].mz.empty());
    const double monoisotopic = EnvelopeOf({{"C", 19}, {"H", 15}, {"O", 4}}, *elements_).share[0];
    for (std::size_t i = 0; i < trace.size(); ++i) {
        const double relative = RelativeTransmission(model_, compound, data.cycles[i].rampValue, -9, -18.13);
        const double best = 1 / (1 + std::exp(-3.75));
        EXPECT_NEAR(trace[i] / (2e5 * monoisotopic * best * best * relative), 1, 0.01) << i;
    }
    EXPECT_NEAR(data.cycles[30].timeMinutes, 30 * 0.105 / 60, 1e-9);
}

TEST_F(Acquisition, MrmTransitionsPeakWhereTheTreeSays) {
    const Compound compound = bench::Shipped("reserpine");
    MassSpecRecord method = bench::Method(ScanType::MultipleReaction, compound, {609.28, 0, 397.21, 50, {}}, 20);
    auto& ranges = bench::Experiment(method).massRanges;
    ranges.push_back(ranges[0]);
    ranges[1].step = 174.09;
    bench::SetRamp(method, "CE", 10, 130, 2);
    const AcquiredData data = Run(method, compound);
    ASSERT_EQ(data.traces.size(), 2u);
    EXPECT_EQ(data.traces[1].q3, 174.09);
    const double monoisotopic = EnvelopeOf({{"C", 33}, {"H", 41}, {"N", 2}, {"O", 9}}, *elements_).share[0];
    for (std::size_t i = 0; i < 61; ++i) {
        const double ce = 10 + 2 * static_cast<double>(i);
        EXPECT_NEAR(data.traces[0].intensity[i] / (2e5 * monoisotopic * 0.954), FragmentYield(compound, "397.2122", ce),
                    0.004);
        EXPECT_NEAR(data.traces[1].intensity[i] / (2e5 * monoisotopic * 0.954), FragmentYield(compound, "174.0913", ce),
                    0.004);
    }
}

TEST_F(Acquisition, Ms3PrecursorFallsToFivePercentAtTheFormulasAmplitude) {
    const Compound compound = bench::Shipped("reserpine");
    for (const bool lowScale : {false, true}) {
        if (lowScale) model_ = LoadInstrumentModel(bench::share + "/models/dasmyr.ini");
        model_.deadTimeNs = 0;
        MassSpecRecord method = TrapMethod(ScanType::Ms3, compound, 39);
        bench::Experiment(method).secondPrecursor = 397.2122;
        bench::Experiment(method).dynamicFillTime = false;
        bench::Experiment(method).fixedFillTimeMs = 0.1;
        lowScale ? bench::SetRamp(method, "AF2", 0, 0.4F, 0.01F) : bench::SetRamp(method, "AF2", 0, 100, 1);
        const AcquiredData data = Run(method, compound);
        std::vector<double> precursor, fragment;
        for (const CycleRecord& cycle : data.cycles) {
            precursor.push_back(bench::Area(cycle, 396.2, 398.1));
            fragment.push_back(bench::Area(cycle, 364.2, 366.1));
        }
        const Excitation excitation(model_, compound.nodes.at("397.2122"));
        const double fivePercent = excitation.HalfAmplitude() + 2.944 * excitation.Width();
        std::size_t below = 0;
        while (precursor[below] > 0.05 * precursor[0])
            ++below;
        EXPECT_GE(data.cycles[below].rampValue, fivePercent - 1e-3);
        EXPECT_LT(data.cycles[below - 1].rampValue, fivePercent + 0.2 * excitation.Width());
        // The fragment takes its share of what the precursor lost, and goes when the precursor is ejected.
        EXPECT_NEAR(fragment[below] / precursor[0], 0.35 * 0.95, 0.02);
        EXPECT_LT(fragment.back() / fragment[below], 0.1);
        EXPECT_EQ(bench::Area(data.cycles[below], 100, 103.2), 0);
    }
}

TEST_F(Acquisition, LowMassCutoffHidesLightFragments) {
    const Compound compound = bench::Shipped("taurocholate");
    MassSpecRecord method = TrapMethod(ScanType::Ms3, compound, 49, 60);
    bench::Experiment(method).secondPrecursor = 124.0074;
    bench::Experiment(method).massRanges[0].compoundParameters[5].value = 18;
    model_.lowMassCutoff = 0.6;
    EXPECT_GT(bench::Area(Run(method, compound).cycles[0], 79.5, 80.5), 0);
    model_.lowMassCutoff = 0.65;
    EXPECT_EQ(bench::Area(Run(method, compound).cycles[0], 79.5, 80.5), 0);
    EXPECT_GT(bench::Area(Run(method, compound).cycles[0], 106.5, 107.5), 0);
}

TEST_F(Acquisition, WrongPolarityLeavesNoAnalyte) {
    const Compound compound = bench::Shipped("reserpine");
    for (const ScanType type : {ScanType::EnhancedResolution, ScanType::EnhancedProductIon}) {
        MassSpecRecord method = TrapMethod(type, compound, 40);
        bench::Experiment(method).polarity = 1;
        EXPECT_EQ(bench::Sum(Run(method, compound).cycles[0].intensity), 0);
        EXPECT_EQ(Run(method, compound).cycles[0].mz.size(), 2u);
    }
    MassSpecRecord method = bench::Method(ScanType::Q1MultipleIon, compound, {609.28, 609.28, 0, 100, {}}, 10);
    bench::Experiment(method).polarity = 1;
    EXPECT_EQ(Run(method, compound).traces[0].intensity[0], 0);
}

TEST_F(Acquisition, CountingNoiseFallsWithTheSquareRootOfTheScans) {
    const Compound compound = bench::Shipped("reserpine");
    MassSpecRecord method = bench::Method(ScanType::Q1MultipleIon, compound, {609.28, 609.28, 0, 5, {}}, 10);
    method.periods[0].cycles = 3000;
    AcquisitionContext context;
    context.noiseLevel = 0;
    const double expected = Run(method, compound).traces[0].intensity[0];
    for (const int scans : {1, 4, 16}) {
        bench::Experiment(method).scansToSum = scans;
        const auto trace = Run(method, compound, context).traces[0].intensity;
        double square = 0;
        for (const double value : trace)
            square += (value - expected) * (value - expected) / 3000;
        EXPECT_NEAR(bench::Sum(trace) / 3000 / expected, 1, 0.005) << scans;
        EXPECT_NEAR(std::sqrt(square) / expected, 1 / std::sqrt(expected * 0.005 * scans), 0.002) << scans;
    }
}

TEST_F(Acquisition, CountedTrapSpectraAverageToTheExpectedOnes) {
    const Compound compound = bench::Shipped("verapamil");
    model_.sprayRsd = model_.massOffsetSigmaDa = model_.scanJitterDa = model_.massDriftDaPerHour = 0;
    MassSpecRecord method = bench::Method(ScanType::EnhancedProductIon, compound, {150, 330, 0.06, 0.06, {}}, 37);
    method.periods[0].cycles = 400;
    AcquisitionContext expectedValues;
    expectedValues.countingStatistics = false;
    const CycleRecord expected = Run(method, compound, expectedValues).cycles[0];
    const AcquiredData counted = Run(method, compound, AcquisitionContext());
    for (const auto& [low, high, tolerance] :
         {std::tuple{164.0, 166.5, 0.01}, {302.0, 304.5, 0.02}, {170.0, 300.0, 0.05}}) {
        double sum = 0;
        for (const CycleRecord& cycle : counted.cycles)
            sum += bench::Area(cycle, low, high) / 400;
        EXPECT_NEAR(sum / bench::Area(expected, low, high), 1, tolerance) << low;
    }
}

TEST_F(Acquisition, SaturationGivesFlatTopsAndNoCrash) {
    Compound compound = bench::Shipped("reserpine");
    compound.intensity *= 1e4;
    MassSpecRecord method = TrapMethod(ScanType::EnhancedProductIon, compound, 40);
    bench::Experiment(method).dynamicFillTime = false;
    const CycleRecord cycle = Run(method, compound, AcquisitionContext()).cycles[0];
    EXPECT_LT(*std::max_element(cycle.intensity.begin(), cycle.intensity.end()), 5.0001e7);
    EXPECT_GT(bench::Sum(cycle.intensity), 1e8);
}

TEST_F(Acquisition, MultiplyChargedIonsStandCloser) {
    Compound compound;
    compound.root = "P";
    compound.ionFormula = "C60H90N10O10";
    compound.charge = 2;
    compound.dpHigh = 100;
    compound.nodes["P"] = {"P", 551.35, 2, "", 60, 5, {}, 1, 0};
    MassSpecRecord method = bench::Method(ScanType::EnhancedResolution, compound, {540, 560, 0.03, 0.12, {}}, 10);
    bench::Experiment(method).scanRate = 250;
    bench::Experiment(method).q1Resolution = 3;
    const CycleRecord cycle = Run(method, compound).cycles[0];
    EXPECT_NEAR(bench::Area(cycle, 551.61, 552.1) / bench::Area(cycle, 551.1, 551.6), 0.70, 0.03);
}

TEST_F(Acquisition, RefusesWhatTheModelCannotDo) {
    const Compound compound = bench::Shipped("reserpine");
    const MassSpecRecord good = TrapMethod(ScanType::Ms3, compound, 40);
    struct Case {
        void (*spoil)(MassSpecRecord&, ExperimentRecord&);
        const char* message;
    };
    const Case cases[] = {
        {[](auto& m, auto&) { m.periods.clear(); }, "it has no experiment"},
        {[](auto& m, auto&) { m.operatingMode = 7; }, "operating mode 7 is not one of Orvanel LIT"},
        {[](auto&, auto& e) { e.scanType = 5; }, "scan type 5 is unknown; 1, 4, 11, 12 and 13 are known"},
        {[](auto&, auto& e) { e.scanRate = 15; }, "the scan rate is 15 Da/s, offered are 250, 1000, 4000, 10000"},
        {[](auto&, auto& e) { e.massRanges.clear(); }, "its experiment has no mass range"},
        {[](auto&, auto& e) { e.massRanges[0].stop = 1701; }, "the end of a mass range is 1701, allowed is 50 to 1700"},
        {[](auto&, auto& e) { e.massRanges[0].step = 0; },
         "the step of a mass range in Da is 0, allowed is 0.001 to 10"},
        {[](auto&, auto& e) { e.secondPrecursor = 0; }, "the second precursor is 0, allowed is 50 to 1700"},
        {[](auto& m, auto&) { bench::SetRamp(m, "AF2", 0, 120, 2); },
         "the absolute value of parameter AF2 is 120, allowed is 0 to 100"},
        {[](auto&, auto& e) { e.massRanges[0].compoundParameters[3].value = 250; },
         "the absolute value of parameter CE is 250, allowed is 0 to 200"},
        {[](auto& m, auto&) { m.periods[0].cycles = 0; }, "the number of cycles is 0, allowed is 1 to 100000"},
    };
    for (const Case& faulty : cases) {
        MassSpecRecord method = good;
        bench::Experiment(method).secondPrecursor = 397.2;
        faulty.spoil(method, bench::Experiment(method));
        EXPECT_EQ(bench::ErrorOf([&] { Run(method, compound); }),
                  std::string("The method cannot be acquired: ") + faulty.message);
    }
    model_ = LoadInstrumentModel(bench::share + "/models/orvanel_tq.ini");
    EXPECT_EQ(bench::ErrorOf([&] { Run(good, compound); }),
              "The method cannot be acquired: scan type 13 needs a linear ion trap, and Orvanel TQ is none");
}

}  // namespace
}  // namespace orvanel
