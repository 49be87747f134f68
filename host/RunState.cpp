// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/RunState.h"

#include "host/HostWrapper.h"
#include "host/clsTolmBatch.h"
#include "support/Files.h"
#include "support/Text.h"
#include "support/modGlobals.h"

namespace veltra {

RunState::RunState(const RunPorts& ports, clsInfo_Settings& runSettings)
    : host(ports.host),
      display(ports.display),
      messageBoxes(ports.messageBoxes),
      folderChooser(ports.folderChooser),
      clock(ports.clock),
      disk(ports.disk),
      settings(runSettings) {}

RunState::~RunState() = default;

void RunState::AppendToLogFile(const std::string& text) const {
    constexpr int attempts = 2;
    if (!results) return;
    std::string& unwritten = results->UnwrittenLogLines;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (!support::AppendLineToFile(results->LogFilePath, unwritten + text, disk)) continue;
        unwritten.clear();
        return;
    }
    unwritten += text + support::crLf;
}

void RunState::FlushLogFile() const {
    if (results && !results->LogFilePath.empty()) support::FlushFile(results->LogFilePath, disk);
}

void RunState::WriteLogLine(const std::string& strText) const {
    const ports::DateTimeTexts now = clock.Now();
    AppendToLogFile("[" + now.generalDate + "]  " + strText);
    display.AddLogEntry("[" + now.longTime + "]   " + strText);
}

void RunState::ReportError(HostWrapper& wrapper, ports::MessageIcon icon) const {
    messageBoxes.Show(wrapper.ErrorDescription(), icon);
    WriteLogLine(wrapper.ErrorDescription());
    wrapper.ResetError();
}

}  // namespace veltra
