// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/ExitGuard.h"

#include <QCoreApplication>
#include <cstdlib>
#include <utility>

namespace app {

ExitGuard::ExitGuard(QObject& application, std::function<void()> onExit)
    : QObject(&application), onExit_(std::move(onExit)) {
    std::atexit(AtExit);
}

void ExitGuard::AtExit() {
    // A program that ends by itself has destroyed its application by now.
    if (QCoreApplication::instance() == nullptr) return;
    for (QObject* child : QCoreApplication::instance()->children())
        if (auto* guard = dynamic_cast<ExitGuard*>(child)) std::exchange(guard->onExit_, [] {})();
}

}  // namespace app
