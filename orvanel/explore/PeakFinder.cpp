// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/PeakFinder.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

#include "orvanel/explore/IsotopeAssignment.h"
#include "orvanel/explore/PeakDetection.h"
#include "orvanel/explore/SpectrumNoise.h"

namespace orvanel {
namespace {

/// A peak has at least so many ions; fewer are dark counts or the edge of one.
constexpr double fewestIons = 8;
/// Sharper peaks do not melt into one on each nominal mass, which is what the noise is estimated from.
constexpr double narrowestNoiseDa = 0.1;
std::vector<Peak> CentroidPeaks(const std::vector<double>& mz, const std::vector<double>& intensity) {
    std::vector<Peak> peaks;
    const double width = LineWidthDa(mz);
    for (std::size_t i = 0; i < mz.size(); ++i)
        if (intensity[i] > 0)
            peaks.push_back({.mz = mz[i],
                             .intensity = intensity[i],
                             .area = intensity[i],
                             .ions = std::numeric_limits<double>::infinity(),
                             .widthDa = width});
    return peaks;
}

/// Drops what the background explains. A spectrum with many peaks is no place for a single signal to be missed, and
/// hardly one for noise to do harm: there the strongest of what may be background stay, marked as not monoisotopic.
void DropBackground(std::vector<Peak>& peaks, const SpectrumNoise& noise) {
    constexpr std::ptrdiff_t manyPeaks = 5;
    constexpr std::ptrdiff_t longList = 100;
    const auto standsOutOfNoise = [&](const Peak& peak) {
        return peak.widthDa < narrowestNoiseDa || peak.intensity > noise.ThresholdAt(peak.mz);
    };
    std::vector<double> heights;
    for (Peak& peak : peaks) {
        const double level = noise.LevelAt(peak.mz);
        peak.signalToNoise = level > 0 ? peak.intensity / level : 0;
        heights.push_back(peak.intensity);
    }
    double least = std::numeric_limits<double>::infinity();  // height of what stays although it does not stand out
    const std::ptrdiff_t outstanding = std::count_if(peaks.begin(), peaks.end(), standsOutOfNoise);
    if (outstanding >= manyPeaks) {
        const auto last = heights.begin() + std::min(std::max(longList, 2 * outstanding), std::ssize(heights)) - 1;
        std::nth_element(heights.begin(), last, heights.end(), std::greater<>());
        least = *last;
    }
    std::erase_if(peaks, [&](Peak& peak) {
        if (standsOutOfNoise(peak) && peak.intensity > peak.tails) return false;
        if (std::exchange(peak.monoisotopic, false)) peak.charge = 0;
        return peak.intensity < least;
    });
}

}  // namespace

double LineWidthDa(const std::vector<double>& mz) {
    constexpr std::size_t fewestLines = 50;
    constexpr double assumedDa = 0.1;        // of fewer lines
    constexpr double shareOfDistance = 0.8;  // lines stand apart by at least their width
    constexpr double shareOfSmaller = 0.02;  // of the distances, such as those beside an artefact
    constexpr double widestDa = 0.35;
    if (mz.size() < fewestLines) return assumedDa;
    std::vector<double> distances;
    for (std::size_t i = 1; i < mz.size(); ++i)
        distances.push_back(mz[i] - mz[i - 1]);
    const auto low = distances.begin() + static_cast<std::ptrdiff_t>(shareOfSmaller * static_cast<double>(mz.size()));
    std::nth_element(distances.begin(), low, distances.end());
    return std::min(shareOfDistance * *low, widestDa);
}

std::vector<Peak> FindPeaks(const std::vector<double>& mz, const std::vector<double>& intensity, bool profile) {
    if (mz.empty()) return {};
    std::vector<Peak> peaks;
    std::vector<NoiseSample> samples;
    double ionHeight = 0;
    if (profile) {
        const PeakDetection detection(mz, intensity);
        peaks = detection.Peaks();
        samples = detection.NominalMaxima();
        ionHeight = detection.IonHeight();
    } else {
        peaks = CentroidPeaks(mz, intensity);
        for (const Peak& peak : peaks)
            samples.push_back({peak.mz, peak.intensity, 0});
    }
    const SpectrumNoise noise(samples, mz.front(), mz.back(), ionHeight);
    std::erase_if(peaks, [](const Peak& peak) { return peak.ions < fewestIons; });
    // Before the noise goes: an M+1 below the threshold still tells that M+2 is an isotope.
    AssignIsotopes(peaks);
    DropBackground(peaks, noise);
    return peaks;
}

}  // namespace orvanel
