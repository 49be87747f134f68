// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifdef _WIN32

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <thread>

#include "support/DateTexts.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/modFileUtils.h"
#include "tests/support_files/TempFolder.h"

namespace {

using namespace support;
namespace fs = std::filesystem;

TEST(PlatformWindows, AFileThatAnotherProgramHoldsOpenStays) {
    const TempFolder folder;
    const std::string path = folder.File("kept.txt");
    WriteWholeFile(path, "old");
    const HANDLE other = ::CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(other, INVALID_HANDLE_VALUE);
    EXPECT_THROW(WriteWholeFile(path, "new"), FileError);
    EXPECT_THROW(AppendToFile(path, "new"), FileError);
    EXPECT_THROW(PlatformWriteIni(path, {{"V", "k", "v"}}, SystemDisk()), FileError);
    ::CloseHandle(other);
    EXPECT_EQ(ReadWholeFile(path), "old");
    EXPECT_EQ(FilesIn(folder.Path()), std::vector<std::string>{"kept.txt"});
}

TEST(PlatformWindows, ProgramFolderHoldsTheRunningProgram) {
    EXPECT_TRUE(FileExists(JoinPath(ProgramFolder(), "test_support.exe"))) << ProgramFolder();
}

TEST(PlatformWindows, TheNullDeviceIsNoTerminal) {
    const HANDLE before = ::GetStdHandle(STD_INPUT_HANDLE);
    const HANDLE null = ::CreateFileA("NUL", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(null, INVALID_HANDLE_VALUE);
    ::SetStdHandle(STD_INPUT_HANDLE, null);
    EXPECT_FALSE(IsTerminal(StandardStream::Input));
    ::SetStdHandle(STD_INPUT_HANDLE, before);
    ::CloseHandle(null);
}

TEST(PlatformWindows, LocalesAndTheirPatterns) {
    struct Case {
        const char *locale, *date, *time, *names;
    };
    const Case cases[] = {{"en-US", "%-m/%-d/%Y", "%-I:%M:%S %p", "Monday May"},
                          {"en_US.UTF-8", "%-m/%-d/%Y", "%-I:%M:%S %p", "Monday May"},
                          {"en-GB", "%d/%m/%Y", "%H:%M:%S", "Monday May"},
                          {"sv-SE", "%Y-%m-%d", "%H:%M:%S", "m\xC3\xA5ndag maj"}};
    std::tm time{};
    time.tm_mon = 4;
    time.tm_wday = 1;
    time.tm_hour = 12;
    for (const auto& [locale, date, longTime, names] : cases) {
        DateFormat format;
        EXPECT_TRUE(LocaleDatePatterns(locale, format.shortDate, format.longTime)) << locale;
        EXPECT_EQ(format.shortDate, date) << locale;
        EXPECT_EQ(format.longTime, longTime) << locale;
        EXPECT_EQ(FormatTime(locale, "%A %B", time), names) << locale;
    }
    EXPECT_EQ(FormatTime("en-US", "%a %b %p", time), "Mon May PM");
    time.tm_mon = 7;
    EXPECT_EQ(FormatTime("fr-FR", "%B", time), "ao\xC3\xBBt");
    for (const char* unknown : {"", "C", "C.UTF-8", "POSIX", "no such locale"}) {
        std::string date = "old";
        std::string longTime = "old";
        EXPECT_FALSE(LocaleDatePatterns(unknown, date, longTime)) << unknown;
        EXPECT_EQ(date + longTime, "oldold");
        EXPECT_EQ(FormatTime(unknown, "%a %b %p", time), "Mon Aug PM") << unknown;
    }
    EXPECT_FALSE(ProcessLocaleName().empty());
    EXPECT_EQ(DateFormatOfProcess().localeName, ProcessLocaleName());
}

TEST(PlatformWindows, EveryConversion) {
    std::tm time{};
    time.tm_year = 2005 - 1900;
    time.tm_mday = 7;
    time.tm_min = 4;
    time.tm_sec = 3;
    EXPECT_EQ(FormatTime("C", "%F|%D|%T|%R|%r|%%|%y %-y %-d %-m %-H %-I %-M %-S|%", time),
              "2005-01-07|01/07/05|00:04:03|00:04|12:04:03 AM|%|05 5 7 1 0 12 4 3|%");
    EXPECT_EQ(FormatTime("C", "%%F%%", time), "%F%");
    EXPECT_THROW(FormatTime("C", "%k", time), std::invalid_argument);
}

TEST(PlatformWindows, PrivateProfilesInFoldersOutsideTheCodePage) {
    const TempFolder folder;
    for (const char* name : {"f\xC3\xBC", "\xCE\xB1\xD0\x96\xE4\xB8\xAD"}) {
        const std::string path = JoinPath(folder.File(name), "a.ini");
        CreateFolders(folder.File(name));
        WriteIniString(path, "V", "k", "\xCE\xB1 \xE4\xB8\xAD");
        EXPECT_EQ(ReadIniString(path, "V", "k"), "\xCE\xB1 \xE4\xB8\xAD") << name;
        EXPECT_EQ(ReadWholeFile(path), "[V]\r\nk=\xCE\xB1 \xE4\xB8\xAD\r\n") << name;
        EXPECT_EQ(FilesIn(folder.File(name)), std::vector<std::string>{"a.ini"});
    }
}

TEST(PlatformWindows, TheSaveLockKeepsOtherThreadsOutAndLeavesNothing) {
    const TempFolder folder;
    const std::string path = folder.File("a.ini");
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 20; ++round) {
                const auto lock = LockForSaving(path);
                ASSERT_NE(lock, nullptr);
                most = std::max<int>(most, ++inside);
                std::this_thread::yield();
                --inside;
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(most, 1);
    EXPECT_EQ(FilesIn(folder.Path()), std::vector<std::string>{});
    EXPECT_EQ(LockForSaving(folder.File("missing/a.ini")), nullptr);
}

}  // namespace

#endif
