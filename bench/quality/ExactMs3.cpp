// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/quality/ExactMs3.h"

#include <algorithm>
#include <cmath>

#include "orvanel/instrument/Excitation.h"
#include "orvanel/methods/MethodDocument.h"
#include "orvanel/methods/Ramp.h"
#include "scans/clsScan5_MS3.h"

namespace quality {
namespace {

using Rule = veltra::clsScan5_MS3;

constexpr double wantedShare = Rule::remainingPercent / 100.0;
constexpr double sameIonDa = 0.1;
constexpr double halfPeakDa = 0.5;

double CpsWithin(const std::vector<IonCount>& ions, double mz, double toleranceDa) {
    double sum = 0;
    for (const auto& ion : ions)
        if (std::abs(ion.mz - mz) <= toleranceDa) sum += ion.cps;
    return sum;
}

/// One pass of (1, 2, 1)/4, both ends kept: the smoothing is part of the rule.
std::vector<double> Smoothed(const std::vector<double>& before) {
    auto after = before;
    for (std::size_t i = 1; i + 1 < before.size(); ++i)
        after[i] = (before[i - 1] + 2 * before[i] + before[i + 1]) / 4;
    return after;
}

}  // namespace

Ms3Response::Ms3Response(const NoiseFree& truth, const orvanel::MassSpecRecord& method, const std::string& node)
    : truth_(truth), method_(method), mz_(truth.Ion().nodes.at(node).mz) {
    const auto& period = method.periods.at(0);
    if (period.ramp) ramp_ = orvanel::RampValues(*period.ramp, period.cycles);
    const auto& table = period.experiments.at(0).massRanges.at(0).compoundParameters;
    const double ce = orvanel::FindParameter(table, "CE").value_or(0);
    for (const auto& [name, ion] : truth.Ion().nodes)
        if (std::abs(ion.mz - mz_) <= sameIonDa) precursors_.push_back({&ion, truth.Yield(name, ce)});
    signalAtStart_ = SignalCps(0);
}

double Ms3Response::PrecursorLeft(double af2) const {
    double left = 0;
    double start = 0;
    for (const auto& precursor : precursors_) {
        const orvanel::Excitation excitation(truth_.Model(), *precursor.node);
        left += precursor.weight * excitation.RemainingShare(af2);
        start += precursor.weight * excitation.RemainingShare(0);
    }
    return start > 0 ? left / start : 0;
}

double Ms3Response::SignalCps(double af2) const {
    return CpsWithin(truth_.ExcitedIons(method_, mz_, af2), mz_, halfPeakDa);
}

double Ms3Response::SignalLeft(double af2) const {
    return signalAtStart_ > 0 ? SignalCps(af2) / signalAtStart_ : 0;
}

std::optional<double> Ms3Response::WhereFivePercentAreLeft() const {
    constexpr int fineSteps = 10000;
    if (ramp_.empty() || PrecursorLeft(ramp_.back()) > wantedShare) return std::nullopt;
    const double step = ramp_.back() / fineSteps;
    int at = 0;
    while (at < fineSteps && PrecursorLeft(at * step) > wantedShare)
        ++at;
    return at * step;
}

double Ms3Response::ByRuleOnRamp() const {
    if (ramp_.empty()) return 0;
    std::vector<double> signals;
    for (const double af2 : ramp_)
        signals.push_back(SignalCps(af2));
    for (int pass = 0; pass < Rule::smoothes; ++pass)
        signals = Smoothed(signals);
    const double most = *std::max_element(signals.begin(), signals.end());
    double least = most;
    double chosen = 0;
    for (std::size_t i = 0; i < ramp_.size(); ++i) {
        if (signals[i] < wantedShare * most || signals[i] > least) continue;
        least = signals[i];
        chosen = ramp_[i];
    }
    return chosen;
}

ExactMs3 Ms3Response::ByRule() const {
    constexpr double mostAround = Rule::parentAreaPercentLimit / 100.0;
    ExactMs3 exact;
    exact.af2 = WhereFivePercentAreLeft();
    exact.ruleAf2 = ByRuleOnRamp();
    auto ions = truth_.ExcitedIons(method_, mz_, exact.ruleAf2);
    std::erase_if(ions, [](const auto& ion) { return !ion.isMonoisotopic; });
    double all = 0;
    for (const auto& ion : ions)
        all += ion.cps;
    if (all <= 0) return exact;
    exact.shareAround = CpsWithin(ions, mz_, Rule::exclusionToleranceDa) / all;
    if (exact.shareAround > mostAround) return exact;
    for (const auto& ion : ions) {
        if (std::abs(ion.mz - mz_) < Rule::exclusionToleranceDa) continue;
        const double cps = CpsWithin(ions, ion.mz, sameIonDa);
        if (cps <= exact.thirdCps) continue;
        exact.thirdCps = cps;
        exact.thirdMz = ion.mz;
    }
    return exact;
}

}  // namespace quality
