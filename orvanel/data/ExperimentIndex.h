// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "orvanel/data/DataReader.h"

namespace orvanel {

/// Sorts spectra into experiments, at a cost of log n for each.
///
/// The values in which experiments differ are, one after the other, a path through a tree. Where values may differ by a
/// tolerance, the branches of a node are more than that apart, and a value takes the oldest that is near enough.
class ExperimentIndex {
  public:
    /// Counts a spectrum.
    /// @return the number of the experiment that it belongs to, from 0; a new one where there is none
    std::size_t Count(const ExperimentKind& kind);

    /// All experiments, in the order of their first spectra.
    const std::vector<ExperimentSummary>& Experiments() const { return experiments_; }

  private:
    using Node = std::size_t;
    Node Follow(Node node, double value, double tolerance);

    std::vector<ExperimentSummary> experiments_;
    std::map<std::pair<Node, double>, Node> branches_;     ///< where a value leads; the root is 0
    std::unordered_map<Node, std::size_t> experimentsAt_;  ///< the number of the experiment whose path ends there
};

}  // namespace orvanel
