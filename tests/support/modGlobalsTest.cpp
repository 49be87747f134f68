// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/modGlobals.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/DateTexts.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "tests/support_files/TempFolder.h"

namespace {

using namespace support;

std::tm ThirteenthOfMay(int hour) {
    std::tm time{};
    time.tm_year = 2024 - 1900;
    time.tm_mon = 4;
    time.tm_mday = 13;
    time.tm_hour = hour;
    time.tm_min = 5;
    time.tm_sec = 9;
    time.tm_wday = 1;
    return time;
}

const DateFormat yearFirst{"%Y-%m-%d", "%H:%M:%S", "C"};
const DateFormat dayFirst{"%d.%m.%Y", "%T", "no such locale"};

TEST(DateTexts, GeneralDateAndRunTimeTag) {
    struct Case {
        DateFormat format;
        int hour;
        const char *general, *tag;
    };
    const Case cases[] = {
        {{}, 15, "5/13/2024 3:05:09 PM", "(5-13-2024, 3h05m09 PM)"},
        {{}, 0, "5/13/2024 12:05:09 AM", "(5-13-2024, 12h05m09 AM)"},
        {yearFirst, 15, "2024-05-13 15:05:09", "(2024-05-13, 15h05m09)"},
        {dayFirst, 3, "13.05.2024 03:05:09", "(13.05.2024, 03h05m09)"},
    };
    for (const auto& [format, hour, general, tag] : cases) {
        EXPECT_EQ(GeneralDateText(format, ThirteenthOfMay(hour)), general);
        EXPECT_EQ(GetRunTimeTag(general), tag);
    }
    for (const auto& [pattern, whole] : {std::pair{"%H:%M:%S", "%H:%M:%S"},
                                         {"%r", "%r"},
                                         {"%I:%M:%OS %p", "%I:%M:%OS %p"},
                                         {"kl. %H.%M", "kl. %H.%M.%S"},
                                         {"%-I:%M %p", "%-I:%M:%S %p"},
                                         {"%R %%", "%R:%S %%"},
                                         {"%H%", "%H% %H:%M:%S"}})
        EXPECT_EQ(WithSeconds(pattern), whole);
    EXPECT_EQ(FormatDateText({}, "%A %B", ThirteenthOfMay(0)), "Monday May");
    EXPECT_EQ(FormatDateText({}, "", ThirteenthOfMay(0)), "");
    EXPECT_EQ(GetRunTimeTag(""), "()");
}

TEST(modGlobals, MakesTheOutputFolderOrReturnsNothing) {
    const TempFolder folder;
    const std::string general = "5/13/2024 3:45:12 PM";
    const std::string made = folder.File("Caffeine Veltra (5-13-2024, 3h45m12 PM)");
    for (const char* start : {"/Caffeine Veltra", "/Caffeine Veltra/", "\\Caffeine Veltra\\"}) {
        const std::string path = folder.Path() + start[0] + FileNameOf(made) + PathSeparator();
        EXPECT_EQ(MakeOutputFolder(folder.Path() + start, general), path);
        EXPECT_EQ(MakeOutputFolder(folder.Path() + start, general), "") << "there is one already";
        std::filesystem::remove(made);
    }
    EXPECT_EQ(MakeOutputFolder(folder.File("Caffeine Veltra"), general), made + PathSeparator());
    EXPECT_EQ(MakeOutputFolder(folder.File("Caf/feine Veltra"), general), "");
    EXPECT_EQ(SubFolders(folder.Path()), std::vector<std::string>{FileNameOf(made)});

    AppendToFile(folder.File("x (1)"), "");
    EXPECT_EQ(MakeOutputFolder(folder.File("x"), "1"), "");
    EXPECT_EQ(MakeOutputFolder(folder.File("x (1)/y"), "1"), "");
}

TEST(modGlobals, AppendsLinesAndDropsFailures) {
    const TempFolder folder;
    const std::string path = folder.File("Log.txt");
    AppendLineToFile(path, "one");
    AppendLineToFile(path, "");
    AppendLineToFile("", "lost");
    AppendLineToFile(" \t", "lost");
    AppendLineToFile(folder.Path(), "lost");
    EXPECT_EQ(ReadWholeFile(path), "one\r\n\r\n");
    EXPECT_EQ(FilesIn(folder.Path()), std::vector<std::string>{"Log.txt"});
    EXPECT_FALSE(FileExists(" \t"));
}

TEST(modGlobals, CompoundNameExcess) {
    for (const auto& [length, excess] : {std::pair{0, 0}, {31, 0}, {32, 1}, {33, 2}, {34, 3}, {40, 9}, {1031, 1000}})
        EXPECT_EQ(GetCompoundNameExcess(std::string(static_cast<std::size_t>(length), 'x')), excess) << length;
    std::string umlauts;
    for (int i = 0; i < 31; ++i)
        umlauts += "\xC3\xA4";
    EXPECT_EQ(GetCompoundNameExcess(umlauts), 0);
    EXPECT_EQ(GetCompoundNameExcess(umlauts + "x"), 1);
}

}  // namespace
