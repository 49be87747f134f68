// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QComboBox>
#include <QListWidget>
#include <QMessageBox>
#include <QRadioButton>
#include <filesystem>
#include <set>

#include "app/QtMessageBoxes.h"
#include "app/frmAdvancedSettings.h"
#include "app/frmMZCalculator.h"
#include "app/frmSelectFolder.h"
#include "app/frmSettings.h"
#include "ports/HostError.h"
#include "support/Paths.h"
#include "support/Text.h"
#include "tests/app/AppBench.h"

namespace {

/// Something is entered, OK is pressed, and this message answers; none when the dialog accepts.
struct Attempt {
    const char* box;
    std::string entry;
    std::string message;
};

void ExpectAnswers(QDialog& dialog, RecordedMessageBoxes& boxes, const std::vector<Attempt>& attempts) {
    for (const auto& [box, entry, message] : attempts) {
        SCOPED_TRACE(box + (" = " + entry));
        boxes.shown.clear();
        dialog.setResult(-1);
        Enter(dialog, box, entry.c_str());
        Click(dialog, "cmdOK");
        ASSERT_EQ(boxes.shown.size(), message.empty() ? 0U : 1U);
        if (!message.empty()) {
            EXPECT_EQ(boxes.shown[0], (RecordedMessageBoxes::Box{message, ports::MessageIcon::None}));
        }
        EXPECT_EQ(dialog.result(), message.empty() ? static_cast<int>(QDialog::Accepted) : -1);
    }
}

std::string IniOf(const Window& window) {
    return window.bench.project.folder.File("Veltra.ini");
}

/// What the tab key visits, in its order, a blank between, and that no two mnemonics are the same.
void ExpectKeyboardOrder(QDialog& dialog, const std::string& order) {
    const auto names = support::Split(order, ' ');
    std::vector<std::string> visited;
    const QWidget* first = Find<QWidget>(dialog, names.front().c_str());
    const QWidget* at = first;
    do {
        const bool isReached = (at->focusPolicy() & Qt::TabFocus) != 0 && !at->objectName().startsWith("qt_");
        if (isReached) visited.push_back(at->objectName().toStdString());
        at = at->nextInFocusChain();
    } while (at != first);
    EXPECT_EQ(visited, names);
    std::set<QString> mnemonics;
    const auto note = [&](const QString& text) {
        const QString key = QKeySequence::mnemonic(text).toString();
        EXPECT_TRUE(key.isEmpty() || mnemonics.insert(key).second) << text.toStdString();
    };
    for (const auto* label : dialog.findChildren<QLabel*>())
        if (label->buddy() != nullptr) note(label->text());
    for (const auto* button : dialog.findChildren<QAbstractButton*>())
        note(button->text());
    for (const auto& name : names)
        if (name != "cmdOK" && name != "cmdCancel") {
            EXPECT_FALSE(Find<QWidget>(dialog, name.c_str())->toolTip().isEmpty()) << name;
        }
}

TEST(frmSettings, AnswersWhatIsMissingOrWrongInItsOrder) {
    Window window;
    auto& settings = window.bench.settings;
    const std::string method = settings.StarterMethodFilePath;
    settings.StarterMethodFilePath = settings.CompoundName = "";
    app::frmSettings dialog(window.run);
    EXPECT_EQ(Find<QLabel>(dialog, "labelMethodPath")->text(), "( Please select a method file )");
    const auto& boxes = window.bench.boxes;
    ExpectAnswers(dialog, window.bench.boxes,
                  {{"txtExpectedMZ", "", "Please select a starter acquisition method file"}});
    dialog.UseMethod(QString::fromStdString(method));
    EXPECT_EQ(settings.StarterMethodFilePath, method);  // before OK
    EXPECT_EQ(Find<QLabel>(dialog, "labelMethodPath")->text().toStdString(), support::FileNameOf(method));
    const std::string range = "m/z must be in the range of 15 Da to 1700 Da";
    ExpectAnswers(dialog, window.bench.boxes,
                  {{"txtCompoundName", "", "Please enter a compound name"},
                   {"txtCompoundName", std::string(32, 'x'),
                    "Compound name exceeds limit by 1 characters, please update the Settings."},
                   {"txtCompoundName", std::string(31, 'x'), "Please enter an expected m/z"},
                   {"txtExpectedMZ", "1e", "The m/z entered is not a valid number"},
                   {"txtExpectedMZ", ".", "The m/z entered is not a valid number"},
                   {"txtExpectedMZ", "14.999", range},
                   {"txtExpectedMZ", "1700.001", range},
                   {"txtCompoundName", "con.1", range}});
    Find<QLineEdit>(dialog, "txtExpectedMZ")->setText("609.281");
    ExpectAnswers(
        dialog, window.bench.boxes,
        {{"txtCompoundName", "con.1", "Compound name cannot be that of the device CON, please update the Settings."}});
    Enter(dialog, "txtCompoundName", std::string(31, 'x').c_str());
    EXPECT_EQ(settings.CompoundName, "");  // nothing is stored before all is right
    Find<QRadioButton>(dialog, "optBothPolarities")->setChecked(true);
    Find<QComboBox>(dialog, "comboQ1Resolution")->setCurrentIndex(3);
    ExpectAnswers(dialog, window.bench.boxes, {{"txtExpectedMZ", "1700", ""}, {"txtExpectedMZ", "15", ""}});
    EXPECT_TRUE(boxes.shown.empty());
    veltra::clsInfo_Settings saved(IniOf(window));
    saved.ReadGlobalSettings();
    EXPECT_EQ(saved.CompoundName, std::string(31, 'x'));
    EXPECT_EQ(saved.ExpectedMZ, 15);
    EXPECT_EQ(saved.Polarity, 1);  // "Do both" saves as negative
    EXPECT_EQ(saved.Q1Resolution, 3);
    EXPECT_EQ(settings.OrvanelProjectName, "caffeine");
}

TEST(frmSettings, TheKeyboardReachesEverything) {
    Window window;
    app::frmSettings dialog(window.run);
    ExpectKeyboardOrder(dialog,
                        "txtMethodFilePath cmdBrowseMethods txtCompoundName txtExpectedMZ cmdCalculateMZ "
                        "optPositivePolarity optNegativePolarity optBothPolarities comboQ1Resolution "
                        "cmdAdvanced cmdOK cmdCancel");
}

TEST(frmSettings, CancelStoresNothing) {
    Window window;
    app::frmSettings dialog(window.run);
    Enter(dialog, "txtCompoundName", "Other");
    Click(dialog, "cmdCancel");
    EXPECT_EQ(dialog.result(), static_cast<int>(QDialog::Rejected));
    EXPECT_EQ(window.bench.settings.CompoundName, "caffeine");
}

TEST(frmMZCalculator, HandsItsResultToTheSettings) {
    Window window;
    app::frmSettings dialog(window.run);
    const auto calculate = [&](const char* formula, const char* charge, const char* lastButton,
                               const std::string& shown) {
        WhenOpen<app::frmMZCalculator>([=](app::frmMZCalculator& calculator) {
            Enter(calculator, "txtChemicalFormula", formula);
            Find<QComboBox>(calculator, "comboNumOfCharges")->setCurrentText(charge);
            Click(calculator, "cmdCalculate");
            EXPECT_EQ(Find<QLabel>(calculator, "labelCalculatedMZ")->text().toStdString(), shown);
            Click(calculator, lastButton);
        });
        Click(dialog, "cmdCalculateMZ");
        std::string checked;
        for (const char* option : {"optPositivePolarity", "optNegativePolarity", "optBothPolarities"})
            checked += Find<QRadioButton>(dialog, option)->isChecked() ? 'x' : '.';
        return Find<QLineEdit>(dialog, "txtExpectedMZ")->text().toStdString() + " " + checked;
    };
    EXPECT_EQ(calculate(" C8H10N4O2 ", "+1", "cmdUseMZ", "195.088 Da"), "195.088 x..");
    EXPECT_EQ(calculate("C8H10N4O2", "-1", "cmdCancel", "193.073 Da"), "195.088 x..");
    EXPECT_EQ(calculate("C8H10N4O2", "-1", "cmdUseMZ", "193.073 Da"), "193.073 .x.");
    // A charge that is not negative clears "Negative" and chooses nothing in its place.
    EXPECT_EQ(calculate("C8H10N4O2", "0 (neutral)", "cmdUseMZ", "194.08 Da"), "194.08 ...");
    EXPECT_TRUE(window.bench.boxes.shown.empty());
    EXPECT_EQ(calculate("  ", "+2", "cmdUseMZ", ""), "0 ...");  // nothing was calculated
    ASSERT_EQ(window.bench.boxes.shown.size(), 1U);
    EXPECT_EQ(window.bench.boxes.shown[0].text, "Please enter a chemical formula");
}

TEST(frmAdvancedSettings, AnswersWhatIsMissingOrWrongInItsOrder) {
    Window window;
    app::frmAdvancedSettings dialog(window.run);
    Enter(dialog, "txtEPINum2ndPrec", "");
    for (const bool isStart : {true, false}) {
        const char* box = isStart ? "txtQ1MIDPRampStart" : "txtQ1MIDPRampStop";
        Enter(dialog, isStart ? "txtQ1MIDPRampStop" : "txtQ1MIDPRampStart", isStart ? "" : "200");
        Enter(dialog, "txtQ1MIDPRampStep", "");
        const std::string end = isStart ? "start" : "stop", next = isStart ? "stop" : "step";
        ExpectAnswers(dialog, window.bench.boxes,
                      {{box, "", "Please enter a " + end + " value for the Q1MI DP ramp"},
                       {box, "x", "The entered DP ramp " + end + " value is not a valid number."},
                       {box, "200.5", "The entered DP ramp " + end + " value is out of range (0 to 200)."},
                       {box, "200", "Please enter a " + next + " value for the Q1MI DP ramp"}});
    }
    const std::string count = "The entered EPI number of 2nd precursors to use ";
    ExpectAnswers(
        dialog, window.bench.boxes,
        {{"txtQ1MIDPRampStep", "five", "The entered DP ramp step value is not a valid number."},
         {"txtQ1MIDPRampStep", "5", "The entered DP ramp start and stop values are equal, ramp is not valid."},
         {"txtQ1MIDPRampStop", "100", "The entered DP ramp step value is out of range (-100 to -0.001)."},
         {"txtQ1MIDPRampStart", "0", "Please enter the number of EPI 2nd precursors to use"},
         {"txtQ1MIDPRampStep", "100.5", "The entered DP ramp step value is out of range (0.001 to 100)."},
         {"txtQ1MIDPRampStep", "100", "Please enter the number of EPI 2nd precursors to use"},
         {"txtEPINum2ndPrec", "many", count + "is not a valid number."},
         {"txtEPINum2ndPrec", "0", count + "is out of range (1 to 10)."},
         {"txtEPINum2ndPrec", "10.5", count + "is out of range (1 to 10)."},
         {"txtEPINum2ndPrec", "10", ""},
         {"txtQ1MIDPRampStart", "100", "The entered DP ramp start and stop values are equal, ramp is not valid."},
         {"txtQ1MIDPRampStop", "0", "The entered DP ramp step value is out of range (-100 to -0.001)."},
         {"txtQ1MIDPRampStep", "-5", ""}});
    EXPECT_EQ(window.bench.settings.Advanced_Q1MIDPRampStep, -5.0F);
    EXPECT_EQ(window.bench.settings.Advanced_EPINum2ndPrec, 10);
}

/// The boxes that nobody checks: a text that is no number ends the storing there, with the dialog open and nothing
/// saved.
TEST(frmAdvancedSettings, StopsAtWhatDoesNotConvert) {
    Window window;
    app::frmAdvancedSettings dialog(window.run);
    Enter(dialog, "txtERScanRate", "33");
    Enter(dialog, "txtEPI_CE", "high");
    Enter(dialog, "txtMS3MassEnd", "999");
    dialog.setResult(-1);
    Click(dialog, "cmdOK");
    EXPECT_EQ(dialog.result(), -1);
    EXPECT_EQ(window.bench.settings.Advanced_ERCycles, 33);
    EXPECT_NE(window.bench.settings.Advanced_MS3MassEnd, 999.0F);
    veltra::clsInfo_Settings saved(IniOf(window));
    saved.ReadGlobalSettings();
    EXPECT_NE(saved.Advanced_ERCycles, 33);
}

TEST(frmAdvancedSettings, ListsTheScanRatesOfTheInstrument) {
    Window window;
    window.bench.settings.Advanced_ERScanRate = "250";
    window.bench.settings.Advanced_EPIScanRate = "333";
    app::frmAdvancedSettings dialog(window.run);
    EXPECT_EQ(Find<QComboBox>(dialog, "comboERScanRate")->currentText(), "250");
    EXPECT_EQ(Find<QComboBox>(dialog, "comboEPIScanRate")->currentIndex(), -1);  // not offered: nothing is selected
    EXPECT_GT(Find<QComboBox>(dialog, "comboEPIScanRate")->count(), 1);
    Find<QComboBox>(dialog, "comboMS3ScanRate")->setCurrentText("10000");
    Find<QRadioButton>(dialog, "optSaveOptimalMethodOnly")->setChecked(true);
    Click(dialog, "cmdOK");
    EXPECT_EQ(window.bench.settings.Advanced_EPIScanRate, "");
    EXPECT_EQ(window.bench.settings.Advanced_MS3ScanRate, "10000");
    EXPECT_FALSE(window.bench.settings.Advanced_MS3SaveAllFinalMethods);
    window.bench.calls.Fail("HostGetScanRates", ports::HostError(5, "no rates"));
    app::frmAdvancedSettings without(window.run);
    EXPECT_EQ(Find<QComboBox>(without, "comboERScanRate")->count(), 0);
}

TEST(frmAdvancedSettings, TheKeyboardReachesEverything) {
    Window window;
    app::frmAdvancedSettings dialog(window.run);
    ExpectKeyboardOrder(dialog,
                        "comboERScanRate txtERScanRate txtQ1MIDPRampStart txtQ1MIDPRampStop "
                        "txtQ1MIDPRampStep txtQ1MIDwellTime comboEPIScanRate txtEPINum2ndPrec "
                        "txtEPICycles txtEPIMassStart txtEPIMassEnd txtEPI_CE txtEPI_CES txtMRMDwellTime "
                        "comboMS3ScanRate txtMS3FixedFillTime chkMS3UseQ0Trapping txtMS3MassStart "
                        "txtMS3MassEnd optSaveAllFinalMethods optSaveOptimalMethodOnly cmdOK cmdCancel");
}

/// The project's data lie in a sub-project: the run asks for it, and goes on there.
TEST(frmSelectFolder, ChoosesTheDataFolderOfASubProject) {
    app::QtFolderChooser chooser;
    Window window(27, &chooser);
    const std::filesystem::path project =
        std::filesystem::path(window.bench.settings.StarterMethodFilePath).parent_path().parent_path();
    std::filesystem::create_directories(project / "Study 1");
    std::filesystem::rename(project / "Data", project / "Study 1" / "Data");
    WhenOpen<app::frmSelectFolder>([&](app::frmSelectFolder& dialog) {
        EXPECT_EQ(Find<QLabel>(dialog, "labelProjectPath")->text().toStdString(), project.string() + "/");
        auto* list = Find<QListWidget>(dialog, "listFolders");
        EXPECT_EQ(list->count(), 2);
        list->setCurrentItem(list->findItems("Study 1", Qt::MatchExactly).value(0));
        Click(dialog, "OKButton");
    });
    window.Start();
    ASSERT_EQ(window.bench.boxes.shown.size(), 1U);
    EXPECT_EQ(window.bench.boxes.shown[0].text, "Optimization completed successfully!");
    EXPECT_TRUE(window.run.results->VeskOutputFilePath.starts_with((project / "Study 1" / "Data").string()));
    EXPECT_EQ(window.bench.settings.OrvanelProjectName, "caffeine\\Study 1");
}

TEST(frmSelectFolder, CancelOrNoChoiceEndTheInitialisation) {
    for (const char* button : {"CancelButton", "OKButton"}) {
        app::QtFolderChooser chooser;
        Window window(27, &chooser);
        std::filesystem::remove_all(window.bench.DataFolder());
        WhenOpen<app::frmSelectFolder>([&](app::frmSelectFolder& dialog) { Click(dialog, button); });
        window.Start();
        ASSERT_EQ(window.bench.boxes.shown.size(), 1U);
        EXPECT_EQ(window.bench.boxes.shown[0].text, "Unable to locate Data folder");
    }
}

TEST(QtMessageBoxes, BearTheProgramsNameAndSelectableTexts) {
    app::QtMessageBoxes boxes;
    using Box = QMessageBox;
    using ports::MessageIcon;
    const std::string text = "50 < 60 & <b>";
    const auto expect = [&](Box::Icon icon, Box::StandardButtons buttons, Box::StandardButton answer) {
        WhenOpen<QMessageBox>([=](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), "Veltra");
            EXPECT_EQ(box.text().toStdString(), text);
            EXPECT_EQ(box.icon(), icon);
            EXPECT_EQ(box.standardButtons(), buttons);
            EXPECT_TRUE(box.textInteractionFlags() & Qt::TextSelectableByMouse);
            box.button(answer)->click();
        });
    };
    for (const auto& [icon, shown] : {std::pair{MessageIcon::Critical, Box::Critical},
                                      {MessageIcon::Warning, Box::Warning},
                                      {MessageIcon::None, Box::NoIcon}}) {
        expect(shown, Box::Ok, Box::Ok);
        boxes.Show(text, icon);
    }
    for (const auto answer : {Box::Yes, Box::No}) {
        expect(Box::Question, Box::Yes | Box::No, answer);
        EXPECT_EQ(boxes.AskYesNo(text), answer == Box::Yes);
    }
}

}  // namespace
