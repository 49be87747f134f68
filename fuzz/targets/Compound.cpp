// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Compound.h"

#include <cmath>

#include "fuzz/Fuzz.h"
#include "orvanel/instrument/Formula.h"
#include "orvanel/instrument/Fragmentation.h"

/// A compound that is accepted can be sprayed: its formula is known, and whatever the voltage no ions come from
/// nothing.
void fuzz::Try(std::string_view input) {
    constexpr double allowance = 1e-6;
    const std::string path = FileWith("c.ini", input);
    const auto compound = ReadOrRefuse(path, [&] { return orvanel::LoadCompound(path, Elements()); });
    if (!compound) return;
    Require(std::isfinite(orvanel::MonoisotopicMass(orvanel::ParseFormula(compound->ionFormula), Elements())),
            "the ion has a mass");
    const orvanel::FragmentationTree tree(*compound);
    for (const double voltage : {0.0, 10.0, 35.5, 200.0, 10000.0}) {
        const auto ions = tree.Dissociate(0, voltage);
        double sum = ions.lost;
        for (const double share : ions.byNode) {
            Require(share >= 0, "a share is 0 or more");
            sum += share;
        }
        Require(std::fabs(sum - 1) <= allowance, "the shares add up to 1");
    }
}
