// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/SpectrumNoise.h"

#include <algorithm>
#include <cmath>

#include "orvanel/explore/Median.h"

namespace orvanel {
namespace {

constexpr double windowDa = 100;
constexpr double windowStepDa = 25;
constexpr std::size_t fewestMasses = 15;    // a narrower spectrum may hold nothing but signals
constexpr double noisePeaksAllowed = 0.05;  // a spectrum, as expected if the noise is log-normal
constexpr double lowestSpread = 0.4;  // of the natural logarithm; keeps a lucky estimate from letting noise through
constexpr double highestSpread = 1.2;
constexpr double assumedSpread = 1;                           // where too few masses hold ions for an estimate
constexpr double sigmaPerMeanDeviation = 1.2533141373155001;  // sqrt(pi / 2)
constexpr double fewIons = 10;
constexpr double fewOutstanding = 0.1;  // share of the masses
constexpr double leastFilled = 0.7;     // share of the masses that a background of more than single ions is seen on
constexpr double neighbourReachDa = 250;
constexpr double shortestFallDa = 300;    // over which noise falls to 1/e towards higher m/z; 500 is usual
constexpr double neighbourTolerance = 3;  // how far estimates of the same noise differ

struct Background {
    double level = 0;
    double threshold = 0;
    bool known = false;
};

/// The value that a standard normal variable exceeds with the probability p, 0 < p < 0.5.
/// Abramowitz and Stegun, Handbook of Mathematical Functions, 26.2.23; absolute error below 4.5e-4.
double UpperQuantile(double p) {
    const double t = std::sqrt(-2 * std::log(p));
    return t - (2.515517 + t * (0.802853 + t * 0.010328)) / (1 + t * (1.432788 + t * (0.189269 + t * 0.001308)));
}

/// The standard deviation of the heights' natural logarithm, from the half below the median, where signals cannot
/// reach.
/// @param sorted from the lowest to the highest, the middle one above 0
double Spread(const std::vector<double>& sorted, double ionHeight) {
    constexpr double lowestShare = 0.01;  // of the median, that a height counts as at least
    const std::size_t half = sorted.size() / 2;
    const double median = sorted[half];
    const double floor = std::max(ionHeight, lowestShare * median);
    double sum = 0;
    for (std::size_t i = 0; i < half; ++i)
        sum += std::max(0.0, std::log(median / std::max(sorted[i], floor)));
    return sum / static_cast<double>(half) * sigmaPerMeanDeviation;
}

/// What a background of the lowest so many heights would be; none where they do not look like one.
/// @param sorted from the lowest to the highest, at least fewestMasses
/// @param quantile of the normal distribution
Background Assume(const std::vector<double>& sorted, double ionHeight, double quantile) {
    // Hardly any of a background's own heights are so much lower than its usual one.
    constexpr double leastOfUsual = 0.02;
    const auto ions = std::upper_bound(sorted.begin(), sorted.end(), ionHeight / 2);
    const double usual = ions == sorted.end() ? 0 : *(ions + (sorted.end() - ions) / 2);
    const auto filled = sorted.end() - std::upper_bound(ions, sorted.end(), leastOfUsual * usual);
    const double filledShare = static_cast<double>(filled) / static_cast<double>(sorted.size());
    if (filledShare < leastFilled) {
        // The mean number of ions a mass follows from the share of empty ones, by Poisson's law.
        const double level = -std::log(1 - filledShare) * ionHeight;
        return {level, level * std::exp(quantile * assumedSpread), true};
    }
    const double level = sorted[sorted.size() / 2];
    const double spread = Spread(sorted, ionHeight);
    // Heights of few ions come in whole ions, so that many fall together: the fewer ions, the less is the estimate to
    // be believed.
    const double doubt = ionHeight > 0 ? std::exp(-level / (fewIons * ionHeight)) : 0;
    const double lowest = lowestSpread + (assumedSpread - lowestSpread) * doubt;
    // What differs more than noise does, chance in an estimate of few masses included, is no background.
    const double impossible = highestSpread * (1 + 2 / std::sqrt(static_cast<double>(sorted.size())));
    if (spread > impossible && level > fewIons * ionHeight) return {};
    return {level, level * std::exp(quantile * std::clamp(spread, lowest, highestSpread)), true};
}

/// The heights on the masses where a usual peak of the window's would be seen.
std::vector<double> SeenHeights(const std::vector<NoiseSample>& samples) {
    constexpr double usualShare = 0.3;
    std::vector<double> filled;
    for (const NoiseSample& sample : samples)
        if (sample.height > sample.doubt) filled.push_back(sample.height);
    const double usual = filled.empty() ? 0 : Median(std::move(filled));
    std::vector<double> heights;
    for (const NoiseSample& sample : samples)
        if (sample.height > sample.doubt || sample.doubt < usualShare * usual) heights.push_back(sample.height);
    return heights;
}

/// @param heights one a nominal mass
Background Estimate(std::vector<double> heights, double ionHeight, double quantile) {
    std::sort(heights.begin(), heights.end());
    while (heights.size() >= fewestMasses) {
        const Background background = Assume(heights, ionHeight, quantile);
        const auto outstanding = std::upper_bound(heights.begin(), heights.end(), background.threshold);
        // A few do not move the median, and may be the background's own.
        const auto count = static_cast<double>(heights.end() - outstanding);
        if (count <= fewOutstanding * static_cast<double>(heights.size()) || !(background.level > 0)) return background;
        heights.erase(outstanding, heights.end());
    }
    return {};
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
        std::vector<NoiseSample> inside;
        for (auto sample = first; sample != samples.end() && sample->mz <= high; ++sample)
            if (sample->mz >= start) inside.push_back(*sample);
        // The masses at both ends are covered in part only and have no sample.
        const auto masses = static_cast<std::size_t>(std::max(0.0, (high - start) / nominalMassDa - 1));
        Background background;
        if (masses >= fewestMasses && !inside.empty()) {
            inside.resize(std::max(inside.size(), masses));
            background = Estimate(SeenHeights(inside), ionHeight, quantile);
        }
        windows_.push_back({(start + high) / 2, background.level, background.threshold, background.known});
        if (last) break;
    }
    FillUnknown();
    LimitByNeighbours();
}

/// A window that does not tell has the lesser one of the backgrounds beside it.
void SpectrumNoise::FillUnknown() {
    const auto estimates = windows_;
    for (std::size_t i = 0; i < windows_.size(); ++i) {
        if (windows_[i].known) continue;
        const Window* lesser = nullptr;
        const auto look = [&](std::size_t from, std::ptrdiff_t step) {
            for (std::size_t k = from; k < estimates.size(); k += static_cast<std::size_t>(step)) {
                if (std::abs(estimates[k].centerMz - windows_[i].centerMz) > neighbourReachDa) return;
                if (!estimates[k].known) continue;
                if (!lesser || estimates[k].threshold < lesser->threshold) lesser = &estimates[k];
                return;
            }
        };
        look(i - 1, -1);
        look(i + 1, 1);
        if (!lesser) continue;
        windows_[i].level = lesser->level;
        windows_[i].threshold = lesser->threshold;
    }
}

void SpectrumNoise::LimitByNeighbours() {
    const auto estimates = windows_;
    auto first = estimates.begin();
    for (auto& window : windows_) {
        while (window.centerMz - first->centerMz > neighbourReachDa)
            ++first;
        for (auto neighbour = first; neighbour != estimates.end(); ++neighbour) {
            const double aboveDa = neighbour->centerMz - window.centerMz;
            if (aboveDa > neighbourReachDa) break;
            if (!neighbour->known) continue;
            const double most = neighbourTolerance * std::exp(std::max(0.0, aboveDa) / shortestFallDa);
            window.threshold = std::min(window.threshold, most * neighbour->threshold);
            window.level = std::min(window.level, most * neighbour->level);
        }
    }
}

double SpectrumNoise::Interpolated(double mz, double Window::*what) const {
    const auto right = std::lower_bound(windows_.begin(), windows_.end(), mz,
                                        [](const Window& window, double value) { return window.centerMz < value; });
    if (right == windows_.begin()) return *right.*what;
    const auto left = right - 1;
    if (right == windows_.end()) return *left.*what;
    const double share = (mz - left->centerMz) / (right->centerMz - left->centerMz);
    return *left.*what + share * (*right.*what - *left.*what);
}

double SpectrumNoise::LevelAt(double mz) const {
    return Interpolated(mz, &Window::level);
}

double SpectrumNoise::ThresholdAt(double mz) const {
    return Interpolated(mz, &Window::threshold);
}

}  // namespace orvanel
