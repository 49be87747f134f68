// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "run/StageFrame.h"

namespace veltra {

/// ER stage: finds the actual parent near the expected m/z. Does nothing in an aborted run.
void RunERStage(StageFrame& frame);

/// Q1MI stage: optimises DP, EP, DP again where EP came out low, and CEP, each ramp with the optima found before it.
void RunQ1MIStage(StageFrame& frame);

}  // namespace veltra
