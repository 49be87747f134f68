// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "model/clsInfo_Settings.h"
#include "orvanel/OrvanelHost.h"

namespace cli {

/// Fills in settings that suit a new project's compound as far as its m/z and polarity tell: scan ranges from the
/// lowest mass to above its precursor, a DP ramp over the whole range of the settings, and a collision energy that
/// grows with m/z. Nothing of it is taken from how the compound breaks, which the run is there to find.
void SuitToCompound(veltra::clsInfo_Settings& settings, const std::string& compoundName,
                    const orvanel::ProjectFacts& facts);

}  // namespace cli
