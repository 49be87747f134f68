// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "host/RunState.h"

namespace veltra {

/// The check at program start: reads the instrument's model code and sets what depends on it. A host that is not there
/// is no failure: the code stays 0, and the run's initialisation will tell the user.
/// @return false, after a message, when the instrument is no linear ion trap
bool CheckInstrument(RunState& runState);

}  // namespace veltra
