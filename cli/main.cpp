// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <iostream>

#include "cli/Commands.h"
#include "support/Platform.h"

int main(int argc, char** argv) {
    using support::IsTerminal;
    using support::StandardStream;
    support::GuardProcess();
    return cli::RunCommandLine(
        argc, argv,
        {std::cout, std::cerr, std::cin, IsTerminal(StandardStream::Error), IsTerminal(StandardStream::Input)});
}
