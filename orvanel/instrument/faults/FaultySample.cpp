// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/faults/FaultySample.h"

#include <algorithm>
#include <cmath>

#include "orvanel/instrument/Formula.h"
#include "orvanel/instrument/Fragmentation.h"
#include "orvanel/instrument/InstrumentErrors.h"
#include "ports/HostError.h"

namespace orvanel {
namespace {

/// An ordinary ion of one charge has half dissociated at 8 + 0.04 m/z volts, over an edge of 0.11 times that.
double OrdinaryE50(double mz) {
    return 8 + 0.04 * mz;
}
constexpr double relativeWidth = 0.11;
/// Sodium holds on to the molecule, which falls apart late and mostly into the bare sodium ion and neutrals.
constexpr double sodiumStability = 1.5;
constexpr double sodiumKeptWeight = 0.5;
constexpr double sodiumDpShift = 15;
constexpr double sodiumDpHigh = 150;
/// m/z of an organic ion over its nominal mass.
constexpr double massPerNominal = 1.0005;

TreeNode NodeAt(const std::string& name, double mz, int charge, double e50) {
    TreeNode node;
    node.name = name;
    node.mz = mz;
    node.charge = charge;
    node.e50 = e50;
    node.width = relativeWidth * e50;
    return node;
}

std::string WithSodium(const std::string& formula) {
    Composition composition = ParseFormula(formula);
    if (--composition["H"] == 0) composition.erase("H");
    ++composition["Na"];
    std::string text;
    for (const auto& [symbol, count] : composition)
        text += symbol + std::to_string(count);
    return text;
}

/// The heaviest ion that the precursor leads to directly, or null.
const TreeNode* HeaviestProduct(const Compound& compound) {
    const TreeNode* heaviest = nullptr;
    for (const Branch& branch : compound.Root().branches) {
        if (branch.product == lostProduct) continue;
        const TreeNode& product = compound.nodes.at(branch.product);
        if (heaviest == nullptr || product.mz > heaviest->mz) heaviest = &product;
    }
    return heaviest;
}

Compound SodiumAdductOf(const Compound& compound, ports::ElementTable& elements) {
    if (compound.adduct != "[M+H]+" || compound.charge != 1 || compound.polarity != 0)
        throw ports::HostError(compoundFileFaulty, "SodiumAdduct is not possible for " + compound.name + " " +
                                                       compound.adduct +
                                                       ", spray an [M+H]+ ion or remove the key from [Faults]");
    const double shiftDa = MonoisotopicMass({{"Na", 1}}, elements) - MonoisotopicMass({{"H", 1}}, elements);
    Compound adduct = compound;
    adduct.name += " sodium adduct";
    adduct.adduct = "[M+Na]+";
    adduct.ionFormula = WithSodium(compound.ionFormula);
    adduct.dpLow += sodiumDpShift;
    adduct.dpHigh = std::max(adduct.dpHigh + sodiumDpShift, sodiumDpHigh);
    adduct.truth.clear();
    adduct.nodes.clear();
    const auto add = [&](const TreeNode& original, const std::string& formula) -> TreeNode& {
        const double mz = original.mz + shiftDa;
        TreeNode node = NodeAt(original.name, mz, 1, sodiumStability * OrdinaryE50(mz));
        node.formula = formula.empty() ? "" : WithSodium(formula);
        node.branches = {{lostProduct, 1 - sodiumKeptWeight, 0}};
        return adduct.nodes[node.name] = node;
    };
    TreeNode& precursor = add(compound.Root(), compound.ionFormula);
    if (const TreeNode* product = HeaviestProduct(compound)) {
        add(*product, product->formula);
        precursor.branches.push_back({product->name, sodiumKeptWeight, 0});
    }
    return adduct;
}

/// A foreign ion of the precursor's composition in proportion, with three fragments, each of which forms the next.
Compound InterferenceOf(const Compound& compound, double distanceDa) {
    constexpr double fragmentShares[] = {0.8, 0.55, 0.35};
    constexpr double fragmentWeights[] = {0.4, 0.3, 0.2};
    constexpr double lostWeight = 0.1;
    constexpr double nextWeight = 0.8;
    const double mz = compound.Root().mz + distanceDa;
    Compound foreign = compound;
    foreign.name = "interference with " + compound.name;
    foreign.adduct = "(foreign ion)";
    foreign.root = "precursor";
    foreign.truth.clear();
    foreign.nodes.clear();
    TreeNode precursor = NodeAt(foreign.root, mz, compound.charge, OrdinaryE50(mz));
    precursor.branches = {{lostProduct, lostWeight, 0}};
    std::string heavier;
    for (std::size_t i = 0; i < std::size(fragmentShares); ++i) {
        const double fragmentMz = std::round(fragmentShares[i] * mz) * massPerNominal;
        const std::string name = "fragment " + std::to_string(i + 1);
        TreeNode fragment = NodeAt(name, fragmentMz, compound.charge, OrdinaryE50(mz) + OrdinaryE50(fragmentMz) / 2);
        fragment.branches = {{lostProduct, 1 - nextWeight, 0}};
        foreign.nodes[name] = fragment;
        precursor.branches.push_back({name, fragmentWeights[i], 0});
        if (!heavier.empty()) foreign.nodes[heavier].branches.push_back({name, nextWeight, 0});
        heavier = name;
    }
    foreign.nodes[foreign.root] = precursor;
    return foreign;
}

void SpoilAnalyte(Compound& compound, const FaultSettings& faults) {
    TreeNode& precursor = compound.nodes.at(compound.root);
    if (faults.noFragments != 0) precursor.branches = {{lostProduct, 1, 0}};
    if (faults.stablePrecursor != 0) {
        const double factor = faults.stablePrecursor * compound.charge / precursor.e50;
        for (auto& [name, node] : compound.nodes) {
            node.e50 *= factor;
            node.width *= factor;
        }
    }
}

}  // namespace

std::vector<SprayedCompound> WithFaults(const std::vector<SprayedCompound>& sample, const FaultSettings& faults,
                                        ports::ElementTable& elements) {
    std::vector<SprayedCompound> faulty;
    for (const SprayedCompound& sprayed : sample) {
        SprayedCompound analyte = sprayed;
        SpoilAnalyte(analyte.compound, faults);
        // The molecules share themselves out between proton and sodium.
        analyte.amount /= 1 + faults.sodiumAdduct;
        faulty.push_back(analyte);
        if (faults.sodiumAdduct != 0)
            faulty.push_back({SodiumAdductOf(sprayed.compound, elements), analyte.amount * faults.sodiumAdduct});
        if (faults.interferenceAmount != 0)
            faulty.push_back(
                {InterferenceOf(sprayed.compound, faults.interferenceDa), analyte.amount * faults.interferenceAmount});
    }
    for (SprayedCompound& sprayed : faulty) {
        if (faults.saturation != 0) sprayed.amount *= faults.saturation;
        if (faults.wrongPolarity != 0) sprayed.amount = 0;
        for (auto& [name, node] : sprayed.compound.nodes)
            node.backgroundShare = std::max(node.backgroundShare, faults.backgroundIon);
    }
    return faulty;
}

}  // namespace orvanel
