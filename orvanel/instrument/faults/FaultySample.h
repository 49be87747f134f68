// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/faults/FaultSettings.h"
#include "ports/ElementTable.h"

namespace orvanel {

/// What is sprayed instead of a sample when it goes wrong. Sodium adduct and interference are compounds of their own
/// behind the one that they belong to.
/// @param elements masses of hydrogen and sodium
/// @throws ports::HostError when a sodium adduct is asked for of an ion that is not [M+H]+ with one charge
std::vector<SprayedCompound> WithFaults(const std::vector<SprayedCompound>& sample, const FaultSettings& faults,
                                        ports::ElementTable& elements);

}  // namespace orvanel
