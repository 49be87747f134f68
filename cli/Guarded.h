// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <exception>
#include <ostream>

#include "cli/CleanText.h"
#include "cli/ExitStatus.h"
#include "cli/Terminal.h"
#include "support/Files.h"

namespace cli {

/// Runs a command; what it cannot do is said in one line.
template <class Command>
ExitStatus Guarded(const TerminalStreams& streams, ExitStatus failure, Command command) {
    try {
        return command();
    } catch (const support::FileError& error) {
        streams.err << "veltra-run: " << CleanText(error.what()) << '\n';
        return abortedOrFailed;
    } catch (const std::exception& error) {
        streams.err << "veltra-run: " << CleanText(error.what()) << '\n';
        return failure;
    }
}

}  // namespace cli
