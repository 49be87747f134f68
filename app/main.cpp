// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>
#include <QIcon>
#include <QPointer>
#include <QTimer>
#include <chrono>
#include <exception>
#include <memory>

#include "app/ExitGuard.h"
#include "app/QtMessageBoxes.h"
#include "app/frmMain.h"
#include "app/frmSelectFolder.h"
#include "orvanel/OrvanelHost.h"
#include "orvanel/clock/HostClock.h"
#include "run/InstrumentCheck.h"
#include "run/StartButton.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/StopSignals.h"
#include "support/modFileUtils.h"

/// The desktop program. Its settings are Veltra.ini beside it, the shipped host's are Orvanel.ini beside it.
int main(int argc, char** argv) {
    constexpr int millisecondsBetweenLooks = 100;
    support::GuardProcess();
    // Before the toolkit writes to a stream that nobody reads.
    support::StopSignals stopSignals(veltra::leftUndone);
    QApplication application(argc, argv);
    QApplication::setApplicationName("Veltra");
    QApplication::setDesktopFileName("veltra");
    QApplication::setWindowIcon(QIcon(":/veltra.svg"));
    app::QtMessageBoxes messageBoxes;
    QPointer<app::frmMain> openWindow;
    QTimer stopTimer;
    QObject::connect(&stopTimer, &QTimer::timeout, [&, isAsked = false]() mutable {
        isAsked = isAsked || stopSignals.TakeRequest();
        if (!isAsked) return;
        if (openWindow != nullptr)
            openWindow->EndInOrder();
        else if (QWidget* message = QApplication::activeModalWidget())
            message->close();
    });
    stopTimer.start(millisecondsBetweenLooks);
    try {
        const std::string settingsPath = veltra::clsInfo_Settings::DefaultIniPath();
        const auto soleUse = support::HoldFile(settingsPath, "Veltra");
        const std::string folder = support::ProgramFolder();
        const auto config = orvanel::ReadOrvanelConfig(support::JoinPath(folder, "Orvanel.ini"),
                                                       support::JoinPath(support::FolderOf(folder), "share/orvanel"));
        orvanel::HostClock clock(config.clockFactor, std::chrono::system_clock::now(), support::DateFormatOfProcess());
        const auto host = orvanel::CreateOrvanelHost(config, clock, support::SystemDisk(),
                                                     {support::OpenWithDesktop, support::OpenInNotepad});

        veltra::clsInfo_Settings settings(settingsPath);
        const auto ignoredSettings = settings.ReadGlobalSettings();
        app::QtFolderChooser folderChooser;
        app::frmMain window;
        veltra::RunState runState({*host, window, messageBoxes, folderChooser, clock}, settings);
        veltra::StartButton startButton(runState);
        if (!veltra::CheckInstrument(runState)) return 1;
        window.Attach(runState, startButton, support::OpenInNotepad);
        for (const auto& line : ignoredSettings)
            window.AddLogEntry(line);
        window.show();
        const app::ExitGuard exitGuard(application, [&] {
            messageBoxes.LeaveDisplay();
            window.LeaveDisplay();
            startButton.EndNow();
        });
        openWindow = &window;
        return QApplication::exec();
    } catch (const std::exception& error) {
        messageBoxes.Show(error.what(), ports::MessageIcon::Critical);
        return 1;
    }
}
