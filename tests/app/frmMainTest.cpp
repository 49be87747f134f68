// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/frmMain.h"

#include <QDir>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QSettings>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "app/ExitGuard.h"
#include "app/frmSettings.h"
#include "support/Files.h"
#include "tests/app/AppBench.h"

namespace {

using ports::enumProgressState;
using ports::enumVeltraScanType;

constexpr const char* helpLines =
    "* Select [Settings] button to modify the current settings\n"
    "* Select [Advanced] button in Settings to modify the advanced settings";

/// One stage's look: "." pending, "R" running, "L" running with a link, "D" done with its link, "F" done without one,
/// "x" greyed, "?" anything else.
char LookOf(app::frmMain& window, const std::string& stage) {
    const auto* label = Find<QLabel>(window, ("label" + stage).c_str());
    const auto picture = Find<QLabel>(window, ("pic" + stage).c_str())->pixmap().toImage();
    const auto isPicture = [&](const char* holder) {
        return picture == Find<QLabel>(window, holder)->pixmap().toImage();
    };
    const QFont font = label->font();
    const bool isHighlighted = label->foregroundRole() == QPalette::Highlight;
    const bool isHand = label->cursor().shape() == Qt::PointingHandCursor;
    if (font.underline() != isHand || isHighlighted == (label->foregroundRole() == QPalette::ButtonText)) return '?';
    if (isPicture("imgDisabledBox")) return !label->isEnabled() && !font.bold() && !isHand ? 'x' : '?';
    if (!label->isEnabled()) return '?';
    if (isPicture("imgCheckBox")) return font.bold() || !isHighlighted ? '?' : isHand ? 'D' : 'F';
    if (!isPicture("imgEmptyBox") || font.bold() != isHighlighted) return '?';
    return isHighlighted ? (isHand ? 'L' : 'R') : (isHand ? '?' : '.');
}

std::string Looks(app::frmMain& window) {
    std::string looks;
    for (const char* stage :
         {"ER", "Q1MI_OptDP", "Q1MI_OptEP", "Q1MI_ReOptDP", "Q1MI_OptCEP", "EPI", "MRM", "MS3", "FinalMS3"})
        looks += LookOf(window, stage);
    return looks;
}

TEST(frmMain, OpensReadyToStartAndItsGraphGrowsWithIt) {
    Window window;
    EXPECT_EQ(window.main.windowTitle(), "Veltra Optimization");
    EXPECT_EQ(window.Find<QLabel>("labelBanner")->text().toStdString(), window.bench.host.GetDescription());
    for (const auto& [name, caption, isEnabled] : {std::tuple("cmdStart", "Start", true),
                                                   {"cmdSettings", "Settings", true},
                                                   {"cmdViewResults", "View Results", false},
                                                   {"cmdExit", "Exit", true}}) {
        EXPECT_EQ(Caption(window.Find<QPushButton>(name)->text()), caption);
        EXPECT_EQ(window.Find<QPushButton>(name)->isEnabled(), isEnabled) << name;
    }
    EXPECT_EQ(Looks(window.main), "...x.....");
    EXPECT_EQ(window.Find<QWidget>("ResultsGraphControl")->geometry(), QRect(24, 21, 417, 201));
    EXPECT_FALSE(window.Find<QWidget>("ResultsGraphControl")->isVisible());
    EXPECT_TRUE(window.Find<QLabel>("labelGraphLeft")->text().startsWith("Current Settings:"));
    EXPECT_EQ(window.Find<QPlainTextEdit>("txtLog")->toPlainText(), helpLines);
    window.main.resize(window.main.size() + QSize(200, 100));
    EXPECT_EQ(window.Find<QWidget>("ResultsGraphControl")->geometry(), QRect(24, 21, 617, 251));
}

/// What the window shows whenever the next acquisition begins.
TEST(frmMain, RunsFromStartToTheFinishedBox) {
    Window window;
    std::vector<std::string> looks, titles, progress;
    window.bench.calls.beforeCall = [&](const std::string& text) {
        if (text.rfind("TolmSubmitBatch", 0) != 0) return;
        looks.push_back(Looks(window.main));
        titles.push_back(window.Find<QLabel>("labelGraphTitle")->text().toStdString());
        EXPECT_EQ(Caption(window.Find<QPushButton>("cmdStart")->text()), "Abort");
        for (const char* locked : {"cmdSettings", "cmdViewResults", "cmdExit"})
            EXPECT_FALSE(window.Find<QPushButton>(locked)->isEnabled()) << locked;
    };
    window.Start();
    // The EP and CEP lines never become bold or ticked.
    EXPECT_EQ(looks, (std::vector<std::string>{"R..x.....", "DR.x.....", "DD.x.....", "DD.R.....", "DD.D.....",
                                               "DD.D.R...", "DD.D.DR..", "DD.D.DDR.", "DD.D.DDL."}));
    EXPECT_EQ(titles,
              (std::vector<std::string>{"", "Enhanced Resolution Scan", "Q1 Multiple Ion Scan (Optimize DP)",
                                        "Q1 Multiple Ion Scan (Optimize EP)", "Q1 Multiple Ion Scan (Re-optimize DP)",
                                        "Q1 Multiple Ion Scan (Optimize CEP)", "Enhanced Product Ion Scan",
                                        "Multiple Reaction Monitor Scan", "MS/MS/MS Scan"}));
    EXPECT_EQ(Looks(window.main), "DD.D.DDDF");
    EXPECT_EQ(
        window.bench.boxes.shown,
        (std::vector<RecordedMessageBoxes::Box>{{"Optimization completed successfully!", ports::MessageIcon::None}}));
    EXPECT_EQ(window.viewed, std::vector<std::string>{window.run.results->VeskOutputFilePath + "Results.txt"});
    EXPECT_EQ(window.Find<QProgressBar>("ProgressBar1")->value(), 100);
    EXPECT_EQ(Caption(window.Find<QPushButton>("cmdStart")->text()), "Start");
    EXPECT_TRUE(window.Find<QPushButton>("cmdViewResults")->isEnabled());
    EXPECT_EQ(window.Find<QLabel>("LabelMessage")->text(), "");
    EXPECT_FALSE(window.Find<QWidget>("ResultsGraphControl")->isVisible());
    const QString log = window.Find<QPlainTextEdit>("txtLog")->toPlainText();
    EXPECT_TRUE(log.startsWith("[3:45:12 PM]   Initialization complete.\n[")) << log.toStdString();
    EXPECT_TRUE(log.endsWith(QString("]   Optimization completed successfully!\n\n") + helpLines)) << log.toStdString();
}

TEST(frmMain, ShowsTheGraphsOfFinishedStages) {
    Window window;
    window.Start();
    auto* graph = window.Find<app::ResultsGraphControl>("ResultsGraphControl");
    const auto click = [&](const char* label) { emit window.Find<app::ClickableLabel>(label)->clicked(); };
    click("labelQ1MI_OptEP");  // no link: nothing happens
    EXPECT_FALSE(graph->isVisible());
    click("labelMRM");
    EXPECT_TRUE(graph->isVisible());
    EXPECT_EQ(graph->Labels().legend.size(), 2);
    EXPECT_TRUE(graph->Labels().legend[0].startsWith("195.1")) << graph->Labels().legend[0].toStdString();
    EXPECT_EQ(graph->Labels().xTitle, "CE (V)");
    EXPECT_EQ(graph->Labels().marks.size(), 2);
    EXPECT_EQ(graph->PaneX(1).size(), 61U);
    EXPECT_FALSE(window.Find<QPushButton>("cmdMS3Left")->isVisible());

    click("labelMS3");
    const auto number = [&] { return window.Find<QLabel>("labelMS3GraphNum")->text().toStdString(); };
    EXPECT_EQ(number(), "(2 of 2)");
    Click(window.main, "cmdMS3Right");
    EXPECT_EQ(number(), "(2 of 2)");
    Click(window.main, "cmdMS3Left");
    Click(window.main, "cmdMS3Left");
    EXPECT_EQ(number(), "(1 of 2)");
    EXPECT_EQ(graph->Labels().xTitle, "m/z (Da)");

    // The links open the graph's own documents, and tell when the desktop has no program for them.
    const auto& output = window.run.results->VeskOutputFilePath;
    const auto& method = window.run.scans->GetGraphData(enumVeltraScanType::MS3, *graph, 1);
    support::RemoveFileIfThere(output + "Results.txt");
    std::vector<std::string> opened, told;
    for (const bool hasPrograms : {true, false}) {
        window.bench.desktopHasPrograms = hasPrograms;
        window.bench.boxes.shown.clear();
        window.bench.opened.clear();
        click("labelVeskLink");
        click("labelMethodLink");
        Click(window.main, "cmdViewResults");
        for (const auto& box : window.bench.boxes.shown)
            told.push_back(box.text);
        opened.insert(opened.end(), window.bench.opened.begin(), window.bench.opened.end());
    }
    const std::string vesk = window.bench.Anonymous(method.VeskFilePath);
    const std::string xmt = window.bench.Anonymous(method.MethodFilePath);
    EXPECT_EQ(opened, (std::vector<std::string>{vesk, xmt, vesk, xmt, "as text: " + xmt}));
    const std::string report = "Error opening " + output + "Results.txt";
    EXPECT_EQ(told, (std::vector<std::string>{report, "Error opening " + method.VeskFilePath,
                                              "Error opening " + method.MethodFilePath, report}));
}

TEST(frmMain, AbortsByClickInEachStage) {
    constexpr int acquisitions = 9;
    for (int stage = 1; stage <= acquisitions; ++stage) {
        SCOPED_TRACE(stage);
        Window window;
        window.bench.boxes.answers = {true};
        window.During(stage, [&] { window.Start(); });
        window.Start();
        EXPECT_EQ(window.bench.boxes.questions,
                  std::vector<std::string>{"Are you sure you want to abort the optimization?"});
        ASSERT_EQ(window.bench.boxes.shown.size(), 1U);
        EXPECT_EQ(window.bench.boxes.shown[0].text, "Optimization was aborted!");
        EXPECT_EQ(window.bench.calls.CountOf("TolmSubmitBatch"), stage);
        EXPECT_EQ(window.bench.calls.CountOf("TolmLogoff"), 1);
        EXPECT_EQ(window.viewed.size(), 1U);
        EXPECT_EQ(Caption(window.Find<QPushButton>("cmdStart")->text()), "Start");
    }
}

/// A window that is closed during a run takes the run with it: nothing more is written or shown, and the session ends.
TEST(frmMain, ClosingDuringARunUnwindsIt) {
    for (const bool yes : {false, true}) {
        Window window;
        window.bench.boxes.answers = {yes};
        window.During(1, [&] { window.main.close(); });
        window.Start();
        EXPECT_EQ(window.bench.boxes.questions,
                  std::vector<std::string>{"Are you sure you want to abort the optimization and exit Veltra?"});
        EXPECT_EQ(window.bench.calls.CountOf("TolmLogoff"), 1);
        EXPECT_EQ(window.bench.boxes.shown.size(), yes ? 0U : 1U);
        EXPECT_EQ(window.viewed.size(), yes ? 0U : 1U);
        EXPECT_EQ(window.main.isVisible(), !yes);
        EXPECT_EQ(window.bench.calls.CountOf("TolmSubmitBatch") == 1, yes);
    }
}

/// The system asks the program to end: nothing is asked, shown or waited for.
TEST(frmMain, EndsInOrderWhenItIsAskedTo) {
    for (const bool isRunning : {false, true}) {
        Window window;
        WhenOpen<QDialog>([&](QDialog& open) {
            window.main.EndInOrder();
            EXPECT_FALSE(open.isVisible());
        });
        if (isRunning) window.During(1, [&] { app::frmSettings(window.run, &window.main).exec(); });
        QTimer::singleShot(0, &window.main, [&] { Click(window.main, isRunning ? "cmdStart" : "cmdSettings"); });
        QTimer::singleShot(std::chrono::seconds(30), &window.main, [] { QApplication::exit(1); });
        EXPECT_EQ(QApplication::exec(), 0);
        EXPECT_EQ(window.bench.boxes.questions, std::vector<std::string>());
        EXPECT_EQ(window.bench.boxes.shown.size() + window.viewed.size(), 0U);
        EXPECT_FALSE(window.main.isVisible());
        if (!isRunning) continue;
        EXPECT_TRUE(support::ReadWholeFile(window.run.results->LogFilePath).ends_with("Optimization aborted!\r\n"));
        EXPECT_TRUE(support::FileExists(window.run.results->VeskOutputFilePath + "Results.txt"));
        EXPECT_EQ(window.bench.calls.CountOf("TolmLogoff"), 1);
    }
}

TEST(frmMainDeathTest, EndsTheRunWhenTheDisplayGoesAway) {
    const auto loseTheDisplay = [] {
        Window window;
        const app::ExitGuard guard(*qApp, [&] {
            window.main.LeaveDisplay();
            window.startButton.EndNow();
            std::cerr << support::ReadWholeFile(window.run.results->LogFilePath);
            // Nothing of this process tidies up behind it.
            const QSettings user(QSettings::IniFormat, QSettings::UserScope, "Veltra", "Veltra");
            QDir(QDir::cleanPath(user.fileName() + "/../..")).removeRecursively();
            std::filesystem::remove_all(window.bench.project.folder.Path());
            std::_Exit(window.bench.calls.CountOf("TolmLogoff"));
        });
        window.During(2, [] { std::exit(99); });
        window.Start();
    };
    // In a process with a connection of its own to the display, where there is one.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(loseTheDisplay(), testing::ExitedWithCode(1), "DP.*Generating Results.*Optimization aborted!");
}

TEST(frmMain, TellsWhatCouldNotBeWritten) {
    Window window;
    window.During(9, [&] { support::CreateFolders(window.run.results->VeskOutputFilePath + "Results.txt"); });
    window.Start();
    const std::string path = window.run.results->VeskOutputFilePath + "Results.txt";
    ASSERT_EQ(window.bench.boxes.shown.size(), 3U);
    EXPECT_EQ(window.bench.boxes.shown[1].text, "Error opening " + path);
    EXPECT_EQ(window.bench.boxes.shown[2].text,
              "The run has ended, but not everything could be written:\r\nCannot write " + path + ": Is a directory");
    const QString log = window.Find<QPlainTextEdit>("txtLog")->toPlainText();
    EXPECT_TRUE(log.contains("Quantitative Optimization for MS3\n")) << log.toStdString();
}

TEST(frmMain, ShowsWhatTheInstrumentCannotOptimise) {
    Window window(26);
    EXPECT_EQ(Looks(window.main), "..xxx....");
    window.main.UpdateScanProgress(enumVeltraScanType::Q1MI_EP, enumProgressState::Pending);
    EXPECT_EQ(Looks(window.main), "..xxx....");
}

TEST(frmMain, ProgressAddsUpAndTellsTheTimeLeft) {
    Window window;
    const auto* bar = window.Find<QProgressBar>("ProgressBar1");
    const auto* left = window.Find<QLabel>("labelRemainingTime");
    window.main.ProgressBarStart(200000);
    EXPECT_EQ(left->text(), "3 min 20 s left");
    window.main.ProgressBarUpdate(50000);
    window.main.ProgressBarUpdate(100000);
    EXPECT_EQ(bar->value(), 75);
    EXPECT_EQ(left->text(), "50 s left");
    window.main.ProgressBarUpdate(50000);
    EXPECT_EQ(bar->value(), 100);
    EXPECT_EQ(left->text(), "");
}

TEST(frmMain, LogFollowsItsNewestLine) {
    Window window;
    auto* log = window.Find<QPlainTextEdit>("txtLog");
    window.main.SetLogText("");
    window.main.AddLogEntry("first");
    EXPECT_EQ(log->toPlainText(), "first");
    EXPECT_EQ(log->textCursor().position(), 1);
    window.main.AddLogEntry("second");
    EXPECT_EQ(log->toPlainText(), "first\nsecond");
    EXPECT_EQ(log->textCursor().position(), 6);
}

TEST(frmMain, SettingsButtonShowsTheNewSettings) {
    Window window;
    WhenOpen<app::frmSettings>([](app::frmSettings& dialog) {
        Enter(dialog, "txtCompoundName", "Theobromine");
        Click(dialog, "cmdOK");
    });
    window.main.SetLogText("old");
    Click(window.main, "cmdSettings");
    EXPECT_TRUE(window.Find<QLabel>("labelGraphRight")->text().contains("Theobromine"));
    EXPECT_EQ(window.Find<QPlainTextEdit>("txtLog")->toPlainText(), helpLines);
}

}  // namespace
