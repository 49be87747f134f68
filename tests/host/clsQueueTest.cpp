// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/clsQueue.h"

#include <gmock/gmock.h>

#include <stdexcept>

#include "tests/support_files/RunBench.h"

namespace {

using testing::ElementsAre;
using veltra::clsQueue;

using Statuses = std::vector<std::optional<std::string>>;

const std::string timeOut =
    "Queue: The program timed out.  Please Exit program, equilibrate system with Acquisition Method and restart.";

TEST(clsQueue, StartQueueMakesTheseCallsUntilOneFailsOtherThanAReset) {
    const std::vector<std::string> all{"HostQueueServer()", "HostQueuePrepare()",     "HostQueueReset()",
                                       "HostQueueEnable()", "CreatePause()",          "ProcessPendingEvents()",
                                       "HostSleep(1000)",   "ProcessPendingEvents()", "HostQueueRun()"};
    for (std::size_t failing = 0; failing <= all.size(); ++failing) {
        const std::string operation = failing < all.size() ? all[failing].substr(0, all[failing].find('(')) : "none";
        if (operation == "ProcessPendingEvents") continue;
        SCOPED_TRACE(operation);
        RunBench bench;
        bench.calls.Fail(operation, RunBench::hostError);
        bench.JoinDisplayWithHostCalls();
        clsQueue queue(bench.run);
        EXPECT_FALSE(queue.ErrorOccurred());
        queue.StartQueue();
        const bool isTold = operation != "none" && operation != "HostQueueReset";
        EXPECT_EQ(queue.ErrorDescription(), isTold ? "Queue: Error starting Queue" + RunBench::errorSuffix : "");
        const auto end = isTold ? all.begin() + static_cast<std::ptrdiff_t>(failing) + 1 : all.end();
        EXPECT_EQ(bench.calls.Operations(), std::vector(all.begin(), end));
        if (operation == "HostQueueServer") continue;
        bench.calls.Forget();
        queue.StartQueue();
        EXPECT_EQ(bench.calls.CountOf("HostQueueRun"), 1) << "also when the object has failed";
    }
}

TEST(clsQueue, TheWaitFollowsTheStatusValue) {
    struct Case {
        Statuses statuses;
        int sleeps;           // of 100 ms
        int progressUpdates;  // -1: never announced
    };
    std::vector<Case> cases{
        {{"2", "4"}, 2, -1},
        {{"2", "2", "6"}, 3, -1},
        {{"3", "4"}, 2, 1},
        {{"2", "3", "3", "7"}, 4, 2},
        {{"3", "2", "3", "4"}, 4, 3},                               // announced once, then counted on
        {{"2", "0", "5", std::nullopt, "x", "3", "1", "4"}, 8, 2},  // anything later is waited through
    };
    for (const auto& ends : Statuses{"4", "6", "7", "0", "1", "5", "8", "-3", std::nullopt, "busy", "40000"})
        cases.push_back({{ends}, 1, -1});
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(i);
        const auto& c = cases[i];
        RunBench bench;
        bench.fake.queueStatuses = c.statuses;
        clsQueue queue(bench.run);
        queue.WaitForQueueComplete(60000);
        EXPECT_EQ(queue.ErrorDescription(), "");
        EXPECT_FALSE(bench.run.AbortRequested);
        EXPECT_EQ(bench.calls.Only({"HostSleep"}),
                  std::vector<std::string>(static_cast<std::size_t>(c.sleeps), "HostSleep(100)"));
        EXPECT_EQ(bench.display.pumps, 2 * c.sleeps);
        std::vector<std::string> expected;
        if (c.progressUpdates >= 0) {
            expected = {"MessageUpdate(Expected batch time: 60 sec)", "ProgressBarStart(60000)"};
            expected.insert(expected.end(), static_cast<std::size_t>(c.progressUpdates), "ProgressBarUpdate(100)");
            expected.push_back("ProgressBarEnd()");
        }
        EXPECT_EQ(bench.display.calls, expected);
    }
}

TEST(clsQueue, OnePollIsAnnouncedPausedAndReadInThisOrder) {
    RunBench bench;
    bench.fake.queueStatuses = {"3", "4"};
    bench.JoinDisplayWithHostCalls();
    clsQueue queue(bench.run);
    bench.calls.Forget();
    queue.WaitForQueueComplete(1234.5);
    const std::string read = "RegRead(\"" + std::string(FakeHost::statusPath) + "\")";
    EXPECT_THAT(bench.calls.Operations(),
                ElementsAre(read, "CreatePause()", "ProcessPendingEvents()", "HostSleep(100)", "ProcessPendingEvents()",
                            "MessageUpdate(Expected batch time: 1.234 sec)", "ProgressBarStart(1234.5)",
                            "CreatePause()", "ProcessPendingEvents()", "HostSleep(100)", "ProcessPendingEvents()",
                            "ProgressBarUpdate(100)", read, "ProgressBarEnd()"));
}

TEST(clsQueue, TheWaitEndsAfterTheExpectedTimePlusTwoMinutes) {
    struct Case {
        const char* status;
        double expectedMs;
        int polls;
    };
    for (const auto& c : {Case{"2", 60000, 1800}, Case{"3", 60000, 1800}, Case{"2", 0, 1200}, Case{"2", 149.9, 1201},
                          Case{"2", 250, 1202}, Case{"2", 350, 1204}}) {
        SCOPED_TRACE(c.expectedMs);
        RunBench bench;
        bench.fake.queueStatuses = {c.status};
        clsQueue queue(bench.run);
        queue.WaitForQueueComplete(c.expectedMs);
        EXPECT_TRUE(queue.ErrorOccurred());
        EXPECT_EQ(queue.ErrorDescription(), timeOut);
        EXPECT_EQ(bench.calls.CountOf("HostSleep"), c.polls + 1);
        EXPECT_EQ(bench.calls.CountOf("RegRead"), c.polls) << "none behind the last poll";
        const bool announced = *c.status == '3';
        EXPECT_EQ(bench.display.calls.size(), announced ? static_cast<std::size_t>(c.polls) + 3 : 0);
        if (announced) {
            EXPECT_EQ(bench.display.calls.back(), "ProgressBarEnd()");
        }
    }
}

TEST(clsQueue, APollLimitOfMoreThan16BitsIsTheWaitsError) {
    const std::string overflow = "Queue: Error during wait for Queue to complete (Error 6: Overflow).";
    struct Case {
        double expectedMs;
        std::string description;
        const char* status = "4";
    };
    for (const auto& c : {Case{3156749, ""}, Case{3156750, overflow}, Case{3156750, overflow, "0"},
                          Case{3276700, overflow}, Case{3276750, overflow}, Case{1e300, overflow}}) {
        SCOPED_TRACE(c.expectedMs);
        RunBench bench;
        bench.fake.queueStatuses = {c.status};
        clsQueue queue(bench.run);
        queue.WaitForQueueComplete(c.expectedMs);
        EXPECT_EQ(queue.ErrorDescription(), c.description);
        EXPECT_EQ(bench.calls.CountOf("HostSleep"), 1);
    }
}

TEST(clsQueue, AnAbortInAnEventPumpEndsTheWaitWithoutError) {
    struct Case {
        const char* status;
        int pump;  // the one in which the user aborts; there are two a pause, the first pause is before the loop
        int sleeps;
        bool announced;
    };
    for (const auto& c : {Case{"3", 1, 1, false}, Case{"3", 2, 1, false}, Case{"3", 3, 2, true}, Case{"3", 8, 4, true},
                          Case{"2", 8, 4, false}}) {
        SCOPED_TRACE(c.pump);
        RunBench bench;
        bench.fake.queueStatuses = {c.status};
        bench.display.onPump = [&] { bench.run.AbortRequested = bench.display.pumps >= c.pump; };
        clsQueue queue(bench.run);
        queue.WaitForQueueComplete(60000);
        EXPECT_FALSE(queue.ErrorOccurred());
        EXPECT_EQ(bench.calls.CountOf("HostSleep"), c.sleeps);
        EXPECT_EQ(bench.display.calls.size(), c.announced ? static_cast<std::size_t>(c.sleeps - 1) + 3 : 0);
        if (c.announced) {
            EXPECT_EQ(bench.display.calls.back(), "ProgressBarEnd()");
        }
    }
}

TEST(clsQueue, AStatusThatCannotBeReadIsNoErrorButAMissingServerAndAFailingPauseAre) {
    RunBench bench;
    bench.fake.queueStatuses = {"2", "2", "4"};
    bench.calls.Fail("RegRead", RunBench::hostError, 2);  // waited through
    clsQueue queue(bench.run);
    queue.WaitForQueueComplete(60000);
    EXPECT_EQ(bench.calls.CountOf("RegRead"), 4);

    RunBench unreadable;
    unreadable.calls.Fail("RegRead", std::runtime_error("no registry"));
    clsQueue other(unreadable.run);
    other.WaitForQueueComplete(60000);
    EXPECT_EQ(unreadable.calls.CountOf("RegRead"), 1);
    EXPECT_EQ(queue.ErrorDescription() + other.ErrorDescription(), "");

    const std::string failure = "Queue: Error during wait for Queue to complete";
    for (const auto& [operation, progress] : {std::pair{"HostQueueServer", std::size_t{0}}, {"HostSleep", 3}}) {
        RunBench failing;
        failing.fake.queueStatuses = {"3"};
        failing.calls.Fail(operation, RunBench::hostError, progress == 0 ? 1 : 2);
        clsQueue waiting(failing.run);
        EXPECT_EQ(waiting.ErrorDescription(), "");
        waiting.WaitForQueueComplete(60000);
        EXPECT_EQ(waiting.ErrorDescription(), failure + RunBench::errorSuffix);
        EXPECT_EQ(failing.display.calls.size(), progress);
        if (progress > 0) {
            EXPECT_EQ(failing.display.calls.back(), "ProgressBarEnd()") << "a bar that was started is ended";
        }
        failing.calls.Forget();
        waiting.WaitForQueueComplete(60000);
        EXPECT_THAT(failing.calls.Operations(), ElementsAre()) << "a failed object does not wait";
    }
}

}  // namespace
