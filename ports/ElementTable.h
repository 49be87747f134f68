// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

namespace ports {

struct Isotope {
    double massDa = 0;
    double abundancePercent = 0;  ///< relative to the element's most abundant isotope, which has exactly 100
};

/// The host's element-table service, opened on one file. The caller owns the handle.
class ElementTable {
  public:
    virtual ~ElementTable() = default;

    /// @param symbol case-sensitive, such as "Cl"
    /// @return the isotopes in the table's order, at least one
    /// @throws HostError when the table has no such element
    virtual std::vector<Isotope> GetIsotopes(const std::string& symbol) = 0;
};

}  // namespace ports
