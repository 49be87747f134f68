// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <new>
#include <set>
#include <stdexcept>

#include "ports/HostError.h"
#include "tests/sweeps/Promises.h"
#include "tests/sweeps/Sweep.h"

/// A whole run whose host goes wrong at one of its calls, for each of them.

namespace {

using Times = HostCalls::Times;

struct ThrownError {
    const char* name;
    const char* cause;  ///< what the message says of it
    void (*fail)(HostCalls& calls, const std::string& operation, int call, Times times);
};
template <auto make>
void FailWith(HostCalls& calls, const std::string& operation, int call, Times times) {
    calls.Fail(operation, make(), call, times);
}
constexpr ThrownError hostError = {"host error", " (Error 70: Permission denied).",
                                   FailWith<[] { return ports::HostError(70, "Permission denied"); }>};
constexpr ThrownError unexpected[] = {
    {"runtime_error", " (Error 51: no connection).", FailWith<[] { return std::runtime_error("no connection"); }>},
    {"bad_alloc", " (Error 7: std::bad_alloc).", FailWith<[] { return std::bad_alloc(); }>},
    {"no std::exception", " (Error 51: Unknown failure).", FailWith<[] { return 42; }>},
};

enum class Extent { Once, OperationFromThenOn, HostFromThenOn };
constexpr const char* extentNames[] = {"once", "operation from then on", "host from then on"};

/// @param at position among the host's calls, from 0
void RunFailingAt(const Reference& reference, std::int32_t modelCode, std::size_t at, const ThrownError& error,
                  Extent extent, bool runsAgain, Sweep& sweep) {
    const CallPoint& point = reference.points[at];
    const std::string what = point.operation + " " + std::to_string(point.call) + ", call " + std::to_string(at + 1) +
                             ", " + error.name + ", " + extentNames[static_cast<int>(extent)];
    SCOPED_TRACE(what);
    ShortRun run({.modelCode = modelCode});
    GuardAgainstHanging(run, what);
    const Times times = extent == Extent::Once ? Times::Once : Times::FromThenOn;
    if (extent == Extent::HostFromThenOn)
        error.fail(run.calls, HostCalls::anyOperation, static_cast<int>(at) + 1, times);
    else
        error.fail(run.calls, point.operation, point.call, times);
    const auto outcome = run.Start();
    EXPECT_GE(run.calls.FiredCount(), 1) << "the fault is not there";
    // A service that is missing is told of by the load, unless another call fails before that.
    const bool isToldLater = extent == Extent::HostFromThenOn && point.operation == "GetAcquisitionService";
    const CallPoint& told = reference.points[isToldLater ? at + 1 : at];
    const Fault fault = FaultAt(told, error.cause, times, extent == Extent::HostFromThenOn);
    ExpectPromises(run, outcome, fault, reference);
    if (runsAgain) ExpectNextRun(run, reference);
    sweep.Count(std::string(error.name) + ", " + extentNames[static_cast<int>(extent)] + ": " + OutcomeText(outcome));
}

TEST(HostSweep, EveryCallFails) {
    Sweep sweep("Host calls that fail");
    const Reference reference;
    for (std::size_t at = 0; at < reference.points.size(); ++at) {
        const auto& other = unexpected[at % std::size(unexpected)];
        int kind = 0;
        for (const Extent extent : {Extent::Once, Extent::OperationFromThenOn, Extent::HostFromThenOn})
            for (const ThrownError* error : {&hostError, &other}) {
                // Of the sample's calls, each fails in another of the six ways.
                const bool isSample = reference.points[at].isSample && static_cast<int>(at % 6) == kind++;
                if (sweep.Takes(isSample))
                    RunFailingAt(reference, 27, at, *error, extent, sweep.IsWhole() ? error == &hostError : at % 4 == 0,
                                 sweep);
                if (HasFatalFailure()) return;
            }
    }
}

/// What only the other instruments are asked.
TEST(HostSweep, EveryCallOfAnotherInstrumentFails) {
    constexpr std::int32_t modelCode = 26;
    Sweep sweep("Host calls that fail, with operating modes and a Dasmyr's excitation time");
    const Reference usual;
    const Reference reference(modelCode);
    std::set<std::string> known;
    for (const auto& point : usual.points)
        known.insert(point.operation);
    for (std::size_t at = 0; at < reference.points.size(); ++at) {
        if (known.contains(reference.points[at].operation)) continue;
        for (const Extent extent : {Extent::Once, Extent::HostFromThenOn})
            for (const ThrownError* error : {&hostError, &unexpected[2]})
                if (sweep.Takes(reference.points[at].isSample && extent == Extent::Once && error == &hostError))
                    RunFailingAt(reference, modelCode, at, *error, extent, sweep.IsWhole(), sweep);
    }
}

constexpr const char* garbageNames[] = {"", "nothing", "not a number", "huge", "negative", "frozen"};

void RunSpoiltAt(const Reference& reference, const CallPoint& point, Garbage garbage, Times times, bool runsAgain,
                 Sweep& sweep) {
    const std::string what = point.operation + " " + std::to_string(point.call) + " answers " +
                             garbageNames[static_cast<int>(garbage)] + (times == Times::Once ? "" : " from then on");
    SCOPED_TRACE(what);
    ShortRun run;
    GuardAgainstHanging(run, what);
    run.calls.Spoil(point.operation, garbage, point.call, times);
    const auto outcome = run.Start();
    EXPECT_GE(run.calls.FiredCount(), 1) << "the fault is not there";
    if (outcome == ShortRun::Outcome::InstrumentRefused) {
        EXPECT_EQ(point.operation, "IsLinearIonTrap");
    } else {
        Fault fault{.operation = point.operation, .phase = point.phase, .keepsFiles = false};
        // A handle that is missing is told as such where it is used.
        if (garbage == Garbage::Nothing && reference.AnswersAHandle(point.operation)) fault.words = {" (Error 91: "};
        ExpectPromises(run, outcome, fault, reference);
    }
    if (runsAgain) ExpectNextRun(run, reference);
    sweep.Count(std::string(garbageNames[static_cast<int>(garbage)]) + ": " + OutcomeText(outcome));
}

TEST(HostSweep, EveryAnswerIsGarbage) {
    Sweep sweep("Host calls that answer garbage");
    const Reference reference;
    int next = 0;
    for (const auto& point : reference.points) {
        const auto run = [&](Garbage garbage, Times times) {
            const bool isSample = point.isSample && ++next % 7 == 0;
            if (sweep.Takes(isSample))
                RunSpoiltAt(reference, point, garbage, times, sweep.IsWhole() && sweep.Cases() % 3 == 0, sweep);
        };
        // A handle is missing, and what answers nothing does nothing.
        run(Garbage::Nothing, Times::Once);
        if (point.call == 1) run(Garbage::Nothing, Times::FromThenOn);
        if (!reference.AnswersAValue(point.operation)) continue;
        for (const Garbage garbage : {Garbage::NotANumber, Garbage::Huge, Garbage::Negative}) {
            run(garbage, Times::Once);
            if (point.call == 1) run(garbage, Times::FromThenOn);
        }
        if (point.call == 1) run(Garbage::Frozen, Times::FromThenOn);
    }
}

}  // namespace
