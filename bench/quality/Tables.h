// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ostream>
#include <vector>

#include "bench/quality/Findings.h"

namespace quality {

/// One line a compound, one for all, and the targets with what was reached.
/// @return whether every target is met
bool PrintTable(const std::vector<Findings>& runs, std::ostream& out);

/// One row a run, decimals with "."; empty fields where there is nothing.
void WriteRunsCsv(const std::vector<Findings>& runs, std::ostream& out);
/// One row a chosen 2nd precursor.
void WriteFragmentsCsv(const std::vector<Findings>& runs, std::ostream& out);

}  // namespace quality
