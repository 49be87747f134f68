// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/ExperimentIndex.h"

#include <algorithm>
#include <cmath>

namespace orvanel {
namespace {

constexpr double samePrecursorDa = 0.05;
constexpr double sameWindowDa = 0.5;
constexpr double cellTolerances = 1.01;         // a little wider, so that rounding never puts two alike two cells apart
constexpr std::size_t exactCells = 2;           // have no tolerance
constexpr std::size_t comparisonsPerVisit = 8;  // of experiments, that cost as much as the visit of a node

bool AreOneExperiment(const ExperimentKind& a, const ExperimentKind& b) {
    const auto within = [](double tolerance) {
        return [tolerance](double x, double y) { return std::abs(x - y) <= tolerance; };
    };
    return a.msLevel == b.msLevel && a.polarity == b.polarity && a.profile == b.profile &&
           within(sameWindowDa)(a.lowMz, b.lowMz) && within(sameWindowDa)(a.highMz, b.highMz) &&
           std::equal(a.precursors.begin(), a.precursors.end(), b.precursors.begin(), b.precursors.end(),
                      within(samePrecursorDa));
}

std::int64_t CellOf(double value, double tolerance) {
    return static_cast<std::int64_t>(std::floor(value / (cellTolerances * tolerance)));
}

}  // namespace

std::size_t ExperimentIndex::BranchHash::operator()(const Branch& branch) const {
    constexpr std::uint64_t odd = 0x9E3779B97F4A7C15;  // 2^64 over the golden ratio, which spreads neighbours
    const std::uint64_t mixed = (branch.node * odd ^ static_cast<std::uint64_t>(branch.cell)) * odd;
    return static_cast<std::size_t>(mixed ^ mixed >> 32);
}

ExperimentIndex::Cells ExperimentIndex::CellsOf(const ExperimentKind& kind) {
    Cells cells = {4 * kind.msLevel + 2 * kind.polarity + (kind.profile ? 1 : 0),
                   static_cast<std::int64_t>(kind.precursors.size()), CellOf(kind.lowMz, sameWindowDa),
                   CellOf(kind.highMz, sameWindowDa)};
    for (const double precursor : kind.precursors)
        cells.push_back(CellOf(precursor, samePrecursorDa));
    return cells;
}

void ExperimentIndex::Visit(Search& search, std::size_t node, std::size_t depth) const {
    if (search.visitsLeft == 0) return;
    --search.visitsLeft;
    if (depth == search.cells.size()) {
        for (const std::size_t number : atNode_.at(node))
            if ((!search.first || number < *search.first) && AreOneExperiment(experiments_[number].kind, search.kind))
                search.first = number;
        return;
    }
    const std::int64_t reach = depth < exactCells ? 0 : 1;
    for (std::int64_t cell = search.cells[depth] - reach; cell <= search.cells[depth] + reach; ++cell)
        if (const auto found = nodes_.find({node, cell}); found != nodes_.end())
            Visit(search, found->second, depth + 1);
}

std::optional<std::size_t> ExperimentIndex::NumberOf(const ExperimentKind& kind, const Cells& cells) const {
    Search search{kind, cells, experiments_.size() / comparisonsPerVisit, {}};
    Visit(search, 0, 0);
    if (search.visitsLeft > 0) return search.first;
    const auto found = std::find_if(experiments_.begin(), experiments_.end(),
                                    [&](const ExperimentSummary& known) { return AreOneExperiment(known.kind, kind); });
    if (found == experiments_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - experiments_.begin());
}

void ExperimentIndex::Add(const Cells& cells) {
    std::size_t node = 0;
    for (const std::int64_t cell : cells)
        node = nodes_.try_emplace({node, cell}, nodes_.size() + 1).first->second;
    atNode_[node].push_back(experiments_.size());
}

std::size_t ExperimentIndex::Count(const ExperimentKind& kind) {
    const Cells cells = CellsOf(kind);
    auto number = NumberOf(kind, cells);
    if (!number) {
        Add(cells);
        number = experiments_.size();
        experiments_.push_back({kind, 0});
    }
    ++experiments_[*number].spectra;
    return *number;
}

}  // namespace orvanel
