// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/explore/PeakFinder.h"

namespace orvanel {

/// Sets charge and monoisotopic marker of every peak: which peaks are the heavier isotopes of another one, and at which
/// spacing. A peak that no isotope goes with stays monoisotopic with charge 0.
/// @param peaks in order of m/z
void AssignIsotopes(std::vector<Peak>& peaks);

}  // namespace orvanel
