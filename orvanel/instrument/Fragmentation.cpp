// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Fragmentation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "orvanel/instrument/PortableMath.h"
#include "orvanel/instrument/Simulator.h"

namespace orvanel {
namespace {

/// Depth-first, from what was measured and then from the precursor; a node is listed when all that it leads to is
/// listed.
class Ordering {
  public:
    explicit Ordering(const Compound& compound) : compound_(compound) {
        for (const auto& [name, shares] : compound.breakdown.shares)
            if (name != compound.root) Visit(name);
        Visit(compound.root);
    }

    std::vector<std::string> PrecursorFirst() const { return {finished_.rbegin(), finished_.rend()}; }

  private:
    void Visit(const std::string& name) {
        const auto state = finishedState_.find(name);
        if (state != finishedState_.end()) {
            if (!state->second) throw CycleInTree{name};
            return;
        }
        finishedState_[name] = false;
        for (const Branch& branch : compound_.nodes.at(name).branches)
            if (branch.product != lostProduct) Visit(branch.product);
        finishedState_[name] = true;
        finished_.push_back(name);
    }

    const Compound& compound_;
    std::map<std::string, bool> finishedState_;
    std::vector<std::string> finished_;
};

std::vector<MonotoneCurve> CurvesOf(const MeasuredBreakdown& breakdown, const std::vector<std::string>& names) {
    const std::size_t count = breakdown.voltages.size();
    std::vector<double> lost(count, 1);
    std::vector<MonotoneCurve> curves;
    for (const std::string& name : names) {
        const auto found = breakdown.shares.find(name);
        const auto shares = found == breakdown.shares.end() ? std::vector<double>(count, 0) : found->second;
        for (std::size_t i = 0; i < count; ++i)
            lost[i] = std::max(0.0, lost[i] - shares[i]);
        curves.emplace_back(breakdown.voltages, shares);
    }
    curves.emplace_back(breakdown.voltages, lost);
    return curves;
}

}  // namespace

std::vector<std::string> NodesFromPrecursorDown(const Compound& compound) {
    return Ordering(compound).PrecursorFirst();
}

FragmentationTree::FragmentationTree(const Compound& compound) : charge_(compound.charge) {
    const auto names = NodesFromPrecursorDown(compound);
    std::map<std::string, std::size_t> indices;
    for (const std::string& name : names) {
        indices[name] = nodes_.size();
        nodes_.push_back({&compound.nodes.at(name), {}});
    }
    for (LinkedNode& linked : nodes_)
        for (const Branch& branch : linked.node->branches)
            linked.branches.push_back({branch.product == lostProduct ? names.size() : indices.at(branch.product),
                                       branch.weight, branch.kappa});
    if (!compound.breakdown.voltages.empty()) measured_ = CurvesOf(compound.breakdown, names);
}

std::size_t FragmentationTree::IndexOf(const std::string& name) const {
    const auto found =
        std::find_if(nodes_.begin(), nodes_.end(), [&name](const LinkedNode& node) { return node.node->name == name; });
    return static_cast<std::size_t>(found - nodes_.begin());
}

std::vector<double> FragmentationTree::BranchShares(const LinkedNode& node, double x) const {
    std::vector<double> shares;
    double largest = -std::numeric_limits<double>::infinity();  // taken out of all exponents, so that none overflows
    for (const LinkedBranch& branch : node.branches)
        largest = std::max(largest, branch.kappa * x);
    double sum = 0;
    for (const LinkedBranch& branch : node.branches) {
        shares.push_back(branch.weight * Exp(branch.kappa * x - largest));
        sum += shares.back();
    }
    for (double& share : shares)
        share /= sum;
    return shares;
}

IonShares FragmentationTree::Measured(double collisionEnergy) const {
    IonShares ions{std::vector<double>(Size(), 0), measured_.back().At(collisionEnergy)};
    double sum = ions.lost;
    for (std::size_t i = 0; i < Size(); ++i)
        sum += ions.byNode[i] = measured_[i].At(collisionEnergy);
    for (double& share : ions.byNode)
        share /= sum;
    ions.lost /= sum;
    return ions;
}

IonShares FragmentationTree::Dissociate(std::size_t from, double collisionEnergy) const {
    if (from == 0 && !measured_.empty()) return Measured(collisionEnergy);
    IonShares ions{std::vector<double>(Size(), 0), 0};
    ions.byNode[from] = 1;
    for (std::size_t i = from; i < Size(); ++i) {
        if (ions.byNode[i] == 0) continue;
        const LinkedNode& node = nodes_[i];
        const double x = (charge_ * collisionEnergy - node.node->e50) / node.node->width;
        const double dissociating = ions.byNode[i] * Sigmoid(x);
        ions.byNode[i] -= dissociating;
        const auto shares = BranchShares(node, x);
        for (std::size_t branch = 0; branch < shares.size(); ++branch) {
            const std::size_t product = node.branches[branch].product;
            (product == Size() ? ions.lost : ions.byNode[product]) += dissociating * shares[branch];
        }
        if (shares.empty()) ions.lost += dissociating;
    }
    return ions;
}

IonShares FragmentationTree::Dissociate(std::size_t from, double collisionEnergy, double spread, double minimum) const {
    if (spread == 0) return Dissociate(from, std::max(collisionEnergy, minimum));
    IonShares mean{std::vector<double>(Size(), 0), 0};
    for (const double energy : {collisionEnergy - spread, collisionEnergy, collisionEnergy + spread}) {
        const IonShares ions = Dissociate(from, std::max(energy, minimum));
        for (std::size_t i = 0; i < Size(); ++i)
            mean.byNode[i] += ions.byNode[i] / 3;
        mean.lost += ions.lost / 3;
    }
    return mean;
}

IonShares FragmentationTree::Products(std::size_t from) const {
    IonShares ions{std::vector<double>(Size(), 0), 0};
    const LinkedNode& node = nodes_[from];
    const auto shares = BranchShares(node, 0);
    for (std::size_t branch = 0; branch < shares.size(); ++branch) {
        const std::size_t product = node.branches[branch].product;
        (product == Size() ? ions.lost : ions.byNode[product]) += shares[branch];
    }
    if (shares.empty()) ions.lost = 1;
    return ions;
}

double FragmentYield(const Compound& compound, const std::string& node, double ce) {
    const FragmentationTree tree(compound);
    const std::size_t index = tree.IndexOf(node);
    return index == tree.Size() ? 0 : tree.Dissociate(0, std::fabs(ce)).byNode[index];
}

}  // namespace orvanel
