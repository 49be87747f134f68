// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/sweeps/DiskCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "support/Files.h"
#include "support/Text.h"

namespace {

using Outcome = ShortRun::Outcome;
using Times = FaultyDisk::Times;
namespace fs = std::filesystem;

const std::string outputFolder = "Projects/caffeine/Data/caffeine Veltra (5-13-2024, 3h45m12 PM)/";
const std::string reportPath = outputFolder + "Results.txt";
const std::string logPath = outputFolder + "Log.txt";
constexpr const char* temporaryMark = ".tmp-";

/// A method that is saved before and after its last edit, for which the host wants it on disk.
bool IsSavedTwice(const std::string& path) {
    const auto holds = [&](const char* part) { return path.find(part) != std::string::npos; };
    return path.ends_with(".xmt") && (holds("_Final") || holds("_EPI_") || holds("_MS3_"));
}

/// Written once and never changed afterwards, so that what is there is the same in every run.
bool IsDocument(const std::string& path) {
    return !IsSavedTwice(path) && (path.ends_with(".xmt") || path.ends_with(".xbt") || path.ends_with(".vesk") ||
                                   path.ends_with("Veltra.ini") || path.ends_with("Orvanel.ini"));
}

std::string Of(const FileContents& files, const std::string& path) {
    const auto found = files.find(path);
    return found == files.end() ? std::string() : found->second;
}

/// What the log must hold when nothing is lost: the display was told the same lines.
std::string WholeLog(const RecordedDisplay& display) {
    std::string log = "Log File: Quantitative Optimization for MS3\r\n\r\n";
    for (const auto& entry : display.log) {
        const auto end = entry.find("]   ");
        log += "[5/13/2024 " + entry.substr(1, end - 1) + "]  " + entry.substr(end + 4) + "\r\n";
    }
    return log;
}

void ExpectWholeLines(const std::string& name, const std::string& text) {
    EXPECT_TRUE(text.empty() || text.ends_with("\r\n")) << name << " ends with a half line: " << text;
}

/// The documents are those of a run that nothing disturbed, or not there.
void ExpectWholeDocuments(const FileContents& files, const Undisturbed& undisturbed) {
    for (const auto& [path, content] : files)
        EXPECT_TRUE(!IsDocument(path) || content == Of(undisturbed.files, path)) << path;
    for (const auto& [path, content] : files)
        EXPECT_TRUE(!IsSavedTwice(path) || content.ends_with("</OrvanelMethod>\n"))
            << path << " is cut off: " << content;
    ExpectWholeLines("Orvanel.registry.ini", Of(files, "Orvanel.registry.ini"));
}

void ExpectNoTemporaryFiles(const FileContents& files) {
    for (const auto& [path, content] : files)
        EXPECT_EQ(path.find(temporaryMark), std::string::npos) << path;
}

/// The message names one of the files that failed, and why.
void ExpectMessage(const std::string& message, const FaultyDisk& disk) {
    std::vector<std::string> names;
    for (const auto& [call, path] : disk.Failed()) {
        const bool endsInSeparator = path.ends_with('/');
        const std::string name = fs::path(path.substr(0, path.size() - endsInSeparator)).filename().string();
        names.push_back(name.substr(0, name.find(temporaryMark)));
    }
    EXPECT_TRUE(std::any_of(names.begin(), names.end(), [&](const std::string& name) {
        return !name.empty() && message.find(name) != std::string::npos;
    })) << message;
    EXPECT_THAT(
        message,
        testing::AnyOf(testing::HasSubstr("Input/output error"), testing::HasSubstr("No space left on device"),
                       testing::HasSubstr("Read-only file system"), testing::HasSubstr("only a part"),
                       testing::HasSubstr("the file ended early"), testing::HasSubstr("Invalid acquisition method.")));
}

void ExpectOutcome(const ShortRun& run, const FaultyDisk& disk, Outcome outcome) {
    const auto& boxes = run.boxes.shown;
    switch (outcome) {
        case Outcome::Completed:
            EXPECT_EQ(boxes, std::vector<RecordedMessageBoxes::Box>());
            break;
        case Outcome::Aborted:
            ASSERT_EQ(boxes.size(), 1U);
            EXPECT_EQ(boxes[0].icon, ports::MessageIcon::Critical);
            ExpectMessage(boxes[0].text, disk);
            break;
        case Outcome::InitializationFailed:
            ASSERT_EQ(boxes.size(), 1U);
            EXPECT_EQ(boxes[0].icon, ports::MessageIcon::Warning);
            EXPECT_NE(boxes[0].text, "");
            break;
        default:
            ADD_FAILURE() << "outcome " << static_cast<int>(outcome);
    }
}

/// Log and report of a run that got past its initialisation.
void ExpectLogAndReport(const ShortRun& run, const FileContents& files, MayLose mayLose) {
    const std::string log = Of(files, logPath);
    const std::string wholeLog = run.Anonymous(WholeLog(run.display));
    ExpectWholeLines("Log.txt", log);
    if (mayLose == MayLose::Nothing)
        EXPECT_EQ(log, wholeLog);
    else
        EXPECT_TRUE(wholeLog.starts_with(log)) << log;
    const std::string report = run.Anonymous(
        run.run.results->ReportText({run.settings, run.clock, run.run.AbortRequested, run.run.EPAndCEPSupported}));
    EXPECT_TRUE(files.contains(reportPath) || mayLose == MayLose::WhatTheDiskRefuses);
    EXPECT_EQ(files.contains(reportPath) ? Of(files, reportPath) : report, report);
}

/// What was acquired stays as it was when it was finished.
void ExpectFinishedKept(const ShortRun& run, const FileContents& files) {
    for (const auto& [path, content] : run.finished) {
        const std::string name = fs::relative(path, run.project.folder.Path()).string();
        EXPECT_TRUE(Of(files, name) == run.Anonymous(content)) << name;
    }
}

/// A program that cannot read what it starts with says so and leaves everything as it is.
DiskOutcome NotStarted(const std::string& message, const FaultyDisk& disk, const FileContents& before,
                       const NewProject& project) {
    ExpectMessage(message, disk);
    auto files = FilesOf(project);
    // The host has started, and may not have been able to remove what it could not finish.
    std::erase_if(files, [](const auto& file) { return file.first.starts_with("Orvanel.registry.ini"); });
    EXPECT_TRUE(files == before);
    return std::nullopt;
}

}  // namespace

FileContents FilesOf(const NewProject& project) {
    FileContents files;
    const std::string& folder = project.folder.Path();
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const std::string path = fs::relative(entry.path(), folder).string();
        if (!entry.is_regular_file() || path.ends_with(".in-use")) continue;
        std::string& text = files[path];
        text = support::ReadWholeFile(entry.path().string());
        for (auto at = text.find(folder); at != std::string::npos; at = text.find(folder, at))
            text.replace(at, folder.size(), "<DIR>");
    }
    return files;
}

Undisturbed::Undisturbed() {
    FaultyDisk disk;
    ShortRun run({.disk = disk, .project = ShortRun::CreateProjectWithSettings()});
    run.calls.witnesses.push_back([&](const std::string&) {
        std::set<std::string>& names = finished[disk.Operations().size()];
        for (const auto& [path, content] : run.finished)
            names.insert(fs::relative(path, run.project.folder.Path()).string());
    });
    run.display.onCall = [&](const std::string& text) {
        if (text.starts_with("AddLogEntry("))
            logLengths[disk.Operations().size()] = run.Anonymous(WholeLog(run.display)).size();
    };
    run.ReadSettings();
    EXPECT_EQ(run.Start(), Outcome::Completed);
    EXPECT_EQ(run.boxes.shown, std::vector<RecordedMessageBoxes::Box>());
    files = FilesOf(run.project);
    operations = disk.Operations();
    pauses = run.calls.CountOf("HostSleep");
    EXPECT_EQ(run.calls.CountOf("TolmSubmitBatch"), 9);
    EXPECT_NE(Report().find("Optimization completed successfully!"), std::string::npos) << Report();
    EXPECT_EQ(Log(), run.Anonymous(WholeLog(run.display)));
}

std::string Undisturbed::Log() const {
    return Of(files, logPath);
}

std::string Undisturbed::Report() const {
    return Of(files, reportPath);
}

void Undisturbed::ExpectKept(const FileContents& left, std::size_t operation) const {
    // Of both the last state that was reached before the operation.
    if (const auto next = logLengths.lower_bound(operation); next != logLengths.begin()) {
        EXPECT_GE(Of(left, logPath).size(), std::prev(next)->second);
    }
    const auto next = finished.lower_bound(operation);
    if (next == finished.begin()) return;
    for (const auto& path : std::prev(next)->second)
        EXPECT_TRUE(left.contains(path) && Of(left, path) == Of(files, path)) << path;
}

bool Undisturbed::IsNewState(const FileContents& left) {
    std::string state;
    for (const auto& [path, content] : left) {
        const auto mark = path.find(temporaryMark);
        state += (mark == std::string::npos ? path : path.substr(0, mark) + temporaryMark) + "\n" + content + "\n";
    }
    return states.insert(std::hash<std::string>()(state)).second;
}

std::vector<DiskCase> Undisturbed::Cases() const {
    std::vector<DiskCase> cases;
    for (std::size_t operation = 1; operation <= operations.size(); ++operation)
        for (const auto fault :
             {DiskFault::InputOutput, DiskFault::NoSpace, DiskFault::ShortWrite, DiskFault::LostTail})
            for (const auto times : {Times::Once, Times::FromThenOn})
                if (CanHappen(fault, operations[operation - 1].call)) cases.push_back({fault, operation, times});
    return cases;
}

void ExpectOrdinaryRun(const Undisturbed& undisturbed, const std::shared_ptr<const NewProject>& project) {
    // A run has a folder of its own. Without the one before, it has the same name and can be compared.
    std::filesystem::remove_all(std::filesystem::path(project->folder.File(logPath)).parent_path());
    const auto soleUse = support::HoldFile(project->folder.File("Veltra.ini"), "Veltra");
    const FaultyDisk disk;
    ShortRun run({.disk = disk, .project = project});
    run.ReadSettings();
    EXPECT_EQ(run.Start(), Outcome::Completed);
    EXPECT_EQ(run.boxes.shown, std::vector<RecordedMessageBoxes::Box>());
    const auto files = FilesOf(*project);
    ExpectNoTemporaryFiles(files);
    for (const auto& [path, content] : undisturbed.files) {
        if (path == logPath || path == "Orvanel.log" || path == "Orvanel.registry.ini") continue;
        EXPECT_TRUE(Of(files, path) == content) << path;
    }
    EXPECT_EQ(Of(files, logPath), undisturbed.Log());
}

DiskOutcome ExpectDiskPromises(const Undisturbed& undisturbed, const std::shared_ptr<const NewProject>& project,
                               const FaultyDisk& disk, MayLose mayLose) {
    const auto before = FilesOf(*project);
    std::optional<ShortRun> started;
    try {
        started.emplace(ShortRun::Setup{.disk = disk, .project = project});
        started->ReadSettings();
    } catch (const std::exception& error) {
        return NotStarted(error.what(), disk, before, *project);
    }
    ShortRun& run = *started;
    const Outcome outcome = run.Start();
    const auto files = FilesOf(*project);
    ExpectOutcome(run, disk, outcome);
    ExpectWholeDocuments(files, undisturbed);
    ExpectWholeLines("Orvanel.log", Of(files, "Orvanel.log"));
    if (mayLose == MayLose::Nothing) ExpectNoTemporaryFiles(files);
    if (!run.run.results)
        EXPECT_FALSE(files.contains(reportPath));
    else
        ExpectLogAndReport(run, files, mayLose);
    EXPECT_EQ(run.calls.CountOf("TolmLogoff"), run.calls.CountOf("TolmLogon"));
    EXPECT_LE(run.calls.CountOf("HostSleep"), undisturbed.pauses);
    EXPECT_EQ(run.submittedAfterFailure, 0);
    ExpectFinishedKept(run, files);
    return outcome;
}

DiskOutcome ExpectDiskPromises(Undisturbed& undisturbed, const DiskCase& diskCase) {
    const DiskOperation& operation = undisturbed.operations.at(diskCase.operation - 1);
    const bool isOnce = diskCase.times == Times::Once;
    SCOPED_TRACE(std::string(Name(diskCase.fault)) + (isOnce ? " once" : " from then on") + " at operation " +
                 std::to_string(diskCase.operation) + ", " + Name(operation.call) + " " + operation.path);
    const auto project = ShortRun::CreateProjectWithSettings();
    FaultyDisk disk;
    disk.Fail(diskCase.fault, diskCase.operation, diskCase.times);
    const DiskOutcome outcome =
        ExpectDiskPromises(undisturbed, project, disk, isOnce ? MayLose::Nothing : MayLose::WhatTheDiskRefuses);
    EXPECT_TRUE(disk.HasFired()) << "the fault is not there";
    if (undisturbed.IsNewState(FilesOf(*project))) ExpectOrdinaryRun(undisturbed, project);
    return outcome;
}

void ExpectNothingLostByDeath(Undisturbed& undisturbed, std::size_t operation) {
    const DiskOperation& last = undisturbed.operations.at(operation - 1);
    SCOPED_TRACE("dies at operation " + std::to_string(operation) + ", " + Name(last.call) + " " + last.path);
    const auto project = ShortRun::CreateProjectWithSettings();
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // NOLINTNEXTLINE(clang-analyzer-deadcode.DeadStores): held until the process ends
        const auto soleUse = support::HoldFile(project->folder.File("Veltra.ini"), "Veltra");
        FaultyDisk disk;
        disk.Fail(DiskFault::Death, operation, Times::Once);
        ShortRun run({.disk = disk, .project = project});
        run.ReadSettings();
        run.Start();
        std::_Exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_EQ(WEXITSTATUS(status), FaultyDisk::deathStatus) << "it was to die there";
    const auto files = FilesOf(*project);
    ExpectWholeDocuments(files, undisturbed);
    EXPECT_TRUE(!files.contains(reportPath) || Of(files, reportPath) == undisturbed.Report()) << Of(files, reportPath);
    EXPECT_TRUE(undisturbed.Log().starts_with(Of(files, logPath))) << Of(files, logPath);
    undisturbed.ExpectKept(files, operation);
    if (undisturbed.IsNewState(files)) ExpectOrdinaryRun(undisturbed, project);
}
