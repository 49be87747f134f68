// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef _WIN32

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>

#include "support/Paths.h"
#include "support/Platform.h"
#include "support/Text.h"

namespace support {
namespace {

constexpr const char* opener = "xdg-open";

/// The opener's full path; empty when the desktop has none.
std::string FindOpener() {
    const char* path = std::getenv("PATH");
    for (const auto& folder : Split(path == nullptr ? "" : path, ':')) {
        std::string candidate = JoinPath(folder.empty() ? "." : folder, opener);
        if (::access(candidate.c_str(), X_OK) == 0) return candidate;
    }
    return {};
}

/// Waits for the child. @return whether it ended well
bool EndsWell(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return false;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// Runs the opener and writes into the pipe when it failed. In a child of a process that may have threads: only calls
/// that are safe in signal handlers.
[[noreturn]] void RunOpener(char* const* arguments, int failed) {
    ::setsid();  // a Ctrl-C that is meant for this program is none of the opener's business
    const pid_t child = ::fork();
    if (child == 0) {
        const int nowhere = ::open("/dev/null", O_RDWR);
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::dup2(nowhere, stream);
        ::execv(arguments[0], arguments);
        ::_exit(1);
    }
    const bool endsWell = child > 0 && EndsWell(child);
    ::_exit(endsWell || ::write(failed, "f", 1) == 1 ? 0 : 1);
}

}  // namespace

bool StartTextViewer(const std::string& path) {
    return OpenWithDesktop(path);
}

bool OpenWithDesktop(const std::string& path) {
    // What runs the opener is nobody's child here, so that it leaves no zombie: the process between ends at once.
    constexpr int patienceMs = 500;
    std::string program = FindOpener();
    std::string argument = path;
    std::array<char*, 3> arguments{program.data(), argument.data(), nullptr};
    std::array<int, 2> ends{};
    if (program.empty() || ::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
    const pid_t between = ::fork();
    if (between == 0) {
        const pid_t keeper = ::fork();
        if (keeper == 0) RunOpener(arguments.data(), ends[1]);
        ::_exit(keeper < 0 ? 1 : 0);
    }
    ::close(ends[1]);
    pollfd answer{ends[0], POLLIN, 0};
    const bool started = between > 0 && EndsWell(between);
    const bool failed = started && ::poll(&answer, 1, patienceMs) > 0 && (answer.revents & POLLIN) != 0;
    ::close(ends[0]);
    return started && !failed;
}

}  // namespace support

#endif
