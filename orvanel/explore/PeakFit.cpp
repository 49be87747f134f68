// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/PeakFit.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace orvanel {
namespace {

constexpr double reachWidths = 1.1;         // widths to each side that a peak takes points from
constexpr int mostSteps = 200;              // of one peak between two looks for hidden ones
constexpr double settledWidths = 1e-4;      // a peak that moves less has settled ...
constexpr double settledShare = 3e-4;       // ... if its sum changes no more than this, ...
constexpr double settledDoubt = 0.02;       // ... or both less than this part of what counting leaves in doubt
constexpr double fastestPace = 0.5;         // of a move to the one before, for looking ahead
constexpr double fewestPointsToHide = 3.5;  // a width; what is sampled more coarsely does not show what it hides
constexpr int mostRounds = 3;               // of looking for hidden peaks
constexpr double significance = 5;          // standard deviations by which a hidden peak stands out
constexpr double leastShare = 0.02;         // of the stronger neighbour, that a hidden peak has at least ...
constexpr double shareBeside = 0.05;        // ... within besideWidths
constexpr double shareCloseBy = 0.1;        // ... and closer than one width
constexpr double besideWidths = 1.3;
constexpr double farthestWidths = 2;  // that a strong peak keeps weak ones away
constexpr double leastRest = 0.005;   // of the stronger neighbour within that, that sharing out leaves any peak

bool IsLeftOf(const FittedPeak& a, const FittedPeak& b) {
    return a.position < b.position;
}

double WidthsBetween(const FittedPeak& a, const FittedPeak& b) {
    return std::abs(b.position - a.position) * 2 / (a.width + b.width);
}

}  // namespace

PeakFit::PeakFit(const double* begin, const double* end, const PeakForm& form, double ionQuantum,
                 std::vector<FittedPeak> maxima)
    : intensity_(begin),
      size_(static_cast<std::size_t>(end - begin)),
      form_(&form),
      ionQuantum_(ionQuantum),
      peaks_(std::move(maxima)) {
    for (FittedPeak& peak : peaks_) {
        const auto nearest = std::min(static_cast<std::size_t>(std::lround(peak.position)), size_ - 1);
        peak.sum = std::max(intensity_[nearest], ionQuantum_) * peak.width / form_->At(0);
    }
    courses_.assign(peaks_.size(), Course{});
    Expect();
    Refine();
    if (DropUnfounded()) Refine();
}

PeakFit::Range PeakFit::Reach(const FittedPeak& peak, double widths) const {
    const double reach = std::max(widths * peak.width, 1.0);
    const auto last = static_cast<double>(size_);
    return {static_cast<std::size_t>(std::clamp(std::ceil(peak.position - reach), 0.0, last)),
            static_cast<std::size_t>(std::clamp(std::floor(peak.position + reach) + 1, 0.0, last))};
}

double PeakFit::FormAt(const FittedPeak& peak, std::size_t point) const {
    return form_->At((static_cast<double>(point) - peak.position) / peak.width) / peak.width;
}

void PeakFit::Add(const FittedPeak& peak, double sign) {
    const Range range = Reach(peak, PeakForm::tailWidths);
    const double scale = 1 / peak.width;
    const double height = sign * peak.sum * scale;
    for (std::size_t i = range.first; i < range.end; ++i)
        expected_[i] += height * form_->At((static_cast<double>(i) - peak.position) * scale);
}

void PeakFit::Expect() {
    expected_.assign(size_, 0.0);
    for (const FittedPeak& peak : peaks_)
        Add(peak, 1);
}

double PeakFit::ShareAt(const FittedPeak& peak, std::size_t point) const {
    if (!(expected_[point] > 0)) return 1;
    return std::min(1.0, peak.sum * FormAt(peak, point) / expected_[point]);
}

/// One step of the rule. @return whether the peak has changed
bool PeakFit::Improve(FittedPeak& peak, Course& course) {
    const Range range = Reach(peak, reachWidths);
    const double scale = 1 / peak.width;
    double sum = 0;
    double moment = 0;
    double formSum = 0;
    double formMoment = 0;
    for (std::size_t i = range.first; i < range.end; ++i) {
        if (!(expected_[i] > 0)) continue;
        const double distance = static_cast<double>(i) - peak.position;
        const double form = form_->At(distance * scale) * scale;
        const double part = std::min(1.0, peak.sum * form / expected_[i]) * intensity_[i];
        sum += part;
        moment += part * distance;
        formSum += form;
        formMoment += form * distance;
    }
    Add(peak, -1);
    const double before = peak.sum;
    peak.sum = formSum > 0 ? sum / formSum : 0;
    double move = 0;
    if (sum > 0) {
        // What the reach cuts off is cut off the form too.
        move = moment / sum - formMoment / formSum;
        // A peak that is drawn along slowly is on its way to where a geometric series ends.
        const double pace = course.lastMove != 0 ? move / course.lastMove : 0;
        course.lastMove = move;
        if (course.steps % 3 == 2 && pace > 0) {
            move /= 1 - std::min(pace, fastestPace);
            course.lastMove = 0;
        }
        const double place = std::clamp(peak.position + move, 0.0, static_cast<double>(size_ - 1));
        move = place - peak.position;
        peak.position = place;
    }
    Add(peak, 1);
    ++course.steps;
    const double doubt = peak.sum > 0 ? settledDoubt * std::sqrt(ionQuantum_ / peak.sum) : 0;
    return std::abs(move) > std::max(settledWidths, doubt) * peak.width ||
           std::abs(peak.sum - before) > std::max(settledShare, doubt) * peak.sum;
}

/// Visits the peaks that share points with this one.
template <typename Visit>
void PeakFit::VisitNeighbours(std::size_t peak, Visit visit) {
    const auto touches = [&](std::size_t other) {
        return WidthsBetween(peaks_[peak], peaks_[other]) < reachWidths + PeakForm::tailWidths;
    };
    for (std::size_t other = peak; other > 0 && touches(other - 1); --other)
        visit(other - 1);
    for (std::size_t other = peak + 1; other < peaks_.size() && touches(other); ++other)
        visit(other);
}

/// Gives turns to those that wait for one, until there are none.
void PeakFit::Refine() {
    std::vector<std::size_t> waiting;
    for (std::size_t k = 0; k < peaks_.size(); ++k)
        if (courses_[k].waits) waiting.push_back(k);
    while (!waiting.empty()) {
        std::vector<std::size_t> next;
        const auto wake = [&](std::size_t k) {
            if (courses_[k].waits || courses_[k].steps >= mostSteps) return;
            courses_[k].waits = true;
            next.push_back(k);
        };
        for (const std::size_t k : waiting) {
            courses_[k].waits = false;
            if (!Improve(peaks_[k], courses_[k])) continue;
            courses_[k].fresh = true;
            wake(k);
            VisitNeighbours(k, wake);
        }
        waiting = std::move(next);
    }
}

/// Puts further peaks in their places; they and their neighbours wait for a turn then.
void PeakFit::Insert(const std::vector<FittedPeak>& added) {
    std::vector<FittedPeak> peaks;
    std::vector<Course> courses;
    auto one = added.begin();
    for (std::size_t k = 0; k <= peaks_.size(); ++k) {
        for (; one != added.end() && (k == peaks_.size() || IsLeftOf(*one, peaks_[k])); ++one) {
            peaks.push_back(*one);
            courses.emplace_back();
            Add(*one, 1);
        }
        if (k == peaks_.size()) break;
        peaks.push_back(peaks_[k]);
        courses.push_back(courses_[k]);
        courses.back().steps = 0;
    }
    peaks_ = std::move(peaks);
    courses_ = std::move(courses);
    for (std::size_t k = 0; k < peaks_.size(); ++k)
        if (courses_[k].waits) VisitNeighbours(k, [&](std::size_t other) { courses_[other].waits = true; });
}

/// Drops the weaker one of two neighbours that are one peak; those beside it wait for a turn then. @return whether
/// there were any
bool PeakFit::DropUnfounded() {
    const auto isUnfounded = [](const FittedPeak& weaker, const FittedPeak& stronger) {
        const double widths = WidthsBetween(weaker, stronger);
        const double needed = widths < FormMisfit::closestWidths ? 1.1
                              : widths < 1                       ? shareCloseBy
                              : widths < farthestWidths          ? leastRest
                                                                 : 0;
        return !(weaker.sum > 0) || weaker.sum < needed * stronger.sum;
    };
    std::vector<std::size_t> order(peaks_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return IsLeftOf(peaks_[a], peaks_[b]); });
    std::vector<std::size_t> kept;
    std::vector<std::size_t> dropped;
    for (const std::size_t one : order) {
        bool keeps = true;
        while (keeps && !kept.empty()) {
            const bool isWeaker = peaks_[one].sum < peaks_[kept.back()].sum;
            const std::size_t weaker = isWeaker ? one : kept.back();
            if (!isUnfounded(peaks_[weaker], peaks_[isWeaker ? kept.back() : one])) break;
            dropped.push_back(weaker);
            if (isWeaker)
                keeps = false;
            else
                kept.pop_back();
        }
        if (keeps) kept.push_back(one);
    }
    for (const std::size_t one : dropped) {
        Add(peaks_[one], -1);
        VisitNeighbours(one, [&](std::size_t other) { courses_[other].waits = true; });
    }
    std::vector<FittedPeak> peaks;
    std::vector<Course> courses;
    for (const std::size_t one : kept) {
        peaks.push_back(peaks_[one]);
        courses.push_back(courses_[one]);
        courses.back().steps = 0;
    }
    peaks_ = std::move(peaks);
    courses_ = std::move(courses);
    return !dropped.empty();
}

/// What the fit leaves over of a peak at this place.
PeakFit::Excess PeakFit::ExcessAt(const FittedPeak& place) const {
    const Range range = Reach(place, reachWidths);
    double left = 0;
    double variance = 0;
    double norm = 0;
    for (std::size_t i = range.first; i < range.end; ++i) {
        const double weight = FormAt(place, i);
        left += weight * (intensity_[i] - expected_[i]);
        variance += weight * weight * ionQuantum_ * std::max(intensity_[i], expected_[i]);
        norm += weight * weight;
    }
    return norm > 0 ? Excess{left / norm, std::sqrt(variance) / norm} : Excess{};
}

std::optional<double> PeakFit::MisfitAt(std::size_t peak, FormMisfit::Side side, std::size_t distance) const {
    constexpr double freeWidths = 3;
    constexpr double mostDoubt = 0.02;
    const bool isLeft = side == FormMisfit::Side::left;
    const FittedPeak& one = peaks_[peak];
    const std::size_t other = isLeft ? peak - 1 : peak + 1;
    if (other < peaks_.size() && WidthsBetween(one, peaks_[other]) < freeWidths) return std::nullopt;
    const double place = one.position + (isLeft ? -1 : 1) * FormMisfit::WidthsAt(distance) * one.width;
    if (place < 0 || place > static_cast<double>(size_ - 1)) return std::nullopt;
    const Excess excess = ExcessAt({place, one.width, 0});
    if (!(one.sum > 0) || excess.deviation > mostDoubt * one.sum) return std::nullopt;
    return excess.sum / one.sum;
}

/// Whether enough is left over beside a peak for a closer look.
bool PeakFit::MayHide(const FittedPeak& peak, FormMisfit::Side side) const {
    if (peak.width < fewestPointsToHide) return false;
    const bool isLeft = side == FormMisfit::Side::left;
    const Range near = Reach(peak, 0.25);
    const Range far = Reach(peak, farthestWidths + reachWidths / 2);
    double left = 0;
    double counted = 0;
    for (std::size_t i = isLeft ? far.first : near.end; i < (isLeft ? near.first : far.end); ++i) {
        left += std::max(0.0, intensity_[i] - expected_[i]);
        counted += intensity_[i];
    }
    return left > leastShare / 2 * peak.sum && left > significance / 2 * std::sqrt(ionQuantum_ * counted);
}

/// @return a peak with sum 0 where there is none
FittedPeak PeakFit::BestHidden(const FittedPeak& peak, FormMisfit::Side side, const FormMisfit& misfit,
                               const double* tails) const {
    FittedPeak best;
    double bestScore = significance;
    for (std::size_t distance = 0; distance < FormMisfit::distances; ++distance) {
        const double widths = FormMisfit::WidthsAt(distance);
        const double position = peak.position + (side == FormMisfit::Side::left ? -1 : 1) * widths * peak.width;
        if (position < 0 || position > static_cast<double>(size_ - 1)) break;
        const Excess excess = ExcessAt({position, peak.width, 0});
        const double share = std::max(widths < besideWidths ? shareBeside : leastShare, misfit.At(side, distance));
        const double tail = tails[static_cast<std::size_t>(position)] * peak.width / form_->At(0);
        if (excess.sum < share * peak.sum + tail || excess.sum <= bestScore * excess.deviation) continue;
        if (excess.deviation > 0) bestScore = excess.sum / excess.deviation;
        best = {position, peak.width, excess.sum};
    }
    return best;
}

std::vector<FittedPeak> PeakFit::HiddenPeaks(const FormMisfit& misfit, const double* tails) {
    std::vector<FittedPeak> hidden;
    const auto isClose = [](const FittedPeak& a, const FittedPeak& b) {
        return WidthsBetween(a, b) < FormMisfit::closestWidths;
    };
    for (std::size_t k = 0; k < peaks_.size(); ++k) {
        if (!std::exchange(courses_[k].fresh, false)) continue;
        for (const auto side : {FormMisfit::Side::left, FormMisfit::Side::right}) {
            if (!MayHide(peaks_[k], side)) continue;
            const FittedPeak best = BestHidden(peaks_[k], side, misfit, tails);
            const std::size_t neighbour = side == FormMisfit::Side::left ? k - 1 : k + 1;
            const bool isTaken = (neighbour < peaks_.size() && isClose(peaks_[neighbour], best)) ||
                                 (!hidden.empty() && isClose(hidden.back(), best));
            if (best.sum > 0 && !isTaken) hidden.push_back(best);
        }
    }
    std::sort(hidden.begin(), hidden.end(), IsLeftOf);
    return hidden;
}

void PeakFit::AddHidden(const FormMisfit& misfit, const double* tails) {
    for (int round = 0; round < mostRounds; ++round) {
        const auto hidden = HiddenPeaks(misfit, tails);
        if (hidden.empty()) break;
        Insert(hidden);
        Refine();
        if (DropUnfounded()) Refine();
    }
    DropUnfounded();
    Expect();
}

}  // namespace orvanel
