// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/BreakdownFit.h"

#include <algorithm>
#include <cmath>

#include "orvanel/import/DerivedTree.h"
#include "orvanel/import/FragmentFormulas.h"
#include "support/NumberText.h"

namespace orvanel {
namespace {

constexpr double weakestKept = 0.005;  ///< share of all ions that a fragment reaches at its best energy
constexpr std::size_t mostKept = 150;
constexpr int shareDecimals = 5;
constexpr int mzDecimals = 4;

double Largest(const std::vector<double>& values) {
    return *std::max_element(values.begin(), values.end());
}

double Rounded(double share) {
    return support::RoundHalfEven(share, shareDecimals);
}

/// Indices of the bins that are kept: the precursor, then by falling share.
std::vector<std::size_t> KeptBins(const std::vector<FragmentBin>& bins) {
    std::vector<std::size_t> kept;
    for (std::size_t i = 1; i < bins.size(); ++i)
        if (Largest(bins[i].shares) >= weakestKept) kept.push_back(i);
    std::stable_sort(kept.begin(), kept.end(), [&bins](std::size_t a, std::size_t b) {
        return Largest(bins[a].shares) > Largest(bins[b].shares);
    });
    kept.resize(std::min(kept.size(), mostKept));
    kept.insert(kept.begin(), 0);
    return kept;
}

/// The node of a bin: m/z, and formula where the masses are good enough for one.
TreeNode NodeOf(const MeasuredIon& ion, double mz, bool unitMasses, ports::ElementTable& elements, int& candidates) {
    TreeNode node;
    node.mz = mz;
    candidates = 0;
    for (int charge = 1; charge <= ion.charge && !unitMasses; ++charge) {
        const FragmentFormula found = FindFormula(ion.composition, mz, charge, ion.negative, elements);
        if (found.candidates == 0) continue;
        node.charge = charge;
        node.formula = FormulaText(found.composition);
        node.mz = found.mz;
        candidates = found.candidates;
        break;
    }
    node.mz = support::RoundHalfEven(node.mz, mzDecimals);
    node.name = support::GeneralText(node.mz);
    return node;
}

/// The mean of the spectra at each energy; at 0 V the precursor alone where nothing was measured there.
void AddCurves(FittedCompound& fitted, const MeasuredIon& ion, const BinnedSpectra& binned) {
    MeasuredBreakdown& measured = fitted.compound.breakdown;
    std::vector<std::vector<std::size_t>> atVoltage;
    if (ion.spectra.front().volts > 0) {
        measured.voltages.push_back(0);
        atVoltage.emplace_back();
    }
    for (std::size_t i = 0; i < ion.spectra.size(); ++i) {
        if (measured.voltages.empty() || ion.spectra[i].volts > measured.voltages.back()) {
            measured.voltages.push_back(ion.spectra[i].volts);
            atVoltage.emplace_back();
        }
        atVoltage.back().push_back(i);
    }
    for (std::size_t k = 0; k < fitted.order.size(); ++k) {
        auto& curve = measured.shares[fitted.order[k]];
        for (const auto& spectra : atVoltage) {
            double sum = 0;
            for (const std::size_t i : spectra)
                sum += binned.bins[fitted.bins[k]].shares[i];
            curve.push_back(spectra.empty() ? (k == 0 ? 1 : 0) : Rounded(sum / static_cast<double>(spectra.size())));
        }
    }
}

/// Best energies of the strongest fragments. What still grows at the highest energy has no optimum that is known.
void AddTruth(FittedCompound& fitted) {
    constexpr std::size_t most = 8;
    Compound& compound = fitted.compound;
    for (std::size_t k = 1; k < fitted.order.size() && compound.truth.size() < most; ++k) {
        const auto& curve = compound.breakdown.shares.at(fitted.order[k]);
        const auto best = std::max_element(curve.begin(), curve.end());
        if (best + 1 == curve.end()) continue;
        compound.truth.push_back(
            {fitted.order[k], compound.breakdown.voltages[static_cast<std::size_t>(best - curve.begin())], *best});
    }
}

/// Best DP 0.0729 m/z + 31.1 V (linear equations that targeted-proteomics programs ship); the rest are values of this
/// simulation: 45 V to both sides, ions that break easily fall apart 55 V above where they pass, sodium adducts not
/// below 150 V.
void AddDeclustering(Compound& compound, const Composition& ion) {
    constexpr double labile = 0.5;
    const TreeNode& root = compound.Root();
    const double optimum = 0.0729 * root.mz + 31.1;
    compound.dpLow = std::max(0.0, std::round(optimum - 45));
    compound.dpHigh = std::round(optimum + 45);
    if (root.e50 < labile * OrdinaryE50(root.mz)) compound.dpHigh = compound.dpLow + 55;
    if (ion.contains("Na")) compound.dpHigh = std::max(compound.dpHigh, 150.0);
}

}  // namespace

FittedCompound FitBreakdown(const MeasuredIon& ion, const BinnedSpectra& binned, ports::ElementTable& elements) {
    FittedCompound fitted;
    fitted.unitMasses = binned.unitMasses;
    Compound& compound = fitted.compound;
    compound.title = ion.title;
    compound.ionFormula = FormulaText(ion.composition);
    compound.adduct = ion.adduct;
    compound.polarity = ion.negative ? 1 : 0;
    compound.charge = ion.charge;
    fitted.weakShare.assign(ion.spectra.size(), 1);
    for (const std::size_t bin : KeptBins(binned.bins)) {
        int candidates = 1;
        TreeNode node =
            bin == 0 ? TreeNode{} : NodeOf(ion, binned.bins[bin].mz, binned.unitMasses, elements, candidates);
        if (bin == 0) {
            node.mz = support::RoundHalfEven(ion.mz, mzDecimals);
            node.charge = ion.charge;
            node.formula = compound.ionFormula;
            node.name = support::GeneralText(node.mz);
            compound.root = node.name;
        }
        // Heavier than the precursor by its charge, or the same ion as one that is stronger: it stays with what is
        // weak.
        if (compound.nodes.contains(node.name) || (bin != 0 && node.mz * node.charge >= ion.mz * ion.charge)) continue;
        for (std::size_t i = 0; i < fitted.weakShare.size(); ++i)
            fitted.weakShare[i] = std::max(0.0, fitted.weakShare[i] - binned.bins[bin].shares[i]);
        fitted.order.push_back(node.name);
        fitted.bins.push_back(bin);
        fitted.formulaCandidates.push_back(candidates);
        compound.nodes[node.name] = node;
    }
    AddCurves(fitted, ion, binned);
    AddTree(compound, fitted.order);
    AddDeclustering(compound, ion.composition);
    AddTruth(fitted);
    return fitted;
}

}  // namespace orvanel
