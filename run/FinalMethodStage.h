// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "run/StageFrame.h"

namespace veltra {

/// Writes the final methods: one for every usable 2nd precursor where the settings ask for it, and always the one of
/// the optimal path. Does nothing in an aborted run. A method that cannot be written never stops the run.
void RunFinalMethodStage(StageFrame& frame);

}  // namespace veltra
