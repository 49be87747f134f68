// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/Chromatogram.h"

#include <algorithm>
#include <limits>
#include <map>
#include <numeric>

#include "orvanel/data/DataErrors.h"
#include "ports/HostError.h"
#include "support/NumberText.h"

namespace orvanel {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

double SumBetween(const StoredSpectrum& spectrum, double massStart, double massStop) {
    const auto first = std::lower_bound(spectrum.mz.begin(), spectrum.mz.end(), massStart);
    const auto last = std::upper_bound(first, spectrum.mz.end(), massStop);
    const auto begin = spectrum.intensity.begin();
    return std::accumulate(begin + (first - spectrum.mz.begin()), begin + (last - spectrum.mz.begin()), 0.0);
}

double MeasuredMz(const StoredTrace& trace) {
    return trace.q3 > 0 ? trace.q3 : trace.q1;
}

/// Sums traces point by point. Traces over different times (scheduled transitions) are merged in order of time.
StoredTrace SumOf(const std::vector<const StoredTrace*>& traces) {
    StoredTrace sum;
    if (traces.empty()) return sum;
    const auto& axis = traces.front()->X();
    const bool oneAxis =
        std::all_of(traces.begin(), traces.end(), [&](const StoredTrace* trace) { return trace->X() == axis; });
    if (oneAxis) {
        sum.timeMinutes = axis;
        sum.intensity.assign(axis.size(), 0.0);
        for (const auto* trace : traces)
            for (std::size_t i = 0; i < axis.size(); ++i)
                sum.intensity[i] += trace->intensity[i];
        return sum;
    }
    std::map<double, double> merged;
    for (const auto* trace : traces)
        for (std::size_t i = 0; i < trace->intensity.size(); ++i)
            merged[trace->X()[i]] += trace->intensity[i];
    for (const auto& [time, intensity] : merged) {
        sum.timeMinutes.push_back(time);
        sum.intensity.push_back(intensity);
    }
    return sum;
}

}  // namespace

void Chromatogram::Load(const DataFileContent& content, double massStart, double massStop) {
    if (!content.spectra.empty()) {
        std::vector<double> x;
        std::vector<double> y;
        for (const auto& spectrum : content.spectra) {
            x.push_back(content.X(spectrum));
            y.push_back(SumBetween(spectrum, massStart, massStop));
        }
        points_.SetX(std::move(x));
        points_.SetY(std::move(y));
        return;
    }
    std::vector<const StoredTrace*> chosen;
    for (const auto& trace : content.traces)
        if (MeasuredMz(trace) >= massStart && MeasuredMz(trace) <= massStop) chosen.push_back(&trace);
    // The axis of the cycles is shown even where no trace is measured within the range.
    auto sum = SumOf(chosen);
    if (chosen.empty() && !content.traces.empty()) {
        sum.timeMinutes = content.traces.front().X();
        sum.intensity.assign(sum.timeMinutes.size(), 0.0);
    }
    points_.SetX(std::move(sum.timeMinutes));
    points_.SetY(std::move(sum.intensity));
}

void Chromatogram::ExploreLoadTIC(int sample, int period, int experiment) {
    RequireExperiment(sample, period, experiment);
    const auto content = points_.Open();
    if (content->spectra.empty() && content->traces.empty() && content->total) {
        points_.SetX(content->total->X());
        points_.SetY(content->total->intensity);
        return;
    }
    Load(*content, -infinity, infinity);
}

void Chromatogram::ExploreLoadXIC(int sample, int period, int experiment, double massStart, double massStop) {
    RequireExperiment(sample, period, experiment);
    if (!(massStart <= massStop))
        throw ports::HostError(exploreBadRange, "The mass range from " + support::GeneralText(massStart) + " Da to " +
                                                    support::GeneralText(massStop) + " Da is empty");
    Load(*points_.Open(), massStart, massStop);
}

void Chromatogram::ExploreLoadXICOverlay(int sample, int period, int experiment, int massNumber) {
    RequireExperiment(sample, period, experiment);
    const auto content = points_.Open();
    if (massNumber < 0 || static_cast<std::size_t>(massNumber) >= content->traces.size())
        throw ports::HostError(exploreNoSuchMass, "The experiment has " + std::to_string(content->traces.size()) +
                                                      " masses, counted from 0; there is no mass number " +
                                                      std::to_string(massNumber));
    const auto& trace = content->traces[static_cast<std::size_t>(massNumber)];
    points_.SetX(trace.X());
    points_.SetY(trace.intensity);
}

int Chromatogram::ExplorePointCount() const {
    points_.RequirePairs();
    return static_cast<int>(points_.x.size());
}

std::size_t Chromatogram::IndexOf(int point) const {
    if (point < 1 || point > ExplorePointCount())
        throw ports::HostError(exploreNoSuchPoint, "The chromatogram has " + std::to_string(ExplorePointCount()) +
                                                       " points, counted from 1; there is no point " +
                                                       std::to_string(point));
    return static_cast<std::size_t>(point - 1);
}

double Chromatogram::ExplorePointX(int point) const {
    return points_.x[IndexOf(point)];
}
double Chromatogram::ExplorePointY(int point) const {
    return points_.y[IndexOf(point)];
}

void Chromatogram::ExploreSortPoints(bool byX, bool ascending) {
    points_.RequirePairs();
    const auto& key = byX ? points_.x : points_.y;
    std::vector<std::size_t> order(key.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return ascending ? key[a] < key[b] : key[a] > key[b]; });
    std::vector<double> x;
    std::vector<double> y;
    for (const std::size_t i : order) {
        x.push_back(points_.x[i]);
        y.push_back(points_.y[i]);
    }
    points_.x.swap(x);
    points_.y.swap(y);
}

}  // namespace orvanel
