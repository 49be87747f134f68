// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/methods/MethodDocument.h"

namespace orvanel {

/// The values that a ramp runs through: start + k * step for k = 0, 1, ... up to stop (half a step of tolerance),
/// computed from the decimal texts of the three singles, so that 35 steps of 0.01 are 0.35. Signed as the method holds
/// it.
/// @param cycles so many values are given, whatever stop says
std::vector<double> RampValues(const RampRecord& ramp, int cycles);

/// The decimal number that a single was written as: its shortest text, read as a double.
double DecimalValue(float value);

}  // namespace orvanel
