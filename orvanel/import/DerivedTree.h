// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "orvanel/instrument/Compound.h"

namespace orvanel {

/// The energy in V at which half of an ordinary ion dissociates, 8 V + 0.04 V/Da: a design value of the simulation.
double OrdinaryE50(double mz);

/// Gives the nodes of a compound whose breakdown is measured their energies, widths and branches. E50 is where a node's
/// curve falls to half. A node leads to the ions that it can hold (mass and formula), weighted with their shares at the
/// energy where its own curve has fallen by a quarter: slow heating in the trap gives what forms first. A share that
/// other ions may have formed too is divided by what all of them have lost up to there.
/// @param order names of all nodes, the precursor first
void AddTree(Compound& compound, const std::vector<std::string>& order);

}  // namespace orvanel
