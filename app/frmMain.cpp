// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/frmMain.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <algorithm>
#include <cmath>

#include "app/frmSettings.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/modFileUtils.h"

namespace app {
namespace {

using ports::enumProgressState;
using ports::enumVeltraScanType;

constexpr const char* geometryKey = "MainWindow/Geometry";

QString Qt(const std::string& text) {
    return QString::fromStdString(text);
}

}  // namespace

frmMain::~frmMain() = default;

void frmMain::Attach(veltra::RunState& runState, veltra::StartButton& startButton,
                     std::function<bool(const std::string& path)> viewText) {
    viewText_ = std::move(viewText);
    run_ = &runState;
    startButton_ = &startButton;
    const std::string description = runState.host.GetDescription();
    labelBanner_->setText(Qt(description));
    labelBanner_->setVisible(!description.empty());
    SetRunButtonsState(ports::RunButtons::Idle);
    ShowSettingsText();
    ResetScanProgress();
    if (!runState.EPAndCEPSupported)
        for (const auto stage : {enumVeltraScanType::Q1MI_EP, enumVeltraScanType::Q1MI_CEP})
            Stage(stage).ShowGreyed();
    progressBar_->setValue(0);
    MessageUpdate("");
    cmdStart_->setFocus();
    SetLogText(veltra::settingsHelpLines);
    const QSettings user(QSettings::IniFormat, QSettings::UserScope, "Veltra", "Veltra");
    if (!restoreGeometry(user.value(geometryKey).toByteArray())) resize(minimumSizeHint());
    LayoutControls();
}

void frmMain::EndInOrder() {
    endsInOrder_ = true;
    const bool isRunning = startButton_->IsRunning();
    if (isRunning) run_->AbortRequested = true;
    if (QWidget* dialog = QApplication::activeModalWidget()) dialog->close();
    if (!isRunning) close();
}

void frmMain::AddLogEntry(const std::string& strLogEntry) {
    if (!hasDisplay_) return;
    // The caret goes to where the new line begins (a first line: behind its first character), so that it shows.
    const bool isFirst = txtLog_->document()->isEmpty();
    const int newLine = isFirst ? std::min<int>(1, static_cast<int>(strLogEntry.size()))
                                : static_cast<int>(txtLog_->toPlainText().size()) + 1;
    txtLog_->appendPlainText(Qt(strLogEntry).remove('\r'));
    QTextCursor caret = txtLog_->textCursor();
    caret.setPosition(newLine);
    txtLog_->setTextCursor(caret);
}

void frmMain::SetLogText(const std::string& strText) {
    txtLog_->setPlainText(Qt(strText).remove('\r'));
    txtLog_->moveCursor(QTextCursor::End);
}

void frmMain::UpdateScanProgress(enumVeltraScanType enumProgress, enumProgressState state) {
    const bool isPending = state == enumProgressState::Pending;
    switch (enumProgress) {
        case enumVeltraScanType::MS3:
            if (isPending) UpdateMS3Label(0, 0);
            [[fallthrough]];
        case enumVeltraScanType::ER:
        case enumVeltraScanType::Q1MI_DP:
        case enumVeltraScanType::EPI:
        case enumVeltraScanType::MRM:
            Stage(enumProgress).Show(state);
            break;
        case enumVeltraScanType::Q1MI_EP:
        case enumVeltraScanType::Q1MI_CEP:
            // These two lines show no more than whether the instrument has the voltage; kept so on purpose.
            if (!isPending || !run_->EPAndCEPSupported) break;
            Stage(enumProgress).Label()->setEnabled(true);
            Stage(enumProgress).Show(state);
            break;
        case enumVeltraScanType::Q1MI_REOPTDP:
            if (isPending) {
                Stage(enumProgress).ShowGreyed();
                break;
            }
            Stage(enumProgress).Label()->setEnabled(true);
            Stage(enumProgress).Show(state);
            break;
        case enumVeltraScanType::FinalMethods:
            Stage(enumProgress).ShowWithoutLink(state);  // there is no graph to show
            break;
        case enumVeltraScanType::RunFinished:
            FinishRun();
            break;
    }
}

void frmMain::UpdateMS3Label(std::int16_t intCurrentCount, std::int16_t intTotalCount) {
    StageEntry& entry = Stage(enumVeltraScanType::MS3);
    entry.Label()->setText(QString("Optimize AF2s for 2nd precursors and get 3rd precursors (%1 of %2)")
                               .arg(intCurrentCount)
                               .arg(intTotalCount));
    if (intCurrentCount > 1) entry.SetLink(true);
}

void frmMain::MessageUpdate(const std::string& strMessage) {
    labelMessage_->setText(Qt(strMessage));
}

void frmMain::ProgressBarStart(double dblTotalTimeInMSec) {
    totalMs_ = dblTotalTimeInMSec;
    elapsedMs_ = 0;
    progressBar_->setValue(0);
    ShowRemainingTime();
}

void frmMain::ProgressBarUpdate(double dblElapsedTimeInMSec) {
    elapsedMs_ += dblElapsedTimeInMSec;
    const auto share = static_cast<float>(elapsedMs_ / totalMs_ * 100);
    progressBar_->setValue(elapsedMs_ < totalMs_ ? static_cast<int>(share) : progressBar_->maximum());
    ShowRemainingTime();
}

void frmMain::ProgressBarEnd() {
    elapsedMs_ = totalMs_;
    progressBar_->setValue(progressBar_->maximum());
    ShowRemainingTime();
}

void frmMain::ShowRemainingTime() {
    const auto seconds = static_cast<qint64>(std::ceil((totalMs_ - elapsedMs_) / 1000));
    const QString text = seconds >= 60 ? tr("%1 min %2 s left").arg(seconds / 60).arg(seconds % 60, 2, 10, QChar('0'))
                                       : tr("%1 s left").arg(seconds);
    labelRemainingTime_->setText(seconds > 0 ? text : QString());
    taskbar_.Show(winId(), progressBar_->value(), startButton_ != nullptr && startButton_->IsRunning());
}

void frmMain::UpdateResultsGraphControl(enumVeltraScanType scanType, std::int16_t intMS3Index) {
    static constexpr const char* titles[] = {"Enhanced Resolution Scan",
                                             "Q1 Multiple Ion Scan (Optimize DP)",
                                             "Q1 Multiple Ion Scan (Optimize EP)",
                                             "Q1 Multiple Ion Scan (Re-optimize DP)",
                                             "Q1 Multiple Ion Scan (Optimize CEP)",
                                             "Enhanced Product Ion Scan",
                                             "Multiple Reaction Monitor Scan",
                                             "MS/MS/MS Scan"};
    if (intMS3Index >= 0) ms3Index_ = intMS3Index;
    if (!run_->scans || scanType > enumVeltraScanType::MS3) return;
    const auto paths = run_->scans->GetGraphData(scanType, *graph_, ms3Index_);
    methodLinkPath_ = paths.MethodFilePath;
    veskLinkPath_ = paths.VeskFilePath;
    graph_->SetLabels(LabelsOf(scanType));
    const bool isMS3 = scanType == enumVeltraScanType::MS3;
    const std::string number = isMS3 ? "(" + std::to_string(ms3Index_) + " of " +
                                           std::to_string(run_->scans->Scan5_MS3_GetFilePathsCount()) + ")"
                                     : "";
    UpdateGraphLabelsAndButtons(true, titles[static_cast<std::size_t>(scanType)], isMS3, number);
}

QVector<double> frmMain::SpectrumMarks(enumVeltraScanType scanType) const {
    QVector<double> marks;
    const auto& results = *run_->results;
    if (scanType == enumVeltraScanType::ER && results.ActualPeak) marks << results.ActualPeak->CentroidMass;
    int acquisition = 0;
    for (const auto& record : results.TopPeaksInfo) {
        if (scanType == enumVeltraScanType::EPI) marks << record->SecondPrecursor->CentroidMass;
        // Only records with a collision energy have been acquired.
        if (scanType != enumVeltraScanType::MS3 || !record->CEWasOptimized || ++acquisition != ms3Index_) continue;
        for (const auto& peak : record->MS3PeaksCollection)
            marks << peak->CentroidMass;
    }
    return marks;
}

GraphLabels frmMain::LabelsOf(enumVeltraScanType scanType) const {
    GraphLabels labels;
    labels.yTitle = tr("Intensity (cps)");
    labels.note = labelBanner_->text();
    labels.isSpectrum = scanType == enumVeltraScanType::ER || scanType == enumVeltraScanType::EPI ||
                        scanType == enumVeltraScanType::MS3;
    if (!run_->results) return labels;
    const auto& results = *run_->results;
    if (labels.isSpectrum) {
        labels.xTitle = tr("m/z (Da)");
        labels.marks = SpectrumMarks(scanType);
        return labels;
    }
    const auto mark = [&](const char* id, double value) {
        labels.xTitle = QString("%1 (V)").arg(id);
        labels.markName = id;
        labels.marks = {value};
    };
    switch (scanType) {
        case enumVeltraScanType::Q1MI_EP:
            mark("EP", static_cast<double>(results.EP.Current));
            break;
        case enumVeltraScanType::Q1MI_CEP:
            mark("CEP", static_cast<double>(results.CEP.Current));
            break;
        case enumVeltraScanType::MRM:
            labels.xTitle = "CE (V)";
            for (const auto& record : results.TopPeaksInfo) {
                labels.legend << Qt(support::MzText(results.ActualPeak ? results.ActualPeak->CentroidMass : 0) +
                                    " -> " + support::MzText(record->SecondPrecursor->CentroidMass));
                if (record->CEWasOptimized) labels.marks << record->OptimizedCE;
            }
            break;
        default:
            mark("DP", graph_->PaneApexX(1));
            break;
    }
    return labels;
}

void frmMain::UpdateGraphLabelsAndButtons(bool blnGraphVisible, const std::string& strGraphTitle, bool blnIsMS3,
                                          const std::string& strMS3GraphNum) {
    graph_->setVisible(blnGraphVisible);
    labelGraphTitle_->setVisible(blnGraphVisible);
    labelGraphTitle_->setText(Qt(strGraphTitle));
    labelMethodLink_->setVisible(blnGraphVisible);
    labelVeskLink_->setVisible(blnGraphVisible);
    const bool showsMS3 = blnGraphVisible && blnIsMS3;
    if (blnGraphVisible) {
        LayoutControls();
        labelMS3GraphNum_->setText(blnIsMS3 ? Qt(strMS3GraphNum) : QString());
    } else {
        labelGraphLeft_->setText(Qt(run_->settings.GetSettingsHeadingColumn()).remove('\r'));
        labelGraphRight_->setText(Qt(run_->settings.GetCurrentGlobalSettingsString()).remove('\r'));
    }
    labelGraphLeft_->setVisible(!blnGraphVisible);
    labelGraphRight_->setVisible(!blnGraphVisible);
    labelMS3GraphNum_->setVisible(showsMS3);
    cmdMS3Left_->setVisible(showsMS3);
    cmdMS3Right_->setVisible(showsMS3);
}

void frmMain::SetRunButtonsState(ports::RunButtons state) {
    const bool isRunning = state == ports::RunButtons::Running;
    cmdStart_->setText(isRunning ? tr("&Abort") : tr("&Start"));
    if (!isRunning) taskbar_.Show(winId(), 0, false);
    cmdSettings_->setEnabled(!isRunning);
    cmdExit_->setEnabled(!isRunning);
    cmdViewResults_->setEnabled(state == ports::RunButtons::Finished);
    if (state == ports::RunButtons::Finished) cmdViewResults_->setFocus();
}

void frmMain::ResetScanProgress() {
    for (int stage = 0; stage <= static_cast<int>(enumVeltraScanType::FinalMethods); ++stage)
        UpdateScanProgress(static_cast<enumVeltraScanType>(stage), enumProgressState::Pending);
}

void frmMain::ClearDocumentLinks() {
    methodLinkPath_.clear();
    veskLinkPath_.clear();
}

void frmMain::ProcessPendingEvents() {
    QApplication::processEvents();
    if (tornDown_) throw ports::RunTornDown();
}

void frmMain::OnStart() {
    using Outcome = veltra::StartButton::Outcome;
    const Outcome outcome = startButton_->Click();
    if (outcome == Outcome::Completed || outcome == Outcome::Aborted) TellWhatIsUnwritten();
    if (outcome == Outcome::TornDown || endsInOrder_) QApplication::quit();
}

void frmMain::TellWhatIsUnwritten() {
    const std::string unwritten = run_->results->UnwrittenMessage();
    if (unwritten.empty()) return;
    if (!run_->results->UnwrittenReport.empty()) AddLogEntry("\r\n" + run_->results->UnwrittenReport);
    AddLogEntry("\r\n" + unwritten);
    if (!endsInOrder_) run_->messageBoxes.Show(unwritten, ports::MessageIcon::Warning);
}

void frmMain::OnSettings() {
    frmSettings(*run_, this).exec();
    ShowSettingsText();
    ShowHelpLines();
}

void frmMain::ShowSettingsText() {
    UpdateGraphLabelsAndButtons(false, "", false, "");
}

void frmMain::ShowHelpLines() {
    SetLogText(veltra::settingsHelpLines);
}

void frmMain::FinishRun() {
    SetRunButtonsState(ports::RunButtons::Finished);
    if (endsInOrder_) return;
    run_->messageBoxes.Show(run_->AbortRequested ? "Optimization was aborted!" : "Optimization completed successfully!",
                            ports::MessageIcon::None);
    OnViewResults();
    ShowSettingsText();
    AddLogEntry(std::string("\r\n") + veltra::settingsHelpLines);
    txtLog_->moveCursor(QTextCursor::End);
}

void frmMain::OnViewResults() {
    if (!run_->results) return;
    const std::string path =
        support::JoinPath(support::GetPathToNthBackslash(run_->results->VeskOutputFilePath, true, 0), "Results.txt");
    if (!support::modFileUtils::FileExists(path) || !viewText_(path))
        run_->messageBoxes.Show("Error opening " + path, ports::MessageIcon::None);
}

void frmMain::OnStageClicked(enumVeltraScanType stage) {
    if (!Stage(stage).IsUnderlined()) return;
    constexpr std::int16_t indexShownLast = -1;
    UpdateResultsGraphControl(stage, stage == enumVeltraScanType::MS3 ? ms3Index_ : indexShownLast);
}

void frmMain::ShowMS3Graph(int index) {
    if (!run_->scans || index < 1 || index > run_->scans->Scan5_MS3_GetFilePathsCount()) return;
    UpdateResultsGraphControl(enumVeltraScanType::MS3, static_cast<std::int16_t>(index));
}

void frmMain::OpenDocument(const std::string& path) {
    if (!run_->host.HostOpenDocument(path)) run_->messageBoxes.Show("Error opening " + path, ports::MessageIcon::None);
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (startButton_ != nullptr && !startButton_->MayClose()) {
        event->ignore();
        return;
    }
    // A run under way sees this at its next look at the waiting events and unwinds.
    tornDown_ = startButton_ != nullptr && startButton_->IsRunning();
    QSettings user(QSettings::IniFormat, QSettings::UserScope, "Veltra", "Veltra");
    user.setValue(geometryKey, saveGeometry());
    event->accept();
    // Graphs in windows of their own close with this one. A run under way ends the program when it has unwound.
    if (!tornDown_) QCoreApplication::exit();
}

}  // namespace app
