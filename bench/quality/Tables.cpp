// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/quality/Tables.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iomanip>
#include <limits>
#include <string>

#include "support/NumberText.h"

namespace quality {
namespace {

constexpr double goodResponse = 0.95;
constexpr double parentToleranceDa = 0.1;
constexpr int nameWidth = 32;
constexpr int columnWidth = 8;

/// Counts how often something held.
class Share {
  public:
    void Count(bool holds) {
        ++all_;
        if (holds) ++held_;
    }
    double Percent() const { return all_ == 0 ? 100 : 100.0 * held_ / all_; }
    std::string Text() const { return std::to_string(held_) + " of " + std::to_string(all_); }

  private:
    int held_ = 0;
    int all_ = 0;
};

/// What a number of runs gave together.
struct Summary {
    Share completed, parent, responses, strongest, ce80, af2, path;
    double worstParentDa = 0;
    double lowestDp = 1, lowestEp = 1, lowestCep = 1, lowestCe = 1;
    std::vector<double> gains;

    void Add(const Findings& run);
    /// Of at least one.
    double MedianGain() const;
};

double LowestCe(const Findings& run) {
    double lowest = 1;
    for (const auto& fragment : run.fragments)
        if (!fragment.node.empty()) lowest = std::min(lowest, fragment.ceResponse);
    return lowest;
}

void Summary::Add(const Findings& run) {
    completed.Count(run.completed);
    if (!run.completed) return;
    parent.Count(std::abs(run.parentErrorDa) <= parentToleranceDa);
    worstParentDa = std::max(worstParentDa, std::abs(run.parentErrorDa));
    const double ce = LowestCe(run);
    responses.Count(std::min({run.dp, run.ep, run.cep, ce}) >= goodResponse);
    lowestDp = std::min(lowestDp, run.dp);
    lowestEp = std::min(lowestEp, run.ep);
    lowestCep = std::min(lowestCep, run.cep);
    lowestCe = std::min(lowestCe, ce);
    if (!run.strongestNode.empty()) strongest.Count(run.strongestChosen);
    for (const auto& fragment : run.fragments) {
        if (fragment.node.empty()) continue;
        ce80.Count(fragment.CeKeeps80());
        if (fragment.af2Step > 0) af2.Count(fragment.Af2Agrees());
    }
    path.Count(run.optimalPath == run.bestPath);
    if (run.gain) gains.push_back(*run.gain);
}

double Summary::MedianGain() const {
    auto sorted = gains;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
}

void PrintLine(std::ostream& out, const std::string& name, const Summary& summary) {
    const auto percent = [&](double share) { out << std::setw(columnWidth) << std::setprecision(1) << share; };
    out << std::left << std::setw(nameWidth) << name << std::right << std::setw(12) << summary.completed.Text()
        << std::fixed << std::setw(columnWidth) << std::setprecision(3) << summary.worstParentDa;
    for (const double lowest : {summary.lowestDp, summary.lowestEp, summary.lowestCep, summary.lowestCe})
        percent(100 * lowest);
    for (const Share* share : {&summary.strongest, &summary.ce80, &summary.af2, &summary.path})
        percent(share->Percent());
    if (summary.gains.empty())
        out << std::setw(columnWidth) << "-";
    else
        percent(summary.MedianGain());
    out << '\n';
}

bool PrintTarget(std::ostream& out, const std::string& text, const Share& share, double wantedPercent) {
    const bool isMet = share.Percent() >= wantedPercent;
    out << (isMet ? "  met     " : "  MISSED  ") << text << ": " << share.Text() << " (" << std::setprecision(1)
        << share.Percent() << " %, wanted " << std::setprecision(0) << wantedPercent << " %)\n";
    return isMet;
}

/// Numbers of a row, empty where they are not finite.
void WriteRow(std::ostream& out, const std::vector<std::string>& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i)
        out << (i == 0 ? "" : ",") << fields[i];
    out << '\n';
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
}

std::string Field(double value) {
    constexpr int decimals = 5;
    return support::GeneralText(support::RoundHalfEven(value, decimals));
}

std::string Field(const std::optional<double>& value) {
    return value ? Field(*value) : "";
}

std::string Field(bool value) {
    return value ? "1" : "0";
}

}  // namespace

bool PrintTable(const std::vector<Findings>& runs, std::ostream& out) {
    out << std::left << std::setw(nameWidth) << "compound" << std::right << std::setw(12) << "completed";
    for (const char* column : {"dm/z", "DP", "EP", "CEP", "CE", "frag.", "CE80", "AF2", "path", "gain"})
        out << std::setw(columnWidth) << column;
    out << "\n(worst parent error in Da; lowest response at the found voltages, in % of the best; % of cases: truly "
           "strongest\n fragment chosen, CE within the range that keeps 80 %, AF2 within a step of the noise-free "
           "rule's, "
           "best path chosen;\n median gain of the final method over the starter's voltages)\n";
    Summary all;
    for (std::size_t i = 0; i < runs.size();) {
        Summary one;
        const std::string& name = runs[i].compound;
        for (; i < runs.size() && runs[i].compound == name; ++i) {
            one.Add(runs[i]);
            all.Add(runs[i]);
        }
        PrintLine(out, name, one);
    }
    PrintLine(out, "all", all);
    out << "\nTargets\n";
    bool isMet = PrintTarget(out, "run completes", all.completed, 100);
    isMet &= PrintTarget(out, "parent within 0.1 Da", all.parent, 100);
    isMet &= PrintTarget(out, "response at DP, EP, CEP and every CE at least 95 % of the best", all.responses, 95);
    isMet &= PrintTarget(out, "truly strongest fragment among the chosen", all.strongest, 100);
    isMet &= PrintTarget(out, "AF2 within a ramp step of the rule on noise-free data", all.af2, 90);
    return isMet;
}

void WriteRunsCsv(const std::vector<Findings>& runs, std::ostream& out) {
    WriteRow(out, {"compound", "seed", "noise_level", "completed", "message", "parent_error_da", "dp_response",
                   "ep_response", "cep_response", "lowest_ce_response", "strongest_fragment", "strongest_chosen",
                   "missed_fragments", "optimal_path", "best_path", "gain"});
    for (const auto& run : runs) {
        std::string missed;
        for (const auto& node : run.missedNodes)
            missed += (missed.empty() ? "" : " ") + node;
        WriteRow(out, {Quoted(run.compound), std::to_string(run.seed), Field(run.noiseLevel), Field(run.completed),
                       Quoted(run.lastMessage), Field(run.parentErrorDa), Field(run.dp), Field(run.ep), Field(run.cep),
                       Field(LowestCe(run)), Quoted(run.strongestNode), Field(run.strongestChosen), Quoted(missed),
                       std::to_string(run.optimalPath), std::to_string(run.bestPath), Field(run.gain)});
    }
}

void WriteFragmentsCsv(const std::vector<Findings>& runs, std::ostream& out) {
    WriteRow(out, {"compound", "seed", "noise_level", "node", "mz", "ce", "ce_response", "ce80_low", "ce80_high", "af2",
                   "af2_rule_noise_free", "af2_exact_5_percent", "af2_step"});
    for (const auto& run : runs)
        for (const auto& fragment : run.fragments)
            WriteRow(out, {Quoted(run.compound), std::to_string(run.seed), Field(run.noiseLevel), Quoted(fragment.node),
                           Field(fragment.foundMz), Field(fragment.ce), Field(fragment.ceResponse),
                           Field(fragment.ce80Low), Field(fragment.ce80High), Field(fragment.af2),
                           Field(fragment.ruleAf2), Field(fragment.exactAf2), Field(fragment.af2Step)});
}

}  // namespace quality
