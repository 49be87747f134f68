// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "orvanel/data/DataReader.h"

namespace orvanel {

/// Sorts spectra into experiments, at a cost that does not grow with the number of experiments (unless spectra with
/// many precursors crowd together, where all experiments are looked through).
///
/// The values that experiments may differ in by a tolerance are cut into cells of about that tolerance, and the cells
/// of one experiment, one value after the other, are a path through a tree. What is near a spectrum then lies on the
/// paths through its own and the neighbouring cells.
class ExperimentIndex {
  public:
    /// Counts a spectrum.
    /// @return the number of the first experiment that it belongs to, from 0; a new one where there is none
    std::size_t Count(const ExperimentKind& kind);

    /// All experiments, in the order of their first spectra.
    const std::vector<ExperimentSummary>& Experiments() const { return experiments_; }

  private:
    using Cells = std::vector<std::int64_t>;
    struct Branch {
        std::size_t node;
        std::int64_t cell;
        bool operator==(const Branch&) const = default;
    };
    struct BranchHash {
        std::size_t operator()(const Branch& branch) const;
    };

    struct Search {
        const ExperimentKind& kind;
        const Cells& cells;
        std::size_t visitsLeft;
        std::optional<std::size_t> first;
    };

    static Cells CellsOf(const ExperimentKind& kind);
    std::optional<std::size_t> NumberOf(const ExperimentKind& kind, const Cells& cells) const;
    void Visit(Search& search, std::size_t node, std::size_t depth) const;
    void Add(const Cells& cells);

    std::vector<ExperimentSummary> experiments_;
    std::unordered_map<Branch, std::size_t, BranchHash> nodes_;         ///< where a branch leads; the root is 0
    std::unordered_map<std::size_t, std::vector<std::size_t>> atNode_;  ///< experiments whose path ends there
};

}  // namespace orvanel
