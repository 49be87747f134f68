// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace orvanel {

enum class EnergyUnit {
    Volts,
    ElectronVolts,  ///< laboratory energy: charges times volts
    Normalised,     ///< NCE in %: eV is about NCE * m/z / 500
    NotStated,
};

/// What a record says of its collision energy.
struct StatedEnergy {
    enum class Kind { None, One, Several } kind = Kind::None;
    double value = 0;  ///< without sign
    EnergyUnit unit = EnergyUnit::NotStated;
};

/// Reads "30", "30 V", "30eV", "CE -30 V", "35 % (nominal)", "NCE=35% 28eV" (the eV count), "15 (nominal)", "CID@5.0".
/// Ramps, ranges and lists are several energies: their spectrum belongs to none.
StatedEnergy ParseCollisionEnergy(const std::string& text);

/// The part of a record's title that states the energy, such as "CID@5.0" of "...; Frag=135.0V CID@5.0; ..."; empty
/// when there is none.
std::string EnergyInTitle(const std::string& title);

}  // namespace orvanel
