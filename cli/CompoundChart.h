// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ostream>

#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/InstrumentModel.h"

namespace cli {

/// Draws a compound in at most 100 columns: breakdown curves of the precursor and its strongest fragments, a table of
/// the ions with their best collision energy and what the trap makes of them, and the response to the declustering
/// potential.
/// @param model whose trap and lowest collision energy are taken
void DrawCompound(const orvanel::Compound& compound, const orvanel::InstrumentModel& model, std::ostream& out);

}  // namespace cli
