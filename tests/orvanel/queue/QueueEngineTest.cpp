// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/queue/QueueEngine.h"

#include <stdexcept>

#include "tests/orvanel/methods/MethodTestTools.h"

namespace {

using orvanel::QueuedSample;
using orvanel::QueueEngine;
using orvanel::QueueStatus;

class QueueEngineTest : public testing::Test {
  protected:
    QueuedSample Sample(const std::string& name, double durationMs = 600, double delayMs = 400) {
        QueuedSample sample;
        sample.dataFilePath = name;
        sample.durationMs = durationMs;
        sample.delayMs = delayMs;
        return sample;
    }
    void Start() {
        queue_.Prepare();
        queue_.Enable();
        queue_.Run();
    }
    int StatusAfter(double milliseconds) {
        clock_.Sleep(milliseconds);
        return static_cast<int>(queue_.Status());
    }

    orvanel::HostClock clock_{0, {}, {}, true};
    std::vector<QueuedSample> acquired_;
    std::string failWith_;
    std::vector<int> published_;
    std::vector<std::string> ended_;
    QueueEngine queue_{
        clock_,
        {[this](const QueuedSample& sample) {
             acquired_.push_back(sample);
             if (!failWith_.empty()) throw ports::HostError(77, failWith_);
         },
         [this](QueueStatus status) { published_.push_back(static_cast<int>(status)); },
         [this](const QueuedSample& sample, QueueStatus outcome, const std::string& failure) {
             ended_.push_back(sample.dataFilePath + " " + std::to_string(static_cast<int>(outcome)) + failure);
         }}};
};

TEST_F(QueueEngineTest, RunsOneSampleThroughItsTimeline) {
    EXPECT_EQ(StatusAfter(5), 0);
    Start();
    EXPECT_EQ(StatusAfter(100), 0);
    queue_.Submit(Sample("a"));
    EXPECT_EQ(StatusAfter(0), 2);
    EXPECT_EQ(StatusAfter(400), 2);
    EXPECT_EQ(StatusAfter(1), 3);
    EXPECT_EQ(StatusAfter(598), 3);
    EXPECT_TRUE(acquired_.empty());
    EXPECT_EQ(StatusAfter(1), 4);
    ASSERT_EQ(acquired_.size(), 1U);
    EXPECT_EQ(acquired_[0].startedMs, 505);
    EXPECT_EQ(StatusAfter(1e6), 4);
    queue_.Submit(Sample("b"));
    EXPECT_EQ(StatusAfter(0), 2);  // never the old 4
    EXPECT_EQ(published_, (std::vector<int>{0, 2, 3, 4, 2}));
}

TEST(QueueEngine, LeavesNobodyWaitingForASampleThatItTakesWithIt) {
    orvanel::HostClock clock(0, {}, {}, true);
    std::vector<QueueStatus> published;
    {
        orvanel::QueueEngine queue(clock, {[](const auto&) {}, [&](QueueStatus status) { published.push_back(status); },
                                           [](const auto&, auto, const auto&) {}});
        queue.Submit({});
    }
    EXPECT_EQ(published, (std::vector{QueueStatus::Idle, QueueStatus::Waiting, QueueStatus::Stopped}));
}

TEST_F(QueueEngineTest, SamplesFollowEachOtherAndAreCaughtUpWithInOneStep) {
    Start();
    queue_.Submit(Sample("a"));
    clock_.Sleep(300);
    queue_.Submit(Sample("b", 1500, 500));
    queue_.Submit(Sample("c"));
    EXPECT_EQ(StatusAfter(3000), 2);  // 3300: a and b are done, c is delayed until 3400
    ASSERT_EQ(acquired_.size(), 2U);
    EXPECT_EQ(acquired_[1].startedMs, 1500);
    EXPECT_EQ(acquired_[1].acquisitionNumber, 2U);
    EXPECT_EQ(acquired_[1].nominalTimeMs, 1500);
    EXPECT_EQ(StatusAfter(101), 3);
    EXPECT_EQ(StatusAfter(599), 4);
    EXPECT_EQ(acquired_[2].nominalTimeMs, 3400);
    EXPECT_EQ(StatusAfter(50000), 4);
    queue_.Submit(Sample("d"));
    EXPECT_EQ(StatusAfter(1000), 4);
    EXPECT_EQ(acquired_[3].startedMs, 54400);
    EXPECT_EQ(acquired_[3].nominalTimeMs, 4400);  // the idle time does not count
}

TEST_F(QueueEngineTest, StartsInOneOrderOnly) {
    EXPECT_EQ(HostErrorOf([&] { queue_.Enable(); }), "1301: The queue cannot be enabled, prepare it first");
    EXPECT_EQ(HostErrorOf([&] { queue_.Run(); }), "1301: The queue cannot run, prepare and enable it first");
    queue_.Prepare();
    EXPECT_EQ(HostErrorOf([&] { queue_.Run(); }), "1301: The queue cannot run, prepare and enable it first");
    queue_.Reset();  // stays prepared: a client resets between preparing and enabling
    queue_.Enable();
    queue_.Submit(Sample("a"));
    EXPECT_EQ(StatusAfter(1e6), 2);  // waits for the queue to run
    queue_.Run();
    EXPECT_EQ(StatusAfter(500), 3);
    queue_.Run();  // again: nothing starts anew
    EXPECT_EQ(StatusAfter(500), 4);
}

TEST_F(QueueEngineTest, ResetStopsAndDrops) {
    Start();
    queue_.Submit(Sample("a"));
    queue_.Submit(Sample("b"));
    EXPECT_EQ(StatusAfter(700), 3);
    queue_.Reset();
    EXPECT_EQ(StatusAfter(1e6), 7);
    EXPECT_TRUE(acquired_.empty());
    EXPECT_EQ(ended_.size(), 2U);
    EXPECT_EQ(HostErrorOf([&] { queue_.Run(); }), "1301: The queue cannot run, prepare and enable it first");
    Start();
    queue_.Submit(Sample("c"));
    EXPECT_EQ(StatusAfter(1000), 4);
    EXPECT_EQ(acquired_.at(0).acquisitionNumber, 1U);
    queue_.Submit(Sample("d"));
    clock_.Sleep(1000);
    queue_.Reset();  // what is over is acquired before, nothing was under way, and what is finished stays so
    EXPECT_EQ(acquired_.size(), 2U);
    EXPECT_EQ(StatusAfter(0), 4);
}

TEST_F(QueueEngineTest, AFailingAcquisitionIsKeptAndTheNextOneRuns) {
    Start();
    queue_.Submit(Sample("a"));
    queue_.Submit(Sample("b"));
    failWith_ = "no gas";
    EXPECT_EQ(StatusAfter(1000), 2);
    EXPECT_EQ(queue_.LastFailure(), "no gas (77)");
    failWith_.clear();
    EXPECT_EQ(StatusAfter(1000), 4);
    EXPECT_EQ(ended_, (std::vector<std::string>{"a 6no gas (77)", "b 4"}));
    failWith_ = "no gas";
    queue_.Submit(Sample("c"));
    EXPECT_EQ(StatusAfter(1000), 6);
}

}  // namespace
