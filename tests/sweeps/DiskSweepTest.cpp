// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "support/Paths.h"
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

/// What a power cut would cost, followed operation by operation. What is flushed although nothing has changed since is
/// a failure.
class PowerCut {
  public:
    void After(const DiskOperation& operation) {
        // Links may lead to the temporary folder, so that it has two paths.
        const std::string path =
            operation.path.substr(std::min(operation.path.find("veltra-test-"), operation.path.size()));
        const std::string file = path.substr(0, path.find(".tmp-"));
        const std::string folder = support::FolderOf(path);
        switch (operation.call) {
            case DiskCall::Write:
                // A file that is appended to has its name from the first line on.
                if (file == path && known_.insert(file).second) names[folder].insert(file);
                contents.insert(file);
                break;
            case DiskCall::Flush:
                EXPECT_EQ(contents.erase(file), 1U) << path << " is flushed without need";
                break;
            case DiskCall::Rename:
                EXPECT_TRUE(!contents.contains(file) || IsStatus(file)) << path << " is renamed and not flushed";
                [[fallthrough]];
            case DiskCall::MakeFolder:
                names[folder].insert(file);
                break;
            case DiskCall::FlushFolder:
                EXPECT_EQ(names.erase(path), 1U) << path << " is flushed without need";
                break;
            default:
                break;
        }
    }
    bool Keeps(const std::string& pathEnd) const {
        return std::none_of(names.begin(), names.end(), [&](const auto& folder) {
            return std::any_of(folder.second.begin(), folder.second.end(),
                               [&](const std::string& name) { return name.ends_with(pathEnd); });
        });
    }
    static bool IsStatus(const std::string& path) { return path.ends_with("Orvanel.registry.ini"); }

    std::set<std::string> contents;                      ///< paths of the files with one that is not flushed
    std::map<std::string, std::set<std::string>> names;  ///< by folder: new ones in it, since it was flushed

  private:
    std::set<std::string> known_;
};

TEST(DiskSweep, APowerCutCostsNoFinishedAcquisition) {
    const Undisturbed undisturbed;
    PowerCut powerCut;
    int flushes = 0;
    int lines = 0;  // since the log was flushed
    std::size_t done = 0;
    for (const auto& operation : undisturbed.operations) {
        const auto is = [&](DiskCall call, const char* part) {
            return operation.call == call && operation.path.find(part) != std::string::npos;
        };
        powerCut.After(operation);
        if (is(DiskCall::Write, "Log.txt")) ++lines;
        if (is(DiskCall::Flush, "Log.txt")) {
            ++flushes;
            lines = 0;
        }
        // The heading of the acquisition under way, before the first one those of log and run too.
        if (is(DiskCall::Rename, ".vesk")) {
            EXPECT_EQ(lines, flushes == 0 ? 3 : 1) << operation.path;
        }
        const auto finished = undisturbed.finished.find(++done);
        if (finished == undisturbed.finished.end()) continue;
        for (const auto& path : finished->second)
            EXPECT_TRUE(!path.ends_with(".vesk") || powerCut.Keeps(path)) << path;
    }
    EXPECT_EQ(flushes, 9 + 1) << "one an acquisition, and one at the end";
    EXPECT_EQ(powerCut.contents, std::set<std::string>());
    EXPECT_TRUE(powerCut.names.empty()) << powerCut.names.begin()->first;
}

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
