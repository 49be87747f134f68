// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "orvanel/import/FragmentBins.h"
#include "orvanel/instrument/Compound.h"

namespace orvanel {

/// A compound as its spectra give it, with what was decided on the way.
struct FittedCompound {
    Compound compound;                   ///< every node, the curves, the tree
    std::vector<std::string> order;      ///< names of the nodes: the precursor, then by falling share
    std::vector<int> formulaCandidates;  ///< by order: how many formulas were possible
    bool unitMasses = false;             ///< no formulas were looked for
    std::vector<std::size_t> bins;       ///< by order: index into the binned spectra
    std::vector<double> weakShare;       ///< a spectrum: share of ions in fragments that are too weak to be kept
};

/// Curves as measured, and beside them a tree (DerivedTree.h) for what the records do not show: the fragments of
/// fragments in the trap, and what breaks in the source.
/// @throws ports::HostError
FittedCompound FitBreakdown(const MeasuredIon& ion, const BinnedSpectra& binned, ports::ElementTable& elements);

}  // namespace orvanel
