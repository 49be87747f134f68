// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/DerivedTree.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "orvanel/instrument/Formula.h"
#include "orvanel/instrument/Fragmentation.h"
#include "orvanel/instrument/MonotoneCurve.h"
#include "support/NumberText.h"

namespace orvanel {
namespace {

constexpr double ordinaryWidth = 0.11;  ///< of E50, a design value of the simulation
constexpr double begunToFall = 0.75;    ///< of a curve's maximum
constexpr double lostShare = 0.1;       ///< of what a node gives: some ions always get lost
constexpr double smallestWeight = 0.01;
constexpr int weightDecimals = 3;
constexpr int energyDecimals = 1;

class Derivation {
  public:
    Derivation(Compound& compound, const std::vector<std::string>& order) : compound_(compound) {
        for (const std::string& name : order) {
            const auto& shares = compound.breakdown.shares.at(name);
            nodes_.push_back({&compound.nodes.at(name), &shares, MonotoneCurve(compound.breakdown.voltages, shares)});
        }
        for (Curve& curve : nodes_)
            if (!curve.node->formula.empty()) curve.composition = ParseFormula(curve.node->formula);
    }

    void Add() {
        for (Curve& curve : nodes_) {
            SetEnergies(curve);
            SetBranches(curve);
        }
    }

  private:
    struct Curve {
        TreeNode* node;
        const std::vector<double>* shares;
        MonotoneCurve at;
        Composition composition = {};  ///< empty: unknown
    };

    std::size_t Top(const Curve& curve) const {
        return static_cast<std::size_t>(std::max_element(curve.shares->begin(), curve.shares->end()) -
                                        curve.shares->begin());
    }

    /// The voltage at which a curve, behind its maximum, has fallen to a part of it; nothing when it does not.
    std::optional<double> FallsTo(const Curve& curve, double part) const {
        const auto& shares = *curve.shares;
        const auto& voltages = compound_.breakdown.voltages;
        const double level = part * shares[Top(curve)];
        if (level <= 0) return std::nullopt;
        for (std::size_t k = Top(curve) + 1; k < shares.size(); ++k)
            if (shares[k] <= level)
                return voltages[k - 1] +
                       (voltages[k] - voltages[k - 1]) * (shares[k - 1] - level) / (shares[k - 1] - shares[k]);
        return std::nullopt;
    }

    void SetEnergies(Curve& curve) const {
        TreeNode& node = *curve.node;
        const double volts =
            FallsTo(curve, 0.5).value_or(std::max(OrdinaryE50(node.mz), compound_.breakdown.voltages.back()));
        node.e50 = std::clamp(support::RoundHalfEven(volts * compound_.charge, energyDecimals), 0.5, 10000.0);
        node.width = std::max(0.1, support::RoundHalfEven(ordinaryWidth * node.e50, 2));
    }

    /// The product is lighter by what a neutral loss can weigh, and a part of the parent where both formulas are known.
    static bool CanLeadTo(const Curve& parent, const Curve& product) {
        constexpr double toleranceDa = 0.005;
        constexpr double hydrogensDa = 2.6;
        constexpr double lightestOtherLossDa = 11.4;
        const double lossDa = parent.node->mz * parent.node->charge - product.node->mz * product.node->charge;
        if (lossDa <= toleranceDa || product.node->charge > parent.node->charge) return false;
        if (parent.node->charge == product.node->charge && lossDa > hydrogensDa && lossDa < lightestOtherLossDa)
            return false;
        if (parent.composition.empty() || product.composition.empty()) return true;
        return Contains(parent.composition, product.composition);
    }

    /// What an ion has lost of its largest share up to a voltage.
    double LostAt(const Curve& curve, double volts) const {
        const std::size_t top = Top(curve);
        if (volts <= compound_.breakdown.voltages[top]) return 0;
        return (*curve.shares)[top] - curve.at.At(volts);
    }

    double Weight(const Curve& parent, const Curve& product, double volts) const {
        double lostByParents = 0;
        for (const Curve& other : nodes_)
            if (CanLeadTo(other, product)) lostByParents += LostAt(other, volts);
        const double share = product.at.At(volts);
        return &parent == &nodes_[0] || lostByParents <= 0 ? share : share / lostByParents;
    }

    void SetBranches(Curve& parent) {
        const double volts = FallsTo(parent, begunToFall).value_or(compound_.breakdown.voltages.back());
        std::vector<double> weights(nodes_.size(), 0);
        double sum = 0;
        for (std::size_t i = 1; i < nodes_.size(); ++i)
            if (CanLeadTo(parent, nodes_[i])) sum += weights[i] = Weight(parent, nodes_[i], volts);
        double kept = 0;
        for (std::size_t i = 1; i < nodes_.size() && sum > 0; ++i) {
            const double weight = support::RoundHalfEven((1 - lostShare) * weights[i] / sum, weightDecimals);
            if (weight < smallestWeight) continue;
            parent.node->branches.push_back({nodes_[i].node->name, weight, 0});
            kept += weight;
        }
        parent.node->branches.push_back({lostProduct, support::RoundHalfEven(1 - kept, weightDecimals), 0});
    }

    Compound& compound_;
    std::vector<Curve> nodes_;
};

}  // namespace

double OrdinaryE50(double mz) {
    return 8 + 0.04 * mz;
}

void AddTree(Compound& compound, const std::vector<std::string>& order) {
    Derivation(compound, order).Add();
}

}  // namespace orvanel
