// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/quality/Findings.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "host/clsExplore.h"
#include "orvanel/instrument/Excitation.h"
#include "orvanel/instrument/Simulator.h"
#include "support/NumberText.h"
#include "support/Paths.h"

namespace quality {
namespace {

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
    constexpr double toleranceDa = 0.1;
    const orvanel::TreeNode* nearest = nullptr;
    for (const auto& [name, node] : ion.nodes) {
        const double distance = std::abs(node.mz - mz);
        if (name == ion.root || distance > toleranceDa) continue;
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
                           [&](const auto& fragment) { return std::abs(fragment.foundMz - mz) <= 0.1; });
    };
    if (strongest.empty()) return;
    findings.strongestNode = strongest.front();
    findings.strongestChosen = isChosen(strongest.front());
    const auto wanted = std::min(strongest.size(), static_cast<std::size_t>(run.settings.Advanced_EPINum2ndPrec));
    for (std::size_t i = 0; i < wanted; ++i)
        if (!isChosen(strongest[i])) findings.missedNodes.push_back(strongest[i]);
}

void JudgeCe(const NoiseFree& truth, FragmentFindings& fragment) {
    constexpr double kept = 0.8;
    std::vector<double> yields;
    for (double ce = lowestCe; ce <= highestCe; ce += fineStepV)
        yields.push_back(truth.TransitionYield(fragment.foundMz, ce));
    const auto best = std::max_element(yields.begin(), yields.end());
    if (*best <= 0) return;
    fragment.ceResponse = truth.TransitionYield(fragment.foundMz, fragment.ce) / *best;
    const auto isLost = [&](double yield) { return yield < kept * *best; };
    const auto low = std::find_if(std::make_reverse_iterator(best), yields.rend(), isLost).base();
    const auto high = std::find_if(best, yields.end(), isLost);
    fragment.ce80Low = lowestCe + fineStepV * static_cast<double>(low - yields.begin());
    fragment.ce80High = lowestCe + fineStepV * static_cast<double>(high - yields.begin() - 1);
}

std::string MethodPath(const WholeRun& run, const std::string& infix, double mz) {
    return support::JoinPath(support::FolderOf(run.settings.StarterMethodFilePath),
                             run.settings.CompoundName + infix + support::MzText(mz) + ".xmt");
}

/// The MS3 stage's rule, applied to the noise-free data of the same method.
struct Ms3Rule {
    std::optional<double> af2;
    double firstPeakCps = 0;  ///< of the first 3rd precursor; 0 when none is picked
};

Ms3Rule NoiseFreeMs3(WholeRun& run, const NoiseFree& truth, double mz, double stepOfRamp) {
    Ms3Rule rule;
    veltra::clsExplore explore(*run.orvanelHost);
    explore.Initialize(truth.AcquireToFile(MethodPath(run, "_MS3_RampAF2_", mz)));
    explore.Chrom_LoadXIC(mz, mz + 0.5);
    explore.Chrom_SmoothGraph(2);
    bool isFound = false;
    const double af2 = explore.Chrom_GetPercentMaxIntensityValue(5, isFound);
    if (!isFound) return rule;
    rule.af2 = af2;
    explore.Spectrum_LoadCycleDependentSpectrum(static_cast<std::int16_t>(std::lround(af2 / stepOfRamp) + 1));
    bool isBelow = false;
    const auto peaks = explore.Spectrum_GetTopPeaks(2, mz, 5.0, 10, isBelow);
    if (!peaks.empty()) rule.firstPeakCps = peaks.front()->CentroidIntensity;
    return rule;
}

double ExactAf2(const NoiseFree& truth, const std::string& node) {
    constexpr double left = 0.05;
    if (node.empty()) return 0;
    const orvanel::Excitation excitation(truth.Model(), truth.Ion().nodes.at(node));
    double af2 = 0;
    const double highest = truth.Model().parameterLimits.at("AF2").maximum;
    const double step = highest / 10000;
    while (af2 < highest && excitation.RemainingShare(af2) > left)
        af2 += step;
    return af2;
}

double StepOfRamp(const WholeRun& run, double mz) {
    const auto method = MethodAt(MethodPath(run, "_MS3_RampAF2_", mz));
    return method.periods.empty() || !method.periods[0].ramp ? 0 : static_cast<double>(method.periods[0].ramp->step);
}

void JudgeFragments(WholeRun& run, const NoiseFree& truth, Findings& findings) {
    double bestCps = 0;
    int position = 0;
    for (const auto& record : run.run.results->TopPeaksInfo) {
        ++position;
        FragmentFindings fragment;
        fragment.foundMz = record->SecondPrecursor->CentroidMass;
        if (const auto* node = NearestFragment(truth.Ion(), fragment.foundMz)) fragment.node = node->name;
        fragment.ce = record->OptimizedCE;
        JudgeCe(truth, fragment);
        if (record->CEWasOptimized) {
            fragment.exactAf2 = ExactAf2(truth, fragment.node);
            fragment.af2Step = StepOfRamp(run, fragment.foundMz);
            if (record->AF2WasOptimized) fragment.af2 = record->OptimizedAF2;
            const Ms3Rule rule = NoiseFreeMs3(run, truth, fragment.foundMz, fragment.af2Step);
            fragment.ruleAf2 = rule.af2;
            if (rule.firstPeakCps > bestCps) {
                bestCps = rule.firstPeakCps;
                findings.bestPath = position;
            }
        }
        findings.fragments.push_back(fragment);
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
    if (af2.has_value() != ruleAf2.has_value()) return false;
    return !af2 || std::abs(*af2 - *ruleAf2) <= af2Step * (1 + roundingShare);
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
    findings.parentErrorDa = results->ActualPeak->CentroidMass - truth.Ion().Root().mz;
    if (!findings.completed) return findings;
    JudgeVoltages(run, truth, findings);
    JudgeFragments(run, truth, findings);
    JudgeFragmentChoice(run, truth, findings);
    findings.optimalPath = results->OptimalMS3PeakIndex;
    findings.gain = Gain(run, truth);
    return findings;
}

}  // namespace quality
