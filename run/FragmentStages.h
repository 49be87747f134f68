// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "run/StageFrame.h"

namespace veltra {

/// EPI stage: picks the 2nd precursors. Does nothing in an aborted run.
void RunEPIStage(StageFrame& frame);

/// MRM stage: optimises the collision energy of every 2nd precursor in one acquisition.
void RunMRMStage(StageFrame& frame);

/// MS3 stage: for every 2nd precursor with a collision energy, ramps AF2 and records its 3rd precursors.
void RunMS3Stage(StageFrame& frame);

}  // namespace veltra
