// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "host/RunState.h"
#include "run/clsMain.h"

namespace veltra {

/// What the two help lines under the log say.
extern const char* const settingsHelpLines;

/// What the user is told when the process ends at once, whatever it is doing.
extern const char* const leftUndone;

/// The Start button, which is the Abort button while a run is in progress: the only way into a run.
class StartButton {
  public:
    explicit StartButton(RunState& runState) : runState_(runState) {}

    enum class Outcome {
        AbortAsked,
        SettingsInvalid,
        InstrumentRefused,
        InitializationFailed,
        Aborted,
        Completed,
        TornDown
    };

    /// Performs a whole run and returns at its end; during a run it only asks whether to abort.
    Outcome Click();

    bool IsRunning() const { return running_; }

    /// The window is asked to close. @return whether it may
    bool MayClose();

    /// Ends a run that is in progress like an aborted one, with log, report and logoff. To be called where events are
    /// processed, when that will not return. The display and the message boxes are used as ever.
    void EndNow();

  private:
    Outcome Run();
    void ShowInitializationFailed();

    RunState& runState_;
    std::unique_ptr<clsMain> main_;
    bool running_ = false;
};

}  // namespace veltra
