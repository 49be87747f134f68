// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/ExperimentIndex.h"

namespace orvanel {
namespace {

constexpr double samePrecursorDa = 0.05;
constexpr double sameWindowDa = 0.5;

}  // namespace

ExperimentIndex::Node ExperimentIndex::Follow(Node node, double value, double tolerance) {
    Node oldest = 0;
    for (auto near = branches_.lower_bound({node, value - tolerance});
         near != branches_.end() && near->first.first == node && near->first.second <= value + tolerance; ++near)
        if (oldest == 0 || near->second < oldest) oldest = near->second;
    if (oldest != 0) return oldest;
    return branches_.try_emplace({node, value}, branches_.size() + 1).first->second;
}

std::size_t ExperimentIndex::Count(const ExperimentKind& kind) {
    const int exact = 4 * kind.msLevel + 2 * kind.polarity + (kind.profile ? 1 : 0);
    Node node = Follow(0, exact, 0);
    for (const auto& masses : kind.isolations) {
        node = Follow(node, static_cast<double>(masses.size()), 0);
        for (const double mz : masses)
            node = Follow(node, mz, samePrecursorDa);
    }
    // No isolation takes nothing, so that this is not the beginning of another one.
    node = Follow(node, 0, 0);
    node = Follow(node, kind.lowMz, sameWindowDa);
    node = Follow(node, kind.highMz, sameWindowDa);
    const auto [found, isNew] = experimentsAt_.try_emplace(node, experiments_.size());
    if (isNew) experiments_.push_back({kind, 0});
    ++experiments_[found->second].spectra;
    return found->second;
}

}  // namespace orvanel
