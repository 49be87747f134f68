// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "model/clsInfo_Results.h"
#include "model/clsInfo_Scans.h"
#include "model/clsInfo_Settings.h"
#include "ports/Clock.h"
#include "ports/FolderChooser.h"
#include "ports/Host.h"
#include "ports/MessageBoxes.h"
#include "ports/RunDisplay.h"
#include "support/Disk.h"

namespace veltra {

class clsTolmBatch;
class HostWrapper;

/// The outside as a program's main has wired it. Everything outlives the run state.
struct RunPorts {
    ports::Host& host;
    ports::RunDisplay& display;
    ports::MessageBoxes& messageBoxes;
    ports::FolderChooser& folderChooser;
    const ports::Clock& clock;
    const support::Disk& disk = support::SystemDisk();
};

/// Run-wide state, shared by every class of a run. One object a program, made in its main.
class RunState {
  public:
    RunState(const RunPorts& ports, clsInfo_Settings& settings);
    ~RunState();
    RunState(const RunState&) = delete;
    RunState& operator=(const RunState&) = delete;

    ports::Host& host;
    ports::RunDisplay& display;
    ports::MessageBoxes& messageBoxes;
    ports::FolderChooser& folderChooser;
    const ports::Clock& clock;
    const support::Disk& disk;
    clsInfo_Settings& settings;

    std::unique_ptr<ports::HostApplication> hostApplication;  ///< attached by the run's initialisation
    std::unique_ptr<clsInfo_Results> results;                 ///< of the current run
    std::unique_ptr<clsInfo_Scans> scans;                     ///< of the current run
    std::shared_ptr<void> projectInUse;                       ///< keeps other programs out of it, as long as batch is
    std::unique_ptr<clsTolmBatch> batch;                      ///< logged on from initialisation to the end of the run

    std::int32_t InstrumentModelCode = 0;  ///< 0 until it could be read
    bool EPAndCEPSupported = true;
    bool AbortRequested = false;

    /// Appends the text as a line to the run's log file, once it has one. What the disk does not take is tried again,
    /// at once and with the next line, so that a fault that passes costs no line. The line outlasts the process, but a
    /// power cut only once the log file is flushed.
    void AppendToLogFile(const std::string& text) const;
    /// Flushes the run's log file, once it has one: with the findings of each acquisition, and at the run's end.
    void FlushLogFile() const;

    /// Writes the text with date and time to the run's log file, once it has one, and with the time to the display's
    /// log.
    void WriteLogLine(const std::string& strText) const;

    /// How a failed wrapper is told to the user and then forgotten by the wrapper: a message box and a log line.
    void ReportError(HostWrapper& wrapper, ports::MessageIcon icon) const;
};

}  // namespace veltra
