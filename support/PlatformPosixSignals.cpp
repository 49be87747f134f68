// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef _WIN32

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include "support/Platform.h"

namespace support {

void GuardProcess() {
    // The first files to be opened would take the numbers of closed streams, and what is printed would go into them.
    // Each is opened the wrong way round, so that using it fails.
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream)
        if (::fcntl(stream, F_GETFD) < 0 && errno == EBADF)
            static_cast<void>(::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    ::signal(SIGXFSZ, SIG_IGN);
}

std::shared_ptr<void> CatchStopSignals(void (*handler)(int signal)) {
    using Actions = std::array<std::pair<int, struct sigaction>, 4>;
    const auto install = [](int signal, void (*action)(int)) {
        struct sigaction wanted {};
        struct sigaction before {};
        wanted.sa_handler = action;  // without SA_RESTART, so that reads are interrupted
        ::sigaction(signal, nullptr, &before);
        // Who starts a program that is to outlive its terminal says so by this.
        if (signal != SIGHUP || before.sa_handler != SIG_IGN) ::sigaction(signal, &wanted, nullptr);
        return std::pair(signal, before);
    };
    return {new Actions{install(SIGINT, handler), install(SIGTERM, handler), install(SIGHUP, handler),
                        install(SIGPIPE, SIG_IGN)},
            [](Actions* before) {
                for (const auto& [signal, action] : *before)
                    ::sigaction(signal, &action, nullptr);
                delete before;
            }};
}

void EndAtOnce(const char* text) {
    static_cast<void>(::write(STDERR_FILENO, text, std::strlen(text)) >= 0);
    ::_exit(1);
}

}  // namespace support

#endif
