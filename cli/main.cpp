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
