// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/PeakDetection.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvanel {
namespace {

constexpr double fwhmPerSigma = 2.3548200450309493;  // 2 sqrt(2 ln 2)
constexpr double assumedWidthPoints = 6.3;           // where no peak is strong enough to measure
constexpr double firstSigmaPoints = 0.75;
constexpr double smoothingShare = 0.45;    // smoothing sigma as a share of the peak's sigma
constexpr double significance = 3;         // standard deviations by which a peak stands above its saddle
constexpr double shareAboveSaddle = 0.15;  // of its height, at least
constexpr double shareOfSample = 0.5;      // the same for a maximum that the width is measured on
constexpr double upperLevel = 0.75;        // shares of the height between which a peak's lean is measured
constexpr double lowerLevel = 0.3;
// For a split Gaussian: (sqrt(-2 ln lower) - sqrt(-2 ln upper)) 2 / (2 sqrt(2 ln 2)).
constexpr double leanPerSkew = 0.6738;
constexpr double largestSkew = 0.3;
constexpr double shareOfStrongest = 0.1;  // that such a maximum has at least
constexpr double gapSteps = 1.6;
constexpr std::size_t widthSamples = 15;

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace

PeakDetection::PeakDetection(const std::vector<double>& mz, const std::vector<double>& intensity)
    : mz_(mz), intensity_(intensity), widthPoints_(assumedWidthPoints) {
    FindSegments();
    EstimateIonQuantum();
    Smooth(firstSigmaPoints);
    maxima_ = FindMaxima();
    EstimateForm();
    Smooth(smoothingShare * widthPoints_ / fwhmPerSigma);
    maxima_ = FindMaxima();
}

void PeakDetection::FindSegments() {
    std::vector<double> steps;
    for (std::size_t i = 1; i < mz_.size(); ++i)
        steps.push_back(mz_[i] - mz_[i - 1]);
    if (!steps.empty()) stepDa_ = Median(steps);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        double usual = 3 * stepDa_;
        if (i > 0) usual = std::min(usual, steps[i - 1]);
        if (i + 1 < steps.size()) usual = std::min(usual, steps[i + 1]);
        if (steps[i] > gapSteps * usual) segmentEnds_.push_back(i + 1);
    }
    segmentEnds_.push_back(mz_.size());
}

/// What one ion adds to a point: the smallest intensity, for ions come in whole numbers. Where a filter has left far
/// smaller values, what the roughness of the spectrum stands for, as the noise of counting: fourth differences, which
/// smooth peaks hardly have, with the variance 70 times that of a point.
void PeakDetection::EstimateIonQuantum() {
    constexpr double fourthDifference[] = {1, -4, 6, -4, 1};
    constexpr double varianceFactor = 70;
    constexpr double medianOfSquare = 0.4549;  // of a standard normal variable's square
    constexpr double wholeIons = 0.01;
    constexpr double roughShare = 0.001;  // of the highest point, above which roughness is looked at
    const double highest = *std::max_element(intensity_.begin(), intensity_.end());
    for (const double value : intensity_)
        if (value > 0 && (ionQuantum_ == 0 || value < ionQuantum_)) ionQuantum_ = value;
    std::vector<double> estimates;
    std::size_t begin = 0;
    for (const std::size_t end : segmentEnds_) {
        for (std::size_t i = begin; i + 5 <= end; ++i) {
            double difference = 0;
            double sum = 0;
            for (std::size_t k = 0; k < 5; ++k) {
                difference += fourthDifference[k] * intensity_[i + k];
                sum += intensity_[i + k];
            }
            if (sum > 5 * roughShare * highest)
                estimates.push_back(5 * difference * difference / (varianceFactor * sum));
        }
        begin = end;
    }
    if (estimates.empty()) return;
    const double roughness = Median(std::move(estimates)) / medianOfSquare;
    if (ionQuantum_ < wholeIons * roughness) ionQuantum_ = roughness;
}

void PeakDetection::Smooth(double sigmaPoints) {
    const auto reach = static_cast<std::size_t>(std::ceil(3 * sigmaPoints));
    std::vector<double> kernel;
    double sum = 0;
    for (std::size_t k = 0; k <= reach; ++k) {
        kernel.push_back(std::exp(-0.5 * std::pow(static_cast<double>(k) / sigmaPoints, 2)));
        sum += (k == 0 ? 1 : 2) * kernel.back();
    }
    kernelEnergy_ = 0;
    for (std::size_t k = 0; k <= reach; ++k) {
        kernel[k] /= sum;
        kernelEnergy_ += (k == 0 ? 1 : 2) * kernel[k] * kernel[k];
    }
    smooth_.assign(intensity_.size(), 0.0);
    std::size_t begin = 0;
    for (const std::size_t end : segmentEnds_) {
        for (std::size_t i = begin; i < end; ++i) {
            if (intensity_[i] <= 0) continue;
            smooth_[i] += kernel[0] * intensity_[i];
            for (std::size_t k = 1; k <= reach; ++k) {
                if (i >= begin + k) smooth_[i - k] += kernel[k] * intensity_[i];
                if (i + k < end) smooth_[i + k] += kernel[k] * intensity_[i];
            }
        }
        begin = end;
    }
}

/// Local maxima with their saddles, found in one sweep to each side with a stack of ever higher maxima.
std::vector<PeakDetection::Maximum> PeakDetection::FindMaxima() const {
    std::vector<Maximum> found;
    std::size_t begin = 0;
    for (const std::size_t end : segmentEnds_) {
        const std::size_t firstOfSegment = found.size();
        std::vector<double> valleys;  // between neighbouring maxima of the segment
        double valley = 0;
        for (std::size_t i = begin; i < end; ++i) {
            valley = std::min(valley, smooth_[i]);
            const double before = i > begin ? smooth_[i - 1] : 0;
            const double behind = i + 1 < end ? smooth_[i + 1] : 0;
            if (smooth_[i] <= before || smooth_[i] < behind) continue;
            if (found.size() > firstOfSegment) valleys.push_back(valley);
            found.push_back({i, 0});
            valley = smooth_[i];
        }
        // For each maximum the lowest point on the way to the next higher one; 0 when there is none.
        const std::size_t count = found.size() - firstOfSegment;
        const auto sweep = [&](bool toRight) {
            std::vector<std::pair<std::size_t, double>> stack;  // maximum, lowest point between it and the current one
            for (std::size_t n = 0; n < count; ++n) {
                const std::size_t k = toRight ? count - 1 - n : n;
                double lowest = n == 0 ? 0 : valleys[toRight ? k : k - 1];
                const double height = smooth_[found[firstOfSegment + k].index];
                while (!stack.empty() && smooth_[found[firstOfSegment + stack.back().first].index] < height) {
                    lowest = std::min(lowest, stack.back().second);
                    stack.pop_back();
                }
                auto& maximum = found[firstOfSegment + k];
                if (!stack.empty()) maximum.saddle = std::max(maximum.saddle, lowest);
                stack.emplace_back(k, lowest);
            }
        };
        sweep(false);
        sweep(true);
        begin = end;
    }
    return found;
}

/// Where one maximum falls to a share of its height on both sides, in points from it; 0 to 0 when it does not on one of
/// them.
PeakDetection::Sides PeakDetection::SidesAt(std::size_t index, double share) const {
    const double level = share * smooth_[index];
    const auto crossing = [&](int direction) -> double {
        std::size_t i = index;
        while (smooth_[i] > level) {
            const bool atEnd = direction < 0 ? i == 0 : i + 1 == smooth_.size();
            if (atEnd) return 0;
            const std::size_t next = direction < 0 ? i - 1 : i + 1;
            if (std::abs(mz_[next] - mz_[i]) > gapSteps * 2 * stepDa_) return 0;
            if (smooth_[next] <= level)
                return std::abs(static_cast<double>(i) - static_cast<double>(index)) +
                       (smooth_[i] - level) / (smooth_[i] - smooth_[next]);
            i = next;
        }
        return 0;
    };
    const Sides sides{crossing(-1), crossing(1)};
    return sides.left > 0 && sides.right > 0 ? sides : Sides{};
}

void PeakDetection::EstimateForm() {
    std::vector<Maximum> strong;
    for (const Maximum& maximum : maxima_)
        if (maximum.saddle < (1 - shareOfSample) * smooth_[maximum.index] && smooth_[maximum.index] > 10 * ionQuantum_)
            strong.push_back(maximum);
    const std::size_t count = std::min(widthSamples, strong.size());
    std::partial_sort(strong.begin(), strong.begin() + static_cast<std::ptrdiff_t>(count), strong.end(),
                      [&](const Maximum& a, const Maximum& b) { return smooth_[a.index] > smooth_[b.index]; });
    std::vector<std::pair<double, double>> samples;  // width, lean
    for (std::size_t i = 0; i < count; ++i) {
        const Sides half = SidesAt(strong[i].index, 0.5);
        const Sides upper = SidesAt(strong[i].index, upperLevel);
        const Sides lower = SidesAt(strong[i].index, lowerLevel);
        const double width = half.left + half.right;
        if (smooth_[strong[i].index] < shareOfStrongest * smooth_[strong.front().index]) break;
        if (width > 0) samples.emplace_back(width, ((lower.right - lower.left) - (upper.right - upper.left)) / width);
    }
    double lean = 0;
    if (!samples.empty()) {
        // Overlap only widens: the narrower half of the samples shows the peaks as they are.
        std::sort(samples.begin(), samples.end());
        samples.resize((samples.size() + 1) / 2);
        const double smoothed = samples[samples.size() / 2].first;
        std::vector<double> leans;
        leans.reserve(samples.size());
        for (const auto& sample : samples)
            leans.push_back(sample.second);
        lean = std::clamp(Median(leans) / leanPerSkew, -largestSkew, largestSkew);
        const double smoothing = fwhmPerSigma * firstSigmaPoints;
        widthPoints_ = std::clamp(std::sqrt(std::max(smoothed * smoothed - smoothing * smoothing, 1.0)), 2.0, 60.0);
    }
    const double sigma = widthPoints_ / fwhmPerSigma;
    form_ = {sigma * (1 - lean), sigma * (1 + lean)};
}

double PeakDetection::IonHeight() const {
    const double sigma = widthPoints_ / fwhmPerSigma * std::sqrt(1 + smoothingShare * smoothingShare);
    return ionQuantum_ / (sigma * 2.5066282746310002);  // sqrt(2 pi)
}

std::vector<NoiseSample> PeakDetection::NominalMaxima() const {
    std::vector<NoiseSample> samples;
    double mass = 0;  // of the last sample
    for (std::size_t i = 0; i < mz_.size(); ++i) {
        const double nominal = std::round(mz_[i] / nominalMassDa);
        if ((nominal - 0.5) * nominalMassDa < mz_.front() || (nominal + 0.5) * nominalMassDa > mz_.back()) continue;
        if (samples.empty() || nominal != mass) samples.push_back({mz_[i], 0});
        mass = nominal;
        samples.back().height = std::max(samples.back().height, smooth_[i]);
    }
    return samples;
}

/// The distance between neighbouring points, taken to the closer one, so that a gap beside it does not count.
double PeakDetection::StepAt(std::size_t index) const {
    double step = 2 * stepDa_;
    if (index > 0) step = std::min(step, mz_[index] - mz_[index - 1]);
    if (index + 1 < mz_.size()) step = std::min(step, mz_[index + 1] - mz_[index]);
    return step;
}

/// The smoothed height at a peak's own maximum, which lies beside its centre of mass.
double PeakDetection::HeightNear(std::size_t index) const {
    const std::size_t first = index > 0 ? index - 1 : index;
    const std::size_t last = std::min(index + 1, smooth_.size() - 1);
    return *std::max_element(smooth_.begin() + static_cast<std::ptrdiff_t>(first),
                             smooth_.begin() + static_cast<std::ptrdiff_t>(last) + 1);
}

Peak PeakDetection::MakePeak(const PeakFit& fit, const FittedPeak& fitted, std::size_t begin) const {
    const double place = static_cast<double>(begin) + fitted.position;
    const auto below = std::min(static_cast<std::size_t>(std::max(place, 0.0)), mz_.size() - 1);
    const std::size_t apex = std::min(static_cast<std::size_t>(std::max(std::lround(place), 0L)), mz_.size() - 1);
    Peak peak;
    const double step = StepAt(apex);
    peak.mz = mz_[below] + (place - static_cast<double>(below)) * step;
    peak.intensity = HeightNear(apex) * fit.ShareAt(fitted, apex - begin);
    peak.widthDa = widthPoints_ * step;
    peak.area = fitted.sum * step;
    peak.ions = ionQuantum_ > 0 ? fitted.sum / ionQuantum_ : 0;
    return peak;
}

/// The significant maxima of a stretch, in points from its first one.
std::vector<double> PeakDetection::PositionsWithin(std::size_t begin, std::size_t end) const {
    std::vector<double> positions;
    auto maximum = std::lower_bound(maxima_.begin(), maxima_.end(), begin,
                                    [](const Maximum& one, std::size_t index) { return one.index < index; });
    for (; maximum != maxima_.end() && maximum->index < end; ++maximum) {
        const double height = smooth_[maximum->index];
        const double deviation = std::sqrt(ionQuantum_ * kernelEnergy_ * (height + maximum->saddle));
        const double needed = std::max(significance * deviation, shareAboveSaddle * height);
        if (height - maximum->saddle > needed) positions.push_back(static_cast<double>(maximum->index - begin));
    }
    return positions;
}

std::vector<Peak> PeakDetection::Peaks() const {
    std::vector<Peak> peaks;
    std::size_t begin = 0;
    for (const std::size_t end : segmentEnds_) {
        const auto positions = PositionsWithin(begin, end);
        PeakFit fit(intensity_.data() + begin, intensity_.data() + end, form_, ionQuantum_);
        if (!positions.empty())
            for (const FittedPeak& fitted : fit.Run(positions))
                peaks.push_back(MakePeak(fit, fitted, begin));
        begin = end;
    }
    return peaks;
}

}  // namespace orvanel
