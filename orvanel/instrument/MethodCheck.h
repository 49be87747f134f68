// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/methods/MethodDocument.h"

namespace orvanel {

/// Refuses what the instrument model cannot acquire.
/// @throws ports::HostError that names the value and what is allowed
void CheckAcquirable(const MassSpecRecord& method, const InstrumentModel& model);

/// The number of grid points of a trap scan's mass range.
std::size_t PointCount(const MassRangeRecord& range);

}  // namespace orvanel
