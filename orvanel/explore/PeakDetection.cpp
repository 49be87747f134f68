// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/PeakDetection.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "orvanel/explore/Maxima.h"
#include "orvanel/explore/Median.h"

namespace orvanel {
namespace {

constexpr double fwhmPerSigma = 2.3548200450309493;  // 2 sqrt(2 ln 2)
constexpr double firstSigmaPoints = 0.75;
constexpr double smoothingShare = 0.45;    // smoothing sigma as a share of the peak's sigma
constexpr double significance = 3;         // standard deviations by which a peak stands above its saddle
constexpr double shareAboveSaddle = 0.15;  // of its height, at least
constexpr double doubtOfTails = 2;         // factor by which they may be higher than measured
constexpr double tailDistance = 3;         // widths from the middle, where tails are measured
constexpr double closestWidths = 0.5;      // between maxima; closer ones are sure to be one peak
constexpr double apartWidths = 12;         // beyond which neither peaks nor what hides beside them meet

/// Smooths with the same few points everywhere, before anything is known of the peaks.
std::vector<double> SmoothedALittle(const ProfilePoints& points) {
    return Smoothing(points, {1, 1, 0}, firstSigmaPoints).Apply(points.Intensity());
}

FormEstimate EstimateForm(const ProfilePoints& points) {
    const auto smooth = SmoothedALittle(points);
    return EstimateForm(points, smooth, FindMaxima(smooth, points.StretchEnds()), firstSigmaPoints);
}

}  // namespace

PeakDetection::PeakDetection(const std::vector<double>& mz, const std::vector<double>& intensity)
    : points_(mz, intensity), estimate_(EstimateForm(points_)) {
    const Smoothing smoothing(points_, estimate_.widths, smoothingShare / fwhmPerSigma);
    smooth_ = smoothing.Apply(intensity);
    std::vector<Maximum> maxima = FindMaxima(smooth_, points_.StretchEnds());
    std::erase_if(maxima, [&](const Maximum& maximum) {
        const double height = smooth_[maximum.index];
        const double variance = points_.IonQuantum() * smoothing.EnergyAt(maximum.index) * (height + maximum.saddle);
        const double needed = std::max(significance * std::sqrt(variance), shareAboveSaddle * height);
        return !(height - maximum.saddle > needed);
    });
    MakeClusters(maxima);
    const FormMisfit misfit = MeasureMisfit();
    tails_ = Tails();
    std::vector<double> rest = intensity;
    for (Cluster& cluster : clusters_) {
        cluster.fit.AddHidden(misfit, tails_.data() + cluster.begin);
        for (const FittedPeak& fitted : cluster.fit.Peaks())
            peaks_.push_back(MakePeak(cluster, fitted));
        for (std::size_t i = 0; i < cluster.fit.Expected().size(); ++i)
            rest[cluster.begin + i] -= cluster.fit.Expected()[i];
    }
    // What hides beside the last peak of one cluster may lie behind the first one of the next.
    std::sort(peaks_.begin(), peaks_.end(), [](const Peak& a, const Peak& b) { return a.mz < b.mz; });
    rest_ = smoothing.Apply(rest);
    kernelEnergy_ = smoothing.EnergyAt(mz.size() / 2);
}

/// @param maxima in order
void PeakDetection::MakeClusters(const std::vector<Maximum>& maxima) {
    auto maximum = maxima.begin();
    std::size_t begin = 0;
    for (const std::size_t end : points_.StretchEnds()) {
        std::vector<FittedPeak> cluster;
        for (; maximum != maxima.end() && maximum->index < end; ++maximum) {
            const auto position = static_cast<double>(maximum->index);
            const double width = estimate_.widths.PointsAt(points_.Mz()[maximum->index]);
            const double widths = cluster.empty() ? 0 : (position - cluster.back().position) / width;
            if (widths > apartWidths) MakeCluster(begin, end, std::exchange(cluster, {}));
            if (cluster.empty() || widths >= closestWidths)
                cluster.push_back({position, width, 0});
            else if (smooth_[maximum->index] > smooth_[static_cast<std::size_t>(cluster.back().position)])
                cluster.back() = {position, width, 0};
        }
        if (!cluster.empty()) MakeCluster(begin, end, std::move(cluster));
        begin = end;
    }
}

/// @param begin, end the stretch
/// @param peaks positions from the spectrum's first point
void PeakDetection::MakeCluster(std::size_t begin, std::size_t end, std::vector<FittedPeak> peaks) {
    const auto margin = static_cast<std::size_t>(std::ceil(apartWidths / 2 * peaks.back().width));
    const auto first = static_cast<std::size_t>(peaks.front().position);
    const auto last = static_cast<std::size_t>(peaks.back().position);
    const std::size_t from = first - begin > margin ? first - margin : begin;
    const std::size_t to = std::min(end, last + margin + 1);
    for (FittedPeak& peak : peaks)
        peak.position -= static_cast<double>(from);
    const double* intensity = points_.Intensity().data();
    clusters_.push_back(
        {from, PeakFit(intensity + from, intensity + to, estimate_.form, points_.IonQuantum(), std::move(peaks))});
}

/// What three of four strong peaks that stand alone show beside them is no other peak. Where peaks are so wide that
/// isotopes may hide, these are on the right only, so that the lesser side counts for both.
FormMisfit PeakDetection::MeasureMisfit() const {
    constexpr std::size_t fewestSamples = 5;
    constexpr std::size_t mostSamples = 200;
    constexpr double shareOfFew = 0.25;  // of the peaks, that may have another one beside them
    constexpr double doubt = 2;
    constexpr double widestWithoutIsotopesDa = 0.1;
    FormMisfit misfit;
    const auto measure = [&](FormMisfit::Side side, std::size_t distance) {
        std::vector<double> shares;
        for (const Cluster& cluster : clusters_)
            for (std::size_t k = 0; k < cluster.fit.Peaks().size() && shares.size() < mostSamples; ++k)
                if (const auto share = cluster.fit.MisfitAt(k, side, distance)) shares.push_back(*share);
        if (shares.size() < fewestSamples) return 0.0;
        return doubt * Quantile(std::move(shares), shareOfFew);
    };
    std::vector<double> widths;
    for (const Cluster& cluster : clusters_)
        widths.push_back(cluster.fit.Peaks().front().width * points_.StepAt(cluster.begin));
    const bool mayHideIsotopes = !widths.empty() && Median(widths) > widestWithoutIsotopesDa;
    for (std::size_t distance = 0; distance < FormMisfit::distances; ++distance) {
        const double left = measure(FormMisfit::Side::left, distance);
        const double right = measure(FormMisfit::Side::right, distance);
        misfit.At(FormMisfit::Side::left, distance) = mayHideIsotopes ? std::min(left, right) : left;
        misfit.At(FormMisfit::Side::right, distance) = mayHideIsotopes ? std::min(left, right) : right;
    }
    return misfit;
}

/// What peaks have tailDistance widths from their middle, as a share of their height: what the strongest ones show at
/// least on one side, where nothing else stands.
double PeakDetection::MeasureTail() const {
    constexpr std::size_t strongest = 20;
    std::vector<std::pair<double, double>> shares;  // height, share
    for (const Cluster& cluster : clusters_)
        for (const FittedPeak& peak : cluster.fit.Peaks()) {
            const double height = peak.sum / peak.width * estimate_.form.At(0);
            const double reach = tailDistance * peak.width;
            double least = height;
            for (const double place : {peak.position - reach, peak.position + reach}) {
                // Where points are left out there is nothing.
                const bool isThere = place >= 0 && place < static_cast<double>(cluster.fit.Expected().size());
                least = isThere ? std::min(least, smooth_[cluster.begin + static_cast<std::size_t>(place)]) : 0;
            }
            shares.emplace_back(height, least / height);
        }
    if (shares.empty()) return 0;
    const auto count = std::min(strongest, shares.size());
    std::nth_element(shares.begin(), shares.begin() + static_cast<std::ptrdiff_t>(count - 1), shares.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<double> ofStrongest;
    for (std::size_t i = 0; i < count; ++i)
        ofStrongest.push_back(shares[i].second);
    return Quantile(std::move(ofStrongest), 0.25);
}

/// Tails fall with the square of the distance, as a Lorentzian's do.
std::vector<double> PeakDetection::Tails() const {
    constexpr double leastShare = 0.001;
    constexpr double mostShare = 0.02;  // what is more is something else, such as chemical noise
    constexpr double nearestWidths = 1;
    constexpr double farthestWidths = 15;
    const auto& mz = points_.Mz();
    std::vector<double> tails(smooth_.size());
    const double share = MeasureTail();
    if (share < leastShare || share > mostShare) return tails;
    for (const Cluster& cluster : clusters_)
        for (const FittedPeak& peak : cluster.fit.Peaks()) {
            const double height = doubtOfTails * share * peak.sum / peak.width * estimate_.form.At(0);
            if (height < points_.IonQuantum() / farthestWidths) continue;
            const std::size_t middle = cluster.begin + static_cast<std::size_t>(peak.position);
            const double widthDa = peak.width * points_.StepAt(middle);
            const auto add = [&](std::size_t i) {
                const double widths = std::abs(mz[i] - mz[middle]) / widthDa;
                const double distance = widths / tailDistance;
                if (widths > nearestWidths) tails[i] += height / (distance * distance);
                return widths < farthestWidths;
            };
            for (std::size_t i = middle; i > 0 && add(i - 1); --i) {
            }
            for (std::size_t i = middle + 1; i < tails.size() && add(i); ++i) {
            }
        }
    return tails;
}

double PeakDetection::IonHeight() const {
    const double width = estimate_.widths.PointsAt(points_.Mz()[points_.Mz().size() / 2]);
    const double sigma = width / fwhmPerSigma * std::sqrt(1 + smoothingShare * smoothingShare);
    return std::max(points_.IonQuantum(), estimate_.smallestSum) / (sigma * 2.5066282746310002);  // sqrt(2 pi)
}

std::vector<NoiseSample> PeakDetection::NominalMaxima() const {
    constexpr double misfitShare = 0.02;
    constexpr double middleDa = 0.25;  // to each side
    const auto& mz = points_.Mz();
    std::vector<NoiseSample> samples;
    double mass = 0;  // of the last sample
    bool seesMiddle = false;
    auto peak = peaks_.begin();
    for (std::size_t i = 0; i < mz.size(); ++i) {
        const double nominal = std::round(mz[i] / nominalMassDa);
        if ((nominal - 0.5) * nominalMassDa < mz.front() || (nominal + 0.5) * nominalMassDa > mz.back()) continue;
        if (samples.empty() || nominal != mass) {
            samples.push_back({mz[i], 0, 0});
            seesMiddle = false;
        }
        mass = nominal;
        const double flank = std::max(0.0, smooth_[i] - rest_[i]);
        const double doubt =
            significance * std::sqrt(points_.IonQuantum() * kernelEnergy_ * flank) + misfitShare * flank + tails_[i];
        NoiseSample& sample = samples.back();
        sample.height = std::max(sample.height, rest_[i] - doubt);
        // A peak of the background would show where the flanks are lowest.
        const bool isMiddle = std::abs(mz[i] - nominal * nominalMassDa) < middleDa;
        if (isMiddle && (!std::exchange(seesMiddle, true) || doubt < sample.doubt)) sample.doubt = doubt;
        for (; peak != peaks_.end() && peak->mz < (nominal + 0.5) * nominalMassDa; ++peak)
            if (peak->mz >= (nominal - 0.5) * nominalMassDa) sample.height = std::max(sample.height, peak->intensity);
    }
    return samples;
}

/// The smoothed height at a peak's own maximum, which lies beside its centre of mass.
double PeakDetection::HeightNear(std::size_t index) const {
    const std::size_t first = index > 0 ? index - 1 : index;
    const std::size_t last = std::min(index + 1, smooth_.size() - 1);
    return *std::max_element(smooth_.begin() + static_cast<std::ptrdiff_t>(first),
                             smooth_.begin() + static_cast<std::ptrdiff_t>(last) + 1);
}

Peak PeakDetection::MakePeak(const Cluster& cluster, const FittedPeak& fitted) const {
    const auto& mz = points_.Mz();
    const double place = static_cast<double>(cluster.begin) + fitted.position;
    const auto below = std::min(static_cast<std::size_t>(place), mz.size() - 1);
    const std::size_t apex = std::min(static_cast<std::size_t>(std::lround(place)), mz.size() - 1);
    const double step = points_.StepAt(apex);
    Peak peak;
    const double gap = below + 1 < mz.size() ? mz[below + 1] - mz[below] : 0;
    peak.mz = mz[below] + (place - static_cast<double>(below)) * gap;
    peak.intensity = HeightNear(apex) * cluster.fit.ShareAt(fitted, apex - cluster.begin);
    peak.widthDa = fitted.width * step;
    peak.area = fitted.sum * step;
    peak.tails = tails_[apex];
    peak.ions = points_.IonQuantum() > 0 ? fitted.sum / points_.IonQuantum() : 0;
    return peak;
}

}  // namespace orvanel
