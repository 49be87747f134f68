// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "model/clsInfo_Settings.h"
#include "orvanel/OrvanelHost.h"

namespace cli {

/// Fills in settings that suit a new project's compound: its m/z and polarity, scan ranges from below its lightest
/// fragment to above its precursor, a DP ramp that reaches beyond its optimum, and the collision energy at which most
/// of its fragments are strong.
void SuitToCompound(veltra::clsInfo_Settings& settings, const std::string& compoundName,
                    const orvanel::ProjectFacts& facts);

}  // namespace cli
