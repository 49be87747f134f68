// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/IniDocument.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/Files.h"
#include "support/modFileUtils.h"
#include "tests/support_files/FaultyDisk.h"
#include "tests/support_files/TempFolder.h"

namespace {

using namespace support;

TEST(IniDocument, ReadsLikeThePrivateProfileFunctions) {
    struct Case {
        const char *what, *text;
        std::optional<std::string> value;  ///< of [V] k
    };
    const Case cases[] = {
        {"empty file", "", {}},
        {"missing section", "[W]\r\nk=v\r\n", {}},
        {"missing key", "[V]\r\nj=v\r\n", {}},
        {"empty value", "[V]\r\nk=\r\n", ""},
        {"line without =", "[V]\r\nk\r\n", {}},
        {"key before any section", "k=v\r\n[V]\r\n", {}},
        {"blanks and tabs around", " [ V ] \n \tk \t= \tv w\t \n", "v w"},
        {"split at the first =", "[V]\nk=a=b\n", "a=b"},
        {"case of section and key", "[v]\nK=v\n", "v"},
        {"junk behind the section", "[V] junk\nk=v\n", "v"},
        {"section that is not closed", "[W]\n[V\nk=v\n", {}},
        {"double quotes", "[V]\nk=\" v \"\n", " v "},
        {"single quotes", "[V]\nk=' v '\n", " v "},
        {"one pair only", "[V]\nk=\"\"v\"\"\n", "\"v\""},
        {"unbalanced quotes", "[V]\nk=\"v\n", "\"v"},
        {"mixed quotes", "[V]\nk=\"v'\n", "\"v'"},
        {"a lone quote", "[V]\nk=\"\n", "\""},
        {"no comment behind a value", "[V]\nk=v ; w # x\n", "v ; w # x"},
        {"# starts no comment", "[V]\n#k=w\nk=v\n", "v"},
        {"; starts a comment", "[V]\n ;k=w\n", {}},
        {"first key counts", "[V]\nk=v\nK=w\n", "v"},
        {"second section is never read", "[V]\nj=1\n[W]\n[v]\nk=w\n", {}},
        {"CR ends", "[V]\rk=v\rj=w", "v"},
        {"mixed line ends, none at the end", "\n[W]\r\n\r[V]\nj=w\rk=v", "v"},
        {"bytes above 127", "[V]\nk=\xE9\xC3\xA9\n", "\xE9\xC3\xA9"},
        {"byte order mark", "\xEF\xBB\xBF[V]\nk=v\n", "v"},
    };
    for (const auto& [what, text, value] : cases)
        EXPECT_EQ(IniDocument::Parse(text).Value("V", "k"), value) << what;
    EXPECT_EQ(IniDocument::Parse("[V]\n#k=w\n").Value(" v ", " #K\t"), "w");
}

TEST(IniDocument, KeepsOrderRepeatedKeysAndLineNumbers) {
    const auto document = IniDocument::Parse("; head\r\n[A]\r\nx=1\n ;z=9\ry=2\rx=3\n[B]\n[A]\n");
    std::string text;
    for (const auto& section : document.Sections()) {
        text += "[" + section.name + "]" + std::to_string(section.line);
        for (const auto& entry : section.entries)
            text += " " + entry.key + entry.value + "@" + std::to_string(entry.line);
    }
    EXPECT_EQ(text, "[A]2 x1@3 y2@5 x3@6[B]7[A]8");
    EXPECT_EQ(document.Find("A", "x")->line, 3);
    EXPECT_EQ(document.Find("C"), nullptr);
}

TEST(IniDocument, WritesOneValueAndKeepsTheRestByteForByte) {
    struct Case {
        const char* what;
        std::string before;
        const char* value;  ///< of [V] k
        std::string after;
    };
    const Case cases[] = {
        {"new file", "", "v", "[V]\r\nk=v\r\n"},
        {"new section at the end", "[W]\r\nk=1\r\n", "v", "[W]\r\nk=1\r\n[V]\r\nk=v\r\n"},
        {"new section behind an open line", "[W]\r\nk=1", "v", "[W]\r\nk=1\r\n[V]\r\nk=v\r\n"},
        {"new key at its section's end", "[V]\r\na=1\r\n\r\n[W]\r\n", "v", "[V]\r\na=1\r\nk=v\r\n\r\n[W]\r\n"},
        {"new key behind an open line", "[V]\na=1", "v", "[V]\na=1\r\nk=v\r\n"},
        {"new key behind an open section", "[V]", "v", "[V]\r\nk=v\r\n"},
        {"the first match, its spelling kept", "[v]\n\tK = 1 \nk=2\n[V]\nk=3\n", "v", "[v]\nK=v\nk=2\n[V]\nk=3\n"},
        {"never a second section", "[V]\n[W]\n[V]\nk=3\n", "v", "[V]\nk=v\r\n[W]\n[V]\nk=3\n"},
        {"comments, foreign lines, line ends", "; c\n\n[V] x\r\nno key\r; k=1\n k=1\r\rz\n", "v",
         "; c\n\n[V] x\r\nno key\r; k=1\nk=v\r\rz\n"},
        {"leading blanks dropped, no quoting", "[V]\nk=1\n", " \t\"v\" w", "[V]\nk=\"v\" w\n"},
        {"empty value", "[V]\nk=1\n", "", "[V]\nk=\n"},
        {"the value that stands", "\xEF\xBB\xBF[V]\n k = v\n", "v", "\xEF\xBB\xBF[V]\n k = v\n"},
        {"no byte order mark is written", "\xEF\xBB\xBF[V]\n k = 1\n", "v", "[V]\nk=v\n"},
        {"no section in a file of its own mark", "\xEF\xBB\xBF", "v", "[V]\r\nk=v\r\n"},
        {"bytes above 127", "[V]\n\xE9=1\n", "\xC3\xA9", "[V]\n\xE9=1\nk=\xC3\xA9\r\n"},
    };
    for (const auto& [what, before, value, after] : cases)
        EXPECT_EQ(WithIniValue(before, "V", "k", value), after) << what;

    for (const char* broken : {"a\nb", "a\rb", "\r\n"}) {
        EXPECT_THROW(WithIniValue("", "V", "k", broken), std::invalid_argument);
        EXPECT_THROW(WithIniValue("", "V", broken, "v"), std::invalid_argument);
        EXPECT_THROW(WithIniValue("", broken, "k", "v"), std::invalid_argument);
    }
}

TEST(IniFile, ReadsAtMost255BytesAndNothingFromWhatIsNotThere) {
    const TempFolder folder;
    const std::string path = folder.File("a.ini");
    EXPECT_EQ(ReadIniString(path, "V", "k"), "");
    EXPECT_EQ(ReadIniString(folder.Path(), "V", "k"), "");
    for (const std::size_t length : {254U, 255U, 256U, 1000U}) {
        WriteIniString(path, "V", "k", std::string(length, 'x'));
        EXPECT_EQ(ReadIniString(path, "v", "K"), std::string(std::min<std::size_t>(length, 255), 'x'));
    }
    std::string otherSeparators = path;
    std::replace(otherSeparators.begin(), otherSeparators.end(), '/', '\\');
    EXPECT_EQ(ReadIniString(otherSeparators, "V", "k").size(), 255U);
    EXPECT_EQ(ReadIniString(path, "V", "j"), "");
    EXPECT_EQ(ReadIniString(path, "W", "k"), "");
}

TEST(IniFile, AWriteThatFailsOrChangesNothingLeavesTheFile) {
    const TempFolder folder;
    const std::string path = folder.File("a.ini");
    WriteIniString(path, "V", "k", "v");
    EXPECT_EQ(ReadWholeFile(path), "[V]\r\nk=v\r\n");

    const auto longAgo = std::filesystem::last_write_time(path) - std::chrono::hours(1);
    std::filesystem::last_write_time(path, longAgo);
    WriteIniString(path, "V", "k", "v");
    WriteIniString(path, "V", "k", "line\nend");
    EXPECT_EQ(std::filesystem::last_write_time(path), longAgo);

    // Whatever fails, what is stored is not taken for missing and written anew.
    for (std::size_t operation = 1;; ++operation) {
        FaultyDisk disk;
        disk.Fail(DiskFault::InputOutput, operation, FaultyDisk::Times::Once);
        WriteIniString(path, "W", "k", std::to_string(operation), disk);
        EXPECT_TRUE(ReadWholeFile(path).starts_with("[V]\r\nk=v\r\n")) << operation;
        if (!disk.HasFired()) break;
    }

    WriteIniString(folder.File("missing/a.ini"), "V", "k", "v");
    WriteIniString(folder.Path(), "V", "k", "v");
    EXPECT_EQ(FilesIn(folder.Path()), std::vector<std::string>{"a.ini"});
    EXPECT_EQ(SubFolders(folder.Path()), std::vector<std::string>{});
}

}  // namespace
