// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "tests/sweeps/DiskCase.h"
#include "tests/sweeps/Promises.h"
#include "tests/sweeps/Sweep.h"

/// A whole run in which one operation of the disk goes wrong, or in which the process dies there, for each of them.

namespace {

using Times = FaultyDisk::Times;

/// The first or last operation of a kind on a file whose path holds two texts.
struct Place {
    const char* path;
    const char* more;
    DiskCall call;
    bool isLast = false;

    std::size_t In(const Undisturbed& undisturbed) const {
        std::size_t found = 0;
        for (std::size_t number = 1; number <= undisturbed.operations.size(); ++number) {
            const auto& operation = undisturbed.operations[number - 1];
            const auto holds = [&](const char* text) { return operation.path.find(text) != std::string::npos; };
            if (operation.call == call && holds(path) && holds(more) && (found == 0 || isLast)) found = number;
        }
        EXPECT_GT(found, 0U) << path;
        return found;
    }
};

TEST(DiskSweep, EveryOperationFailsInEveryWay) {
    struct SampleCase {
        Place place;
        DiskFault fault;
        Times times;
    };
    constexpr SampleCase sampleCases[] = {
        {{"Veltra.ini", "", DiskCall::Status}, DiskFault::InputOutput, Times::Once},
        {{"Veltra.ini", "", DiskCall::Read}, DiskFault::InputOutput, Times::Once},
        {{"Veltra (5-13", "", DiskCall::MakeFolder}, DiskFault::InputOutput, Times::Once},
        {{"Veltra (", "Log.txt", DiskCall::Write}, DiskFault::NoSpace, Times::Once},
        {{"Veltra (", "Log.txt", DiskCall::Write, true}, DiskFault::NoSpace, Times::Once},
        {{"RampDP_", ".xbt", DiskCall::Rename}, DiskFault::InputOutput, Times::Once},
        {{"RampEP_", ".vesk", DiskCall::Write}, DiskFault::LostTail, Times::FromThenOn},
        {{"_FinalMS3_", ".xmt", DiskCall::Flush}, DiskFault::NoSpace, Times::Once},
        {{"Veltra (", "Results.txt", DiskCall::Write}, DiskFault::NoSpace, Times::Once}};
    Sweep sweep("Disk operations that fail");
    Undisturbed undisturbed;
    for (const auto& diskCase : undisturbed.Cases()) {
        const bool isSample =
            std::any_of(std::begin(sampleCases), std::end(sampleCases), [&](const SampleCase& sample) {
                return sample.fault == diskCase.fault && sample.times == diskCase.times &&
                       sample.place.In(undisturbed) == diskCase.operation;
            });
        if (!sweep.Takes(isSample)) continue;
        const DiskOutcome outcome = ExpectDiskPromises(undisturbed, diskCase);
        sweep.Count(std::string(Name(diskCase.fault)) +
                    (diskCase.times == Times::Once ? ", once: " : ", from then on: ") +
                    (outcome ? OutcomeText(*outcome) : "not started"));
    }
    EXPECT_TRUE(sweep.IsWhole() || sweep.Cases() == std::ssize(sampleCases));
}

TEST(DiskSweep, TheProcessDiesAtEveryOperation) {
    constexpr Place samplePlaces[] = {{"Orvanel", ".registry.ini", DiskCall::Rename},
                                      {"RampDP_", ".vesk", DiskCall::Write},
                                      {"Veltra (", "Log.txt", DiskCall::Write, true},
                                      {"Veltra (", "Results.txt", DiskCall::Rename}};
    Sweep sweep("Deaths of the process");
    Undisturbed undisturbed;
    std::set<std::size_t> sample;
    for (const auto& place : samplePlaces)
        sample.insert(place.In(undisturbed));
    for (std::size_t operation = 1; operation <= undisturbed.operations.size(); ++operation) {
        if (!sweep.Takes(sample.contains(operation))) continue;
        ExpectNothingLostByDeath(undisturbed, operation);
        sweep.Count(std::string("at: ") + Name(undisturbed.operations[operation - 1].call));
    }
    EXPECT_TRUE(sweep.IsWhole() || sweep.Cases() == std::ssize(sample));
}

}  // namespace
