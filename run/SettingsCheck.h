// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "host/RunState.h"

namespace veltra {

/// Asks the host whether the instrument can acquire what the settings, valid by themselves, lead to, so that a value
/// that it is bound to refuse is told before a run and not in the midst of one. Shows the first problem in a message
/// box. A host that cannot tell has nothing against the settings.
bool CanBeAcquired(RunState& runState);

}  // namespace veltra
