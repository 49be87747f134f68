// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/PeakFit.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvanel {
namespace {

constexpr double halfWidth = 1.1774100225154747;  // sqrt(2 ln 2), half width at half maximum of a Gaussian
constexpr double reachWidths = 1.1;               // widths to each side that a peak takes points from
constexpr double tailWidths = 2;                  // ... and how far it is expected to have any
constexpr int mostSteps = 200;
constexpr double settledPoints = 0.001;  // peaks that move less have settled
constexpr int mostRounds = 3;            // of looking for hidden peaks
constexpr double closestWidths = 0.65;   // peaks closer than so many widths are one
constexpr double significance = 5;       // standard deviations by which a hidden peak stands out
constexpr double leastShare = 0.02;      // of the stronger neighbour, that a hidden peak has at least ...
constexpr double shareBeside = 0.05;     // ... within besideWidths
constexpr double shareCloseBy = 0.1;     // ... and closer than one width
constexpr double besideWidths = 1.3;
constexpr double farthestWidths = 2;  // from a peak that hidden ones are looked for
constexpr double leastRest = 0.005;   // of the stronger neighbour within that, that sharing out leaves any peak

}  // namespace

double PeakForm::At(double distance) const {
    const double fromMode = distance + std::sqrt(2 * std::numbers::inv_pi) * (rightSigma - leftSigma);
    const double z = fromMode / (fromMode < 0 ? leftSigma : rightSigma);
    return std::exp(-0.5 * z * z) / (std::sqrt(std::numbers::pi / 2) * (leftSigma + rightSigma));
}

double PeakForm::Fwhm() const {
    return halfWidth * (leftSigma + rightSigma);
}

PeakFit::PeakFit(const double* begin, const double* end, const PeakForm& form, double ionQuantum)
    : intensity_(begin), size_(static_cast<std::size_t>(end - begin)), form_(form), ionQuantum_(ionQuantum) {}

PeakFit::Range PeakFit::Reach(double position, double widths) const {
    const double reach = std::max(widths * form_.Fwhm(), 1.0);
    const auto last = static_cast<double>(size_);
    return {static_cast<std::size_t>(std::clamp(std::ceil(position - reach), 0.0, last)),
            static_cast<std::size_t>(std::clamp(std::floor(position + reach) + 1, 0.0, last))};
}

void PeakFit::Expect() {
    expected_.assign(size_, 0.0);
    for (const FittedPeak& peak : peaks_) {
        const Range range = Reach(peak.position, tailWidths);
        for (std::size_t i = range.first; i < range.end; ++i)
            expected_[i] += peak.sum * form_.At(static_cast<double>(i) - peak.position);
    }
}

double PeakFit::ShareAt(const FittedPeak& peak, std::size_t point) const {
    if (!(expected_[point] > 0)) return 1;
    return std::min(1.0, peak.sum * form_.At(static_cast<double>(point) - peak.position) / expected_[point]);
}

/// One step of the rule. @return how far the peak moved that moved most, in points
double PeakFit::Improve() {
    Expect();
    double farthest = 0;
    for (FittedPeak& peak : peaks_) {
        const Range range = Reach(peak.position, reachWidths);
        double sum = 0;
        double moment = 0;
        double formSum = 0;
        double formMoment = 0;
        for (std::size_t i = range.first; i < range.end; ++i) {
            if (!(expected_[i] > 0)) continue;
            const double distance = static_cast<double>(i) - peak.position;
            const double form = form_.At(distance);
            const double part = std::min(1.0, peak.sum * form / expected_[i]) * intensity_[i];
            sum += part;
            moment += part * distance;
            formSum += form;
            formMoment += form * distance;
        }
        peak.sum = formSum > 0 ? sum / formSum : 0;
        if (!(sum > 0)) continue;
        // What the reach cuts off is cut off the form too.
        const double move = moment / sum - formMoment / formSum;
        const double before = peak.position;
        peak.position = std::clamp(before + move, 0.0, static_cast<double>(size_ - 1));
        farthest = std::max(farthest, std::abs(peak.position - before));
    }
    return farthest;
}

void PeakFit::Refine() {
    for (int step = 0; step < mostSteps; ++step)
        if (Improve() < settledPoints) break;
    Expect();
}

/// What the fit leaves over of a peak at this position, as a sum of intensities. @param deviation its standard
/// deviation from counting
double PeakFit::LeftOver(double position, double& deviation) const {
    const Range range = Reach(position, reachWidths);
    double left = 0;
    double variance = 0;
    double norm = 0;
    for (std::size_t i = range.first; i < range.end; ++i) {
        const double weight = form_.At(static_cast<double>(i) - position);
        left += weight * (intensity_[i] - expected_[i]);
        variance += weight * weight * ionQuantum_ * std::max(intensity_[i], expected_[i]);
        norm += weight * weight;
    }
    deviation = norm > 0 ? std::sqrt(variance) / norm : 0;
    return norm > 0 ? left / norm : 0;
}

/// Adds a peak wherever enough is left over. Peaks are in order. @return whether there was one
bool PeakFit::AddHidden() {
    std::vector<FittedPeak> hidden;
    for (std::size_t k = 0; k < peaks_.size(); ++k) {
        const FittedPeak& peak = peaks_[k];
        for (const double side : {-1.0, 1.0}) {
            FittedPeak best;
            double bestScore = significance;
            for (double widths = closestWidths; widths <= farthestWidths; widths += 0.1) {
                const double position = peak.position + side * widths * form_.Fwhm();
                if (position < 0 || position > static_cast<double>(size_ - 1)) break;
                double deviation = 0;
                const double left = LeftOver(position, deviation);
                if (left < (widths < besideWidths ? shareBeside : leastShare) * peak.sum ||
                    left <= bestScore * deviation)
                    continue;
                bestScore = deviation > 0 ? left / deviation : bestScore;
                best = {position, left};
            }
            const auto isClose = [&](const FittedPeak& other) {
                return std::abs(other.position - best.position) < closestWidths * form_.Fwhm();
            };
            const std::size_t neighbour = side < 0 ? k - 1 : k + 1;
            const bool isTaken = (neighbour < peaks_.size() && isClose(peaks_[neighbour])) ||
                                 (!hidden.empty() && isClose(hidden.back()));
            if (best.sum > 0 && !isTaken) hidden.push_back(best);
        }
    }
    peaks_.insert(peaks_.end(), hidden.begin(), hidden.end());
    std::sort(peaks_.begin(), peaks_.end(),
              [](const FittedPeak& a, const FittedPeak& b) { return a.position < b.position; });
    return !hidden.empty();
}

/// Drops the weaker one of two neighbours that are one peak. @return whether there were any
bool PeakFit::DropUnfounded() {
    std::sort(peaks_.begin(), peaks_.end(),
              [](const FittedPeak& a, const FittedPeak& b) { return a.position < b.position; });
    bool dropped = false;
    for (std::size_t k = 0; k + 1 < peaks_.size();) {
        const std::size_t weaker = peaks_[k].sum < peaks_[k + 1].sum ? k : k + 1;
        const std::size_t stronger = 2 * k + 1 - weaker;
        const double widths = (peaks_[k + 1].position - peaks_[k].position) / form_.Fwhm();
        const double needed = widths < closestWidths    ? 1.1
                              : widths < 1              ? shareCloseBy
                              : widths < farthestWidths ? leastRest
                                                        : 0;
        if (peaks_[weaker].sum >= needed * peaks_[stronger].sum && peaks_[weaker].sum > 0) {
            ++k;
            continue;
        }
        peaks_.erase(peaks_.begin() + static_cast<std::ptrdiff_t>(weaker));
        dropped = true;
        if (k > 0) --k;
    }
    return dropped;
}

std::vector<FittedPeak> PeakFit::Run(const std::vector<double>& positions) {
    peaks_.clear();
    for (const double position : positions)
        peaks_.push_back({position, 1});
    for (FittedPeak& peak : peaks_) {
        const auto nearest = static_cast<std::size_t>(std::lround(peak.position));
        peak.sum = std::max(intensity_[nearest], ionQuantum_) / form_.At(0);
    }
    Refine();
    if (DropUnfounded()) Refine();
    for (int round = 0; round < mostRounds && AddHidden(); ++round) {
        Refine();
        if (DropUnfounded()) Refine();
    }
    if (DropUnfounded()) Expect();
    return peaks_;
}

}  // namespace orvanel
