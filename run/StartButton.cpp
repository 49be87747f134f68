// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/StartButton.h"

#include "host/clsTolmBatch.h"
#include "run/InstrumentCheck.h"
#include "run/SettingsCheck.h"
#include "support/Text.h"

namespace veltra {
namespace {

/// Puts a flag back on every way out.
class FlagGuard {
  public:
    explicit FlagGuard(bool& flag) : flag_(flag) { flag_ = true; }
    ~FlagGuard() { flag_ = false; }
    FlagGuard(const FlagGuard&) = delete;
    FlagGuard& operator=(const FlagGuard&) = delete;

  private:
    bool& flag_;
};

}  // namespace

const char* const settingsHelpLines =
    "* Select [Settings] button to modify the current settings\r\n"
    "* Select [Advanced] button in Settings to modify the advanced settings";

const char* const leftUndone =
    "\nVeltra: Ended at once. The run's report is not written, its log has no end, final methods may be missing, and "
    "the batch session is not logged off.\n";

StartButton::Outcome StartButton::Click() {
    if (running_) {
        if (runState_.messageBoxes.AskYesNo("Are you sure you want to abort the optimization?"))
            runState_.AbortRequested = true;
        return Outcome::AbortAsked;
    }
    runState_.AbortRequested = false;
    if (!runState_.settings.AreSettingsValid(runState_.messageBoxes)) return Outcome::SettingsInvalid;
    // A host that was not there at program start may be there now.
    if (runState_.InstrumentModelCode == 0 && !CheckInstrument(runState_)) return Outcome::InstrumentRefused;
    if (!CanBeAcquired(runState_)) return Outcome::SettingsInvalid;
    const FlagGuard running(running_);
    try {
        return Run();
    } catch (const ports::RunTornDown&) {
        // The batch service is logged off with its object.
        runState_.batch.reset();
        runState_.FlushLogFile();
        runState_.projectInUse.reset();
        main_.reset();
        return Outcome::TornDown;
    }
}

StartButton::Outcome StartButton::Run() {
    auto& display = runState_.display;
    display.SetLogText("Initializing, please wait...");
    display.MessageUpdate("Initializing...");
    display.ClearDocumentLinks();
    display.SetRunButtonsState(ports::RunButtons::Running);
    display.UpdateGraphLabelsAndButtons(false, "", false, "");

    main_ = std::make_unique<clsMain>(runState_);
    if (!main_->Initialize()) {
        ShowInitializationFailed();
        display.MessageUpdate("");
        return Outcome::InitializationFailed;
    }
    display.SetLogText("");
    runState_.WriteLogLine("Initialization complete.");
    if (!runState_.EPAndCEPSupported)
        runState_.WriteLogLine(
            "Kelvor, Dasmyr, Tulvane, Brenic, Brenic+, Solvik or Dasmyr+ detected, CEP and EP optimization will be "
            "skipped.");
    display.ResetScanProgress();
    display.MessageUpdate("Starting optimization...");
    main_->Start();
    display.MessageUpdate("");
    return runState_.AbortRequested ? Outcome::Aborted : Outcome::Completed;
}

void StartButton::ShowInitializationFailed() {
    auto& display = runState_.display;
    display.SetLogText(std::string("Initialization unsuccessful!") + support::crLf + support::crLf + settingsHelpLines);
    display.SetRunButtonsState(ports::RunButtons::Idle);
    display.ResetScanProgress();
}

void StartButton::EndNow() {
    if (main_) main_->EndNow();
}

bool StartButton::MayClose() {
    return !running_ ||
           runState_.messageBoxes.AskYesNo("Are you sure you want to abort the optimization and exit Veltra?");
}

}  // namespace veltra
