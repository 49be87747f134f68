// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef _WIN32

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "support/DateTexts.h"
#include "support/Files.h"
#include "support/Platform.h"
#include "support/PlatformPosixText.h"
#include "tests/support_files/FaultyDisk.h"
#include "tests/support_files/TempFolder.h"

namespace {

using namespace support;
namespace fs = std::filesystem;

/// What the operation says when it fails.
std::string ErrorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const FileError& error) {
        return error.what();
    }
    return "no error";
}

/// An ordinary user's rights while it lives, where the tests run as root, whom permission bits do not stop.
class OrdinaryUser {
  public:
    OrdinaryUser() {
        constexpr uid_t nobody = 65534;
        if (wasRoot_ && ::seteuid(nobody) != 0) throw std::runtime_error("cannot give up root's rights");
    }
    ~OrdinaryUser() {
        if (wasRoot_ && ::seteuid(0) != 0) std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    bool wasRoot_ = ::geteuid() == 0;
};

/// A desktop whose opener is this very program (see main), or that has none.
bool OpensWith(const TempFolder& folder, const char* document) {
    const char* const before = std::getenv("PATH");
    const std::string path = before == nullptr ? "" : before;
    ::setenv("PATH", ("/nowhere:" + folder.Path()).c_str(), 1);
    const bool opened = OpenWithDesktop(folder.File(document));
    ::setenv("PATH", path.c_str(), 1);
    return opened;
}

TEST(PlatformPosix, DocumentsOpenInTheDesktopsProgram) {
    const TempFolder folder;
    EXPECT_FALSE(OpensWith(folder, "a document's name"));
    fs::create_symlink(fs::read_symlink("/proc/self/exe"), folder.File("xdg-open"));
    EXPECT_TRUE(OpensWith(folder, "a document's name"));
    EXPECT_FALSE(OpensWith(folder, "of no known kind"));
    EXPECT_TRUE(OpensWith(folder, "waits for its program"));
}

TEST(PlatformPosix, AReadOnlyFileStays) {
    const TempFolder folder;
    fs::permissions(folder.Path(), fs::perms::all);
    const std::string path = folder.File("kept.txt");
    WriteWholeFile(path, "old");
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const OrdinaryUser user;
    EXPECT_EQ(ErrorOf([&] { WriteWholeFile(path, "new"); }), "Cannot write " + path + ": Permission denied");
    EXPECT_EQ(ErrorOf([&] { AppendToFile(path, "new"); }), "Cannot append to " + path + ": Permission denied");
    EXPECT_EQ(ReadWholeFile(path), "old");
    EXPECT_EQ(FilesIn(folder.Path()), std::vector<std::string>{"kept.txt"});
}

TEST(PlatformPosix, AReplacedFileKeepsItsRightsAndTheLinkToIt) {
    const TempFolder folder;
    const std::string path = folder.File("a.xmt");
    const std::string link = folder.File("link.xmt");
    fs::create_symlink("middle.xmt", link);
    fs::create_symlink("a.xmt", folder.File("middle.xmt"));
    WriteWholeFile(link, "made behind a link that led nowhere");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path)));
    for (const auto rights : {fs::perms::owner_read | fs::perms::owner_write, fs::perms::all}) {
        fs::permissions(path, rights);
        WriteWholeFile(link, "new");
        EXPECT_EQ(fs::status(path).permissions(), rights);
        EXPECT_TRUE(fs::is_symlink(link) && fs::is_symlink(folder.File("middle.xmt")));
    }
    EXPECT_EQ(ReadWholeFile(path), "new");
    EXPECT_EQ(FilesIn(folder.Path()), (std::vector<std::string>{"a.xmt", "link.xmt", "middle.xmt"}));

    fs::create_directory(folder.File("b"));
    fs::create_symlink("../a.xmt", folder.File("b/far.xmt"));
    const FaultyDisk disk;
    FlushFolderOf(folder.File("b/far.xmt"), disk);
    const std::string& flushed = disk.Operations().back().path;
    EXPECT_TRUE(fs::equivalent(flushed, folder.Path())) << flushed << ": the name that has changed is elsewhere";
}

TEST(PlatformPosix, LockAndTemporaryFilesTouchNothingThatExists) {
    const TempFolder folder;
    const std::string victim = folder.File("victim");
    const std::string path = folder.File("a.ini");
    const std::string lock = path + ".in-use";
    const std::string temporary = path + ".tmp-" + std::to_string(ProcessNumber());
    WriteWholeFile(victim, "untouched");
    const auto isRefused = [&](const char* why) {
        EXPECT_EQ(ErrorOf([&] { HoldFile(path, "Veltra"); }), "Cannot lock " + path + ": " + lock + why);
    };
    for (const char* target : {"victim", "missing"}) {
        fs::create_symlink(target, lock);
        fs::create_symlink(target, temporary);
        isRefused(" is a link, remove it");
        WriteWholeFile(path, "content");
        EXPECT_TRUE(fs::is_symlink(lock) && fs::is_symlink(temporary)) << target;
        fs::remove(lock);
        fs::remove(temporary);
    }
    fs::create_directory(lock);
    isRefused(" is no ordinary file, remove it");
    fs::remove(lock);
    fs::create_hard_link(victim, lock);
    fs::create_hard_link(victim, temporary);
    EXPECT_NE(HoldFile(path, "Veltra"), nullptr);
    WriteWholeFile(path, "content");
    EXPECT_EQ(ReadWholeFile(victim), "untouched");
    EXPECT_EQ(ReadWholeFile(path), "content");
    EXPECT_FALSE(fs::exists(folder.File("missing")));
}

TEST(PlatformPosix, WhatIsHeldIsTheFileAndTheFolderNotTheirNames) {
    const TempFolder folder;
    CreateFolders(folder.File("project"));
    fs::create_directory_symlink("project", folder.File("other"));
    WriteWholeFile(folder.File("project/a.ini"), "");
    fs::create_symlink("project/a.ini", folder.File("b.ini"));
    const auto file = HoldFile(folder.File("b.ini"), "Veltra");
    const auto held = HoldFolder(folder.File("project"), "Veltra");
    const std::string end =
        " is in use by another Veltra (process " + std::to_string(ProcessNumber()) + "), end that one first";
    EXPECT_EQ(ErrorOf([&] { HoldFile(folder.File("other/a.ini"), "Veltra"); }), folder.File("other/a.ini") + end);
    EXPECT_EQ(ErrorOf([&] { HoldFolder(folder.File("other/"), "Veltra"); }), folder.File("other/") + end);
}

TEST(PlatformPosix, AFileIsHeldUntilItsHolderDies) {
    const TempFolder folder;
    const std::string path = folder.File("a.ini");
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        [[maybe_unused]] const auto held = HoldFile(path, "Veltra");  // until the process ends
        if (::write(ends[1], "x", 1) == 1) ::pause();
        std::_Exit(1);
    }
    char told = 0;
    ASSERT_EQ(::read(ends[0], &told, 1), 1);
    EXPECT_EQ(ErrorOf([&] { HoldFile(path, "Veltra"); }),
              path + " is in use by another Veltra (process " + std::to_string(child) + "), end that one first");
    ::kill(child, SIGKILL);
    EXPECT_EQ(::waitpid(child, nullptr, 0), child);
    EXPECT_NE(HoldFile(path, "Veltra"), nullptr);
    for (const int end : ends)
        ::close(end);
}

TEST(PlatformPosix, ProgramFolderHoldsTheRunningProgram) {
    EXPECT_EQ(ProgramFolder(), fs::canonical("/proc/self/exe").parent_path().string());
}

/// Sets the variables that choose the locale, and puts them back.
class LocaleVariables {
  public:
    using Values = std::map<std::string, std::string>;
    explicit LocaleVariables(const Values& values) {
        for (const char* name : names)
            if (const char* old = std::getenv(name)) old_[name] = old;
        Set(values);
    }
    ~LocaleVariables() { Set(old_); }
    LocaleVariables(const LocaleVariables&) = delete;
    LocaleVariables& operator=(const LocaleVariables&) = delete;

  private:
    static void Set(const Values& values) {
        for (const char* name : names)
            ::unsetenv(name);
        for (const auto& [name, value] : values)
            ::setenv(name.c_str(), value.c_str(), 1);
    }
    static constexpr const char* names[] = {"LC_ALL", "LC_TIME", "LANG"};
    Values old_;
};

TEST(PlatformPosix, TextsOfOtherEncodingsBecomeUtf8) {
    EXPECT_EQ(Utf8From("M\xE4rz 2024", "ISO-8859-1"), "M\xC3\xA4rz 2024");
    EXPECT_EQ(Utf8From("M\xE4rz", "ANSI_X3.4-1968"), "M?rz");
    EXPECT_EQ(Utf8From("M\xE4rz", "no such encoding"), "M?rz");
    EXPECT_EQ(Utf8From(std::string(300, '\xE4'), "ISO-8859-1").size(), 600U);
}

TEST(PlatformPosix, WithoutAKnownLocaleTheFixedFormCounts) {
    std::tm time{};
    time.tm_year = 2024 - 1900;
    time.tm_mon = 4;
    time.tm_mday = 13;
    time.tm_hour = 15;
    time.tm_min = 5;
    time.tm_sec = 9;
    for (const auto& values : {LocaleVariables::Values{},
                               {{"LC_ALL", ""}, {"LANG", "C"}},
                               {{"LC_ALL", "C.UTF-8"}},
                               {{"LC_TIME", "POSIX"}},
                               {{"LANG", "xx_YY.UTF-8"}}}) {
        const LocaleVariables variables(values);
        const DateFormat format = DateFormatOfProcess();
        EXPECT_EQ(GeneralDateText(format, time), "5/13/2024 3:05:09 PM");
        EXPECT_EQ(format.localeName, "C");
    }
}

/// In a process of its own, which starts without standard output and may write files of 4 bytes only.
TEST(PlatformPosix, GuardsAProcessThatWasStartedPoorly) {
    const TempFolder folder;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(STDOUT_FILENO);
        GuardProcess();
        const bool outputFails = ::write(STDOUT_FILENO, "x", 1) < 0;
        const rlimit limit{4, 4};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const std::string path = folder.File("new");
        const bool writingFails =
            ErrorOf([&] { WriteWholeFile(path, "12345"); }) == "Cannot write " + path + ": File too large";
        ::_exit(outputFails && writingFails ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace

#endif
