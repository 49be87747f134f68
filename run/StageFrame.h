// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "host/RunState.h"
#include "model/clsItem_FilePaths.h"
#include "model/clsItem_Peak.h"

namespace veltra {

/// What the stage procedures of one run share: the run's state, the one record of file paths that every acquisition
/// reuses, and the ways of naming, logging and showing.
class StageFrame {
  public:
    explicit StageFrame(RunState& state) : runState(state) {}

    RunState& runState;
    clsItem_FilePaths filePaths;

    /// The actual parent; all zero while none was found.
    clsItem_Peak Parent() const;
    bool Aborted() const { return runState.AbortRequested; }
    void Log(const std::string& text) const { runState.WriteLogLine(text); }
    /// Once the findings of an acquisition are logged: from now on they outlast a power cut.
    void EndAcquisition() const { runState.FlushLogFile(); }

    /// Starts the record for the run's first acquisition, built from the starter method.
    void NameFirstAcquisition(const std::string& infix, double mz);
    /// Starts the record for the next acquisition, built from the method of the one before.
    void NameNextAcquisition(const std::string& infix, double mz);
    /// The path of a method beside the starter method.
    std::string MethodPath(const std::string& infix, double mz) const;

    void MarkRunning(ports::enumVeltraScanType stage) const;
    void MarkDone(ports::enumVeltraScanType stage) const;
    void ShowGraph(ports::enumVeltraScanType stage) const;

    /// "609.281 Da, 1.23E+06 cps"
    static std::string PeakText(const clsItem_Peak& peak);

  private:
    void Name(const std::string& lastMethodFilePath, const std::string& infix, double mz);
};

}  // namespace veltra
