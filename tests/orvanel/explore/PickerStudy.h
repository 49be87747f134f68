// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "orvanel/explore/PeakFinder.h"
#include "tests/orvanel/explore/SyntheticSpectrum.h"

/// Spectra with known truth, and how well the peak list tells it.

/// What one row of the study is about. Ions of a substance are spread evenly over the logarithm.
struct StudyConditions {
    double fwhm = 0.65;
    double step = 0.1;
    double noiseIons = 0;  ///< median chemical noise at m/z 0, ions a peak
    double fewestIons = 200;
    double mostIons = 30000;
    LineShape shape = LineShape::splitGaussian;
    double widthExponent = 0;  ///< power of m/z that the width follows; fwhm is that at m/z 350
    double everyDa = 0;        ///< above 0: one line every so many Da, give or take a fifth
    double offNominalDa = 0;   ///< how far chemical noise lies off the nominal masses
    double darkIons = 1e-4;    ///< a point
    int charge = 0;         ///< 0: singly charged lines without isotopes; else envelopes of averagine with this charge
    double pairWidths = 0;  ///< above 0: each line has a partner so many FWHM above it
    double pairRatio = 1;   ///< the partner's ions for one of the line's
    double saturationIons = 0;  ///< above 0: ions a point at which the detector shows half
    int spectra = 20;
};

struct StudyFigures {
    double lines = 0;
    double recall = 0;         ///< of the lines that count: enough ions, and no stronger one within 1.5 FWHM
    double centroidError = 0;  ///< Da, median of the absolute errors
    double centroidBias = 0;   ///< Da, median of the errors
    double areaError = 0;      ///< median of the absolute relative errors
    double falsePeaks = 0;     ///< peaks taken as monoisotopic that are not, a spectrum
    double falseShare = 0;     ///< the same of all peaks taken as monoisotopic
    double chargeRight = 0;    ///< shares of the monoisotopic lines that were found
    double chargeUnknown = 0;
    double chargeWrong = 0;
};

namespace study {

struct KnownLine {
    Line line;
    int charge = 0;  ///< 0: singly charged without isotopes
    bool monoisotopic = true;
};

inline double MedianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

inline const orvanel::Peak* Nearest(const std::vector<orvanel::Peak>& peaks, double mz, double tolerance) {
    const orvanel::Peak* nearest = nullptr;
    for (const auto& peak : peaks)
        if (std::abs(peak.mz - mz) <= tolerance && (!nearest || std::abs(peak.mz - mz) < std::abs(nearest->mz - mz)))
            nearest = &peak;
    return nearest;
}

/// The isotopes of averagine: their number follows Poisson's law with mean 0.00054 for each Da.
inline std::vector<KnownLine> Envelope(double mz, int charge, double ions) {
    const double mean = 0.00054 * mz * charge;
    std::vector<KnownLine> lines;
    double share = 1;
    for (int k = 0; ions * share > 1 && k < 12; share *= mean / ++k)
        lines.push_back({{mz + 1.00335 * k / charge, ions * share}, charge, k == 0});
    return lines;
}

inline std::vector<KnownLine> Substances(const StudyConditions& conditions, TestRandom& random) {
    std::vector<KnownLine> lines;
    const double span = std::log(conditions.mostIons / conditions.fewestIons);
    const double room = 3 + (2 + conditions.pairWidths) * conditions.fwhm + (conditions.charge > 0 ? 5 : 0);
    const auto next = [&](double mz) {
        return mz + (conditions.everyDa > 0 ? conditions.everyDa * (0.8 + 0.4 * random.Uniform())
                                            : room + 30 * random.Uniform());
    };
    for (double mz = 60; mz < 640; mz = next(mz)) {
        const double ions = conditions.fewestIons * std::exp(span * random.Uniform());
        if (conditions.charge > 0) {
            for (const auto& line : Envelope(mz, conditions.charge, ions))
                lines.push_back(line);
            continue;
        }
        lines.push_back({{mz, ions}});
        // Every second one stays alone, for the picker learns the width from what it sees.
        if (conditions.pairWidths > 0 && random.Uniform() < 0.5)
            lines.push_back({{mz + conditions.pairWidths * conditions.fwhm, ions * conditions.pairRatio}});
    }
    return lines;
}

inline double WidthAt(const StudyConditions& conditions, double mz) {
    return conditions.fwhm * std::pow(mz / 350, conditions.widthExponent);
}

/// Whether the picker owes this line. In a study of pairs those count that have a partner.
inline bool Counts(const StudyConditions& conditions, const std::vector<KnownLine>& all, const KnownLine& one) {
    const bool isStudyOfPairs = conditions.pairWidths > 0;
    const double reach = (isStudyOfPairs ? conditions.pairWidths + 0.1 : 1.5) * WidthAt(conditions, one.line.mz);
    const bool hasNeighbour = std::any_of(all.begin(), all.end(), [&](const KnownLine& other) {
        return &other != &one && (isStudyOfPairs || other.line.ions > one.line.ions) &&
               std::abs(other.line.mz - one.line.mz) < reach;
    });
    return one.line.ions >= conditions.fewestIons && hasNeighbour == isStudyOfPairs;
}

/// The spectra of a row, with what is in them.
struct KnownSpectrum {
    std::vector<double> mz;
    std::vector<double> intensity;
    std::vector<KnownLine> lines;
};

inline constexpr double cpsPerIon = 40000.0 / 30;

inline std::vector<KnownSpectrum> SpectraOf(const StudyConditions& conditions) {
    TestRandom random(static_cast<std::uint64_t>(1000 * conditions.fwhm + conditions.noiseIons));
    std::vector<KnownSpectrum> spectra;
    for (int n = 0; n < conditions.spectra; ++n) {
        SyntheticSpectrum spectrum(50, 660, conditions.step,
                                   LineForm{conditions.fwhm, conditions.shape, conditions.widthExponent});
        auto lines = Substances(conditions, random);
        for (const auto& known : lines)
            spectrum.Add(known.line);
        spectrum.AddChemicalNoise(random, conditions.noiseIons, 0.7, conditions.offNominalDa);
        spectrum.Count(random, cpsPerIon, conditions.darkIons, conditions.saturationIons);
        spectra.push_back({std::move(spectrum.mz), std::move(spectrum.intensity), std::move(lines)});
    }
    return spectra;
}

}  // namespace study

inline StudyFigures MeasurePicker(const StudyConditions& conditions) {
    using namespace study;
    std::vector<double> errors, absoluteErrors, areaErrors;
    StudyFigures figures;
    double found = 0, charged = 0;
    double taken = 0;
    for (const KnownSpectrum& spectrum : SpectraOf(conditions)) {
        const auto& lines = spectrum.lines;
        const auto peaks = orvanel::FindPeaks(spectrum.mz, spectrum.intensity, true);
        for (const auto& known : lines) {
            if (!Counts(conditions, lines, known)) continue;
            ++figures.lines;
            const auto* peak = Nearest(peaks, known.line.mz, 0.4 * WidthAt(conditions, known.line.mz));
            if (!peak) continue;
            ++found;
            errors.push_back(peak->mz - known.line.mz);
            absoluteErrors.push_back(std::abs(errors.back()));
            areaErrors.push_back(std::abs(peak->area / (known.line.ions * cpsPerIon * conditions.step) - 1));
            if (!known.monoisotopic) continue;
            ++charged;
            if (peak->charge == std::max(known.charge, 1))
                ++figures.chargeRight;
            else
                ++(peak->charge == 0 ? figures.chargeUnknown : figures.chargeWrong);
        }
        for (const auto& peak : peaks) {
            taken += peak.monoisotopic ? 1 : 0;
            figures.falsePeaks +=
                peak.monoisotopic && std::none_of(lines.begin(), lines.end(), [&](const auto& known) {
                    return known.monoisotopic && std::abs(known.line.mz - peak.mz) < 0.5 * WidthAt(conditions, peak.mz);
                });
        }
    }
    figures.recall = found / figures.lines;
    figures.centroidError = MedianOf(absoluteErrors);
    figures.centroidBias = MedianOf(errors);
    figures.areaError = MedianOf(areaErrors);
    figures.falseShare = figures.falsePeaks / std::max(taken, 1.0);
    figures.falsePeaks /= conditions.spectra;
    for (double* share : {&figures.chargeRight, &figures.chargeUnknown, &figures.chargeWrong})
        *share /= std::max(charged, 1.0);
    return figures;
}
