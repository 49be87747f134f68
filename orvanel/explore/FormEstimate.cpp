// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/FormEstimate.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "orvanel/explore/Median.h"

namespace orvanel {
namespace {

constexpr double shareAboveSaddle = 0.5;  // of a maximum that stands apart
constexpr double fewestIonsHigh = 10;     // of a maximum, in ions a point
constexpr double clearIonsHigh = 20;      // ... whose width is compared with others'
constexpr double shareOfStrongest = 0.1;  // that a maximum has at least
constexpr std::size_t mostSamples = 15;
constexpr double upperLevel = 0.75;  // shares of the height between which a peak's lean is measured
constexpr double lowerLevel = 0.3;
// For a split Gaussian: (sqrt(-2 ln lower) - sqrt(-2 ln upper)) 2 / (2 sqrt(2 ln 2)).
constexpr double leanPerSkew = 0.6738;
constexpr double largestLean = 0.3;
constexpr double fwhmPerSigma = 2.3548200450309493;  // 2 sqrt(2 ln 2)
constexpr std::size_t mostRegions = 8;               // of m/z, in which widths are compared
constexpr std::size_t fewestRegions = 4;
constexpr std::size_t maximaOfRegion = 7;

struct Sides {
    double left = 0;
    double right = 0;
};

struct Sample {
    double mz = 0;
    double widthPoints = 0;
    double lean = 0;
};

class Estimation {
  public:
    Estimation(const ProfilePoints& points, const std::vector<double>& smooth, double sigmaPoints)
        : points_(points), smooth_(smooth), sigmaPoints_(sigmaPoints) {}

    FormEstimate Run(const std::vector<Maximum>& maxima);

  private:
    std::optional<Sides> SidesAt(std::size_t index, double share) const;
    std::vector<Sample> NarrowestOf(std::vector<std::size_t> strong, double leastHeight) const;
    double WithoutSmoothing(double width) const;
    std::vector<Sample> WidthsByRegion(const std::vector<std::size_t>& strong) const;
    PeakWidths FollowMz(const std::vector<std::size_t>& strong, double points) const;
    double SmallestSum(const std::vector<Maximum>& maxima, double widthPoints) const;

    const ProfilePoints& points_;
    const std::vector<double>& smooth_;
    double sigmaPoints_;
};

/// Where one maximum falls to a share of its height on both sides, in points from it.
std::optional<Sides> Estimation::SidesAt(std::size_t index, double share) const {
    const auto& ends = points_.StretchEnds();
    const auto stretch = std::upper_bound(ends.begin(), ends.end(), index);
    const std::size_t begin = stretch == ends.begin() ? 0 : *(stretch - 1);
    const double level = share * smooth_[index];
    Sides sides;
    for (std::size_t i = index; i > begin && sides.left == 0; --i)
        if (smooth_[i - 1] <= level)
            sides.left = static_cast<double>(index - i) + (smooth_[i] - level) / (smooth_[i] - smooth_[i - 1]);
    for (std::size_t i = index; i + 1 < *stretch && sides.right == 0; ++i)
        if (smooth_[i + 1] <= level)
            sides.right = static_cast<double>(i - index) + (smooth_[i] - level) / (smooth_[i] - smooth_[i + 1]);
    if (sides.left > 0 && sides.right > 0) return sides;
    return std::nullopt;
}

/// Overlap only widens: the narrower half of the strongest maxima shows the peaks as they are.
/// @return in order of their widths, as they are smoothed
std::vector<Sample> Estimation::NarrowestOf(std::vector<std::size_t> strong, double leastHeight) const {
    const std::size_t count = std::min(mostSamples, strong.size());
    std::partial_sort(strong.begin(), strong.begin() + static_cast<std::ptrdiff_t>(count), strong.end(),
                      [&](std::size_t a, std::size_t b) { return smooth_[a] > smooth_[b]; });
    std::vector<Sample> samples;
    for (std::size_t i = 0; i < count && smooth_[strong[i]] >= leastHeight; ++i) {
        const auto half = SidesAt(strong[i], 0.5);
        const auto upper = SidesAt(strong[i], upperLevel);
        const auto lower = SidesAt(strong[i], lowerLevel);
        if (!half || !upper) continue;
        const double width = half->left + half->right;
        const double lean = lower ? ((lower->right - lower->left) - (upper->right - upper->left)) / width : 0;
        samples.push_back({points_.Mz()[strong[i]], width, lean});
    }
    std::sort(samples.begin(), samples.end(),
              [](const Sample& a, const Sample& b) { return a.widthPoints < b.widthPoints; });
    samples.resize((samples.size() + 1) / 2);
    return samples;
}

double Estimation::WithoutSmoothing(double width) const {
    const double smoothing = fwhmPerSigma * sigmaPoints_;
    return std::clamp(std::sqrt(std::max(width * width - smoothing * smoothing, 1.0)), 2.0, 500.0);
}

/// One sample for each of several regions of m/z that have as many strong maxima.
std::vector<Sample> Estimation::WidthsByRegion(const std::vector<std::size_t>& strong) const {
    std::vector<std::size_t> clear;
    for (const std::size_t index : strong)
        if (smooth_[index] > clearIonsHigh * points_.IonQuantum()) clear.push_back(index);
    std::vector<Sample> found;
    const std::size_t regions = std::min(clear.size() / maximaOfRegion, mostRegions);
    for (std::size_t region = 0; region < regions; ++region) {
        const auto first = static_cast<std::ptrdiff_t>(clear.size() * region / regions);
        const auto end = static_cast<std::ptrdiff_t>(clear.size() * (region + 1) / regions);
        const auto samples = NarrowestOf({clear.begin() + first, clear.begin() + end}, 0);
        if (samples.empty()) continue;
        const Sample& middle = samples[samples.size() / 2];
        found.push_back({middle.mz, WithoutSmoothing(middle.widthPoints), 0});
    }
    return found;
}

/// Lets the width follow a power of m/z where the regions agree on one: what it makes over the whole range is more than
/// 25 % and twelve times what the regions lie off it.
PeakWidths Estimation::FollowMz(const std::vector<std::size_t>& strong, double points) const {
    constexpr double leastChange = 0.25;
    constexpr double deviations = 12;  // of so few regions little is known
    constexpr double steepest = 3;
    const PeakWidths constant{points, 1, 0};
    const auto samples = WidthsByRegion(strong);
    if (samples.size() < fewestRegions || !(samples.front().mz > 0)) return constant;
    const auto count = static_cast<double>(samples.size());
    double meanX = 0;
    double meanY = 0;
    for (const Sample& sample : samples) {
        meanX += std::log(sample.mz) / count;
        meanY += std::log(sample.widthPoints) / count;
    }
    double squares = 0;
    double products = 0;
    for (const Sample& sample : samples) {
        squares += std::pow(std::log(sample.mz) - meanX, 2);
        products += (std::log(sample.mz) - meanX) * (std::log(sample.widthPoints) - meanY);
    }
    if (!(squares > 0)) return constant;
    const double exponent = products / squares;
    double rest = 0;
    for (const Sample& sample : samples)
        rest += std::pow(std::log(sample.widthPoints) - meanY - exponent * (std::log(sample.mz) - meanX), 2);
    const double scatter = std::sqrt(rest / std::max(count - 2, 1.0));
    const double change = std::abs(exponent) * std::log(samples.back().mz / samples.front().mz);
    if (change < leastChange || change < deviations * scatter || std::abs(exponent) > steepest) return constant;
    return {std::exp(meanY), std::exp(meanX), exponent};
}

/// Where a filter has made peaks of single ions, the lowest tenth of the maxima that stand apart is hardly more, if so
/// many are alike.
double Estimation::SmallestSum(const std::vector<Maximum>& maxima, double widthPoints) const {
    constexpr std::size_t fewestMaxima = 100;
    constexpr double highestSaddle = 0.1;
    constexpr double leastShare = 1e-4;  // of the highest maximum; a filter's own ripples are lower
    constexpr double mostAlike = 3;
    constexpr double areaPerHeightAndWidth = 1.0645;  // of a Gaussian
    double highest = 0;
    for (const Maximum& maximum : maxima)
        highest = std::max(highest, smooth_[maximum.index]);
    std::vector<double> heights;
    for (const Maximum& maximum : maxima) {
        const double height = smooth_[maximum.index];
        if (maximum.saddle < highestSaddle * height && height > leastShare * highest) heights.push_back(height);
    }
    if (heights.size() < fewestMaxima) return 0;
    const double low = Quantile(heights, 0.1);
    return Quantile(heights, 0.3) > mostAlike * low ? 0 : low * widthPoints * areaPerHeightAndWidth;
}

FormEstimate Estimation::Run(const std::vector<Maximum>& maxima) {
    std::vector<std::size_t> strong;
    double highest = 0;
    for (const Maximum& maximum : maxima) {
        const double height = smooth_[maximum.index];
        if (maximum.saddle >= (1 - shareAboveSaddle) * height || height <= fewestIonsHigh * points_.IonQuantum())
            continue;
        strong.push_back(maximum.index);
        highest = std::max(highest, height);
    }
    const auto samples = NarrowestOf(strong, shareOfStrongest * highest);
    if (samples.empty()) return {};
    std::vector<double> leans;
    leans.reserve(samples.size());
    for (const Sample& sample : samples)
        leans.push_back(sample.lean);
    const double lean = std::clamp(Median(leans) / leanPerSkew, -largestLean, largestLean);
    const double points = WithoutSmoothing(samples[samples.size() / 2].widthPoints);
    return {PeakForm(lean), FollowMz(strong, points), points_.IsFiltered() ? SmallestSum(maxima, points) : 0};
}

}  // namespace

FormEstimate EstimateForm(const ProfilePoints& points, const std::vector<double>& smooth,
                          const std::vector<Maximum>& maxima, double sigmaPoints) {
    return Estimation(points, smooth, sigmaPoints).Run(maxima);
}

}  // namespace orvanel
