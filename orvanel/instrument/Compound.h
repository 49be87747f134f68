// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <string>
#include <vector>

#include "ports/ElementTable.h"
#include "support/Disk.h"

namespace orvanel {

/// One dissociation channel of a fragmentation-tree node.
struct Branch {
    std::string product;  ///< a node's name, or "lost" for what leaves no ion
    double weight = 0;    ///< g
    double kappa = 0;     ///< below 0: low-energy rearrangement; above 0: direct cleavage
};

/// An ion of the tree.
struct TreeNode {
    std::string name;
    double mz = 0;        ///< monoisotopic, Da
    int charge = 1;       ///< number of charges, positive
    std::string formula;  ///< of the ion; empty when unknown
    double e50 = 0;       ///< laboratory-frame eV (z = 1) at which half has dissociated
    double width = 0;     ///< eV
    std::vector<Branch> branches;
    double excitationFactor = 1;  ///< k of A50
    double backgroundShare = 0;   ///< beta: what never dissociates in the trap
};

/// What the tree was planted to give: a fragment's best collision energy (without spread) and its share of the
/// precursor ions there.
struct PlantedOptimum {
    std::string node;
    double ce = 0;  ///< V
    double fraction = 0;
};

/// Product ions of the precursor as they were measured: the share of all ions that each node has at each voltage. What
/// the shares of a voltage lack of 1 leaves no ion.
struct MeasuredBreakdown {
    std::vector<double> voltages;                       ///< collision energies in V from 0 upwards; empty: not stated
    std::map<std::string, std::vector<double>> shares;  ///< by node; a node that is not named has none
};

/// A compound as it can be sprayed: one adduct's ion with its tree. Read from a compound file, validated on loading.
struct Compound {
    std::string name;   ///< as used on the command line and in Orvanel.ini
    std::string title;  ///< for people
    std::string ionFormula;
    std::string adduct;
    int polarity = 0;        ///< 0 positive, 1 negative
    int charge = 1;          ///< number of charges, positive
    double intensity = 2e5;  ///< I0, cps at amount 1
    double dpLow = 0;        ///< V1, V
    double dpHigh = 0;       ///< V2, V
    double dpWidth = 12;     ///< w, V
    std::string root;        ///< name of the precursor's node
    std::map<std::string, TreeNode> nodes;
    MeasuredBreakdown breakdown;  ///< replaces the tree for the precursor in the collision cell where it is stated
    std::vector<PlantedOptimum> truth;

    const TreeNode& Root() const { return nodes.at(root); }
};

struct SprayedCompound {
    Compound compound;
    double amount = 1;
};

/// @param path a compound file (docs/compounds.md)
/// @param elements isotope masses, to check formulas against m/z values
/// @throws ports::HostError naming file, line and key: unknown node, cycle in the tree, missing m/z, ...
Compound LoadCompound(const std::string& path, ports::ElementTable& elements,
                      const support::Disk& disk = support::SystemDisk());

}  // namespace orvanel
