// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/quality/Findings.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "orvanel/instrument/Simulator.h"
#include "support/NumberText.h"
#include "support/Paths.h"

namespace quality {
namespace {

constexpr double sameIonDa = 0.1;
constexpr double fineStepV = 0.05;
constexpr double lowestCe = 10;  // V, the collision-energy ramp
constexpr double highestCe = 130;

/// The best value of a response between two voltages.
double Best(double start, double stop, const std::function<double(double)>& response) {
    double best = 0;
    for (double voltage = start; voltage <= stop + fineStepV / 2; voltage += fineStepV)
        best = std::max(best, response(voltage));
    return best;
}

const orvanel::TreeNode* NearestFragment(const orvanel::Compound& ion, double mz) {
    const orvanel::TreeNode* nearest = nullptr;
    for (const auto& [name, node] : ion.nodes) {
        const double distance = std::abs(node.mz - mz);
        if (name == ion.root || distance > sameIonDa) continue;
        if (nearest == nullptr || distance < std::abs(nearest->mz - mz)) nearest = &node;
    }
    return nearest;
}

void JudgeVoltages(const WholeRun& run, const NoiseFree& truth, Findings& findings) {
    const auto& results = *run.run.results;
    const auto& settings = run.settings;
    const auto dp = static_cast<double>(results.DP.Current);
    const auto ep = static_cast<double>(results.EP.Current);
    const auto cep = static_cast<double>(results.CEP.Current);
    const auto transmission = [&](double d, double e, double c) {
        return orvanel::RelativeTransmission(truth.Model(), truth.Ion(), d, e, c);
    };
    // Each term of the product by itself: the other two stay at the found values and cancel out.
    const double found = transmission(dp, ep, cep);
    findings.dp = found / Best(static_cast<double>(settings.Advanced_Q1MIDPRampStart),
                               static_cast<double>(settings.Advanced_Q1MIDPRampStop),
                               [&](double v) { return transmission(v, ep, cep); });
    findings.ep = found / Best(1, 12, [&](double v) { return transmission(dp, v, cep); });
    findings.cep = found / Best(0, 100, [&](double v) { return transmission(dp, ep, v); });
}

/// The fragments that EPI could choose, truly strongest first.
std::vector<std::string> StrongestFirst(const WholeRun& run, const NoiseFree& truth) {
    constexpr double exclusionDa = 2.5;
    const auto& settings = run.settings;
    const auto& ion = truth.Ion();
    std::vector<std::pair<double, std::string>> yields;
    for (const auto& [name, node] : ion.nodes) {
        const bool inRange = node.mz >= static_cast<double>(settings.Advanced_EPIMassStart) &&
                             node.mz <= static_cast<double>(settings.Advanced_EPIMassEnd);
        if (name == ion.root || !inRange || std::abs(node.mz - ion.Root().mz) < exclusionDa) continue;
        yields.emplace_back(-truth.SpreadYield(name, static_cast<double>(settings.Advanced_EPI_CE),
                                               static_cast<double>(settings.Advanced_EPI_CES)),
                            name);
    }
    std::sort(yields.begin(), yields.end());
    std::vector<std::string> names;
    for (const auto& [yield, name] : yields)
        names.push_back(name);
    return names;
}

void JudgeFragmentChoice(const WholeRun& run, const NoiseFree& truth, Findings& findings) {
    const auto strongest = StrongestFirst(run, truth);
    const auto isChosen = [&](const std::string& node) {
        const double mz = truth.Ion().nodes.at(node).mz;
        // Isomers count once: a peak at the same mass is the fragment.
        return std::any_of(findings.fragments.begin(), findings.fragments.end(),
                           [&](const auto& fragment) { return std::abs(fragment.foundMz - mz) <= sameIonDa; });
    };
    if (strongest.empty()) return;
    findings.strongestNode = strongest.front();
    findings.strongestChosen = isChosen(strongest.front());
    const auto wanted = std::min(strongest.size(), static_cast<std::size_t>(run.settings.Advanced_EPINum2ndPrec));
    for (std::size_t i = 0; i < wanted; ++i)
        if (!isChosen(strongest[i])) findings.missedNodes.push_back(strongest[i]);
}

CeResponse JudgeCe(double ce, const std::function<double(double)>& response) {
    constexpr double kept = 0.8;
    CeResponse judged;
    std::vector<double> responses;
    for (double voltage = lowestCe; voltage <= highestCe; voltage += fineStepV)
        responses.push_back(response(voltage));
    const auto best = std::max_element(responses.begin(), responses.end());
    if (*best <= 0) return judged;
    judged.share = response(ce) / *best;
    const auto isLost = [&](double value) { return value < kept * *best; };
    const auto low = std::find_if(std::make_reverse_iterator(best), responses.rend(), isLost).base();
    const auto high = std::find_if(best, responses.end(), isLost);
    judged.low80 = lowestCe + fineStepV * static_cast<double>(low - responses.begin());
    judged.high80 = lowestCe + fineStepV * static_cast<double>(high - responses.begin() - 1);
    return judged;
}

std::string MethodPath(const WholeRun& run, const std::string& infix, double mz) {
    return support::JoinPath(support::FolderOf(run.settings.StarterMethodFilePath),
                             run.settings.CompoundName + infix + support::MzText(mz) + ".xmt");
}

void JudgeMs3(const veltra::clsItem_TopPeak& record, const orvanel::MassSpecRecord& method, const NoiseFree& truth,
              FragmentFindings& fragment) {
    fragment.af2Step = method.periods.empty() || !method.periods[0].ramp ? 0 : method.periods[0].ramp->step;
    if (record.AF2WasOptimized) fragment.af2 = record.OptimizedAF2;
    fragment.tooMuchLeft = record.AF2WasOptimized && !record.MS3PercentBelowThreshold;
    for (const auto& third : record.MS3PeaksCollection) {
        ++fragment.thirdPrecursors;
        if (NearestFragment(truth.Ion(), third->CentroidMass) == nullptr) ++fragment.foreignThirdPrecursors;
    }
    if (!fragment.IsIon()) return;
    const Ms3Response response(truth, method, fragment.node);
    fragment.exact = response.ByRule();
    fragment.precursorAtAf2 = response.PrecursorLeft(fragment.af2.value_or(0));
    fragment.signalAtAf2 = response.SignalLeft(fragment.af2.value_or(0));
}

void JudgeFragments(const WholeRun& run, const NoiseFree& truth, Findings& findings) {
    double bestCps = 0;
    for (const auto& record : run.run.results->TopPeaksInfo) {
        FragmentFindings fragment;
        fragment.foundMz = record->SecondPrecursor->CentroidMass;
        fragment.ce = record->OptimizedCE;
        if (const auto* node = NearestFragment(truth.Ion(), fragment.foundMz)) {
            fragment.node = node->name;
            fragment.ceCounts =
                JudgeCe(fragment.ce, [&](double ce) { return truth.TransitionYield(fragment.foundMz, ce); });
            fragment.ceShare =
                JudgeCe(fragment.ce, [&](double ce) { return truth.TransitionShare(fragment.foundMz, ce); });
        }
        if (record->CEWasOptimized)
            JudgeMs3(*record, MethodAt(MethodPath(run, "_MS3_RampAF2_", fragment.foundMz)), truth, fragment);
        findings.fragments.push_back(fragment);
        if (fragment.exact.thirdCps <= bestCps) continue;
        bestCps = fragment.exact.thirdCps;
        findings.bestThirdMz = fragment.exact.thirdMz;
        findings.bestPath = static_cast<int>(findings.fragments.size());
    }
}

/// The noise-free signal of a mass in the first cycle of a method.
double SignalAt(const NoiseFree& truth, const orvanel::MassSpecRecord& method, double mz) {
    constexpr double halfWindowDa = 0.5;
    const auto data = truth.Acquire(method);
    if (data.cycles.empty()) return 0;
    double signal = 0;
    const auto& cycle = data.cycles.front();
    for (std::size_t i = 0; i < cycle.mz.size(); ++i)
        if (std::abs(cycle.mz[i] - mz) <= halfWindowDa) signal += cycle.intensity[i];
    return signal;
}

std::optional<double> Gain(const WholeRun& run, const NoiseFree& truth) {
    const auto& results = *run.run.results;
    if (results.OptimalMS3PeakIndex < 1) return std::nullopt;
    const auto& optimal = *results.TopPeaksInfo[static_cast<std::size_t>(results.OptimalMS3PeakIndex - 1)];
    const double mz = optimal.MS3PeaksCollection.front()->CentroidMass;
    const auto final = MethodAt(results.OptimalMS3Method);
    auto starter = final;
    const std::pair<const char*, float> voltages[] = {{"DP", results.DP.Initial},
                                                      {"EP", results.EP.Initial},
                                                      {"CEP", results.CEP.Initial},
                                                      {"CE", results.CE.Initial},
                                                      {"AF2", results.AF2.Initial}};
    for (auto& range : starter.periods.at(0).experiments.at(0).massRanges)
        for (auto& parameter : range.compoundParameters)
            for (const auto& [id, value] : voltages)
                if (parameter.id == id) parameter.value = value;
    const double before = SignalAt(truth, starter, mz);
    if (before <= 0) return std::nullopt;
    return SignalAt(truth, final, mz) / before;
}

}  // namespace

bool FragmentFindings::Af2Agrees() const {
    constexpr double roundingShare = 1e-6;
    if (!IsIon() || foreignThirdPrecursors > 0 || !af2 || !exact.af2) return false;
    return std::abs(*af2 - *exact.af2) <= af2Step * (1 + roundingShare);
}

bool FragmentFindings::IsOnFlatTail() const {
    constexpr double least = 0.025;
    constexpr double most = 0.1;
    if (!IsIon() || !af2 || Af2Agrees()) return false;
    return !exact.af2 || (std::abs(*af2 - *exact.af2) > af2Step && signalAtAf2 >= least && signalAtAf2 <= most);
}

bool Findings::SamePath() const {
    return EndsWithPath() && optimalPath == bestPath && std::abs(optimalThirdMz - bestThirdMz) <= sameIonDa;
}

bool Findings::PathLostToLimit() const {
    return completed && optimalPath == 0 &&
           std::any_of(fragments.begin(), fragments.end(), [](const auto& fragment) { return fragment.tooMuchLeft; });
}

Findings Judge(WholeRun& run) {
    Findings findings;
    findings.compound = run.settings.CompoundName;
    findings.seed = run.config.seed;
    findings.noiseLevel = run.config.noiseLevel;
    findings.completed = run.Start() == veltra::StartButton::Outcome::Completed;
    if (!run.boxes.shown.empty()) findings.lastMessage = run.boxes.shown.back().text;
    const auto* results = run.run.results.get();
    if (results == nullptr || !results->ActualPeak) return findings;
    const NoiseFree truth(run);
    findings.parentFound = true;
    findings.parentErrorDa = results->ActualPeak->CentroidMass - truth.Ion().Root().mz;
    if (!findings.completed) return findings;
    JudgeVoltages(run, truth, findings);
    JudgeFragments(run, truth, findings);
    JudgeFragmentChoice(run, truth, findings);
    findings.optimalPath = results->OptimalMS3PeakIndex;
    if (findings.optimalPath > 0)
        findings.optimalThirdMz = results->TopPeaksInfo[static_cast<std::size_t>(findings.optimalPath - 1)]
                                      ->MS3PeaksCollection.front()
                                      ->CentroidMass;
    findings.gain = Gain(run, truth);
    return findings;
}

}  // namespace quality
