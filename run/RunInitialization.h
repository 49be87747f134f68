// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "host/RunState.h"

namespace veltra {

/// The steps that prepare a run. The first one that fails ends them with a warning box.
class RunInitialization {
  public:
    explicit RunInitialization(RunState& runState) : runState_(runState) {}

    bool Run();

  private:
    bool Prepare();
    bool AttachToHost();
    bool ReadStarterMethod();
    bool LocateDataFolder();
    /// Keeps other programs' runs out of the project until this one ends.
    bool HoldProject();
    bool LogOn();
    bool TestBatch();
    /// Waits until the name is free, so that no two runs have one folder.
    bool CreateOutputFolder();
    void StartLog();

    void AskForDataFolder();
    void LetTimePass();
    bool Warn(const std::string& text);
    bool WarnOf(HostWrapper& wrapper);

    RunState& runState_;
    std::string failureMessage_;  ///< what an unexpected error of the step under way is told as
    std::string projectsRoot_;    ///< ends in a separator
    std::string projectName_;
    std::string dataFolder_;  ///< ends in a separator
};

}  // namespace veltra
