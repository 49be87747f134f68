// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "orvanel/instrument/InstrumentModel.h"
#include "ports/InstrumentHelper.h"

namespace orvanel {

/// Checks a planned acquisition as the editing of its method and its submission would. A trap scan's rate is one that
/// the model offers.
/// @throws ports::HostError that names the value and what is allowed
void CheckPlan(const InstrumentModel& model, const ports::PlannedAcquisition& plan);

}  // namespace orvanel
