// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "orvanel/instrument/Formula.h"

namespace orvanel {

/// How an ion forms from its molecule M.
struct Adduct {
    int molecules = 1;  ///< 2 in [2M+H]+
    Composition gained;
    Composition lost;
    int charge = 1;  ///< number of charges, positive
    bool negative = false;
};

/// Reads [M+H]+, [M-H2O+H]+, [2M+Na]+, [M+2H]2+, [M+HCOO]-, [M]+, with "*" or "." for a radical.
/// @throws std::invalid_argument that says what is expected
Adduct ParseAdduct(const std::string& text);

/// @throws std::invalid_argument when the molecule does not hold what the ion loses
Composition IonOf(const Composition& molecule, const Adduct& adduct);

/// A composition as text: carbon, hydrogen, then the other elements by the alphabet.
std::string FormulaText(const Composition& composition);

}  // namespace orvanel
