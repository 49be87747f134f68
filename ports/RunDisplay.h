// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>

namespace ports {

enum class enumVeltraScanType {
    ER = 0,
    Q1MI_DP = 1,
    Q1MI_EP = 2,
    Q1MI_REOPTDP = 3,
    Q1MI_CEP = 4,
    EPI = 5,
    MRM = 6,
    MS3 = 7,
    FinalMethods = 8,
    RunFinished = 9,
};

enum class enumProgressState { Pending = 0, Running = 1, Done = 2 };

/// What the command buttons allow.
enum class RunButtons { Idle, Running, Finished };

/// Thrown where waiting events are processed once the display is gone for good. It is no std::exception: nothing
/// handles it on the way, so that a run unwinds without another word.
struct RunTornDown {};

/// What a run shows of itself: the main window, or the terminal. All calls come on the user-interface thread; display
/// operations trap their own errors and, but for ProcessPendingEvents, never throw.
class RunDisplay {
  public:
    virtual ~RunDisplay() = default;

    /// Appends one finished line to the log.
    virtual void AddLogEntry(const std::string& strLogEntry) = 0;
    /// Replaces the whole log text, lines joined by CR LF; the caret goes to its end.
    virtual void SetLogText(const std::string& strText) = 0;
    virtual void UpdateScanProgress(enumVeltraScanType enumProgress, enumProgressState state) = 0;
    virtual void UpdateMS3Label(std::int16_t intCurrentCount, std::int16_t intTotalCount) = 0;
    virtual void MessageUpdate(const std::string& strMessage) = 0;
    virtual void ProgressBarStart(double dblTotalTimeInMSec) = 0;
    /// @param dblElapsedTimeInMSec an increment, not the time since the start
    virtual void ProgressBarUpdate(double dblElapsedTimeInMSec) = 0;
    virtual void ProgressBarEnd() = 0;
    /// @param intMS3Index counted from 1; negative keeps the index shown last
    virtual void UpdateResultsGraphControl(enumVeltraScanType scanType, std::int16_t intMS3Index) = 0;
    virtual void UpdateGraphLabelsAndButtons(bool blnGraphVisible, const std::string& strGraphTitle, bool blnIsMS3,
                                             const std::string& strMS3GraphNum) = 0;

    virtual void SetRunButtonsState(RunButtons state) = 0;
    /// Every checklist entry back to pending.
    virtual void ResetScanProgress() = 0;
    /// Forgets the method and data file that the links under the graph open.
    virtual void ClearDocumentLinks() = 0;

    /// Lets waiting user-interface events run, an Abort click among them.
    /// @throws RunTornDown when the display was closed for good
    virtual void ProcessPendingEvents() = 0;
};

}  // namespace ports
