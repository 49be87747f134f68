// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ports/RunDisplay.h"
#include "support/NumberText.h"

/// Keeps every call as a text, such as "ProgressBarUpdate(100)", and the log's lines once more by themselves.
class RecordedDisplay : public ports::RunDisplay {
  public:
    std::vector<std::string> calls;
    std::vector<std::string> log;
    int pumps = 0;
    std::function<void()> onPump;                         ///< what the user does meanwhile
    std::function<void(const std::string& text)> onCall;  ///< told of every call, event pumps included

    void AddLogEntry(const std::string& strLogEntry) override {
        log.push_back(strLogEntry);
        Record("AddLogEntry(" + strLogEntry + ")");
    }
    void SetLogText(const std::string& strText) override { Record("SetLogText(" + strText + ")"); }
    void UpdateScanProgress(ports::enumVeltraScanType enumProgress, ports::enumProgressState state) override {
        Record("UpdateScanProgress(" + Text(enumProgress) + ", " + Text(state) + ")");
    }
    void UpdateMS3Label(std::int16_t intCurrentCount, std::int16_t intTotalCount) override {
        Record("UpdateMS3Label(" + std::to_string(intCurrentCount) + ", " + std::to_string(intTotalCount) + ")");
    }
    void MessageUpdate(const std::string& strMessage) override { Record("MessageUpdate(" + strMessage + ")"); }
    void ProgressBarStart(double dblTotalTimeInMSec) override {
        Record("ProgressBarStart(" + support::GeneralText(dblTotalTimeInMSec) + ")");
    }
    void ProgressBarUpdate(double dblElapsedTimeInMSec) override {
        Record("ProgressBarUpdate(" + support::GeneralText(dblElapsedTimeInMSec) + ")");
    }
    void ProgressBarEnd() override { Record("ProgressBarEnd()"); }
    void UpdateResultsGraphControl(ports::enumVeltraScanType scanType, std::int16_t intMS3Index) override {
        Record("UpdateResultsGraphControl(" + Text(scanType) + ", " + std::to_string(intMS3Index) + ")");
    }
    void UpdateGraphLabelsAndButtons(bool blnGraphVisible, const std::string& strGraphTitle, bool blnIsMS3,
                                     const std::string& strMS3GraphNum) override {
        Record("UpdateGraphLabelsAndButtons(" + std::to_string(blnGraphVisible) + ", " + strGraphTitle + ", " +
               std::to_string(blnIsMS3) + ", " + strMS3GraphNum + ")");
    }
    void SetRunButtonsState(ports::RunButtons state) override { Record("SetRunButtonsState(" + Text(state) + ")"); }
    void ResetScanProgress() override { Record("ResetScanProgress()"); }
    void ClearDocumentLinks() override { Record("ClearDocumentLinks()"); }
    void ProcessPendingEvents() override {
        ++pumps;
        if (onCall) onCall("ProcessPendingEvents()");
        if (onPump) onPump();
    }

  private:
    template <class Enum>
    static std::string Text(Enum value) {
        return std::to_string(static_cast<int>(value));
    }
    void Record(const std::string& text) {
        calls.push_back(text);
        if (onCall) onCall(text);
    }
};
