// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/PeakFinder.h"

#include <gtest/gtest.h>

#include "orvanel/explore/SpectrumNoise.h"
#include "tests/orvanel/explore/PickerStudy.h"

namespace {

using orvanel::FindPeaks;
using orvanel::Peak;
using study::Nearest;

/// What the picker owes; bench/PickerStudy.cpp prints the same figures for more.
TEST(PeakFinder, TellsPlacesAreasAndChargesOfSimulatedPeaks) {
    struct Case {
        const char* name;
        StudyConditions conditions;
        double recall = 0.98;
        double centroidError = 0.01;  // Da
        double falseShare = 0.01;
    };
    const Case cases[] = {
        {"sharp lines", {.fwhm = 0.2, .step = 0.03, .noiseIons = 3}, 0.98, 0.003},
        {"lines at unit resolution", {.noiseIons = 3}, 0.98, 0.005},
        {"coarse steps", {.step = 0.15, .noiseIons = 3}, 0.98, 0.005},
        {"wide lines", {.fwhm = 1.0, .step = 0.15}},
        {"lines that noise reaches", {.noiseIons = 30}, 0.98, 0.01, 0.02},
        {"lines everywhere", {.shape = LineShape::gaussian, .everyDa = 2, .darkIons = 0.02, .spectra = 3}},
        {"lines nearly everywhere in noise", {.noiseIons = 30, .everyDa = 4, .spectra = 5}},
        {"lines with long tails",
         {.fwhm = 0.5, .step = 0.08, .shape = LineShape::lorentzianTails, .everyDa = 3, .spectra = 3}},
        {"lines that widen with m/z",
         {.fwhm = 0.5, .step = 0.08, .shape = LineShape::gaussian, .widthExponent = 1, .everyDa = 5, .spectra = 5}},
        {"singly charged envelopes", {.noiseIons = 3, .charge = 1}},
        {"pairs half a width apart between their half heights", {.pairWidths = 1.5, .pairRatio = 3}},
        {"pairs without a valley", {.pairWidths = 1.0}, 0.9},
    };
    for (const Case& example : cases) {
        SCOPED_TRACE(example.name);
        const StudyFigures figures = MeasurePicker(example.conditions);
        EXPECT_GE(figures.recall, example.recall);
        EXPECT_LE(figures.centroidError, example.centroidError);
        EXPECT_LE(std::abs(figures.centroidBias), 0.55 * example.centroidError);
        EXPECT_LE(figures.areaError, example.conditions.shape == LineShape::lorentzianTails ? 0.06 : 0.03);
        EXPECT_LE(figures.falseShare, example.falseShare);
        EXPECT_EQ(figures.chargeWrong, 0);
        if (example.conditions.charge > 0) {
            EXPECT_GE(figures.chargeRight, 0.9);
        }
    }
    const StudyFigures doubly = MeasurePicker({.fwhm = 0.2, .step = 0.03, .noiseIons = 3, .charge = 2});
    EXPECT_GE(doubly.chargeRight, 0.9);
    EXPECT_EQ(doubly.chargeWrong, 0);
}

/// As a filter leaves a spectrum: with values far below one ion, which are no measure of it.
TEST(PeakFinder, TakesTheNoiseOfAFilteredSpectrumFromItsRoughness) {
    TestRandom random(3);
    SyntheticSpectrum spectrum(604, 614, 0.03, 0.19);
    spectrum.Add(Line{609.28, 2000});
    spectrum.Count(random, 100, 0.3);
    for (double& value : spectrum.intensity)
        value += 1e-12;
    EXPECT_EQ(FindPeaks(spectrum.mz, spectrum.intensity, true).size(), 1u);
}

TEST(PeakFinder, TellsIsotopesFromOtherIonsByTheirExactDistance) {
    struct Case {
        const char* name;
        double distanceDa;
        bool isIsotope;
    };
    for (const Case& example : {Case{"13C", 2.0067, true}, Case{"34S", 1.9958, true}, Case{"81Br", 1.99795, true},
                                Case{"two hydrogens", 2.01565, false}}) {
        std::vector<double> mz = {116.0706, 117.0739, 116.0706 + example.distanceDa};
        std::vector<double> intensity = {1000, 60, 400};
        // Many lines close together: this was measured at a high resolution.
        for (int k = 0; k < 60; ++k) {
            mz.push_back(150.1 + 0.02 * k);
            intensity.push_back(900);
        }
        const auto lines = FindPeaks(mz, intensity, false);
        const Peak* third = Nearest(lines, mz[2], 0);
        ASSERT_NE(third, nullptr) << example.name;
        EXPECT_EQ(third->monoisotopic, !example.isIsotope) << example.name;
    }
}

/// Envelopes in ions: spacing is 1.0034 / charge, or 1.997 for every second one of a chlorine pattern.
std::vector<Line> Lines(double mz, int charge, const std::vector<double>& ions) {
    std::vector<Line> lines;
    for (std::size_t k = 0; k < ions.size(); ++k)
        lines.push_back({mz + (ions.size() == 5 ? 0.9985 : 1.00335) * static_cast<double>(k) / charge, ions[k]});
    return lines;
}

struct IsotopeCase {
    const char* name;
    double fwhm;
    std::vector<Line> lines;
    int charge;         ///< of all peaks, 0: none is told
    const char* kinds;  ///< of the lines one by one: monoisotopic, isotope, or whatever (.)
};

std::vector<Line> operator+(std::vector<Line> a, const std::vector<Line>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TEST(PeakFinder, AssignsIsotopesAndChargesOnlyWhereThePatternSaysSo) {
    const auto carbon = Lines(609.28, 1, {20000, 7440, 1720});
    const std::vector<IsotopeCase> cases = {
        {"carbon envelope", 0.19, carbon, 1, "mii"},
        {"two chlorines", 0.35, Lines(277.087, 1, {20000, 2800, 13020, 1760, 2200}), 1, "miiii"},
        {"doubly charged", 0.19, Lines(600.3, 2, {20000, 13000, 5200, 1500}), 2, "mii."},
        {"isolated without isotopes", 0.65, {{397.21, 5000}}, 0, "m"},
        {"one dalton above a weaker one", 0.35, {{151.03, 3000}, {152.035, 9000}}, 0, "mm"},
        {"one dalton above an equal one", 0.35, {{151.03, 9000}, {152.035, 8000}}, 0, "mm"},
        {"two daltons above without M+1", 0.35, {{250.1, 9000}, {252.1, 5000}}, 0, "mm"},
        {"interference at a half", 0.19, carbon + Lines(609.78, 1, {9000, 3300, 760}), 1, "mi.mi."},
        {"sharp, M+2 shown too weak", 0.02, Lines(490.229, 2, {20000, 9000, 1400}), 2, "mii"},
        {"halves too weak for charge 2", 0.19, {{620.24, 10000}, {620.742, 7000}, {621.243, 1100}}, 0, "mmm"},
        {"an unrelated line at a half", 0.19, {{300.1, 20000}, {300.6, 5000}}, 0, "mm"},
        {"weak isotope near the counting limit", 0.35, Lines(195.088, 1, {2000, 190}), 1, "mi"},
    };
    for (const IsotopeCase& example : cases)
        for (std::uint64_t seed = 1; seed <= 5; ++seed) {
            SCOPED_TRACE(std::string(example.name) + ", seed " + std::to_string(seed));
            TestRandom random(seed);
            const double center = example.lines.front().mz;
            SyntheticSpectrum spectrum(center - 15, center + 15, example.fwhm / 6, example.fwhm);
            spectrum.Add(example.lines);
            spectrum.Count(random, 700);
            const auto peaks = FindPeaks(spectrum.mz, spectrum.intensity, true);
            const std::string kinds = example.kinds;
            for (std::size_t i = 0; i < kinds.size(); ++i) {
                if (kinds[i] == '.') continue;
                const Peak* peak = Nearest(peaks, example.lines[i].mz, 0.1);
                ASSERT_NE(peak, nullptr) << i;
                EXPECT_EQ(peak->charge, example.charge) << i;
                EXPECT_EQ(peak->monoisotopic, kinds[i] == 'm') << i;
            }
            EXPECT_EQ(std::count_if(peaks.begin(), peaks.end(), [](const Peak& peak) { return peak.monoisotopic; }),
                      std::count(kinds.begin(), kinds.end(), 'm'));
        }
}

TEST(PeakFinder, NoiseAloneIsNoPeakAndAParentStandsOutOfIt) {
    int found = 0;
    for (std::uint64_t seed = 1; seed <= 40; ++seed)
        for (const double spread : {0.5, 1.0}) {
            TestRandom random(seed);
            SyntheticSpectrum noise(594, 624, 0.03, 0.19);
            noise.AddChemicalNoise(random, 300, spread);
            auto withParent = noise;
            noise.Count(random, 700, 0.01);
            for (const Peak& peak : FindPeaks(noise.mz, noise.intensity, true))
                found += peak.monoisotopic ? 1 : 0;
            withParent.Add(Lines(609.28, 1, {20000, 7440, 1720}));
            withParent.Count(random, 700, 0.01);
            const auto peaks = FindPeaks(withParent.mz, withParent.intensity, true);
            const Peak* parent = Nearest(peaks, 609.28, 0.05);
            ASSERT_NE(parent, nullptr) << seed << " " << spread;
            EXPECT_TRUE(parent->monoisotopic);
        }
    EXPECT_LT(found, 24);  // in 80 spectra
}

TEST(PeakFinder, NoiseEndsNotWithinSomeHundredDaltons) {
    struct Case {
        double busyFrom, busyTo, at, quietAt, most;  ///< most: times the noise of the quiet masses
    };
    for (const Case& example : {Case{900, 1000, 960, 500, 3}, {100, 200, 140, 500, 5}, {500, 600, 550, 300, 3}}) {
        std::vector<orvanel::NoiseSample> samples;
        for (double mz = 100; mz <= 1000; mz += orvanel::nominalMassDa)
            samples.push_back({mz, mz > example.busyFrom && mz < example.busyTo ? 1000.0 : 10.0});
        const orvanel::SpectrumNoise noise(samples, 100, 1000, 1);
        EXPECT_LE(noise.ThresholdAt(example.at), 1.01 * example.most * noise.ThresholdAt(example.quietAt));
        EXPECT_GT(noise.ThresholdAt(example.at), 2 * noise.ThresholdAt(example.quietAt));
    }
    for (const bool up : {false, true}) {  // busy too far for the quiet half to tell
        std::vector<orvanel::NoiseSample> samples;
        for (double mz = 100; mz <= 1000; mz += orvanel::nominalMassDa)
            samples.push_back({mz, (mz > 550) == up ? 1000.0 : 10.0});
        EXPECT_GT(orvanel::SpectrumNoise(samples, 100, 1000, 1).ThresholdAt(up ? 900 : 200), 3000);
    }
}

TEST(PeakFinder, OddInputsGiveNoPeaksOrThePlainOnes) {
    EXPECT_TRUE(FindPeaks({}, {}, true).empty());
    EXPECT_TRUE(FindPeaks({100}, {0}, true).empty());
    EXPECT_TRUE(FindPeaks({100, 100.1, 100.2}, {0, 0, 0}, true).empty());
    EXPECT_TRUE(FindPeaks({100, 100.1, 100.2, 300, 300.1, 300.2}, {0, 7, 0, 0, 7, 0}, true).empty());
    EXPECT_TRUE(FindPeaks({100, 100, 100, 100}, {5, 5, 5, 5}, true).size() <= 1);
    TestRandom random(1);
    for (const double low : {-2.4, -1.6, -0.6, 0.0, 1.0}) {
        SyntheticSpectrum narrow(low, low + 4, 0.1, 0.35);
        narrow.Add(Line{low + 2, 1000});
        narrow.Count(random, 100);
        EXPECT_EQ(FindPeaks(narrow.mz, narrow.intensity, true).size(), 1u) << low;
    }
    const auto lines = FindPeaks({100, 150, 200, 201.0034}, {10, 0, 1000, 100}, false);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].area, 10);
    EXPECT_EQ(lines[1].charge, 1);
    EXPECT_TRUE(lines[1].monoisotopic);
    EXPECT_FALSE(lines[2].monoisotopic);

    // Lines too close together to tell isotopes by, which would take time with the square of their number.
    std::vector<double> dense;
    std::vector<double> heights;
    for (int k = 0; k < 20000; ++k) {
        dense.push_back(100 + 1e-4 * k);
        heights.push_back(k < 10000 ? 1000 : 60);
    }
    const auto all = FindPeaks(dense, heights, false);
    EXPECT_EQ(all.size(), dense.size());
    EXPECT_TRUE(std::all_of(all.begin(), all.end(), [](const Peak& peak) { return peak.monoisotopic; }));

    // Noise-free expected values have no smallest count: the two lines and nothing of their far tails.
    SyntheticSpectrum smooth(90, 120, 0.06, 0.35);
    std::vector<double> expected;
    for (const double mz : smooth.mz)
        expected.push_back(1e6 * std::exp(-0.5 * std::pow((mz - 100) / 0.149, 2)) +
                           1e3 * std::exp(-0.5 * std::pow((mz - 110) / 0.149, 2)));
    EXPECT_EQ(FindPeaks(smooth.mz, expected, true).size(), 2u);
}

}  // namespace
