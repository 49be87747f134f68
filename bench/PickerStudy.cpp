// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/orvanel/explore/PickerStudy.h"

#include <cstdio>

/// Prints how well the peak list tells the truth of simulated profile spectra: the tables of docs/peak-finding.md.

namespace {

void PrintHead(const char* title, const char* firstColumns) {
    std::printf(
        "\n%s\n\n| %s | recall | centroid error (bias), Da | area error | false a spectrum | charge right / unknown / "
        "wrong |\n",
        title, firstColumns);
    int columns = 5;
    for (const char* c = firstColumns; *c != '\0'; ++c)
        columns += *c == '|';
    std::printf("|");
    for (int i = 0; i <= columns; ++i)
        std::printf("---|");
    std::printf("\n");
}

void PrintRow(const StudyConditions& conditions) {
    const StudyFigures figures = MeasurePicker(conditions);
    std::printf(" | %.3f | %.4f (%+.4f) | %.1f %% | %.2f | %.0f / %.0f / %.0f %% |\n", figures.recall,
                figures.centroidError, figures.centroidBias, 100 * figures.areaError, figures.falsePeaks,
                100 * figures.chargeRight, 100 * figures.chargeUnknown, 100 * figures.chargeWrong);
}

struct Resolution {
    double fwhm;
    double step;
};
constexpr Resolution resolutions[] = {{0.20, 0.03}, {0.35, 0.06}, {0.65, 0.10}, {0.80, 0.12}, {1.00, 0.15}};

void StudyNoiseAndWidth() {
    PrintHead("Lines of 200 to 30,000 ions without isotopes", "FWHM (Da) | step (Da) | noise (ions)");
    for (const Resolution& resolution : resolutions)
        for (const double noiseIons : {0.0, 3.0, 30.0}) {
            std::printf("| %.2f | %.2f | %g", resolution.fwhm, resolution.step, noiseIons);
            PrintRow({.fwhm = resolution.fwhm, .step = resolution.step, .noiseIons = noiseIons});
        }
    for (const double step : {0.03, 0.06, 0.15}) {
        std::printf("| 0.65 | %.2f | 3", step);
        PrintRow({.fwhm = 0.65, .step = step, .noiseIons = 3});
    }
}

void StudyIons() {
    PrintHead("From few ions to saturation, FWHM 0.65 Da, step 0.1 Da, noise of 3 ions", "ions");
    for (const double ions : {15.0, 30.0, 60.0, 120.0, 200.0, 1000.0, 10000.0, 100000.0}) {
        std::printf("| %.0f", ions);
        PrintRow({.noiseIons = 3, .fewestIons = ions, .mostIons = ions});
    }
    for (const double ions : {10000.0, 100000.0}) {
        std::printf("| %.0f, half shown at 20,000 ions a point", ions);
        PrintRow({.noiseIons = 3, .fewestIons = ions, .mostIons = ions, .saturationIons = 20000});
    }
}

void StudyCharges() {
    PrintHead("Isotope envelopes of averagine, M of 200 to 30,000 ions",
              "FWHM (Da) | step (Da) | charge | noise (ions)");
    for (const Resolution& resolution : resolutions)
        for (const int charge : {1, 2})
            for (const double noiseIons : {0.0, 3.0}) {
                std::printf("| %.2f | %.2f | %d | %g", resolution.fwhm, resolution.step, charge, noiseIons);
                PrintRow({.fwhm = resolution.fwhm, .step = resolution.step, .noiseIons = noiseIons, .charge = charge});
            }
}

void StudyPairs() {
    PrintHead("Pairs of lines of 200 to 30,000 ions (the first one), FWHM 0.65 Da, step 0.1 Da",
              "distance (FWHM) | second to first");
    for (const double ratio : {1.0, 3.0, 10.0})
        for (const double distance : {0.8, 0.9, 1.0, 1.2, 1.5, 2.0}) {
            std::printf("| %.1f | %g", distance, ratio);
            PrintRow({.pairWidths = distance, .pairRatio = ratio});
        }
}

/// One line every so many Da, of forms that the finder fits and of others.
void StudyDensity() {
    struct Form {
        const char* name;
        LineShape shape;
        double exponent;
    };
    const auto study = [](const char* title, const Form& form, const Resolution& resolution, double noiseIons,
                          double offNominalDa, double darkIons) {
        for (const double everyDa : {20.0, 10.0, 6.0, 5.0, 4.0, 3.0, 2.0, 1.5}) {
            const StudyConditions conditions{.fwhm = resolution.fwhm,
                                             .step = resolution.step,
                                             .noiseIons = noiseIons,
                                             .shape = form.shape,
                                             .widthExponent = form.exponent,
                                             .everyDa = everyDa,
                                             .offNominalDa = offNominalDa,
                                             .darkIons = darkIons,
                                             .spectra = 10};
            const StudyFigures figures = MeasurePicker(conditions);
            std::printf("| %s | %.2f | %g | %.1f | %.1f | %.4f (%+.4f) | %.1f | %.1f |\n", title, resolution.fwhm,
                        everyDa, 100 * figures.recall, 100 * figures.falseShare, figures.centroidError,
                        figures.centroidBias, 100 * figures.areaError, figures.lines / conditions.spectra);
        }
    };
    std::printf(
        "\nLines of 200 to 30,000 ions at all densities\n\n| lines | FWHM (Da) | one line every ... Da | recall, %% | "
        "false monoisotopic, %% | centroid error (bias), Da | area error, %% | lines a spectrum |\n"
        "|---|---|---|---|---|---|---|---|\n");
    const Form gaussian{"Gaussian", LineShape::gaussian, 0};
    for (const Resolution& resolution : {Resolution{0.4, 0.06}, {0.65, 0.1}, {0.8, 0.12}})
        study(gaussian.name, gaussian, resolution, 0, 0, 0.02);
    for (const Form& form : {Form{"Lorentzian tails", LineShape::lorentzianTails, 0},
                             {"tailing", LineShape::tailing, 0},
                             {"fronting", LineShape::fronting, 0},
                             {"width as root of m/z", LineShape::gaussian, 0.5},
                             {"width as m/z", LineShape::gaussian, 1}})
        study(form.name, form, {0.5, 0.08}, 0, 0, 0.02);
    study("weak background (3 ions)", gaussian, {0.65, 0.1}, 3, 0, 0.02);
    study("strong background (30 ions)", gaussian, {0.65, 0.1}, 30, 0, 0.02);
    study("strong background, off nominal masses", gaussian, {0.65, 0.1}, 30, 0.3, 0.02);
    study("baseline (1 ion a point)", gaussian, {0.65, 0.1}, 0, 0, 1);
    study("sharp", gaussian, {0.02, 0.004}, 0, 0, 0.02);
}

}  // namespace

int main() {
    StudyDensity();
    StudyNoiseAndWidth();
    StudyIons();
    StudyCharges();
    StudyPairs();
    return 0;
}
