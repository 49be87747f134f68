// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/frmAdvancedSettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <algorithm>
#include <exception>
#include <initializer_list>
#include <optional>

#include "app/DialogControls.h"
#include "host/InstrumentModels.h"
#include "support/NumberText.h"
#include "support/RunTimeError.h"
#include "support/modStringUtils.h"

namespace app {
namespace {

using support::GeneralText;

/// One stage: its description, then rows of labelled controls.
class StageGroup {
  public:
    StageGroup(const QString& heading, const QString& description)
        : group_(new QGroupBox(heading)), grid_(new QGridLayout(group_)) {
        auto* label = new QLabel(description);
        label->setWordWrap(true);
        QFont font = label->font();
        font.setItalic(true);
        label->setFont(font);
        // A wrapped label inside two layouts is given too little height unless it is told how much it needs.
        label->setFixedSize(textWidth, label->heightForWidth(textWidth));
        grid_->addWidget(label, 0, 0, 1, columns);
        grid_->setColumnStretch(columns, 1);
    }

    /// @param widgets in reading order; the caption's mnemonic goes to the first that takes the focus
    void AddRow(const QString& caption, std::initializer_list<QWidget*> widgets, const QString& unit = {}) {
        const int row = grid_->rowCount();
        auto* label = LabelFor("", caption, *std::find_if(widgets.begin(), widgets.end(), [](QWidget* widget) {
                                   return widget->focusPolicy() != Qt::NoFocus;
                               }));
        grid_->addWidget(label, row, 0);
        auto* line = new QHBoxLayout;
        for (auto* widget : widgets)
            line->addWidget(widget);
        if (!unit.isEmpty()) line->addWidget(new QLabel(unit));
        line->addStretch(1);
        grid_->addLayout(line, row, 1, 1, columns - 1);
    }
    /// What the group next to it needs more in height stays empty below the rows.
    QGroupBox* Finished() {
        grid_->setRowStretch(grid_->rowCount(), 1);
        return group_;
    }

  private:
    static constexpr int columns = 2;
    static constexpr int textWidth = 420;
    QGroupBox* group_;
    QGridLayout* grid_;
};

QLineEdit* Box(const char* name, const QString& toolTip) {
    auto* box = Named(new QLineEdit, name, toolTip);
    box->setFixedWidth(64);
    return box;
}

void Put(QLineEdit* box, const std::string& text) {
    box->setText(QString::fromStdString(text));
}

std::string TextOf(const QLineEdit* box) {
    return box->text().toStdString();
}

std::optional<double> NumberIn(const QLineEdit* box) {
    return support::IsNumericText(TextOf(box)) ? support::ParseDouble(TextOf(box)) : std::nullopt;
}

template <class Value>
Value Converted(const std::optional<Value>& value) {
    if (!value) throw support::RunTimeError::TypeMismatch();
    return *value;
}

}  // namespace

frmAdvancedSettings::frmAdvancedSettings(veltra::RunState& runState, QWidget* parent)
    : QDialog(parent), runState_(runState) {
    setWindowTitle(tr("Advanced Settings"));
    auto* grid = new QGridLayout(this);
    grid->addWidget(ERGroup(), 0, 0);
    grid->addWidget(Q1MIGroup(), 1, 0);
    grid->addWidget(EPIGroup(), 2, 0);
    grid->addWidget(MRMGroup(), 0, 1);
    grid->addWidget(MS3Group(), 1, 1);
    grid->addWidget(FinalMethodsGroup(), 2, 1);
    auto* buttons = OkAndCancel(this, "cmdOK", "cmdCancel");
    grid->addWidget(buttons, 3, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    LoadSettings();
}

QComboBox* frmAdvancedSettings::ScanRateList(const char* name, int scanType, const std::string& current) {
    auto* list = Named(new QComboBox, name, tr("Slower scans give narrower peaks and take longer"));
    try {
        for (const auto& rate :
             runState_.host.CreateInstrumentHelper()->HostGetScanRates(runState_.InstrumentModelCode, scanType))
            list->addItem(QString::fromStdString(rate));
    } catch (const std::exception&) {
        // A host that cannot tell leaves the list empty.
    }
    list->setCurrentIndex(list->findText(QString::fromStdString(current), Qt::MatchExactly | Qt::MatchCaseSensitive));
    return list;
}

QGroupBox* frmAdvancedSettings::ERGroup() {
    StageGroup group(tr("Enhanced Resolution"),
                     tr("Finds the most intense peak within a 2 Da window of expected 1st precursor molecular weight.  "
                        "Mass range window defaulted to 30 Da around expected mass to charge ratio."));
    comboERScanRate_ = ScanRateList("comboERScanRate", static_cast<int>(veltra::ScanTypeCode::ER),
                                    runState_.settings.Advanced_ERScanRate);
    txtERScanRate_ = Box("txtERScanRate", tr("Number of spectra that are averaged"));
    group.AddRow(tr("Sc&an Rate:"), {comboERScanRate_}, tr("(Da/s)"));
    group.AddRow(tr("&Cycles:"), {txtERScanRate_});
    return group.Finished();
}

QGroupBox* frmAdvancedSettings::Q1MIGroup() {
    StageGroup group(tr("Q1 Multiple Ion"),
                     tr("Optimizes DP and EP.  DP re-optimized if -10<EP<10.  CEP is optimized only when applicable.  "
                        "Smooths TIC 2 times and finds voltage yielding greatest ion count."));
    txtQ1MIDPRampStart_ = Box("txtQ1MIDPRampStart", tr("0 V to 200 V, written as a positive value in both polarities"));
    txtQ1MIDPRampStop_ = Box("txtQ1MIDPRampStop", tr("0 V to 200 V, different from the start"));
    txtQ1MIDPRampStep_ = Box("txtQ1MIDPRampStep", tr("0.001 V up to the whole ramp; negative for a falling one"));
    txtQ1MIDwellTime_ = Box("txtQ1MIDwellTime", tr("Time at each voltage"));
    group.AddRow(tr("&DP Ramp:"),
                 {LabelFor("", tr("Star&t"), txtQ1MIDPRampStart_), txtQ1MIDPRampStart_,
                  LabelFor("", tr("St&op"), txtQ1MIDPRampStop_), txtQ1MIDPRampStop_,
                  LabelFor("", tr("Ste&p"), txtQ1MIDPRampStep_), txtQ1MIDPRampStep_},
                 tr("(0-200V)"));
    group.AddRow(tr("D&well Time:"), {txtQ1MIDwellTime_}, tr("(ms)"));
    return group.Finished();
}

QGroupBox* frmAdvancedSettings::EPIGroup() {
    StageGroup group(tr("Enhanced Product Ion"),
                     tr("Finds the most intense 2nd precursor peaks, excluding any peaks within a 5 Da window of 1st "
                        "precursor."));
    comboEPIScanRate_ = ScanRateList("comboEPIScanRate", static_cast<int>(veltra::ScanTypeCode::EPI),
                                     runState_.settings.Advanced_EPIScanRate);
    txtEPINum2ndPrec_ = Box("txtEPINum2ndPrec", tr("How many fragments are followed, 1 to 10"));
    txtEPICycles_ = Box("txtEPICycles", tr("Number of spectra that are averaged"));
    txtEPIMassStart_ = Box("txtEPIMassStart", tr("Lowest m/z of the spectrum, Da"));
    txtEPIMassEnd_ = Box("txtEPIMassEnd", tr("Highest m/z of the spectrum, Da"));
    txtEPI_CE_ = Box("txtEPI_CE", tr("Collision energy, V, written as a positive value in both polarities"));
    txtEPI_CES_ = Box("txtEPI_CES", tr("Collision energy spread, V: also CE - CES and CE + CES are applied"));
    group.AddRow(tr("Scan &Rate:"), {comboEPIScanRate_}, tr("(Da/s)"));
    group.AddRow(tr("&2nd Precursors:"), {txtEPINum2ndPrec_}, tr("(1-10)"));
    group.AddRow(tr("C&ycles:"), {txtEPICycles_});
    group.AddRow(tr("Mass ran&ge:"), {txtEPIMassStart_, new QLabel(tr("to")), txtEPIMassEnd_}, tr("(Da)"));
    group.AddRow(tr("C&E:"), {txtEPI_CE_, LabelFor("", tr("CE&S:"), txtEPI_CES_), txtEPI_CES_}, tr("(V)"));
    return group.Finished();
}

QGroupBox* frmAdvancedSettings::MRMGroup() {
    StageGroup group(tr("Multiple Reaction Monitoring"),
                     tr("Optimizes CE values for the most intense 2nd precursor peaks by cycling through each XIC "
                        "overlay.  XIC graph smoothed 2 times and voltage yielding greatest ion count is determined.  "
                        "(CE is ramped for its entire range with a 2V step size)"));
    txtMRMDwellTime_ = Box("txtMRMDwellTime", tr("Time at each transition and voltage"));
    group.AddRow(tr("Dwe&ll Time:"), {txtMRMDwellTime_}, tr("(ms)"));
    return group.Finished();
}

QGroupBox* frmAdvancedSettings::MS3Group() {
    StageGroup group(
        tr("MS/MS/MS"),
        tr("XIC graph smoothed 2 times.  Finds 2 most intense 3rd precursors at 5% max intensity.  Exclude "
           "peaks within 2 Da window of 2nd precursor (parent must be <10% total ion count). (AF2 is "
           "ramped for optimal sensitivity.)"));
    comboMS3ScanRate_ = ScanRateList("comboMS3ScanRate", static_cast<int>(veltra::ScanTypeCode::MS3),
                                     runState_.settings.Advanced_MS3ScanRate);
    txtMS3FixedFillTime_ = Box("txtMS3FixedFillTime", tr("How long the trap is filled; too long shifts peaks"));
    chkMS3UseQ0Trapping_ = Named(new QCheckBox(tr("Use &Q0 Trapping")), "chkMS3UseQ0Trapping",
                                 tr("Collects ions in Q0 while the trap is busy"));
    txtMS3MassStart_ = Box("txtMS3MassStart", tr("Lowest m/z of the spectrum, Da"));
    txtMS3MassEnd_ = Box("txtMS3MassEnd", tr("Highest m/z of the spectrum, Da"));
    group.AddRow(tr("Sca&n Rate:"), {comboMS3ScanRate_}, tr("(Da/s)"));
    group.AddRow(tr("&Fixed Fill Time:"), {txtMS3FixedFillTime_}, tr("(ms)"));
    group.AddRow(QString(), {chkMS3UseQ0Trapping_});
    group.AddRow(tr("&Mass range:"), {txtMS3MassStart_, new QLabel(tr("to")), txtMS3MassEnd_}, tr("(Da)"));
    return group.Finished();
}

QGroupBox* frmAdvancedSettings::FinalMethodsGroup() {
    StageGroup group(
        tr("Generate Final Methods"),
        tr("Creates final MS/MS/MS methods with mass range of 50 Da to 2nd precursor + 0.8 Da for each top "
           "2nd precursor.  Creates optimal MS/MS/MS method with 20 Da mass range window around most "
           "intense 3rd precursor."));
    optSaveAllFinalMethods_ = Named(new QRadioButton(tr("Sa&ve All Final Methods")), "optSaveAllFinalMethods",
                                    tr("One for every 2nd precursor, and the optimal one"));
    optSaveOptimalMethodOnly_ = Named(new QRadioButton(tr("Save Opt&imal Method Only")), "optSaveOptimalMethodOnly",
                                      tr("The one of the most sensitive path"));
    group.AddRow(QString(), {optSaveAllFinalMethods_, optSaveOptimalMethodOnly_});
    return group.Finished();
}

void frmAdvancedSettings::LoadSettings() {
    const auto& settings = runState_.settings;
    Put(txtERScanRate_, GeneralText(settings.Advanced_ERCycles));
    Put(txtQ1MIDPRampStart_, GeneralText(settings.Advanced_Q1MIDPRampStart));
    Put(txtQ1MIDPRampStop_, GeneralText(settings.Advanced_Q1MIDPRampStop));
    Put(txtQ1MIDPRampStep_, GeneralText(settings.Advanced_Q1MIDPRampStep));
    Put(txtQ1MIDwellTime_, GeneralText(settings.Advanced_Q1MIDwellTime));
    Put(txtEPINum2ndPrec_, GeneralText(static_cast<int>(settings.Advanced_EPINum2ndPrec)));
    Put(txtEPICycles_, GeneralText(settings.Advanced_EPICycles));
    Put(txtEPIMassStart_, GeneralText(settings.Advanced_EPIMassStart));
    Put(txtEPIMassEnd_, GeneralText(settings.Advanced_EPIMassEnd));
    Put(txtEPI_CE_, GeneralText(settings.Advanced_EPI_CE));
    Put(txtEPI_CES_, GeneralText(settings.Advanced_EPI_CES));
    Put(txtMRMDwellTime_, GeneralText(settings.Advanced_MRMDwellTime));
    Put(txtMS3FixedFillTime_, GeneralText(settings.Advanced_MS3FixedFillTime));
    chkMS3UseQ0Trapping_->setChecked(settings.Advanced_MS3UseQ0Trapping);
    Put(txtMS3MassStart_, GeneralText(settings.Advanced_MS3MassStart));
    Put(txtMS3MassEnd_, GeneralText(settings.Advanced_MS3MassEnd));
    (settings.Advanced_MS3SaveAllFinalMethods ? optSaveAllFinalMethods_ : optSaveOptimalMethodOnly_)->setChecked(true);
}

std::string frmAdvancedSettings::RampProblem() const {
    using Settings = veltra::clsInfo_Settings;
    for (const auto& [box, name] : {std::pair(txtQ1MIDPRampStart_, "start"), std::pair(txtQ1MIDPRampStop_, "stop")}) {
        if (TextOf(box).empty()) return std::string("Please enter a ") + name + " value for the Q1MI DP ramp";
        const auto value = NumberIn(box);
        if (!value) return std::string("The entered DP ramp ") + name + " value is not a valid number.";
        if (*value < 0 || *value > 200)
            return std::string("The entered DP ramp ") + name + " value is out of range (0 to 200).";
    }
    std::string step = TextOf(txtQ1MIDPRampStep_);
    if (step.empty()) return "Please enter a step value for the Q1MI DP ramp";
    // A falling ramp's step is negative.
    const std::string digits = step.front() == '-' ? step.substr(1) : step;
    const auto value = support::IsNumericText(digits) ? support::ParseSingle(step) : std::nullopt;
    if (!value) return "The entered DP ramp step value is not a valid number.";
    const float start = Converted(support::ParseSingle(TextOf(txtQ1MIDPRampStart_)));
    const float stop = Converted(support::ParseSingle(TextOf(txtQ1MIDPRampStop_)));
    if (start == stop) return "The entered DP ramp start and stop values are equal, ramp is not valid.";
    const auto range = Settings::AllowedStepRange(start, stop);
    return range.Contains(*value) ? std::string() : Settings::StepOutOfRangeMessage(range);
}

std::string frmAdvancedSettings::FirstProblem() const {
    if (std::string problem = RampProblem(); !problem.empty()) return problem;
    if (TextOf(txtEPINum2ndPrec_).empty()) return "Please enter the number of EPI 2nd precursors to use";
    const auto count = NumberIn(txtEPINum2ndPrec_);
    if (!count) return "The entered EPI number of 2nd precursors to use is not a valid number.";
    if (*count < 1 || *count > 10) return "The entered EPI number of 2nd precursors to use is out of range (1 to 10).";
    return {};
}

void frmAdvancedSettings::StoreSettings() {
    using namespace support;
    auto& settings = runState_.settings;
    settings.Advanced_ERScanRate = comboERScanRate_->currentText().toStdString();
    settings.Advanced_ERCycles = Converted(ParseInt32(TextOf(txtERScanRate_)));
    settings.Advanced_Q1MIDPRampStart = Converted(ParseSingle(TextOf(txtQ1MIDPRampStart_)));
    settings.Advanced_Q1MIDPRampStop = Converted(ParseSingle(TextOf(txtQ1MIDPRampStop_)));
    settings.Advanced_Q1MIDPRampStep = Converted(ParseSingle(TextOf(txtQ1MIDPRampStep_)));
    settings.Advanced_Q1MIDwellTime = Converted(ParseDouble(TextOf(txtQ1MIDwellTime_)));
    settings.Advanced_EPIScanRate = comboEPIScanRate_->currentText().toStdString();
    settings.Advanced_EPINum2ndPrec = Converted(ParseInt16(TextOf(txtEPINum2ndPrec_)));
    settings.Advanced_EPICycles = Converted(ParseInt32(TextOf(txtEPICycles_)));
    settings.Advanced_EPIMassStart = Converted(ParseSingle(TextOf(txtEPIMassStart_)));
    settings.Advanced_EPIMassEnd = Converted(ParseSingle(TextOf(txtEPIMassEnd_)));
    settings.Advanced_EPI_CE = Converted(ParseSingle(TextOf(txtEPI_CE_)));
    settings.Advanced_EPI_CES = Converted(ParseSingle(TextOf(txtEPI_CES_)));
    settings.Advanced_MRMDwellTime = Converted(ParseDouble(TextOf(txtMRMDwellTime_)));
    settings.Advanced_MS3ScanRate = comboMS3ScanRate_->currentText().toStdString();
    settings.Advanced_MS3FixedFillTime = Converted(ParseDouble(TextOf(txtMS3FixedFillTime_)));
    settings.Advanced_MS3UseQ0Trapping = chkMS3UseQ0Trapping_->isChecked();
    settings.Advanced_MS3MassStart = Converted(ParseSingle(TextOf(txtMS3MassStart_)));
    settings.Advanced_MS3MassEnd = Converted(ParseSingle(TextOf(txtMS3MassEnd_)));
    settings.Advanced_MS3SaveAllFinalMethods = optSaveAllFinalMethods_->isChecked();
}

void frmAdvancedSettings::accept() {
    if (const std::string problem = FirstProblem(); !problem.empty()) {
        runState_.messageBoxes.Show(problem, ports::MessageIcon::None);
        return;
    }
    try {
        StoreSettings();
    } catch (const support::RunTimeError&) {
        return;  // the dialog stays open on the entry that is no number; nothing is saved
    }
    if (const std::string failure = runState_.settings.WriteGlobalSettings(); !failure.empty())
        runState_.display.AddLogEntry(failure);
    QDialog::accept();
}

}  // namespace app
