// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/frmSettings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include "app/DialogControls.h"
#include "app/frmAdvancedSettings.h"
#include "app/frmMZCalculator.h"
#include "support/FileNames.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Text.h"
#include "support/modFileUtils.h"
#include "support/modGlobals.h"
#include "support/modStringUtils.h"

namespace app {
namespace {

constexpr double lowestMz = 15;
constexpr double highestMz = 1700;

}  // namespace

frmSettings::frmSettings(veltra::RunState& runState, QWidget* parent) : QDialog(parent), runState_(runState) {
    setWindowTitle(tr("Settings"));
    BuildControls();
    LoadSettings();
}

void frmSettings::BuildControls() {
    txtMethodFilePath_ = Named(new QLineEdit, "txtMethodFilePath", tr("The method that the run starts from (.xmt)"));
    txtMethodFilePath_->setReadOnly(true);
    labelMethodPath_ = Named(new QLabel, "labelMethodPath");
    auto* cmdBrowse = Named(new QPushButton(tr("&Browse...")), "cmdBrowseMethods", tr("Choose the starter method"));
    txtCompoundName_ = Named(new QLineEdit, "txtCompoundName",
                             tr("Goes into the names of methods, data and folders; at most 31 characters"));
    txtExpectedMZ_ = Named(new QLineEdit, "txtExpectedMZ", tr("m/z of the 1st precursor, 15 Da to 1700 Da"));
    auto* cmdCalculate = Named(new QPushButton(tr("C&alculate...")), "cmdCalculateMZ", tr("Compute the m/z"));
    comboQ1Resolution_ = Named(new QComboBox, "comboQ1Resolution", tr("How narrow Q1 isolates; ER scans are open"));
    comboQ1Resolution_->addItems({tr("Low"), tr("Unit"), tr("High"), tr("Open")});
    optPositivePolarity_ =
        Named(new QRadioButton(tr("&Positive")), "optPositivePolarity", tr("The instrument counts positive ions"));
    optNegativePolarity_ =
        Named(new QRadioButton(tr("&Negative")), "optNegativePolarity", tr("The instrument counts negative ions"));
    optBothPolarities_ = Named(new QRadioButton(tr("&Do both")), "optBothPolarities", tr("Saved as negative"));
    auto* polarity = Named(new QGroupBox(tr("Polarity")), "framePolarity");
    auto* polarityLayout = new QHBoxLayout(polarity);
    for (auto* option : {optPositivePolarity_, optNegativePolarity_, optBothPolarities_})
        polarityLayout->addWidget(option);
    auto* cmdAdvanced = Named(new QPushButton(tr("Ad&vanced")), "cmdAdvanced", tr("Settings of each scan"));

    auto* buttons = OkAndCancel(this, "cmdOK", "cmdCancel");
    for (auto* button : {cmdBrowse, cmdCalculate, cmdAdvanced})
        button->setAutoDefault(false);
    connect(cmdBrowse, &QPushButton::clicked, this, &frmSettings::Browse);
    connect(cmdCalculate, &QPushButton::clicked, this, &frmSettings::CalculateMz);
    connect(cmdAdvanced, &QPushButton::clicked, this, &frmSettings::ShowAdvanced);

    auto* grid = new QGridLayout(this);
    grid->addWidget(LabelFor("labelMethod", tr("Acquisition &Method:"), txtMethodFilePath_), 0, 0);
    grid->addWidget(txtMethodFilePath_, 0, 1);
    grid->addWidget(cmdBrowse, 0, 2);
    grid->addWidget(labelMethodPath_, 1, 1, 1, 2);
    grid->addWidget(LabelFor("labelCompoundName", tr("&Compound Name:"), txtCompoundName_), 2, 0);
    grid->addWidget(txtCompoundName_, 2, 1, 1, 2);
    grid->addWidget(LabelFor("labelMZ", tr("&Expected m/z (Da):"), txtExpectedMZ_), 3, 0);
    grid->addWidget(txtExpectedMZ_, 3, 1, 1, 2);
    grid->addWidget(LabelFor("labelCalcFromChemFormula", tr("Calculate from chemical formula"), cmdCalculate), 4, 1);
    grid->addWidget(cmdCalculate, 4, 2);
    grid->addWidget(polarity, 5, 0, 1, 3);
    grid->addWidget(LabelFor("labelQ1Resolution", tr("&Q1 Resolution:"), comboQ1Resolution_), 6, 0);
    grid->addWidget(comboQ1Resolution_, 6, 1, 1, 2);
    grid->addWidget(cmdAdvanced, 7, 0);
    grid->addWidget(buttons, 7, 1, 1, 2);
    grid->setColumnStretch(1, 1);
    setMinimumWidth(480);
}

void frmSettings::LoadSettings() {
    const auto& settings = runState_.settings;
    ShowMethod();
    txtCompoundName_->setText(QString::fromStdString(settings.CompoundName));
    txtExpectedMZ_->setText(QString::fromStdString(support::GeneralText(settings.ExpectedMZ)));
    (settings.Polarity == 1 ? optNegativePolarity_ : optPositivePolarity_)->setChecked(true);
    comboQ1Resolution_->setCurrentIndex(settings.Q1Resolution);
}

void frmSettings::ShowMethod() {
    const std::string& path = runState_.settings.StarterMethodFilePath;
    txtMethodFilePath_->setText(QString::fromStdString(path));
    labelMethodPath_->setText(path.empty() ? tr("( Please select a method file )")
                                           : QString::fromStdString(support::FileNameOf(path)));
}

void frmSettings::UseMethod(const QString& path) {
    runState_.settings.StarterMethodFilePath = support::NativePath(path.toStdString());
    ShowMethod();
}

void frmSettings::Browse() {
    const std::string& current = runState_.settings.StarterMethodFilePath;
    const std::string folder = current.empty()
                                   ? "Acquisition Methods"
                                   : support::GetPathToNthBackslash(current, true, 1) + "Acquisition Methods";
    const QString path = QFileDialog::getOpenFileName(this, QString(), QString::fromStdString(folder),
                                                      tr("Acquisition Methods (*.xmt)"));
    if (!path.isEmpty()) UseMethod(path);
}

void frmSettings::CalculateMz() {
    frmMZCalculator calculator(runState_.host, runState_.messageBoxes, this);
    calculator.exec();
    if (calculator.WasCancelled()) return;
    txtExpectedMZ_->setText(QString::fromStdString(support::GeneralText(calculator.CalculatedMZ())));
    if (calculator.Charge() < 0) {
        optNegativePolarity_->setChecked(true);
        return;
    }
    // A charge that is not negative only clears "Negative": which of the others is meant stays the user's choice.
    for (auto* option : {optPositivePolarity_, optNegativePolarity_, optBothPolarities_})
        option->setAutoExclusive(false);
    optNegativePolarity_->setChecked(false);
    for (auto* option : {optPositivePolarity_, optNegativePolarity_, optBothPolarities_})
        option->setAutoExclusive(true);
}

void frmSettings::ShowAdvanced() {
    frmAdvancedSettings(runState_, this).exec();
}

std::string frmSettings::FirstProblem() const {
    const std::string compound = txtCompoundName_->text().toStdString();
    const std::string mz = txtExpectedMZ_->text().toStdString();
    if (runState_.settings.StarterMethodFilePath.empty()) return "Please select a starter acquisition method file";
    if (compound.empty()) return "Please enter a compound name";
    if (const auto excess = support::GetCompoundNameExcess(compound); excess > 0)
        return "Compound name exceeds limit by " + support::GeneralText(excess) +
               " characters, please update the Settings.";
    if (mz.empty()) return "Please enter an expected m/z";
    const auto value = support::IsNumericText(mz) ? support::ParseDouble(mz) : std::nullopt;
    if (!value) return "The m/z entered is not a valid number";
    if (*value < lowestMz || *value > highestMz) return "m/z must be in the range of 15 Da to 1700 Da";
    return support::CompoundNameProblem(compound);
}

std::string frmSettings::ProjectNameOf(const std::string& methodPath) {
    const std::string projects = support::GetPathToNthBackslash(methodPath, true, 2);
    const std::string lastTen = projects.size() < 10 ? projects : projects.substr(projects.size() - 10);
    if (support::ToUpper(lastTen) == "\\PROJECTS\\" || support::ToUpper(lastTen) == "/PROJECTS/")
        return support::GetFolderNameAtDepth(methodPath, 2);
    return support::GetFolderNameAtDepth(support::GetPathToNthBackslash(methodPath, true, 1), 1);
}

void frmSettings::accept() {
    if (const std::string problem = FirstProblem(); !problem.empty()) {
        runState_.messageBoxes.Show(problem, ports::MessageIcon::None);
        return;
    }
    auto& settings = runState_.settings;
    settings.CompoundName = txtCompoundName_->text().toStdString();
    settings.ExpectedMZ = support::ParseDouble(txtExpectedMZ_->text().toStdString()).value_or(0);
    settings.Polarity = optPositivePolarity_->isChecked() ? 0 : 1;
    settings.Q1Resolution = comboQ1Resolution_->currentIndex();
    if (const std::string failure = settings.WriteGlobalSettings(); !failure.empty())
        runState_.display.AddLogEntry(failure);
    settings.OrvanelProjectName = ProjectNameOf(settings.StarterMethodFilePath);
    QDialog::accept();
}

}  // namespace app
