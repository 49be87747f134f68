// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMainWindow>
#include <functional>
#include <map>
#include <memory>

#include "app/ResultsGraphControl.h"
#include "app/StageEntry.h"
#include "app/TaskbarProgress.h"
#include "host/RunState.h"
#include "run/StartButton.h"

class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QFrame;

namespace app {

/// The main window: checklist, progress, log, and the graph of any finished stage. All work is done on its thread.
class frmMain : public QMainWindow, public ports::RunDisplay {
    Q_OBJECT

  public:
    frmMain();
    ~frmMain() override;

    /// Hands over the run that the window drives and shows; before show(). The run must outlive the window.
    /// @param viewText opens a text file in the desktop's viewer; returns whether there is one
    void Attach(veltra::RunState& runState, veltra::StartButton& startButton,
                std::function<bool(const std::string& path)> viewText);

    /// The system asks the program to end. A run in progress is aborted without a question and the window closes behind
    /// it; nothing waits for the user. To be called again and again until the program has ended: dialogs that are open
    /// are closed, one each time.
    void EndInOrder();
    /// The display is gone: nothing is shown any more.
    void LeaveDisplay() { hasDisplay_ = false; }

    void AddLogEntry(const std::string& strLogEntry) override;
    void SetLogText(const std::string& strText) override;
    void UpdateScanProgress(ports::enumVeltraScanType enumProgress, ports::enumProgressState state) override;
    void UpdateMS3Label(std::int16_t intCurrentCount, std::int16_t intTotalCount) override;
    void MessageUpdate(const std::string& strMessage) override;
    void ProgressBarStart(double dblTotalTimeInMSec) override;
    void ProgressBarUpdate(double dblElapsedTimeInMSec) override;
    void ProgressBarEnd() override;
    void UpdateResultsGraphControl(ports::enumVeltraScanType scanType, std::int16_t intMS3Index) override;
    void UpdateGraphLabelsAndButtons(bool blnGraphVisible, const std::string& strGraphTitle, bool blnIsMS3,
                                     const std::string& strMS3GraphNum) override;
    void SetRunButtonsState(ports::RunButtons state) override;
    void ResetScanProgress() override;
    void ClearDocumentLinks() override;
    /// @throws ports::RunTornDown when the window was closed meanwhile
    void ProcessPendingEvents() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void BuildChecklist();
    void BuildGraphArea();
    void BuildProgressAndButtons();
    void BuildImageHolders();
    void LayoutControls();
    void LayoutChecklist(int left);
    void RefreshPictures();
    int LineHeight() const;
    int ChecklistWidth() const;
    QSize DesignSize() const;
    void OnStart();
    void OnSettings();
    void OnViewResults();
    void OnStageClicked(ports::enumVeltraScanType stage);
    void ShowMS3Graph(int index);
    void OpenDocument(const std::string& path);
    void ShowSettingsText();
    void ShowHelpLines();
    void FinishRun();
    void TellWhatIsUnwritten();
    void ShowRemainingTime();
    GraphLabels LabelsOf(ports::enumVeltraScanType scanType) const;
    QVector<double> SpectrumMarks(ports::enumVeltraScanType scanType) const;
    StageEntry& Stage(ports::enumVeltraScanType stage) { return *stages_.at(stage); }

    veltra::RunState* run_ = nullptr;
    veltra::StartButton* startButton_ = nullptr;
    std::function<bool(const std::string& path)> viewText_;
    TaskbarProgress taskbar_;
    bool tornDown_ = false;
    bool endsInOrder_ = false;
    bool hasDisplay_ = true;
    std::int16_t ms3Index_ = 1;
    std::string methodLinkPath_;
    std::string veskLinkPath_;
    double elapsedMs_ = 0;
    double totalMs_ = 0;

    std::map<ports::enumVeltraScanType, std::unique_ptr<StageEntry>> stages_;
    std::vector<std::pair<QLabel*, std::vector<ports::enumVeltraScanType>>> headings_;
    QLabel* labelBanner_;
    QFrame* shapeGraph_;
    QLabel* labelGraphTitle_;
    ResultsGraphControl* graph_;
    QLabel* labelMS3GraphNum_;
    QPushButton* cmdMS3Left_;
    QPushButton* cmdMS3Right_;
    ClickableLabel* labelMethodLink_;
    ClickableLabel* labelVeskLink_;
    QLabel* labelGraphLeft_;
    QLabel* labelGraphRight_;
    QLabel* labelMessage_;
    QProgressBar* progressBar_;
    QLabel* labelRemainingTime_;
    QPushButton* cmdStart_;
    QPushButton* cmdSettings_;
    QPushButton* cmdViewResults_;
    QPushButton* cmdExit_;
    QPlainTextEdit* txtLog_;
};

}  // namespace app
