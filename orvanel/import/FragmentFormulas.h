// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "orvanel/instrument/Formula.h"

namespace orvanel {

/// What the mass of a fragment says of its composition.
struct FragmentFormula {
    Composition composition;  ///< the nearest, radicals counted 0.002 Da farther; empty when there is none
    double mz = 0;            ///< of that composition
    int candidates = 0;       ///< how many lie within the tolerance; 0 also when there are too many to try
};

/// Looks for the parts of an ion that have a fragment's m/z within 0.005 Da, the accuracy that compound files ask for.
/// Bonds must hold the fragment together (rings and double bonds not below -0.5), and what is lost must be up to four
/// neutrals (not below -3).
/// @param charge of the fragment
FragmentFormula FindFormula(const Composition& ion, double mz, int charge, bool negative,
                            ports::ElementTable& elements);

}  // namespace orvanel
