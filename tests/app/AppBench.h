// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include "app/frmMain.h"
#include "tests/support_files/WholeRun.h"

template <class Control>
Control* Find(QWidget& parent, const char* name) {
    auto* control = parent.findChild<Control*>(name);
    EXPECT_NE(control, nullptr) << name;
    return control;
}

/// As it is read: without the mark of its mnemonic.
inline std::string Caption(QString text) {
    return text.remove('&').toStdString();
}

inline void Click(QWidget& parent, const char* button) {
    Find<QAbstractButton>(parent, button)->click();
}

inline void Enter(QWidget& parent, const char* box, const char* text) {
    Find<QLineEdit>(parent, box)->setText(text);
}

/// Lets the user act in the next modal dialog of this kind.
template <class Dialog>
void WhenOpen(std::function<void(Dialog&)> act) {
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act)] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (dialog == nullptr) return;
        timer->stop();
        timer->deleteLater();
        act(*dialog);
    });
    timer->start(0);
}

/// The window on a project of its own, with the shipped host on a virtual clock.
class Window {
  public:
    explicit Window(std::int32_t modelCode = 27, ports::FolderChooser* folderChooser = nullptr)
        : bench({.compound = "caffeine", .modelCode = modelCode}),
          run({bench.host, main, bench.boxes, folderChooser != nullptr ? *folderChooser : bench.chooser, bench.clock},
              bench.settings) {
        bench.settings.Advanced_EPINum2ndPrec = 2;
        run.InstrumentModelCode = modelCode;
        run.EPAndCEPSupported = bench.run.EPAndCEPSupported;
        main.Attach(run, startButton, [this](const std::string& path) {
            viewed.push_back(path);
            return true;
        });
        main.show();
    }

    template <class Control>
    Control* Find(const char* name) {
        return ::Find<Control>(main, name);
    }
    void Start() { Click(main, "cmdStart"); }
    /// Lets the user act once, as soon as the run waits for its n-th acquisition.
    void During(int acquisition, std::function<void()> act) {
        bench.calls.beforeCall = [this, acquisition, act = std::move(act),
                                  done = false](const std::string& text) mutable {
            if (done || text != "HostSleep(100)" || bench.calls.CountOf("TolmSubmitBatch") != acquisition) return;
            done = true;
            QMetaObject::invokeMethod(&main, act, Qt::QueuedConnection);
        };
    }

    WholeRun bench;
    app::frmMain main;
    veltra::RunState run;
    veltra::StartButton startButton{run};
    std::vector<std::string> viewed;
};
