// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "host/RunState.h"

namespace veltra {

/// One optimisation run.
class clsMain {
  public:
    /// @param runState must outlive the run
    explicit clsMain(RunState& runState) : runState_(runState) {}

    /// Attaches to the host, reads the starter method, finds the Data folder, logs on to the batch service, creates the
    /// output folder and the log. Tells the user what went wrong; nothing of a failed initialisation is left behind.
    /// @return whether the run may start
    bool Initialize();

    /// Runs all stages, writes the report, logs the outcome and logs off the batch service. Once after Initialize.
    void Start();

    /// Ends the run like an aborted one, in the middle of Initialize or Start.
    void EndNow();

  private:
    bool StartQueue();
    void WriteReport();
    void Finish();

    RunState& runState_;
    bool toBeFinished_ = false;
};

}  // namespace veltra
