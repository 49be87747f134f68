// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QVariantMap>

#include "app/TaskbarProgress.h"

namespace app {

void ShowOnTaskbar(std::uintptr_t /*window*/, int percent, bool isVisible) {
    // The docks and task managers of several desktops listen to this signal:
    // https://wiki.ubuntu.com/Unity/LauncherAPI
    auto signal = QDBusMessage::createSignal("/veltra", "com.canonical.Unity.LauncherEntry", "Update");
    signal << "application://" + QGuiApplication::desktopFileName() + ".desktop"
           << QVariantMap{{"progress", percent / 100.0}, {"progress-visible", isVisible}};
    QDBusConnection::sessionBus().send(signal);
}

}  // namespace app
