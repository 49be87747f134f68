#include "orvanel/explore/PeakFinder.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "tests/orvanel/explore/SyntheticSpectrum.h"

namespace {

using orvanel::FindPeaks;
using orvanel::Peak;

struct Resolution {
    double fwhm;
    double step;
};
constexpr Resolution resolutions[] = {{0.19, 0.03}, {0.35, 0.06}, {0.65, 0.10}, {0.99, 0.15}};

const Peak* Nearest(const std::vector<Peak>& peaks, double mz, double tolerance) {
    const Peak* nearest = nullptr;
    for (const Peak& peak : peaks)
        if (std::abs(peak.mz - mz) <= tolerance && (!nearest || std::abs(peak.mz - mz) < std::abs(nearest->mz - mz)))
            nearest = &peak;
    return nearest;
}

double MedianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

/// What product-ion spectra of known lines give, over many spectra. docs/peak-finding.md holds the table it prints.
struct Measured {
    double recall = 0;
    double centroidError = 0;
    double areaError = 0;
    double falsePeaks = 0;    // monoisotopic, a spectrum
    double wrongCharges = 0;  // a spectrum
};

Measured Measure(const Resolution& resolution, double noiseIons, double noiseSpread) {
    constexpr int spectra = 20;
    constexpr double cpsPerIon = 40000.0 / 30;
    TestRandom random(static_cast<std::uint64_t>(1000 * resolution.fwhm + noiseIons));
    std::vector<double> centroidErrors;
    std::vector<double> areaErrors;
    Measured measured;
    double lineCount = 0;
    for (int n = 0; n < spectra; ++n) {
        SyntheticSpectrum spectrum(50, 650, resolution.step, resolution.fwhm);
        std::vector<Line> lines;
        for (double mz = 60; mz < 640; mz += 3 + 2 * resolution.fwhm + 30 * random.Uniform())
            lines.push_back({mz, 200 * std::exp(5 * random.Uniform())});
        spectrum.Add(lines);
        spectrum.AddChemicalNoise(random, noiseIons, noiseSpread);
        spectrum.Count(random, cpsPerIon, 1e-4);
        const auto peaks = FindPeaks(spectrum.mz, spectrum.intensity, true);
        for (const Line& line : lines) {
            ++lineCount;
            const Peak* peak = Nearest(peaks, line.mz, 0.4 * resolution.fwhm);
            if (!peak) continue;
            ++measured.recall;
            centroidErrors.push_back(std::abs(peak->mz - line.mz));
            // The counting statistics of the line itself are no error of the peak list.
            areaErrors.push_back(std::abs(peak->area / (line.ions * cpsPerIon * resolution.step) - 1));
            if (peak->charge > 1) ++measured.wrongCharges;
        }
        for (const Peak& peak : peaks) {
            bool real = false;
            for (const Line& line : lines)
                real |= std::abs(line.mz - peak.mz) < resolution.fwhm;
            if (!real && peak.monoisotopic) ++measured.falsePeaks;
        }
    }
    measured.recall /= lineCount;
    measured.centroidError = MedianOf(centroidErrors);
    measured.areaError = MedianOf(areaErrors);
    measured.falsePeaks /= spectra;
    measured.wrongCharges /= spectra;
    return measured;
}

TEST(PeakFinder, FindsLinesOfTwoHundredIonsAndMoreAndLittleElse) {
    std::printf("FWHM  noise  recall  centroid  area    false/spectrum\n");
    for (const Resolution& resolution : resolutions)
        for (const double noiseIons : {0.0, 0.5, 3.0, 30.0}) {
            const Measured measured = Measure(resolution, noiseIons, 0.7);
            std::printf("%.2f  %5.1f  %.3f   %.4f    %.2f %%  %.2f\n", resolution.fwhm, noiseIons, measured.recall,
                        measured.centroidError, 100 * measured.areaError, measured.falsePeaks);
            // Noise of 30 ions reaches 200 ions now and then, so that lines of 200 ions cannot be told from it.
            EXPECT_GE(measured.recall, noiseIons < 10 ? 0.98 : 0.85);
            EXPECT_LE(measured.centroidError, 0.02);
            EXPECT_LE(measured.areaError, 0.04);
            EXPECT_LT(measured.falsePeaks, 0.3);
            EXPECT_EQ(measured.wrongCharges, 0);
        }
}

/// Envelopes in ions: spacing is 1.0034 / charge, or 1.997 for every second one of a chlorine pattern.
std::vector<Line> Envelope(double mz, int charge, const std::vector<double>& ions) {
    std::vector<Line> lines;
    for (std::size_t k = 0; k < ions.size(); ++k)
        lines.push_back({mz + (ions.size() == 5 ? 0.9985 : 1.00335) * static_cast<double>(k) / charge, ions[k]});
    return lines;
}

struct Expected {
    double mz;
    int charge;
    bool monoisotopic;
};

struct IsotopeCase {
    const char* name;
    double fwhm;
    std::vector<Line> lines;
    std::vector<Expected> expected;
};

std::vector<Line> operator+(std::vector<Line> a, const std::vector<Line>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TEST(PeakFinder, AssignsIsotopesAndChargesOnlyWhereThePatternSaysSo) {
    const std::vector<IsotopeCase> cases = {
        {"carbon envelope",
         0.19,
         Envelope(609.28, 1, {20000, 7440, 1720}),
         {{609.28, 1, true}, {610.283, 1, false}, {611.287, 1, false}}},
        {"two chlorines",
         0.35,
         Envelope(277.087, 1, {20000, 2800, 13020, 1760, 2200}),
         {{277.087, 1, true}, {278.085, 1, false}, {279.084, 1, false}, {280.08, 1, false}, {281.08, 1, false}}},
        {"doubly charged",
         0.19,
         Envelope(600.3, 2, {20000, 13000, 5200, 1500}),
         {{600.3, 2, true}, {600.802, 2, false}, {601.303, 2, false}}},
        {"isolated without isotopes", 0.65, {{397.21, 5000}}, {{397.21, 0, true}}},
        {"a fragment one dalton above a weaker one",
         0.35,
         {{151.03, 3000}, {152.035, 9000}},
         {{151.03, 0, true}, {152.035, 0, true}}},
        {"a fragment one dalton above an equal one",
         0.35,
         {{151.03, 9000}, {152.035, 8000}},
         {{151.03, 0, true}, {152.035, 0, true}}},
        {"a fragment two daltons above without M+1",
         0.35,
         {{250.1, 9000}, {252.1, 5000}},
         {{250.1, 0, true}, {252.1, 0, true}}},
        {"an interference half a dalton above",
         0.19,
         Envelope(609.28, 1, {20000, 7440, 1720}) + Envelope(609.78, 1, {9000, 3300, 760}),
         {{609.28, 1, true}, {609.78, 1, true}, {610.283, 1, false}, {610.783, 1, false}}},
        {"an unrelated line half a dalton above",
         0.19,
         {{300.1, 20000}, {300.6, 5000}},
         {{300.1, 0, true}, {300.6, 0, true}}},
        {"weak isotope near the counting limit",
         0.35,
         Envelope(195.088, 1, {2000, 190}),
         {{195.088, 1, true}, {196.09, 1, false}}},
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
            std::size_t expectedMono = 0;
            for (const Expected& expected : example.expected) {
                const Peak* peak = Nearest(peaks, expected.mz, 0.1);
                ASSERT_NE(peak, nullptr) << expected.mz;
                EXPECT_EQ(peak->charge, expected.charge) << expected.mz;
                EXPECT_EQ(peak->monoisotopic, expected.monoisotopic) << expected.mz;
                expectedMono += expected.monoisotopic ? 1 : 0;
            }
            EXPECT_EQ(static_cast<std::size_t>(std::count_if(peaks.begin(), peaks.end(),
                                                             [](const Peak& peak) { return peak.monoisotopic; })),
                      expectedMono);
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
            withParent.Add(Envelope(609.28, 1, {20000, 7440, 1720}));
            withParent.Count(random, 700, 0.01);
            const auto peaks = FindPeaks(withParent.mz, withParent.intensity, true);
            const Peak* parent = Nearest(peaks, 609.28, 0.05);
            ASSERT_NE(parent, nullptr) << seed << " " << spread;
            EXPECT_TRUE(parent->monoisotopic);
        }
    EXPECT_LT(found, 24);  // in 80 spectra
}

TEST(PeakFinder, OddInputsGiveNoPeaksOrThePlainOnes) {
    EXPECT_TRUE(FindPeaks({}, {}, true).empty());
    EXPECT_TRUE(FindPeaks({100}, {0}, true).empty());
    EXPECT_TRUE(FindPeaks({100, 100.1, 100.2}, {0, 0, 0}, true).empty());
    EXPECT_TRUE(FindPeaks({100, 100.1, 100.2, 300, 300.1, 300.2}, {0, 7, 0, 0, 7, 0}, true).empty());
    EXPECT_TRUE(FindPeaks({100, 100, 100, 100}, {5, 5, 5, 5}, true).size() <= 1);
    const auto lines = FindPeaks({100, 150, 200, 201.0034}, {10, 0, 1000, 100}, false);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].area, 10);
    EXPECT_EQ(lines[1].charge, 1);
    EXPECT_TRUE(lines[1].monoisotopic);
    EXPECT_FALSE(lines[2].monoisotopic);

    // Noise-free expected values have no smallest count: the two lines and nothing of their far tails.
    SyntheticSpectrum smooth(90, 120, 0.06, 0.35);
    std::vector<double> expected;
    for (const double mz : smooth.mz)
        expected.push_back(1e6 * std::exp(-0.5 * std::pow((mz - 100) / 0.149, 2)) +
                           1e3 * std::exp(-0.5 * std::pow((mz - 110) / 0.149, 2)));
    EXPECT_EQ(FindPeaks(smooth.mz, expected, true).size(), 2u);
}

TEST(PeakFinder, CostGrowsLinearly) {
    TestRandom random(7);
    SyntheticSpectrum spectrum(50, 3050, 0.03, 0.19);
    spectrum.AddChemicalNoise(random, 50, 0.7);
    for (double mz = 60; mz < 3000; mz += 11)
        spectrum.Add({mz, 50000});
    spectrum.Count(random, 1000, 0.7);
    EXPECT_GT(spectrum.mz.size(), 90000u);
    EXPECT_GT(FindPeaks(spectrum.mz, spectrum.intensity, true).size(), 260u);
}

}  // namespace
