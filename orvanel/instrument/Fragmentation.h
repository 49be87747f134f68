// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/MonotoneCurve.h"

namespace orvanel {

/// The branch that leaves no ion.
inline constexpr const char* lostProduct = "lost";

struct CycleInTree {
    std::string node;
};

/// The names of all nodes that the precursor leads to, in the tree or as measured, every parent before its products.
/// @throws CycleInTree
std::vector<std::string> NodesFromPrecursorDown(const Compound& compound);

/// What becomes of the ions of one node: the share that arrives as each node, and the share that leaves no ion.
struct IonShares {
    std::vector<double> byNode;  ///< by index of FragmentationTree
    double lost = 0;
};

/// Collision-induced dissociation as consecutive reactions: with x = (E - E50) / w, a node dissociates to the share
/// sigma(x) and its products share that by g * exp(kappa * x), normalised over the node's branches. Where the compound
/// states a measured breakdown, that is what the precursor gives: monotone curves through the measured shares, divided
/// by their sum, and held from the highest voltage on.
class FragmentationTree {
  public:
    /// @param compound must outlive the tree
    explicit FragmentationTree(const Compound& compound);

    std::size_t Size() const { return nodes_.size(); }
    const TreeNode& Node(std::size_t index) const { return *nodes_[index].node; }
    /// @return the index of a node, or Size() when there is none of that name
    std::size_t IndexOf(const std::string& name) const;

    /// @param from the node that enters the collision cell
    /// @param collisionEnergy in V, 0 or more; the laboratory energy is the compound's charge times it
    IonShares Dissociate(std::size_t from, double collisionEnergy) const;

    /// The mean over CE - CES, CE and CE + CES, none below the minimum.
    IonShares Dissociate(std::size_t from, double collisionEnergy, double spread, double minimum) const;

    /// First-generation products by weight alone, as slow heating forms them; the rest is lost.
    IonShares Products(std::size_t from) const;

  private:
    struct LinkedBranch {
        std::size_t product;  ///< Size() for what is lost
        double weight;
        double kappa;
    };
    struct LinkedNode {
        const TreeNode* node;
        std::vector<LinkedBranch> branches;
    };

    std::vector<double> BranchShares(const LinkedNode& node, double x) const;

    IonShares Measured(double collisionEnergy) const;

    double charge_;
    std::vector<LinkedNode> nodes_;
    std::vector<MonotoneCurve> measured_;  ///< one a node, then that of what is lost; empty when nothing was measured
};

}  // namespace orvanel
