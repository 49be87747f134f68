// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/RunState.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <new>
#include <stdexcept>

#include "host/HostWrapper.h"
#include "support/Files.h"
#include "support/RunTimeError.h"
#include "tests/support_files/RunBench.h"
#include "tests/support_files/TempFolder.h"

namespace {

class Wrapper : public veltra::HostWrapper {
  public:
    template <class Error>
    void Throw(const Error& error) {
        Step([&] { throw error; }, veltra::FixedMessage("Wrapper: it failed"));
    }
};

TEST(RunState, ALineThatTheDiskDoesNotTakeGoesBeforeTheNextOne) {
    const TempFolder folder;
    RunBench bench;
    bench.run.results->LogFilePath = folder.File("not there yet/Log.txt");
    bench.run.AppendToLogFile("one");
    bench.run.AppendToLogFile("two");
    support::CreateFolders(folder.File("not there yet"));
    bench.run.AppendToLogFile("three");
    bench.run.AppendToLogFile("four");
    EXPECT_EQ(support::ReadWholeFile(bench.run.results->LogFilePath), "one\r\ntwo\r\nthree\r\nfour\r\n");
}

TEST(RunState, ALogLineGoesToTheDisplayAndOnceThereIsALogFileToThatToo) {
    const TempFolder folder;
    RunBench bench;
    bench.run.results.reset();
    bench.run.WriteLogLine("before the run");
    bench.run.results = std::make_unique<veltra::clsInfo_Results>();
    bench.run.WriteLogLine("without a file yet");
    bench.run.results->LogFilePath = folder.File("Log.txt");
    bench.run.WriteLogLine("one");
    bench.run.WriteLogLine("two");
    bench.ExpectReported({}, {"before the run", "without a file yet", "one", "two"});
    std::ifstream file(folder.File("Log.txt"), std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}),
              "[5/13/2024 3:45:12 PM]  one\r\n[5/13/2024 3:45:12 PM]  two\r\n");
}

TEST(RunState, AReportedErrorIsShownLoggedAndForgottenByTheWrapper) {
    for (const auto icon : {ports::MessageIcon::Critical, ports::MessageIcon::Warning}) {
        RunBench bench;
        Wrapper wrapper;
        wrapper.Throw(RunBench::hostError);
        const std::string text = "Wrapper: it failed" + RunBench::errorSuffix;
        bench.run.ReportError(wrapper, icon);
        bench.ExpectReported({{text, icon}}, {text});
        EXPECT_FALSE(wrapper.ErrorOccurred());
        EXPECT_EQ(wrapper.ErrorDescription(), "");
    }
}

TEST(HostWrapper, EveryKindOfFailureHasANumberAndOnlyTheFirstIsKept) {
    const auto description = [](const auto& error) {
        Wrapper wrapper;
        wrapper.Throw(error);
        wrapper.Throw(ports::HostError(1, "later"));
        return wrapper.ErrorDescription();
    };
    EXPECT_EQ(description(ports::HostError(-2147024894, "not there")),
              "Wrapper: it failed (Error -2147024894: not there).");
    EXPECT_EQ(description(support::RunTimeError::Overflow()), "Wrapper: it failed (Error 6: Overflow).");
    EXPECT_EQ(description(std::runtime_error("odd")), "Wrapper: it failed (Error 51: odd).");
    EXPECT_EQ(description(std::bad_alloc()).substr(0, 27), "Wrapper: it failed (Error 7");
    EXPECT_EQ(description(42), "Wrapper: it failed (Error 51: Unknown failure).");
    EXPECT_THROW(Wrapper().Throw(ports::RunTornDown()), ports::RunTornDown) << "what is no failure passes through";
}

TEST(HostWrapper, OnlyNumbersThatASingleCanHoldAreAnswers) {
    for (const double answer : {0.0, -609.3, 3.4e38})
        EXPECT_EQ(veltra::Finite(answer), answer);
    for (const double answer : {std::nan(""), HUGE_VAL, -HUGE_VAL, 3.5e38})
        EXPECT_THROW(veltra::Finite(answer), support::RunTimeError) << answer;
    EXPECT_EQ(veltra::FailureOf([] { veltra::Finite(-HUGE_VALF); }), " (Error 6: The host answered -Infinity).");
}

}  // namespace
