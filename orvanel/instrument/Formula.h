// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <string>

#include "ports/ElementTable.h"

namespace orvanel {

/// Atoms of a formula by element symbol; counts above 0.
using Composition = std::map<std::string, int>;

/// Rest mass of the electron in Da (CODATA 2018).
inline constexpr double electronMassDa = 0.000548579909;

/// Reads a formula of element symbols and counts, such as C44H69NO12Na; a symbol may occur more than once.
/// @throws std::invalid_argument that says what stands where (no element names are checked)
Composition ParseFormula(const std::string& formula);

/// Mass in Da of the neutral atoms, each element's most abundant isotope taken.
/// @throws ports::HostError on an unknown element
double MonoisotopicMass(const Composition& composition, ports::ElementTable& elements);

/// m/z in Da of the ion with that composition: electrons are missing (positive) or too many (negative).
/// @param charge above 0
double IonMz(const Composition& composition, int charge, bool negative, ports::ElementTable& elements);

/// What is left of the whole without the part; counts below 0 become none.
Composition Without(const Composition& whole, const Composition& part);
bool Contains(const Composition& whole, const Composition& part);

/// The composition with every count multiplied and rounded, for an ion of which only the mass is known.
Composition Scaled(const Composition& composition, double factor);

}  // namespace orvanel
