#include <unistd.h>

#include <iostream>

#include "cli/Commands.h"

int main(int argc, char** argv) {
    return cli::RunCommandLine(
        argc, argv, {std::cout, std::cerr, std::cin, ::isatty(STDERR_FILENO) != 0, ::isatty(STDIN_FILENO) != 0});
}
