// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>

#include <QApplication>
#include <QSettings>

#include "tests/support_files/TempFolder.h"

/// Window tests need an application, but no screen unless one is asked for.
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape): ends the tests, as it should
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const TempFolder userConfiguration;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, QString::fromStdString(userConfiguration.Path()));
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
