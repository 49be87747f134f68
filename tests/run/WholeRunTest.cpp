// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "ports/HostError.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "tests/support_files/WholeRun.h"

/// Whole runs whose log and report are compared with the files of tests/data/runs, to the letter. After a wanted change
/// `VELTRA_WRITE_EXPECTED=1 build/debug/bin/test_run` writes them anew; look at the difference before committing it.

namespace {

using Outcome = veltra::StartButton::Outcome;
using Box = RecordedMessageBoxes::Box;
using ports::HostError;
using ports::MessageIcon;

void ExpectFile(const std::string& name, const std::string& text) {
    const std::string path = std::string(VELTRA_TEST_DATA) + "/runs/" + name;
    if (std::getenv("VELTRA_WRITE_EXPECTED") != nullptr) support::WriteWholeFile(path, text);
    EXPECT_EQ(text, support::ReadWholeFile(path)) << path;
}

void ExpectFiles(const WholeRun& run, const std::string& name) {
    ExpectFile(name + ".log.txt", run.LogText());
    ExpectFile(name + ".results.txt", run.ReportText());
}

std::vector<Box> Boxes(const WholeRun& run) {
    std::vector<Box> boxes = run.boxes.shown;
    for (auto& box : boxes)
        box.text = run.Anonymous(box.text);
    return boxes;
}

/// What the bar is told to show adds up to what it was told to expect, give or take a few polls.
void ExpectFullProgressBars(const WholeRun& run) {
    const std::string start = "ProgressBarStart(";
    const std::string update = "ProgressBarUpdate(";
    double expectedMs = 0;
    double shownMs = 0;
    int bars = 0;
    for (const auto& call : run.display.calls) {
        if (call.starts_with(start)) expectedMs = support::LeadingNumber(call.substr(start.size()));
        if (call.starts_with(update)) shownMs += support::LeadingNumber(call.substr(update.size()));
        if (call != "ProgressBarEnd()") continue;
        EXPECT_NEAR(shownMs, expectedMs, 400);
        shownMs = 0;
        ++bars;
    }
    EXPECT_EQ(bars, run.calls.CountOf("TolmSubmitBatch"));
}

TEST(WholeRun, CompletesInBothPolaritiesAndWithoutEPAndCEP) {
    struct Case {
        const char* name;
        const char* compound;
        std::int32_t modelCode;
    };
    for (const auto& [name, compound, modelCode] : {Case{"positive", "reserpine", 27},
                                                    {"negative", "chloramphenicol", 27},
                                                    {"without-ep-cep", "verapamil", 26},
                                                    {"without-ep-cep-large-af2", "verapamil", 14}}) {
        SCOPED_TRACE(name);
        WholeRun run({.compound = compound, .modelCode = modelCode});
        EXPECT_EQ(run.Start(), Outcome::Completed);
        EXPECT_EQ(Boxes(run), std::vector<Box>());
        ExpectFiles(run, name);
        ExpectFullProgressBars(run);
    }
}

TEST(WholeRun, EndsWithoutAFinding) {
    const auto expect = [](const std::string& name, const std::string& message, const WholeRun::Options& options) {
        WholeRun run(options);
        EXPECT_EQ(run.Start(), Outcome::Aborted);
        EXPECT_EQ(Boxes(run), (std::vector<Box>{{message, MessageIcon::None}}));
        ExpectFiles(run, name);
    };
    expect("no-parent", "No peaks found within 649 - 651 Da mass range of ER spectrum.",
           {.adjust = [](auto& settings) { settings.ExpectedMZ = 650; }});
    expect("no-fragments", "No EPI spectrum peaks found.", {.configure = [](auto& config) {
               config.sample = {{std::string(VELTRA_TEST_DATA) + "/compounds/no_fragments.ini", 1}};
           }});
}

/// The user clicks Abort as soon as a stage's acquisition shows its progress.
TEST(WholeRun, AbortsInEachStage) {
    const std::pair<const char*, const char*> cases[] = {
        {"abort-er", "--> ER"},          {"abort-dp", "(optimize DP)"},
        {"abort-ep", "(optimize EP)"},   {"abort-reoptdp", "(re-optimize DP)"},
        {"abort-cep", "(optimize CEP)"}, {"abort-epi", "--> EPI"},
        {"abort-mrm", "--> MRM"},        {"abort-ms3", "--> MS/MS/MS"},
    };
    for (const auto& [name, stage] : cases) {
        SCOPED_TRACE(name);
        WholeRun run({});
        run.boxes.answers = {true};
        bool clicked = false;
        run.display.onPump = [&, wanted = std::string(stage)] {
            const bool inStage = !run.display.log.empty() && run.display.log.back().find(wanted) != std::string::npos;
            if (clicked || !inStage || !run.display.calls.back().starts_with("ProgressBar")) return;
            clicked = true;
            EXPECT_EQ(run.startButton.Click(), Outcome::AbortAsked);
        };
        EXPECT_EQ(run.Start(), Outcome::Aborted);
        EXPECT_TRUE(clicked);
        EXPECT_EQ(run.boxes.questions, std::vector<std::string>{"Are you sure you want to abort the optimization?"});
        EXPECT_EQ(Boxes(run), std::vector<Box>());
        EXPECT_EQ(run.calls.CountOf("TolmLogoff"), 1);
        ExpectFiles(run, name);
    }
}

TEST(WholeRun, EndsWithAHostThatFails) {
    struct Case {
        const char* name;
        const char* operation;
        int call;
        std::string message;
    };
    const std::string methods = "<DIR>/Projects/reserpine/Acquisition Methods/reserpine_";
    const Case cases[] = {
        {"queue-does-not-start", "HostQueueRun", 1, "Queue: Error starting Queue"},
        {"method-not-saved", "HostSaveMethodAs", 2,
         "Acquire: Error during saving of " + methods + "Q1MI_RampDP_609.298.xmt"},
        {"batch-not-submitted", "TolmSubmitBatch", 1, "Tolm Batch: Error submitting Tolm Batch"},
        {"data-not-loaded", "ExploreLoadTIC", 2, "Explore Data: Error loading TIC"},
        {"logoff-fails", "TolmLogoff", 1, "Tolm Batch: Error during Tolm logoff"},
    };
    for (const auto& [name, operation, call, message] : cases) {
        SCOPED_TRACE(name);
        WholeRun run({});
        run.calls.Fail(operation, HostError(70, "Permission denied"), call);
        const bool completes = std::string(name) == "logoff-fails";
        EXPECT_EQ(run.Start(), completes ? Outcome::Completed : Outcome::Aborted);
        EXPECT_EQ(run.calls.FiredCount(), 1);
        EXPECT_EQ(Boxes(run), (std::vector<Box>{{message + " (Error 70: Permission denied).",
                                                 completes ? MessageIcon::Warning : MessageIcon::Critical}}));
        ExpectFiles(run, name);
    }
}

/// A final method that cannot be written changes nothing but its own line; no box is shown.
TEST(WholeRun, ReportsAFinalMethodThatCannotBeSaved) {
    WholeRun run({});
    run.calls.beforeCall = [&](const std::string& text) {
        if (text.starts_with("HostSaveMethodAs(") && text.find("_FinalMS3_448") != std::string::npos)
            run.calls.Fail("HostSaveMethodAs", HostError(61, "Disk full"));
    };
    EXPECT_EQ(run.Start(), Outcome::Completed);
    EXPECT_EQ(run.calls.FiredCount(), 1);
    EXPECT_EQ(Boxes(run), std::vector<Box>());
    ExpectFiles(run, "final-method-not-saved");
}

}  // namespace
