// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/PeakFinder.h"

#include <algorithm>
#include <limits>

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
            peaks.push_back(
                {mz[i], intensity[i], intensity[i], std::numeric_limits<double>::infinity(), width, 0, true});
    return peaks;
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
            samples.push_back({peak.mz, peak.intensity});
    }
    const SpectrumNoise noise(samples, mz.front(), mz.back(), ionHeight);
    std::erase_if(peaks, [](const Peak& peak) { return peak.ions < fewestIons; });
    // Before the noise goes: an M+1 below the threshold still tells that M+2 is an isotope.
    AssignIsotopes(peaks);
    std::erase_if(peaks, [&](const Peak& peak) {
        return peak.widthDa >= narrowestNoiseDa && !(peak.intensity > noise.ThresholdAt(peak.mz));
    });
    return peaks;
}

}  // namespace orvanel
