// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/RunState.h"
#include "host/clsTolmBatch.h"
#include "tests/support_files/FakeHost.h"
#include "tests/support_files/FaultyDisk.h"
#include "tests/support_files/FixedClock.h"
#include "tests/support_files/ObservedHost.h"
#include "tests/support_files/RecordedDisplay.h"
#include "tests/support_files/RecordedMessageBoxes.h"

/// Texts in one, "; " between them.
inline std::string Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const auto& text : texts)
        joined += (joined.empty() ? "" : "; ") + text;
    return joined;
}

/// The run state of a prepared run on an observed fake host. Whatever was told to the user and is not expected by the
/// test fails it at the end.
class RunBench {
    class NoFolderChooser : public ports::FolderChooser {
        Choice ChooseFolder(const std::string&) override {
            ADD_FAILURE() << "nothing here asks for a folder";
            return {};
        }
    };

  public:
    RunBench() {
        run.hostApplication = host.AttachToRunningApplication();
        run.results = std::make_unique<veltra::clsInfo_Results>();
        run.scans = std::make_unique<veltra::clsInfo_Scans>();
        run.InstrumentModelCode = fake.modelCode;
        fake.store.methods[starterPath] = FakeMethod();
        boxes.onShow = [this](const auto& box) { ExpectNotLogged(box.text); };
        calls.Forget();
    }
    ~RunBench() { ExpectReported({}, {}); }
    RunBench(const RunBench&) = delete;
    RunBench& operator=(const RunBench&) = delete;

    /// Compares the message boxes and log lines since the last time with the expected ones and forgets them.
    void ExpectReported(const std::vector<RecordedMessageBoxes::Box>& expectedBoxes,
                        const std::vector<std::string>& expectedLogTexts) {
        std::vector<std::string> expectedLog;
        for (const auto& text : expectedLogTexts)
            expectedLog.push_back("[3:45:12 PM]   " + text);
        EXPECT_EQ(boxes.shown, expectedBoxes);
        EXPECT_EQ(display.log, expectedLog);
        EXPECT_EQ(boxes.questions, std::vector<std::string>());
        boxes.shown.clear();
        display.log.clear();
        boxes.questions.clear();
    }
    /// A box is shown before its text is logged.
    void ExpectNotLogged(const std::string& text) const {
        for (const auto& line : display.log)
            EXPECT_FALSE(line.ends_with(text)) << line;
    }
    /// The display's calls stand between the host's from now on.
    void JoinDisplayWithHostCalls() {
        display.onCall = [this](const std::string& text) { calls.Note(text); };
    }

    static inline const std::string starterPath = "/p/Starter.xmt";
    static inline const ports::HostError hostError{17, "no such luck"};
    static inline const std::string errorSuffix = " (Error 17: no such luck).";

    HostCalls calls;
    FakeHost fake;
    ObservedHost host{fake, calls};
    RecordedDisplay display;
    RecordedMessageBoxes boxes;
    NoFolderChooser chooser;
    FixedClock clock;
    veltra::clsInfo_Settings settings{"/nowhere/Veltra.ini"};
    FaultyDisk disk;
    veltra::RunState run{{host, display, boxes, chooser, clock, disk}, settings};
};
