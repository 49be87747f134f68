// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace cli {

/// What the program returns to its caller.
enum ExitStatus : int {
    completed = 0,
    abortedOrFailed = 1,
    wrongUsage = 2,
    notStarted = 3,     ///< settings invalid, instrument refused, initialisation failed
    notAllWritten = 4,  ///< completed, but log, report, a final method or the output is not all written
};

}  // namespace cli
