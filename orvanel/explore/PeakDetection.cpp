#include "orvanel/explore/PeakDetection.h"

#include <algorithm>
#include <cmath>

namespace orvanel {
namespace {

constexpr double fwhmPerSigma = 2.3548200450309493;  // 2 sqrt(2 ln 2)
constexpr double assumedWidthPoints = 6.3;           // where no peak is strong enough to measure
constexpr double firstSigmaPoints = 0.75;
constexpr double smoothingShare = 0.45;    // smoothing sigma as a share of the peak's sigma
constexpr double significance = 3;         // standard deviations by which a peak stands above its saddle
constexpr double shareAboveSaddle = 0.15;  // of its height, at least
constexpr double shareOfSample = 0.5;      // the same for a maximum that the width is measured on
constexpr double reachWidths = 1.6;        // widths to each side that an area covers
constexpr double centroidShare = 0.5;      // the centroid is taken above this share of the apex
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
    for (const double value : intensity)
        if (value > 0 && (ionQuantum_ == 0 || value < ionQuantum_)) ionQuantum_ = value;
    FindSegments();
    Smooth(firstSigmaPoints);
    maxima_ = FindMaxima();
    EstimateWidth();
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

/// Width of one maximum in points, 0 when it does not fall to its half on both sides before it rises again.
double PeakDetection::WidthAt(std::size_t index) const {
    const double half = smooth_[index] / 2;
    const auto crossing = [&](int direction) -> double {
        std::size_t i = index;
        while (smooth_[i] > half) {
            const bool atEnd = direction < 0 ? i == 0 : i + 1 == smooth_.size();
            if (atEnd) return 0;
            const std::size_t next = direction < 0 ? i - 1 : i + 1;
            if (std::abs(mz_[next] - mz_[i]) > gapSteps * 2 * stepDa_) return 0;
            if (smooth_[next] <= half)
                return std::abs(static_cast<double>(i) - static_cast<double>(index)) +
                       (smooth_[i] - half) / (smooth_[i] - smooth_[next]);
            i = next;
        }
        return 0;
    };
    const double left = crossing(-1);
    const double right = crossing(1);
    return left > 0 && right > 0 ? left + right : 0;
}

void PeakDetection::EstimateWidth() {
    std::vector<Maximum> strong;
    for (const Maximum& maximum : maxima_)
        if (maximum.saddle < (1 - shareOfSample) * smooth_[maximum.index] && smooth_[maximum.index] > 10 * ionQuantum_)
            strong.push_back(maximum);
    const std::size_t count = std::min(widthSamples, strong.size());
    std::partial_sort(strong.begin(), strong.begin() + static_cast<std::ptrdiff_t>(count), strong.end(),
                      [&](const Maximum& a, const Maximum& b) { return smooth_[a.index] > smooth_[b.index]; });
    std::vector<double> widths;
    for (std::size_t i = 0; i < count; ++i)
        if (const double width = WidthAt(strong[i].index); width > 0) widths.push_back(width);
    if (widths.empty()) return;
    const double smoothed = Median(widths);
    const double smoothing = fwhmPerSigma * firstSigmaPoints;
    widthPoints_ = std::clamp(std::sqrt(std::max(smoothed * smoothed - smoothing * smoothing, 1.0)), 2.0, 60.0);
}

double PeakDetection::IonHeight() const {
    const double sigma = widthPoints_ / fwhmPerSigma * std::sqrt(1 + smoothingShare * smoothingShare);
    return ionQuantum_ / (sigma * 2.5066282746310002);  // sqrt(2 pi)
}

std::vector<NoiseSample> PeakDetection::NominalMaxima() const {
    std::vector<NoiseSample> samples;
    double mass = -1;
    for (std::size_t i = 0; i < mz_.size(); ++i) {
        const double nominal = std::round(mz_[i] / nominalMassDa);
        if ((nominal - 0.5) * nominalMassDa < mz_.front() || (nominal + 0.5) * nominalMassDa > mz_.back()) continue;
        if (nominal != mass) samples.push_back({mz_[i], 0});
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

Peak PeakDetection::MakePeak(std::size_t apex, std::size_t first, std::size_t last) const {
    Peak peak;
    peak.intensity = smooth_[apex];
    peak.widthDa = widthPoints_ * StepAt(apex);
    const double reachDa = reachWidths * peak.widthDa;
    while (mz_[apex] - mz_[first] > reachDa)
        ++first;
    while (mz_[last] - mz_[apex] > reachDa)
        --last;
    double sum = 0;
    for (std::size_t i = first; i <= last; ++i) {
        // A point on the valley between two peaks belongs to each of them by half.
        const double share = (i == first || i == last) && i != apex ? 0.5 : 1;
        sum += share * intensity_[i];
        peak.area += share * intensity_[i] * StepAt(i);
    }
    peak.ions = ionQuantum_ > 0 ? sum / ionQuantum_ : 0;

    const double base = centroidShare * smooth_[apex];
    std::size_t low = apex;
    std::size_t high = apex;
    while (low > first && smooth_[low - 1] > base)
        --low;
    while (high < last && smooth_[high + 1] > base)
        ++high;
    double weight = 0;
    double moment = 0;
    for (std::size_t i = low; i <= high; ++i) {
        weight += smooth_[i] - base;
        moment += (smooth_[i] - base) * (mz_[i] - mz_[apex]);
    }
    peak.mz = mz_[apex] + moment / weight;
    return peak;
}

std::vector<Peak> PeakDetection::Peaks() const {
    std::vector<std::size_t> kept;
    for (const Maximum& maximum : maxima_) {
        const double height = smooth_[maximum.index];
        const double deviation = std::sqrt(ionQuantum_ * kernelEnergy_ * (height + maximum.saddle));
        const double needed = std::max(significance * deviation, shareAboveSaddle * height);
        if (height - maximum.saddle > needed) kept.push_back(maximum.index);
    }
    // The lowest point between two neighbours is where one ends and the other begins.
    std::vector<Peak> peaks;
    std::size_t first = 0;
    for (std::size_t k = 0; k < kept.size(); ++k) {
        std::size_t last = mz_.size() - 1;
        if (k + 1 < kept.size()) {
            const auto begin = smooth_.begin() + static_cast<std::ptrdiff_t>(kept[k]);
            const auto end = smooth_.begin() + static_cast<std::ptrdiff_t>(kept[k + 1]);
            last = static_cast<std::size_t>(std::min_element(begin, end) - smooth_.begin());
        }
        peaks.push_back(MakePeak(kept[k], first, last));
        first = last;
    }
    return peaks;
}

}  // namespace orvanel
