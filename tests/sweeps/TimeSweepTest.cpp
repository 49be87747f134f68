// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/Files.h"
#include "support/NumberText.h"
#include "tests/sweeps/Promises.h"
#include "tests/sweeps/Sweep.h"

/// A whole run that is aborted, closed, or in which time goes wrong, at each moment where that can happen.

namespace {

using Outcome = ShortRun::Outcome;
using Times = HostCalls::Times;

const std::string timeOut =
    "Queue: The program timed out.  Please Exit program, equilibrate system with Acquisition Method and restart.";

/// The moments of a sweep that the ordinary tests look at too.
bool IsSample(int moment) {
    return moment % 12 == 1;
}

TEST(UserSweep, AbortAtEveryLook) {
    Sweep sweep("Abort clicked while events are processed");
    const Reference reference;
    for (int moment = 1; moment <= reference.looks; ++moment) {
        if (!sweep.Takes(IsSample(moment))) continue;
        SCOPED_TRACE(moment);
        ShortRun run;
        GuardAgainstHanging(run, "abort at look " + std::to_string(moment));
        std::size_t clickedAt = 0;
        run.onPump = [&] {
            if (run.display.pumps != moment) return;
            run.boxes.answers = {true};
            EXPECT_EQ(run.startButton.Click(), Outcome::AbortAsked);
            EXPECT_EQ(std::exchange(run.boxes.questions, {}).size(), 1U);
            clickedAt = run.calls.texts.size();
        };
        const Outcome outcome = run.Start();
        ASSERT_GT(clickedAt, 0U) << "nobody clicked";
        EXPECT_EQ(std::count_if(run.calls.texts.begin() + static_cast<std::ptrdiff_t>(clickedAt), run.calls.texts.end(),
                                [](const auto& text) { return text.starts_with("TolmSubmitBatch("); }),
                  0);
        ExpectPromises(run, outcome, {.telling = Telling::Asked}, reference);
        ExpectNextRun(run, reference);
        sweep.Count(OutcomeText(outcome));
    }
}

TEST(UserSweep, CloseAtEveryLook) {
    Sweep sweep("Window closed while events are processed");
    const Reference reference;
    for (int moment = 1; moment <= reference.looks; ++moment) {
        if (!sweep.Takes(IsSample(moment))) continue;
        SCOPED_TRACE(moment);
        ShortRun run;
        GuardAgainstHanging(run, "closed at look " + std::to_string(moment));
        std::string logThen;
        std::size_t displayCallsThen = 0;
        run.onPump = [&] {
            if (run.display.pumps != moment) return;
            logThen = run.LogText();
            displayCallsThen = run.display.calls.size();
            throw ports::RunTornDown();
        };
        ASSERT_EQ(run.Start(), Outcome::TornDown);
        EXPECT_FALSE(run.startButton.IsRunning());
        EXPECT_EQ(run.run.batch, nullptr);
        EXPECT_EQ(run.calls.SucceededCount("TolmLogon"), 1);
        EXPECT_EQ(run.calls.SucceededCount("TolmLogoff"), 1);
        EXPECT_EQ(run.LogText(), logThen);
        EXPECT_FALSE(support::FileExists(run.run.results->VeskOutputFilePath + "Results.txt"));
        EXPECT_EQ(run.display.calls.size(), displayCallsThen);
        EXPECT_EQ(run.boxes.shown, std::vector<RecordedMessageBoxes::Box>());
        ExpectNextRun(run, reference);
        sweep.Count(OutcomeText(Outcome::TornDown));
    }
}

/// A run that knows how it waited for its last acquisition.
class WaitingRun : public ShortRun {
  public:
    WaitingRun() {
        calls.beforeCall = [this](const std::string& text) {
            if (onCall) onCall();
            if (text == "HostSleep(100)") ++polls_;
            if (!text.starts_with("TolmSubmitBatch(")) return;
            polls_ = 0;
            announcedBefore_ = Announcements().size();
        };
    }
    int Polls() const { return polls_; }
    /// How long the acquisition was expected to take; nothing when the wait has not seen it begin.
    std::optional<double> ExpectedMs() const {
        const auto announcements = Announcements();
        if (announcements.size() == announcedBefore_) return std::nullopt;
        return support::LeadingNumber(announcements.back());
    }
    std::function<void()> onCall;

  private:
    std::vector<std::string> Announcements() const {
        constexpr std::string_view announcement = "ProgressBarStart(";
        std::vector<std::string> expected;
        for (const auto& call : display.calls)
            if (call.starts_with(announcement)) expected.push_back(call.substr(announcement.size()));
        return expected;
    }

    int polls_ = 0;
    std::size_t announcedBefore_ = 0;
};

/// Either the wait ended after as many polls as it may have, or at the first look, with no data to be had.
void ExpectTimeOut(WaitingRun& run, Outcome outcome, const Reference& reference, Sweep& sweep) {
    ASSERT_EQ(outcome, Outcome::Aborted);
    ASSERT_EQ(run.boxes.shown.size(), 1U);
    const std::string told = run.boxes.shown[0].text;
    const auto expectedMs = run.ExpectedMs();
    if (told != timeOut) {
        EXPECT_TRUE(told.starts_with("Explore Data: ") && told.ends_with(" does not exist).")) << told;
        EXPECT_EQ(run.Polls(), 1);
        sweep.Count("no data");
    } else if (expectedMs) {
        EXPECT_EQ(run.Polls(), 1 + support::ToInt16(*expectedMs / 100) + 1200);
        sweep.Count("timed out while acquiring");
    } else {
        EXPECT_GT(run.Polls(), 1200);
        sweep.Count("timed out before that");
    }
    ExpectPromises(run, outcome, {.keepsFiles = false}, reference);
    run.calls.beforeCall = nullptr;
    ExpectNextRun(run, reference);
}

/// Runs in which the operation answers so from one of its calls on, for each but the last: at the end of the last
/// acquisition nobody looks any more.
/// @param fault done in every later call of the host
void ExpectTimeOuts(Sweep& sweep, const std::string& operation, Garbage garbage,
                    const std::function<void(ShortRun&)>& fault = {}) {
    const Reference reference;
    const auto calls = std::count_if(reference.points.begin(), reference.points.end(),
                                     [&](const auto& point) { return point.operation == operation; });
    for (int call = 1; call < calls; ++call) {
        if (!sweep.Takes(IsSample(call))) continue;
        SCOPED_TRACE(call);
        WaitingRun run;
        run.calls.Spoil(operation, garbage, call, Times::FromThenOn);
        run.onCall = [&] {
            if (fault && run.calls.FiredCount() > 0) fault(run);
        };
        const Outcome outcome = run.Start();
        EXPECT_GE(run.calls.FiredCount(), 1);
        ExpectTimeOut(run, outcome, reference, sweep);
    }
    EXPECT_GE(sweep.CountOf("timed out while acquiring"), 1);
}

TEST(TimeSweep, StatusNeverChanges) {
    Sweep sweep("Queue status stuck at each of its readings");
    ExpectTimeOuts(sweep, "RegRead", Garbage::Frozen);
}

/// Pauses return at once and the clock stands still, so that the host gets no further.
TEST(TimeSweep, TimeStandsStill) {
    Sweep sweep("Time stands still from each pause on");
    ExpectTimeOuts(sweep, "HostSleep", Garbage::Nothing, [](ShortRun& run) { run.msPerLook = 0; });
}

/// A clock for dates and times that does what it should not. None of it is needed but for names and texts.
class BadClock : public ports::Clock {
  public:
    enum class Kind { Backwards, Standing, Jumping, Empty };
    explicit BadClock(Kind kind) : kind_(kind) {}
    ports::DateTimeTexts Now() const override {
        ++looks_;
        if (kind_ == Kind::Empty) return {};
        const int hour = kind_ == Kind::Backwards ? 11 - looks_ % 12 : kind_ == Kind::Jumping ? looks_ * 7 % 12 : 5;
        const std::string time = std::to_string(hour) + ":00:00 AM";
        return {"1/1/1970 " + time, time, "Thursday", "January", 1, 1970};
    }

  private:
    Kind kind_;
    mutable int looks_ = 0;
};

TEST(TimeSweep, ClocksMatterToTextsOnly) {
    Sweep sweep("Clocks that run backwards, stand still, jump or tell nothing");
    const Reference reference;
    for (const auto kind :
         {BadClock::Kind::Backwards, BadClock::Kind::Standing, BadClock::Kind::Jumping, BadClock::Kind::Empty}) {
        if (!sweep.Takes(true)) continue;
        const BadClock clock(kind);
        ShortRun run({.runClock = &clock});
        const Outcome outcome = run.Start();
        EXPECT_EQ(outcome, Outcome::Completed);
        EXPECT_EQ(run.boxes.shown, std::vector<RecordedMessageBoxes::Box>());
        sweep.Count(OutcomeText(outcome));
    }
    // The host's clock jumps by days, so that each acquisition is over at the next look.
    for (int moment = 1; moment <= reference.looks; ++moment) {
        if (!sweep.Takes(IsSample(moment))) continue;
        SCOPED_TRACE(moment);
        ShortRun run;
        run.onPump = [&] {
            if (run.display.pumps == moment) run.clock.Sleep(5e8);
        };
        const Outcome outcome = run.Start();
        ExpectPromises(run, outcome, {.telling = Telling::Silent, .keepsFiles = false}, reference);
        sweep.Count("jump: " + OutcomeText(outcome));
    }
}

/// An acquisition that starts late is waited for two minutes longer than expected, and no longer.
TEST(TimeSweep, LateAcquisitionsAreWaitedForTwoMinutes) {
    Sweep sweep("Acquisitions that start late");
    const Reference reference;
    for (const double delayS : {10.0, 119.0, 121.0, 1000.0}) {
        if (!sweep.Takes(true)) continue;
        SCOPED_TRACE(delayS);
        ShortRun run({.delayS = delayS});
        run.msPerLook = 0;
        const Outcome outcome = run.Start();
        const bool isInTime = delayS < 120;
        EXPECT_EQ(outcome, isInTime ? Outcome::Completed : Outcome::Aborted);
        if (!isInTime) {
            EXPECT_EQ(run.boxes.shown.at(0).text, timeOut);
        }
        ExpectPromises(run, outcome, {.keepsFiles = false}, reference);
        sweep.Count(OutcomeText(outcome));
    }
}

}  // namespace
