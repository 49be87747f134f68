// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QStyleFactory>
#include <iostream>

#include "app/frmAdvancedSettings.h"
#include "app/frmMZCalculator.h"
#include "app/frmMain.h"
#include "app/frmSelectFolder.h"
#include "app/frmSettings.h"
#include "support/modFileUtils.h"
#include "tests/support_files/WholeRun.h"

/// Renders the window in its states, and each dialog, into a folder: the pictures of the documentation.
/// Usage: veltra-screenshots FOLDER light|dark

namespace {

QPalette DarkPalette() {
    QPalette palette;
    const QColor ground(53, 53, 53);
    const QColor text(230, 230, 230);
    for (const auto role : {QPalette::Window, QPalette::Button, QPalette::AlternateBase, QPalette::ToolTipBase})
        palette.setColor(role, ground);
    palette.setColor(QPalette::Base, QColor(25, 25, 25));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, text);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
    palette.setColor(QPalette::Highlight, QColor(80, 160, 230));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    return palette;
}

/// Where the project seems to lie: the temporary folder's name would say nothing, and differ in every picture.
constexpr const char* shownFolder = "/home/chemist/Orvanel";

/// Takes one picture after the other.
class Camera {
  public:
    Camera(QString folder, QString palette) : folder_(std::move(folder)), palette_(std::move(palette)) {}

    void Take(QWidget& window, const QString& name, const std::string& temporaryFolder = {}) {
        window.show();
        if (auto* log = window.findChild<QPlainTextEdit*>("txtLog")) {
            log->setPlainText(log->toPlainText().replace(QString::fromStdString(temporaryFolder), shownFolder));
            log->moveCursor(QTextCursor::End);
        }
        QApplication::processEvents();
        const QString path = folder_ + "/" + name + "-" + palette_ + ".png";
        constexpr int smallest = 0;
        if (!window.grab().save(path, "PNG", smallest)) throw std::runtime_error("Cannot write " + path.toStdString());
        std::cout << path.toStdString() << '\n';
    }

  private:
    QString folder_;
    QString palette_;
};

void TakeMainWindow(Camera& camera) {
    WholeRun bench({});
    const std::string& folder = bench.project.folder.Path();
    app::frmMain main;
    veltra::RunState run({bench.host, main, bench.boxes, bench.chooser, bench.clock}, bench.settings);
    run.InstrumentModelCode = bench.run.InstrumentModelCode;
    run.EPAndCEPSupported = bench.run.EPAndCEPSupported;
    veltra::StartButton startButton(run);
    main.Attach(run, startButton, [](const std::string&) { return true; });
    camera.Take(main, "main-idle", folder);

    constexpr int acquisitionShown = 7;  // the MRM ramp, with the EPI spectrum on show
    constexpr int pollShown = 250;
    int polls = 0;
    bench.calls.beforeCall = [&](const std::string& text) {
        if (text != "HostSleep(100)" || bench.calls.CountOf("TolmSubmitBatch") != acquisitionShown) return;
        if (++polls == pollShown) camera.Take(main, "main-running", folder);
    };
    startButton.Click();
    bench.calls.beforeCall = nullptr;
    camera.Take(main, "main-finished", folder);
    constexpr std::int16_t ms3Shown = 3;
    using Stage = ports::enumVeltraScanType;
    for (const auto& [stage, name] : {std::pair(Stage::MRM, "main-mrm"), {Stage::MS3, "main-ms3"}}) {
        main.UpdateResultsGraphControl(stage, ms3Shown);
        camera.Take(main, name, folder);
    }
}

void TakeDialogs(Camera& camera) {
    WholeRun bench({});
    bench.run.InstrumentModelCode = 27;
    const std::string project = support::GetPathToNthBackslash(bench.DataFolder(), true, 0);
    bench.settings.StarterMethodFilePath =
        shownFolder + std::string("/Projects/reserpine/Acquisition Methods/Start.xmt");
    app::frmSettings settings(bench.run);
    camera.Take(settings, "settings");
    app::frmAdvancedSettings advanced(bench.run);
    camera.Take(advanced, "advanced");
    app::frmMZCalculator calculator(bench.host, bench.boxes);
    calculator.findChild<QLineEdit*>("txtChemicalFormula")->setText("C33H40N2O9");
    calculator.findChild<QComboBox*>("comboNumOfCharges")->setCurrentText("+1");
    calculator.findChild<QPushButton*>("cmdCalculate")->click();
    camera.Take(calculator, "calculator");
    app::frmSelectFolder folders;
    folders.Initialize(project);
    folders.findChild<QListWidget*>()->setCurrentRow(0);
    folders.findChild<QLabel*>("labelProjectPath")->setText(shownFolder + QString("/Projects/reserpine/"));
    camera.Take(folders, "select-folder");
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const auto arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        std::cerr << "Usage: veltra-screenshots FOLDER light|dark\n";
        return 2;
    }
    const TempFolder userConfiguration;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, QString::fromStdString(userConfiguration.Path()));
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    // Text in shades of one colour looks the same on every screen that shows the pictures, and packs better.
    QFont font = QApplication::font();
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    QApplication::setFont(font);
    if (arguments[2] == "dark") QApplication::setPalette(DarkPalette());
    Camera camera(arguments[1], arguments[2]);
    TakeMainWindow(camera);
    TakeDialogs(camera);
    return 0;
}
