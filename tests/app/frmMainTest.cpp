#include "app/frmMain.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>

#include "tests/support_files/WholeRun.h"

namespace {

using ports::enumProgressState;
using ports::enumVeltraScanType;

/// The window on a project of its own, with the shipped host on a virtual clock.
class Window {
  public:
    explicit Window(std::int32_t modelCode = 27) : bench({.compound = "caffeine", .modelCode = modelCode}) {
        bench.settings.Advanced_EPINum2ndPrec = 2;
        run.InstrumentModelCode = modelCode;
        run.EPAndCEPSupported = bench.run.EPAndCEPSupported;
        main.Attach(run, startButton, [this](const std::string& path) { viewed.push_back(path); });
        main.show();
    }

    template <class Control>
    Control* Find(const char* name) {
        auto* control = main.findChild<Control*>(name);
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    QFont FontOf(const char* label) { return Find<QLabel>(label)->font(); }

    WholeRun bench;
    app::frmMain main;
    veltra::RunState run{{bench.host, main, bench.boxes, bench.chooser, bench.clock}, bench.settings};
    veltra::StartButton startButton{run};
    std::vector<std::string> viewed;
};

TEST(frmMain, OpensReadyToStart) {
    Window window;
    EXPECT_EQ(window.main.windowTitle(), "Veltra Optimization");
    EXPECT_EQ(window.Find<QLabel>("labelBanner")->text().toStdString(), window.bench.host.GetDescription());
    EXPECT_EQ(window.Find<QPushButton>("cmdStart")->text(), "Start");
    EXPECT_FALSE(window.Find<QPushButton>("cmdViewResults")->isEnabled());
    EXPECT_FALSE(window.Find<QLabel>("labelQ1MI_ReOptDP")->isEnabled());
    EXPECT_EQ(window.Find<QWidget>("ResultsGraphControl")->geometry(), QRect(24, 21, 417, 201));
    EXPECT_EQ(window.Find<QPlainTextEdit>("txtLog")->toPlainText().toStdString(),
              "* Select [Settings] button to modify the current settings\n"
              "* Select [Advanced] button in Settings to modify the advanced settings");
}

TEST(frmMain, RunsFromStartToTheFinishedBox) {
    Window window;
    window.Find<QPushButton>("cmdStart")->click();
    ASSERT_EQ(window.bench.boxes.shown.size(), 1U);
    EXPECT_EQ(window.bench.boxes.shown[0].text, "Optimization completed successfully!");
    ASSERT_EQ(window.viewed.size(), 1U);
    EXPECT_EQ(window.viewed[0], window.run.results->VeskOutputFilePath + "Results.txt");
    for (const char* done : {"labelER", "labelQ1MI_OptDP", "labelEPI", "labelMRM", "labelMS3"})
        EXPECT_TRUE(window.FontOf(done).underline()) << done;
    // The EP, CEP and final-methods lines never become links.
    for (const char* never : {"labelQ1MI_OptEP", "labelQ1MI_OptCEP", "labelFinalMS3"})
        EXPECT_FALSE(window.FontOf(never).underline()) << never;
    EXPECT_EQ(window.Find<QProgressBar>("ProgressBar1")->value(), 100);
    EXPECT_EQ(window.Find<QPushButton>("cmdStart")->text(), "Start");
    EXPECT_TRUE(window.Find<QPushButton>("cmdViewResults")->isEnabled());
    EXPECT_TRUE(
        window.Find<QPlainTextEdit>("txtLog")->toPlainText().contains("]   Optimization completed successfully!"));

    auto* graph = window.Find<app::ResultsGraphControl>("ResultsGraphControl");
    window.main.UpdateResultsGraphControl(enumVeltraScanType::MRM, -1);
    EXPECT_TRUE(graph->isVisible());
    EXPECT_EQ(graph->Labels().legend.size(), 2);
    EXPECT_EQ(graph->PaneX(1).size(), 61U);
    EXPECT_EQ(window.Find<QLabel>("labelGraphTitle")->text(), "Multiple Reaction Monitor Scan");
    window.main.UpdateResultsGraphControl(enumVeltraScanType::MS3, 1);
    EXPECT_EQ(window.Find<QLabel>("labelMS3GraphNum")->text(), "(1 of 2)");
    window.Find<QPushButton>("cmdMS3Left")->click();
    EXPECT_EQ(window.Find<QLabel>("labelMS3GraphNum")->text(), "(1 of 2)");
    window.Find<QPushButton>("cmdMS3Right")->click();
    window.Find<QPushButton>("cmdMS3Right")->click();
    EXPECT_EQ(window.Find<QLabel>("labelMS3GraphNum")->text(), "(2 of 2)");
}

TEST(frmMain, AbortsByClick) {
    Window window;
    window.bench.boxes.answers = {true};
    bool clicked = false;
    window.bench.calls.beforeCall = [&](const std::string& text) {
        if (clicked || text != "HostSleep(100)") return;
        clicked = true;
        QMetaObject::invokeMethod(window.Find<QPushButton>("cmdStart"), "click", Qt::QueuedConnection);
    };
    window.Find<QPushButton>("cmdStart")->click();
    ASSERT_EQ(window.bench.boxes.shown.size(), 1U);
    EXPECT_EQ(window.bench.boxes.shown[0].text, "Optimization was aborted!");
    EXPECT_NE(window.bench.boxes.questions, std::vector<std::string>());
}

/// A window that is closed during a run takes the run with it: nothing more is written or shown, and the session ends.
TEST(frmMain, ClosingDuringARunUnwindsIt) {
    for (const bool yes : {false, true}) {
        Window window;
        window.bench.boxes.answers = {yes};
        bool asked = false;
        window.bench.calls.beforeCall = [&](const std::string& text) {
            if (asked || text != "HostSleep(100)") return;
            asked = true;
            QMetaObject::invokeMethod(&window.main, "close", Qt::QueuedConnection);
        };
        window.Find<QPushButton>("cmdStart")->click();
        ASSERT_TRUE(asked);
        EXPECT_EQ(window.bench.calls.CountOf("TolmLogoff"), 1);
        EXPECT_EQ(window.bench.boxes.shown.size(), yes ? 0U : 1U);
        EXPECT_EQ(window.viewed.size(), yes ? 0U : 1U);
        EXPECT_EQ(window.main.isVisible(), !yes);
        EXPECT_EQ(window.bench.calls.CountOf("TolmSubmitBatch") == 1, yes);
    }
}

TEST(frmMain, ShowsWhatTheInstrumentCannotOptimise) {
    Window window(26);
    EXPECT_EQ(window.Find<QLabel>("labelQ1MI_OptEP")->isEnabled(), false);
    window.main.UpdateScanProgress(enumVeltraScanType::Q1MI_EP, enumProgressState::Pending);
    EXPECT_FALSE(window.Find<QLabel>("labelQ1MI_OptEP")->isEnabled());
    window.main.ProgressBarStart(2000);
    window.main.ProgressBarUpdate(500);
    window.main.ProgressBarUpdate(500);
    EXPECT_EQ(window.Find<QProgressBar>("ProgressBar1")->value(), 50);
}

}  // namespace
