// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ports/Host.h"
#include "ports/MessageBoxes.h"

namespace veltra {

/// Molecular mass of a formula and m/z of a mass and charge, from the host's element table. The mass is that of each
/// element's most abundant isotope, so that the instrument is aimed at the tallest peak of the isotope pattern.
class clsMWCalculator {
  public:
    /// Locates and opens the element table. A table that cannot be opened shows up at the first lookup.
    /// @param host, messageBoxes must outlive the calculator
    clsMWCalculator(ports::Host& host, ports::MessageBoxes& messageBoxes);

    /// @return the neutral mass in Da, unrounded; 0 after a message when the formula is rejected
    double GetMWForFormula(const std::string& strFormula);
    /// @return m/z, unrounded; the mass itself for charge 0
    static double CalculateMZ(double dblMolWeight, std::int16_t intCharge);

  private:
    using IsotopeList = std::vector<ports::Isotope>;

    bool HasOnlyFormulaCharacters(const std::string& formula) const;
    bool GetElementIsotopes(const std::string& symbol, int charge, IsotopeList& isotopes) const;

    ports::MessageBoxes& messageBoxes_;
    std::unique_ptr<ports::ElementTable> elementTable_;
};

}  // namespace veltra
