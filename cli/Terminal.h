// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <iosfwd>
#include <string>

#include "ports/FolderChooser.h"
#include "ports/MessageBoxes.h"
#include "ports/RunDisplay.h"

namespace cli {

/// The streams of a terminal program and whether a person watches the second one.
struct TerminalStreams {
    std::ostream& out;
    std::ostream& err;
    std::istream& in;
    bool errIsTerminal = false;
    bool inIsTerminal = false;
    std::ostream* control = nullptr;  ///< err as it is, for what moves the cursor; null: err
};

/// Shows a run in the terminal: log lines on the output, status line and progress bar on the error stream when that is
/// a terminal.
class TerminalDisplay : public ports::RunDisplay {
  public:
    explicit TerminalDisplay(const TerminalStreams& streams) : streams_(streams) {}

    /// @param onPendingEvents called wherever a window would let waiting events run
    void OnPendingEvents(std::function<void()> onPendingEvents) { onPendingEvents_ = std::move(onPendingEvents); }

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
    void ProcessPendingEvents() override;

    /// Takes the status line off the screen, before something else is written there.
    void ClearStatusLine();

  private:
    void DrawStatusLine();
    void ClearLine();

    TerminalStreams streams_;
    std::function<void()> onPendingEvents_;
    std::string message_;
    std::string ms3Label_;
    double totalMs_ = 0;
    double elapsedMs_ = 0;
    int drawnPercent_ = -1;
    bool progressShown_ = false;
    bool statusShown_ = false;
};

/// Message boxes as lines on the error stream. The only question a terminal run is asked is whether to abort, and the
/// signal that raised it is the answer.
class TerminalMessageBoxes : public ports::MessageBoxes {
  public:
    TerminalMessageBoxes(const TerminalStreams& streams, TerminalDisplay& display)
        : streams_(streams), display_(display) {}

    void Show(const std::string& strText, ports::MessageIcon icon) override;
    bool AskYesNo(const std::string& strQuestion) override;
    bool WasUsed() const { return wasUsed_; }

  private:
    TerminalStreams streams_;
    TerminalDisplay& display_;
    bool wasUsed_ = false;
};

/// Asks for a folder by its number; cancelled where nobody can answer.
class TerminalFolderChooser : public ports::FolderChooser {
  public:
    TerminalFolderChooser(const TerminalStreams& streams, TerminalDisplay& display)
        : streams_(streams), display_(display) {}

    Choice ChooseFolder(const std::string& strProjectPath) override;

  private:
    TerminalStreams streams_;
    TerminalDisplay& display_;
};

}  // namespace cli
