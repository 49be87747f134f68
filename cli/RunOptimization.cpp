// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <chrono>
#include <exception>
#include <memory>
#include <ostream>

#include "cli/CleanText.h"
#include "cli/Commands.h"
#include "host/clsTolmBatch.h"
#include "orvanel/OrvanelHost.h"
#include "orvanel/clock/HostClock.h"
#include "run/InstrumentCheck.h"
#include "run/StartButton.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/StopSignals.h"

namespace cli {
namespace {

using veltra::StartButton;

ExitStatus StatusOf(StartButton::Outcome outcome, bool allWritten) {
    switch (outcome) {
        case StartButton::Outcome::Completed:
            return allWritten ? completed : notAllWritten;
        case StartButton::Outcome::Aborted:
        case StartButton::Outcome::AbortAsked:
        case StartButton::Outcome::TornDown:
            return abortedOrFailed;
        case StartButton::Outcome::SettingsInvalid:
        case StartButton::Outcome::InstrumentRefused:
        case StartButton::Outcome::InitializationFailed:
            break;
    }
    return notStarted;
}

/// The report as it is in its file, or as it would be where that could not be written.
void PrintReport(const veltra::clsInfo_Results& results, const TerminalStreams& streams) {
    try {
        std::string report = results.UnwrittenReport;
        if (report.empty())
            report = support::ReadWholeFile(support::JoinPath(results.VeskOutputFilePath, "Results.txt"));
        std::erase(report, '\r');
        streams.out << '\n' << report << "\n\n";
    } catch (const std::exception& error) {
        streams.err << "veltra-run: the report cannot be shown: " << error.what() << '\n';
    }
    streams.out << "Output folder: " << results.VeskOutputFilePath << std::endl;
}

ExitStatus Perform(ports::Host& host, const ports::Clock& clock, const std::string& settingsPath,
                   support::StopSignals& stopSignals, const TerminalStreams& streams) {
    veltra::clsInfo_Settings settings(settingsPath);
    const auto ignoredSettings = settings.ReadGlobalSettings();
    TerminalDisplay display(streams);
    for (const auto& line : ignoredSettings)
        display.AddLogEntry(line);
    TerminalMessageBoxes messageBoxes(streams, display);
    TerminalFolderChooser folderChooser(streams, display);
    veltra::RunState runState({host, display, messageBoxes, folderChooser, clock}, settings);
    StartButton startButton(runState);

    display.OnPendingEvents([&] {
        if (!stopSignals.TakeRequest() || runState.AbortRequested) return;
        startButton.Click();
        display.ClearStatusLine();
        streams.err << "Veltra: Ending the run in order, Ctrl-C ends it at once and without its report\n";
    });
    if (!veltra::CheckInstrument(runState)) return notStarted;
    const StartButton::Outcome outcome = startButton.Click();
    display.ClearStatusLine();
    bool allWritten = true;
    if (outcome == StartButton::Outcome::Completed || outcome == StartButton::Outcome::Aborted) {
        const bool isCompleted = outcome == StartButton::Outcome::Completed;
        messageBoxes.Show(isCompleted ? "Optimization completed successfully!" : "Optimization was aborted!",
                          ports::MessageIcon::None);
        PrintReport(*runState.results, streams);
        const std::string unwritten = runState.results->UnwrittenMessage();
        allWritten = unwritten.empty();
        if (!allWritten) messageBoxes.Show(unwritten, ports::MessageIcon::Warning);
    }
    return StatusOf(outcome, allWritten);
}

}  // namespace

std::string DefaultAppLocation() {
    return support::JoinPath(support::FolderOf(support::ProgramFolder()), "share/orvanel");
}

ExitStatus RunOptimization(const std::string& settingsPath, const std::string& hostPath,
                           const TerminalStreams& streams) {
    const std::string settings =
        settingsPath.empty() ? veltra::clsInfo_Settings::DefaultIniPath() : support::AbsolutePath(settingsPath);
    const std::string hostIni =
        hostPath.empty() ? support::JoinPath(support::FolderOf(settings), "Orvanel.ini") : hostPath;
    support::StopSignals stopSignals(veltra::leftUndone);
    try {
        const auto soleUse = support::HoldFile(settings, "Veltra");
        const auto config = orvanel::ReadOrvanelConfig(hostIni, DefaultAppLocation());
        orvanel::HostClock clock(config.clockFactor, std::chrono::system_clock::now(), support::DateFormatOfProcess());
        const auto host = orvanel::CreateOrvanelHost(config, clock);
        const std::string description = host->GetDescription();
        if (!description.empty()) streams.err << description << '\n';
        return Perform(*host, clock, settings, stopSignals, streams);
    } catch (const std::exception& error) {
        streams.err << "veltra-run: " << CleanText(error.what()) << '\n';
        return notStarted;
    }
}

}  // namespace cli
