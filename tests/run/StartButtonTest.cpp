// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/StartButton.h"

#include <gtest/gtest.h>

#include "tests/run/OtherInstrumentHost.h"
#include "tests/run/ProjectBench.h"

namespace {

using Outcome = veltra::StartButton::Outcome;
using ports::MessageIcon;
using Texts = std::vector<std::string>;

const std::string abortQuestion = "Are you sure you want to abort the optimization?";
const std::string closeQuestion = "Are you sure you want to abort the optimization and exit Veltra?";
const Texts initializing{"SetLogText(Initializing, please wait...)", "MessageUpdate(Initializing...)",
                         "ClearDocumentLinks()", "SetRunButtonsState(1)", "UpdateGraphLabelsAndButtons(0, , 0, )"};

class ButtonBench : public ProjectBench {
  public:
    ButtonBench() { CreateFolder("Study1/Data"); }
    veltra::StartButton button{state};
};

void Append(Texts& texts, const Texts& more) {
    texts.insert(texts.end(), more.begin(), more.end());
}

TEST(StartButton, InvalidSettingsStartNothing) {
    ButtonBench bench;
    bench.settings.CompoundName = "";
    bench.state.AbortRequested = true;
    EXPECT_EQ(bench.button.Click(), Outcome::SettingsInvalid);
    bench.ExpectReported({{"Please enter a compound name in the Settings", MessageIcon::None}}, {});
    EXPECT_EQ(bench.display.calls, Texts());
    EXPECT_EQ(bench.calls.texts, Texts());
    EXPECT_FALSE(bench.button.IsRunning());
    EXPECT_FALSE(bench.state.AbortRequested);
}

TEST(StartButton, WhatTheInstrumentCannotPerformStartsNothing) {
    ButtonBench bench;
    const double expectedMz = bench.settings.ExpectedMZ;
    bench.settings.Advanced_Q1MIDPRampStart = 100;
    bench.settings.Advanced_Q1MIDPRampStop = 0;
    bench.settings.Advanced_Q1MIDPRampStep = -5;
    bench.fake.acquisitionProblem = [](const ports::PlannedAcquisition& plan) {
        return plan.cycles < 1 ? "There are " + std::to_string(plan.cycles) + " cycles" : std::string();
    };
    EXPECT_EQ(bench.button.Click(), Outcome::SettingsInvalid);
    bench.ExpectReported({{"The instrument cannot perform the Q1MI DP scan with these settings: There are -19 cycles. "
                           "Please update the Settings.",
                           MessageIcon::None}},
                         {});
    EXPECT_EQ(bench.display.calls, Texts());

    // The run is the first to know what is possible at another parent only, or what the host cannot tell now.
    bench.fake.applicationIsRunning = false;
    bench.fake.acquisitionProblem = [&](const ports::PlannedAcquisition& plan) {
        return std::string(plan.start == expectedMz || plan.firstPrecursor == expectedMz ? "no" : "");
    };
    EXPECT_EQ(bench.button.Click(), Outcome::InitializationFailed);
    bench.fake.acquisitionProblem = [](const auto&) -> std::string { throw RunBench::hostError; };
    EXPECT_EQ(bench.button.Click(), Outcome::InitializationFailed);
    bench.boxes.shown.clear();
}

TEST(StartButton, FailedInitialisationPutsTheWindowBack) {
    ButtonBench bench;
    bench.fake.applicationIsRunning = false;
    EXPECT_EQ(bench.button.Click(), Outcome::InitializationFailed);
    bench.ExpectReported({{"You must start Orvanel before running the optimization", MessageIcon::Warning}}, {});
    Texts expected = initializing;
    Append(expected, {"SetLogText(Initialization unsuccessful!\r\n\r\n"
                      "* Select [Settings] button to modify the current settings\r\n"
                      "* Select [Advanced] button in Settings to modify the advanced settings)",
                      "SetRunButtonsState(0)", "ResetScanProgress()", "MessageUpdate()"});
    EXPECT_EQ(bench.display.calls, expected);
    EXPECT_FALSE(bench.button.IsRunning());
    EXPECT_TRUE(bench.button.MayClose());
}

std::string Logged(const std::string& text) {
    return "AddLogEntry([3:45:12 PM]   " + text + ")";
}

/// What every acquisition shows between its heading and its findings.
const Texts acquisition{"MessageUpdate(Creating method and submitting batch...)",
                        "MessageUpdate(Expected batch time: 60 sec)",
                        "ProgressBarStart(60000)",
                        "ProgressBarUpdate(100)",
                        "ProgressBarEnd()",
                        "MessageUpdate(Processing results...)"};

/// The shortest run: no EP and CEP ramps, one 2nd precursor, one final method. One acquisition shows its progress; the
/// others are over at the first look.
TEST(StartButton, CompletedRunShowsItsStagesInOrder) {
    ButtonBench bench;
    bench.fake.modelCode = bench.state.InstrumentModelCode = 26;
    bench.state.EPAndCEPSupported = false;
    bench.settings.Advanced_EPINum2ndPrec = 1;
    bench.settings.Advanced_MS3SaveAllFinalMethods = false;
    bench.sample.PlantAF2(195.125, 0.2, 21, {{150.25, 3e5}});
    bench.fake.queueStatuses = {"3", "4"};
    EXPECT_EQ(bench.button.Click(), Outcome::Completed);

    const Texts atOnce{acquisition.front(), acquisition.back()};
    Texts expected = initializing;
    Append(expected, {"UpdateGraphLabelsAndButtons(0, , 0, )", "SetLogText()", Logged("Initialization complete."),
                      Logged("Kelvor, Dasmyr, Tulvane, Brenic, Brenic+, Solvik or Dasmyr+ detected, CEP and EP "
                             "optimization will be skipped."),
                      "ResetScanProgress()", "MessageUpdate(Starting optimization...)",
                      Logged("--> ER scan of expected parent 609.3 Da..."), "UpdateScanProgress(0, 1)"});
    Append(expected, acquisition);
    Append(expected,
           {Logged("Actual parent m/z:"), Logged("609.297 Da, 3.22E+06 cps"), "UpdateScanProgress(0, 2)",
            "UpdateResultsGraphControl(0, -1)",
            Logged("--> Q1MI scan (optimize DP) of parent 609.297 Da, 3.22E+06 cps..."), "UpdateScanProgress(1, 1)"});
    Append(expected, atOnce);
    Append(expected,
           {Logged("Optimized DP = 85"), "UpdateScanProgress(1, 2)", "UpdateResultsGraphControl(1, -1)",
            Logged("--> EPI CE spread scan of parent 609.297 Da, 3.22E+06 cps..."), "UpdateScanProgress(5, 1)"});
    Append(expected, atOnce);
    Append(expected, {Logged("2nd precursors:"), Logged("195.125 Da, 8.89E+05 cps"), "UpdateMS3Label(0, 1)",
                      "UpdateScanProgress(5, 2)", "UpdateResultsGraphControl(5, -1)",
                      Logged("--> MRM scan of 2nd precursors..."), "UpdateScanProgress(6, 1)"});
    Append(expected, atOnce);
    Append(expected,
           {Logged("Optimized CEs for 2nd precursors:"), Logged("50 (195.125 Da, 8.89E+05 cps)"),
            "UpdateScanProgress(6, 2)", "UpdateResultsGraphControl(6, -1)", "UpdateScanProgress(7, 1)",
            "UpdateMS3Label(1, 1)", Logged("--> MS/MS/MS scan of 2nd precursor 195.125 Da, 8.89E+05 cps...")});
    Append(expected, atOnce);
    Append(expected,
           {Logged("Optimized AF2 = 0.2"), Logged("Peak 1: 150.25 Da, 3.00E+05 cps"), "UpdateResultsGraphControl(7, 1)",
            "UpdateScanProgress(7, 2)", Logged("--> Generating final MS/MS/MS methods..."), "UpdateScanProgress(8, 1)",
            "MessageUpdate(Creating final acquisition methods...)", "MessageUpdate(Final acquisition methods created.)",
            "UpdateScanProgress(8, 2)", Logged("Generating Results.txt file..."),
            Logged("Optimization completed successfully!"), "UpdateScanProgress(9, 0)", "MessageUpdate()"});
    EXPECT_EQ(bench.display.calls, expected);
    EXPECT_FALSE(bench.button.IsRunning());
    bench.TakeLog();
}

TEST(StartButton, AsksForTheModelOnceAndSaysWhereEPAndCEPAreSkipped) {
    for (const std::int32_t modelCode : {14, 27}) {
        SCOPED_TRACE(modelCode);
        ButtonBench bench;
        bench.state.InstrumentModelCode = 0;  // the host was not there at program start
        bench.fake.modelCode = modelCode;
        bench.calls.Fail("HostQueueRun", RunBench::hostError);
        EXPECT_EQ(bench.button.Click(), Outcome::Aborted);
        EXPECT_EQ(bench.TakeLog().at(1).starts_with("Kelvor, Dasmyr,"), modelCode == 14);
        bench.boxes.shown.clear();
        EXPECT_EQ(bench.button.Click(), Outcome::Completed);  // a run that was aborted does not abort the next
        EXPECT_EQ(bench.calls.CountOf("GetInstrumentModelCode"), 1);
        bench.TakeLog();
    }
}

TEST(StartButton, AnInstrumentThatIsFoundUnsuitableIsRefusedEveryTime) {
    ButtonBench bench;
    OtherInstrumentHost other;
    other.store = bench.fake.store;
    veltra::RunState state{{other, bench.display, bench.boxes, bench.folderChooser, bench.clock}, bench.settings};
    veltra::StartButton button(state);
    for (int click = 1; click <= 2; ++click) {
        EXPECT_EQ(button.Click(), Outcome::InstrumentRefused);
        bench.ExpectReported({{"This script only works on Linear Ion Trap instruments", MessageIcon::Critical}}, {});
        EXPECT_EQ(bench.display.calls, Texts());
        EXPECT_FALSE(button.IsRunning());
    }
}

TEST(StartButton, DuringARunItOnlyAsksWhetherToAbortOrToClose) {
    for (const bool aborts : {false, true}) {
        SCOPED_TRACE(aborts);
        ButtonBench bench;
        EXPECT_TRUE(bench.button.MayClose());
        bench.boxes.answers = {false, true, aborts};
        bool clicked = false;
        bench.display.onPump = [&] {
            if (clicked || bench.fake.submitted.empty()) return;
            clicked = true;
            EXPECT_FALSE(bench.button.MayClose());
            EXPECT_TRUE(bench.button.MayClose());
            EXPECT_FALSE(bench.state.AbortRequested);
            EXPECT_EQ(bench.button.Click(), Outcome::AbortAsked);
            EXPECT_TRUE(bench.button.IsRunning());
            EXPECT_EQ(bench.state.AbortRequested, aborts);
        };
        EXPECT_EQ(bench.button.Click(), aborts ? Outcome::Aborted : Outcome::Completed);
        EXPECT_TRUE(clicked);
        EXPECT_EQ(bench.boxes.questions, (Texts{closeQuestion, closeQuestion, abortQuestion}));
        bench.boxes.questions.clear();
        EXPECT_EQ(bench.calls.CountOf("AttachToRunningApplication"), 1);
        EXPECT_EQ(bench.fake.submitted.size(), aborts ? 1U : 9U);
        EXPECT_EQ(bench.TakeLog().back(), aborts ? "Optimization aborted!" : "Optimization completed successfully!");
        EXPECT_TRUE(bench.button.MayClose());
    }
}

/// Where the display goes away, nothing of the run comes behind what is done here.
TEST(StartButton, EndsARunThatCannotGoOn) {
    ButtonBench bench;
    bench.button.EndNow();
    bench.display.onPump = [&] {
        if (bench.fake.submitted.empty()) return;
        bench.button.EndNow();
        bench.button.EndNow();
        throw ports::RunTornDown();
    };
    EXPECT_EQ(bench.button.Click(), Outcome::TornDown);
    const Texts log = bench.TakeLog();
    EXPECT_EQ(Texts(log.end() - 2, log.end()), (Texts{"Generating Results.txt file...", "Optimization aborted!"}));
    EXPECT_TRUE(support::ReadWholeFile(bench.OutputFolder() + "Log.txt").ends_with("Optimization aborted!\r\n"));
    EXPECT_TRUE(support::FileExists(bench.OutputFolder() + "Results.txt"));
    EXPECT_EQ(bench.calls.CountOf("TolmLogoff"), 1);
}

}  // namespace
