// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/FileNames.h"

#include <gtest/gtest.h>

namespace {

TEST(FileNames, SayWhyANameCannotBeThatOfAFile) {
    std::vector<std::pair<std::string, std::string>> cases = {
        {"", "cannot be empty"},
        {std::string(256, 'x'), "cannot have more than 255 bytes"},
        {"Caf\xE9", "cannot hold bytes that are not UTF-8"},
        {"\xC0\xAF", "cannot hold bytes that are not UTF-8"},  // "/" written too long
        {"a\tb", "cannot hold the control character 0x09"},
        {std::string("a\0", 2), "cannot hold the control character 0x00"},
        {" a", "cannot begin with a blank"},
        {"a ", "cannot end with a blank"},
        {".", "cannot end with a dot"},
        {"..", "cannot end with a dot"},
    };
    for (const char* name : {"Caffeine", "Caf\xC3\xA9 (d3).x", "Console", "COM0", "COM10", "a..b"})
        cases.push_back({name, ""});
    cases.push_back({std::string(255, 'x'), ""});
    for (const char refused : std::string("/\\:<>|?*"))
        cases.push_back({std::string("a") + refused, std::string("cannot hold \"") + refused + '"'});
    cases.push_back({"\"", "cannot hold '\"'"});
    const std::pair<const char*, const char*> devices[] = {{"con", "CON"},       {"NUL.x.y", "NUL"},
                                                           {"Prn .txt", "PRN"},  {"aux", "AUX"},
                                                           {"COM1", "COM1"},     {"com\xC2\xB3", "COM\xC2\xB3"},
                                                           {"conin$", "CONIN$"}, {"lpt9.ini", "LPT9"}};
    for (const auto& [name, device] : devices)
        cases.push_back({name, std::string("cannot be that of the device ") + device});
    for (const auto& [name, problem] : cases) {
        EXPECT_EQ(support::FileNameProblem(name), problem) << name;
        EXPECT_EQ(support::CompoundNameProblem(name),
                  problem.empty() ? "" : "Compound name " + problem + ", please update the Settings.");
    }
}

TEST(FileNames, KindsOfFilesWhateverTheCase) {
    for (const char* path : {"x.ini", "X.INI", "a.b.Ini", "/d.txt/x.ini", "d\\x.ini"}) {
        EXPECT_TRUE(support::IsFileOfKind(path, ".ini")) << path;
        EXPECT_EQ(support::WithoutExtension(path, ".INI").size() + 4, std::string(path).size()) << path;
    }
    for (const char* path : {".ini", "/d/.ini", "ini", "x.ini.bak", "x.ini/", "x.txt", ""}) {
        EXPECT_FALSE(support::IsFileOfKind(path, ".ini")) << path;
        EXPECT_EQ(support::WithoutExtension(path, ".ini"), path);
    }
}

}  // namespace
