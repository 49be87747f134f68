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
constexpr int columnWidth = 7;

/// Counts how often something held.
class Share {
  public:
    void Count(bool holds) {
        ++all_;
        if (holds) ++held_;
    }
    bool IsEmpty() const { return all_ == 0; }
    int Held() const { return held_; }
    /// Of no cases nothing is reached.
    double Percent() const { return all_ == 0 ? 0 : 100.0 * held_ / all_; }
    std::string Text() const { return std::to_string(held_) + " of " + std::to_string(all_); }

  private:
    int held_ = 0;
    int all_ = 0;
};

/// What a number of runs gave together. A run that did not complete counts against every share of runs.
struct Summary {
    Share completed, parent, responses, strongest, ce80, ceShare80, af2, ions, paths, samePath, noPathEither;
    Share noParent, pathLost, tooMuchLeft, flatTail;  ///< what the rules lose
    double worstParentDa = 0;
    double lowestDp = 1, lowestEp = 1, lowestCep = 1, lowestCe = 1, lowestCeShare = 1;
    std::vector<double> gains;

    void Add(const Findings& run);
    void AddFragments(const Findings& run);
    /// Of at least one.
    double MedianGain() const;
};

double LowestCe(const Findings& run, CeResponse FragmentFindings::*response) {
    double lowest = 1;
    for (const auto& fragment : run.fragments)
        lowest = std::min(lowest, (fragment.*response).share);
    return lowest;
}

void Summary::Add(const Findings& run) {
    const double ce = LowestCe(run, &FragmentFindings::ceCounts);
    completed.Count(run.completed);
    noParent.Count(!run.completed && !run.parentFound);
    parent.Count(run.completed && std::abs(run.parentErrorDa) <= parentToleranceDa);
    responses.Count(run.completed && std::min({run.dp, run.ep, run.cep, ce}) >= goodResponse);
    strongest.Count(run.strongestChosen);
    paths.Count(run.EndsWithPath());
    if (!run.NoPathEither()) samePath.Count(run.SamePath());
    noPathEither.Count(run.NoPathEither());
    pathLost.Count(run.PathLostToLimit());
    if (!run.completed) return;
    worstParentDa = std::max(worstParentDa, std::abs(run.parentErrorDa));
    lowestDp = std::min(lowestDp, run.dp);
    lowestEp = std::min(lowestEp, run.ep);
    lowestCep = std::min(lowestCep, run.cep);
    lowestCe = std::min(lowestCe, ce);
    lowestCeShare = std::min(lowestCeShare, LowestCe(run, &FragmentFindings::ceShare));
    AddFragments(run);
    if (run.gain) gains.push_back(*run.gain);
}

void Summary::AddFragments(const Findings& run) {
    for (const auto& fragment : run.fragments) {
        ions.Count(fragment.IsIon());
        for (int third = 0; third < fragment.thirdPrecursors; ++third)
            ions.Count(third >= fragment.foreignThirdPrecursors);
        ce80.Count(fragment.ceCounts.Keeps80(fragment.ce));
        ceShare80.Count(fragment.ceShare.Keeps80(fragment.ce));
        if (fragment.af2Step <= 0) continue;
        af2.Count(fragment.Af2Agrees());
        tooMuchLeft.Count(fragment.tooMuchLeft);
        flatTail.Count(fragment.IsOnFlatTail());
    }
}

double Summary::MedianGain() const {
    auto sorted = gains;
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 2];
}

void PrintLine(std::ostream& out, const std::string& name, const Summary& summary) {
    const bool hasFindings = summary.completed.Held() > 0;
    const auto number = [&](bool isThere, double value, int decimals = 1) {
        out << std::setw(columnWidth);
        if (isThere)
            out << std::fixed << std::setprecision(decimals) << value;
        else
            out << "-";
    };
    out << std::left << std::setw(nameWidth) << name << std::right << std::setw(12) << summary.completed.Text();
    number(hasFindings, summary.worstParentDa, 3);
    for (const double lowest :
         {summary.lowestDp, summary.lowestEp, summary.lowestCep, summary.lowestCe, summary.lowestCeShare})
        number(hasFindings, 100 * lowest);
    for (const Share* share : {&summary.strongest, &summary.ce80, &summary.ceShare80, &summary.af2, &summary.ions,
                               &summary.paths, &summary.samePath})
        number(hasFindings && !share->IsEmpty(), share->Percent());
    number(hasFindings, summary.noPathEither.Held(), 0);
    out << ' ';
    number(!summary.gains.empty(), summary.gains.empty() ? 0 : summary.MedianGain());
    number(true, static_cast<double>(summary.gains.size()), 0);
    out << '\n';
}

void PrintLoss(std::ostream& out, const std::string& text, const Share& share) {
    out << "  " << text << ": " << share.Text() << std::setprecision(1) << " (" << share.Percent() << " %)\n";
}

bool PrintTarget(std::ostream& out, const std::string& text, const Share& share, double wantedPercent) {
    const bool isMet = share.Percent() >= wantedPercent;
    out << (isMet ? "  met     " : "  MISSED  ") << text << ": " << share.Text() << " (" << std::setprecision(1)
        << share.Percent() << " %, wanted " << std::setprecision(0) << wantedPercent << " %)\n";
    return isMet;
}

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

using Row = std::vector<std::pair<const char*, std::string>>;  ///< title and text of each column

Row RowOf(const Findings& run) {
    std::string missed;
    for (const auto& node : run.missedNodes)
        missed += (missed.empty() ? "" : " ") + node;
    Row row = {{"compound", Quoted(run.compound)},
               {"seed", std::to_string(run.seed)},
               {"noise_level", Field(run.noiseLevel)},
               {"completed", Field(run.completed)},
               {"message", Quoted(run.lastMessage)},
               {"parent_error_da", Field(run.parentErrorDa)},
               {"dp_response", Field(run.dp)},
               {"ep_response", Field(run.ep)},
               {"cep_response", Field(run.cep)},
               {"lowest_ce_response", Field(LowestCe(run, &FragmentFindings::ceCounts))},
               {"lowest_ce_share", Field(LowestCe(run, &FragmentFindings::ceShare))},
               {"strongest_fragment", Quoted(run.strongestNode)},
               {"strongest_chosen", Field(run.strongestChosen)},
               {"missed_fragments", Quoted(missed)},
               {"optimal_path", std::to_string(run.optimalPath)},
               {"optimal_third_mz", Field(run.optimalThirdMz)},
               {"best_path", std::to_string(run.bestPath)},
               {"best_third_mz", Field(run.bestThirdMz)},
               {"same_path", Field(run.SamePath())},
               {"path_lost_to_limit", Field(run.PathLostToLimit())},
               {"gain", Field(run.gain)}};
    constexpr std::ptrdiff_t conditions = 5;
    if (!run.completed) std::for_each(row.begin() + conditions, row.end(), [](auto& column) { column.second.clear(); });
    return row;
}

Row RowOf(const Findings& run, const FragmentFindings& fragment) {
    return {{"compound", Quoted(run.compound)},
            {"seed", std::to_string(run.seed)},
            {"noise_level", Field(run.noiseLevel)},
            {"node", Quoted(fragment.node)},
            {"mz", Field(fragment.foundMz)},
            {"ce", Field(fragment.ce)},
            {"ce_response", Field(fragment.ceCounts.share)},
            {"ce80_low", Field(fragment.ceCounts.low80)},
            {"ce80_high", Field(fragment.ceCounts.high80)},
            {"ce_share", Field(fragment.ceShare.share)},
            {"ce_share80_low", Field(fragment.ceShare.low80)},
            {"ce_share80_high", Field(fragment.ceShare.high80)},
            {"af2", Field(fragment.af2)},
            {"af2_exact_5_percent", Field(fragment.exact.af2)},
            {"af2_rule_exact", Field(fragment.exact.ruleAf2)},
            {"af2_step", Field(fragment.af2Step)},
            {"precursor_left", Field(fragment.precursorAtAf2)},
            {"signal_left", Field(fragment.signalAtAf2)},
            {"share_around_exact", Field(fragment.exact.shareAround)},
            {"too_much_left", Field(fragment.tooMuchLeft)},
            {"flat_tail", Field(fragment.IsOnFlatTail())},
            {"third_precursors", std::to_string(fragment.thirdPrecursors)},
            {"foreign_third_precursors", std::to_string(fragment.foreignThirdPrecursors)}};
}

void WriteTitles(std::ostream& out, const Row& row) {
    std::vector<std::string> titles;
    for (const auto& [title, text] : row)
        titles.emplace_back(title);
    WriteRow(out, titles);
}

void WriteTexts(std::ostream& out, const Row& row) {
    std::vector<std::string> texts;
    for (const auto& [title, text] : row)
        texts.push_back(text);
    WriteRow(out, texts);
}

}  // namespace

bool PrintTable(const std::vector<Findings>& runs, std::ostream& out) {
    out << std::left << std::setw(nameWidth) << "compound" << std::right << std::setw(12) << "completed";
    for (const char* column : {"dm/z", "DP", "EP", "CEP", "CE", "CEs", "frag.", "CE80", "CE80s", "AF2", "ions", "path",
                               "same", "none", "gain", "of"})
        out << std::setw(columnWidth + (column == std::string("gain") ? 1 : 0)) << column;
    out << "\n(worst parent error in Da; lowest response at the found voltages, in % of the best, CE by ion counts and "
           "by share of the ions left;\n % of cases: truly strongest fragment chosen, CE within the range that keeps "
           "80 % of the counts and of the share, AF2 within a step\n of where 5 % is left, precursors that are ions "
           "of the compound, runs that end with a path, of those with a path on either side the same\n one as on exact "
           "ion counts; runs with no path on either side; median gain of the final method over the starter's "
           "voltages, of how many\n runs; - where no run completed or there is nothing to count)\n";
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
    isMet &= PrintTarget(out, "AF2 within a ramp step of where exactly 5 % is left", all.af2, 90);
    out << "\nWhat the prescribed rules lose\n";
    PrintLoss(out, "runs in which ER finds no parent at a CE of 10 V", all.noParent);
    PrintLoss(out, "runs without a path, more than 10 % of a 2nd precursor left", all.pathLost);
    PrintLoss(out, "2nd precursors without 3rd ones, more than 10 % left", all.tooMuchLeft);
    PrintLoss(out, "2nd precursors whose AF2 lies on a flat tail, more than a step off", all.flatTail);
    return isMet;
}

void WriteRunsCsv(const std::vector<Findings>& runs, std::ostream& out) {
    WriteTitles(out, RowOf(Findings()));
    for (const auto& run : runs)
        WriteTexts(out, RowOf(run));
}

void WriteFragmentsCsv(const std::vector<Findings>& runs, std::ostream& out) {
    WriteTitles(out, RowOf(Findings(), FragmentFindings()));
    for (const auto& run : runs)
        for (const auto& fragment : run.fragments)
            WriteTexts(out, RowOf(run, fragment));
}

}  // namespace quality
