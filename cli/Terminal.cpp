// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/Terminal.h"

#include <algorithm>
#include <istream>
#include <ostream>
#include <vector>

#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace cli {
namespace {

std::string WithLineFeeds(std::string text) {
    std::erase(text, '\r');
    return text;
}

}  // namespace

void TerminalDisplay::AddLogEntry(const std::string& strLogEntry) {
    ClearStatusLine();
    streams_.out << WithLineFeeds(strLogEntry) << '\n' << std::flush;
    DrawStatusLine();
}

void TerminalDisplay::SetLogText(const std::string& strText) {
    if (!strText.empty()) AddLogEntry(strText);
}

void TerminalDisplay::UpdateScanProgress(ports::enumVeltraScanType enumProgress, ports::enumProgressState) {
    // The log names every stage; only what belongs to one stage's status line has to go.
    if (enumProgress != ports::enumVeltraScanType::MS3) ms3Label_.clear();
}

void TerminalDisplay::UpdateMS3Label(std::int16_t intCurrentCount, std::int16_t intTotalCount) {
    if (intCurrentCount > 0)
        ms3Label_ = "(" + std::to_string(intCurrentCount) + " of " + std::to_string(intTotalCount) + ") ";
}

void TerminalDisplay::MessageUpdate(const std::string& strMessage) {
    message_ = strMessage;
    progressShown_ = false;
    ClearStatusLine();
    DrawStatusLine();
}

void TerminalDisplay::ProgressBarStart(double dblTotalTimeInMSec) {
    totalMs_ = dblTotalTimeInMSec;
    elapsedMs_ = 0;
    drawnPercent_ = -1;
    progressShown_ = true;
    DrawStatusLine();
}

void TerminalDisplay::ProgressBarUpdate(double dblElapsedTimeInMSec) {
    elapsedMs_ += dblElapsedTimeInMSec;
    DrawStatusLine();
}

void TerminalDisplay::ProgressBarEnd() {
    elapsedMs_ = totalMs_;
    DrawStatusLine();
}

void TerminalDisplay::UpdateResultsGraphControl(ports::enumVeltraScanType, std::int16_t) {}
void TerminalDisplay::UpdateGraphLabelsAndButtons(bool, const std::string&, bool, const std::string&) {}
void TerminalDisplay::SetRunButtonsState(ports::RunButtons) {}
void TerminalDisplay::ResetScanProgress() {
    ms3Label_.clear();
}
void TerminalDisplay::ClearDocumentLinks() {}

void TerminalDisplay::ProcessPendingEvents() {
    if (onPendingEvents_) onPendingEvents_();
}

void TerminalDisplay::ClearStatusLine() {
    if (!statusShown_) return;
    ClearLine();
    statusShown_ = false;
    drawnPercent_ = -1;
}

void TerminalDisplay::ClearLine() {
    (streams_.control != nullptr ? *streams_.control : streams_.err) << "\r\033[K" << std::flush;
}

void TerminalDisplay::DrawStatusLine() {
    constexpr int barWidth = 30;
    if (!streams_.errIsTerminal || (message_.empty() && !progressShown_)) return;
    const double share = totalMs_ > 0 ? std::min(elapsedMs_ / totalMs_, 1.0) : 1.0;
    const int percent = static_cast<int>(share * 100);
    if (statusShown_ && percent == drawnPercent_) return;
    std::string line = ms3Label_ + message_;
    if (progressShown_) {
        const auto filled = static_cast<std::size_t>(percent * barWidth / 100);
        line += "  [" + std::string(filled, '#') + std::string(barWidth - filled, '.') + "] " +
                std::to_string(percent) + " %";
    }
    ClearLine();
    streams_.err << line << std::flush;
    statusShown_ = true;
    drawnPercent_ = percent;
}

void TerminalMessageBoxes::Show(const std::string& strText, ports::MessageIcon) {
    wasUsed_ = true;
    display_.ClearStatusLine();
    streams_.err << "Veltra: " << WithLineFeeds(strText) << '\n' << std::flush;
}

bool TerminalMessageBoxes::AskYesNo(const std::string& strQuestion) {
    Show(strQuestion + " Yes", ports::MessageIcon::None);
    return true;
}

ports::FolderChooser::Choice TerminalFolderChooser::ChooseFolder(const std::string& strProjectPath) {
    Choice choice;
    if (!streams_.inIsTerminal || !support::FolderExists(strProjectPath)) return choice;
    const std::vector<std::string> folders = support::SubFolders(strProjectPath);
    display_.ClearStatusLine();
    streams_.err << "Please select location of Data folder:\n" << strProjectPath << '\n';
    for (std::size_t i = 0; i < folders.size(); ++i)
        streams_.err << "  " << i + 1 << "  " << folders[i] << '\n';
    streams_.err << "Number (nothing to cancel): " << std::flush;
    std::string answer;
    if (!std::getline(streams_.in, answer) || support::Trim(answer).empty()) return choice;
    choice.WasCancelled = false;
    const auto number = support::ParseInt32(answer);
    if (number && *number >= 1 && static_cast<std::size_t>(*number) <= folders.size())
        choice.ReturnPath = strProjectPath + folders[static_cast<std::size_t>(*number - 1)];
    return choice;
}

}  // namespace cli
