// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/SpectrumNoise.h"

#include <algorithm>
#include <cmath>

namespace orvanel {
namespace {

constexpr double windowDa = 100;
constexpr double windowStepDa = 25;
constexpr std::size_t fewestMasses = 15;    // a narrower spectrum may hold nothing but signals
constexpr double noisePeaksAllowed = 0.05;  // a spectrum, as expected if the noise is log-normal
constexpr double lowestSpread = 0.4;  // of the natural logarithm; keeps a lucky estimate from letting noise through
constexpr double highestSpread = 1.2;
constexpr double assumedSpread = 1.0;                         // where too few masses hold ions for an estimate
constexpr double sigmaPerMeanDeviation = 1.2533141373155001;  // sqrt(pi / 2)
constexpr double fewIons = 10;
constexpr double neighbourReachDa = 250;
constexpr double shortestFallDa = 300;    // over which noise falls to 1/e towards higher m/z; 500 is usual
constexpr double neighbourTolerance = 3;  // how far estimates of the same noise differ

/// The value that a standard normal variable exceeds with the probability p, 0 < p < 0.5.
/// Abramowitz and Stegun, Handbook of Mathematical Functions, 26.2.23; absolute error below 4.5e-4.
double UpperQuantile(double p) {
    const double t = std::sqrt(-2 * std::log(p));
    return t - (2.515517 + t * (0.802853 + t * 0.010328)) / (1 + t * (1.432788 + t * (0.189269 + t * 0.001308)));
}

/// The standard deviation of the heights' natural logarithm, from the half below the median. Heights of few ions come
/// in whole ions, so that many fall together: the fewer ions, the less the estimate may go below the assumed spread.
double Spread(const std::vector<double>& sorted, double ionHeight) {
    const std::size_t half = sorted.size() / 2;
    const double median = sorted[half];
    const double floor = std::max(ionHeight, median * std::exp(-3 * highestSpread));
    double sum = 0;
    for (std::size_t i = 0; i < half; ++i)
        sum += std::log(median / std::max(sorted[i], floor));
    const double estimate = sum / static_cast<double>(half) * sigmaPerMeanDeviation;
    const double doubt = ionHeight > 0 ? std::exp(-median / (fewIons * ionHeight)) : 0;
    const double lowest = lowestSpread + (assumedSpread - lowestSpread) * doubt;
    return std::clamp(estimate, lowest, highestSpread);
}

/// @param heights as many as there are nominal masses, or more
/// @param quantile of the normal distribution
double Threshold(std::vector<double> heights, double ionHeight, double quantile) {
    std::sort(heights.begin(), heights.end());
    const double median = heights[heights.size() / 2];
    if (median > 0) return median * std::exp(quantile * Spread(heights, ionHeight));
    // Less than half of the masses hold ions: the mean number of ions a mass follows from the share of empty ones.
    const auto empty = static_cast<double>(std::count(heights.begin(), heights.end(), 0.0));
    const double ionsPerMass = -std::log(empty / static_cast<double>(heights.size()));
    return ionsPerMass * ionHeight * std::exp(quantile * assumedSpread);
}

}  // namespace

SpectrumNoise::SpectrumNoise(const std::vector<NoiseSample>& samples, double lowMz, double highMz, double ionHeight) {
    const double allMasses = std::max((highMz - lowMz) / nominalMassDa, 1.0);
    const double quantile = UpperQuantile(noisePeaksAllowed / allMasses);
    auto first = samples.begin();
    for (double low = lowMz;; low += windowStepDa) {
        // The last window takes what is left, so that none is short.
        const bool last = low + windowDa + windowStepDa > highMz;
        const double high = last ? highMz : low + windowDa;
        const double start = last ? std::max(lowMz, high - windowDa) : low;
        while (first != samples.end() && first->mz < std::min(start, low))
            ++first;
        std::vector<double> heights;
        for (auto sample = first; sample != samples.end() && sample->mz <= high; ++sample)
            if (sample->mz >= start) heights.push_back(sample->height);
        // The masses at both ends are covered in part only and have no sample.
        const auto masses = static_cast<std::size_t>(std::max(0.0, (high - start) / nominalMassDa - 1));
        double threshold = 0;
        if (masses >= fewestMasses && !heights.empty()) {
            heights.resize(std::max(heights.size(), masses), 0.0);
            threshold = Threshold(std::move(heights), ionHeight, quantile);
        }
        windows_.push_back({(start + high) / 2, threshold});
        if (last) break;
    }
    LimitByNeighbours();
}

void SpectrumNoise::LimitByNeighbours() {
    const auto estimates = windows_;
    auto first = estimates.begin();
    for (auto& window : windows_) {
        if (window.threshold <= 0) continue;
        while (window.centerMz - first->centerMz > neighbourReachDa)
            ++first;
        for (auto neighbour = first; neighbour != estimates.end(); ++neighbour) {
            const double aboveDa = neighbour->centerMz - window.centerMz;
            if (aboveDa > neighbourReachDa) break;
            const double rise = std::exp(std::max(0.0, aboveDa) / shortestFallDa);
            window.threshold = std::min(window.threshold, neighbourTolerance * rise * neighbour->threshold);
        }
    }
}

double SpectrumNoise::ThresholdAt(double mz) const {
    const auto right = std::lower_bound(windows_.begin(), windows_.end(), mz,
                                        [](const Window& window, double value) { return window.centerMz < value; });
    if (right == windows_.begin()) return right->threshold;
    const auto left = right - 1;
    if (right == windows_.end()) return left->threshold;
    const double share = (mz - left->centerMz) / (right->centerMz - left->centerMz);
    return left->threshold + share * (right->threshold - left->threshold);
}

}  // namespace orvanel
