// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Paths.h"

#include <gtest/gtest.h>

#include "support/modFileUtils.h"
#include "support/modRegistryUtils.h"

namespace {

using namespace support;

const std::string separator(1, PathSeparator());

TEST(Paths, JoinAndSplit) {
    struct Case {
        const char *folder, *name;
        std::string joined;
    };
    const Case cases[] = {{"C:\\a", "b.xmt", "C:\\a" + separator + "b.xmt"},
                          {"C:\\a\\", "b.xmt", "C:\\a\\b.xmt"},
                          {"/a/", "\\b/c", "/a/b/c"},
                          {"", "b", "b"},
                          {"/", "b", "/b"},
                          {"a", "", "a" + separator}};
    for (const auto& [folder, name, joined] : cases)
        EXPECT_EQ(JoinPath(folder, name), joined);

    EXPECT_EQ(FileNameOf("C:\\a/b.xmt") + FileNameOf("b.xmt") + FileNameOf("a/"), "b.xmtb.xmt");
    EXPECT_EQ(FolderOf("C:\\a/b.xmt") + "|" + FolderOf("b.xmt") + "|" + FolderOf("a\\b"), "C:\\a/||a\\");
    EXPECT_EQ(NativePath("a\\b/c"), "a" + separator + "b" + separator + "c");
}

TEST(modFileUtils, CountsSeparatorsFromTheEnd) {
    struct Case {
        const char* path;
        std::int16_t n;
        const char *with, *without, *folderName;
    };
    const Case cases[] = {{"C:\\a\\b.xmt", 0, "C:\\a\\", "C:\\a", "b.xmt"},
                          {"C:\\a\\b.xmt", 1, "C:\\", "C:", "a"},
                          {"C:\\a\\b.xmt", 2, "", "", ""},
                          {"C:\\a\\b.xmt", 32767, "", "", ""},
                          {"C:\\a\\b.xmt", -1, "", "", ""},
                          {"D:\\A\\B\\C\\D\\m.xmt", 2, "D:\\A\\B\\", "D:\\A\\B", "C"},
                          {"D:\\A/B\\C/D\\m.xmt", 2, "D:\\A/B\\", "D:\\A/B", "C"},
                          {"/A/B/C/D/m.xmt", 4, "/", "", "A"},
                          {"C:\\a\\", 0, "C:\\a\\", "C:\\a", ""},
                          {"b.xmt", 0, "", "", ""},
                          {"", 0, "", "", ""}};
    for (const auto& [path, n, with, without, folderName] : cases) {
        EXPECT_EQ(GetPathToNthBackslash(path, true, n), with) << path << " " << n;
        EXPECT_EQ(GetPathToNthBackslash(path, false, n), without) << path << " " << n;
        EXPECT_EQ(GetFolderNameAtDepth(path, n), folderName) << path << " " << n;
    }
}

TEST(modFileUtils, LastTwoPathParts) {
    for (const auto& [path, parts] : {std::pair{"C:\\a\\folder\\file.xmt", "folder\\file.xmt"},
                                      {"/a/folder/file.xmt", "folder/file.xmt"},
                                      {"\\file.xmt", ""},
                                      {"file.xmt", ""}})
        EXPECT_EQ(GetLastTwoPathParts(path), parts);
}

class modRegistryUtils : public testing::Test {
  protected:
    const std::string machine = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Dravik\\Orvanel\\";
    const std::string lastFiles = "HKEY_CURRENT_USER\\Software\\Dravik\\Orvanel\\Orvanel\\LastFiles\\";
    std::map<std::string, std::string> values;
    RegistryReader reader = [this](const std::string& path) -> std::optional<std::string> {
        const auto found = values.find(path);
        if (found == values.end()) return std::nullopt;
        return found->second;
    };
};

TEST_F(modRegistryUtils, BuildsTheHostsFolders) {
    values = {{machine + "Install\\DataLocation", "/data"},
              {machine + "Install\\AppLocation", "/app/"},
              {lastFiles + "Project", "Caffeine"}};
    const std::string projects = "/data" + separator + "Projects" + separator;
    EXPECT_EQ(GetHostDataLocation(reader), projects);
    EXPECT_EQ(GetElementTablePath(reader), "/app/bin" + separator + "QvElements.ini");
    EXPECT_EQ(GetLastUsedProjectPath(reader), projects + "Caffeine" + separator);

    values[lastFiles + "SubProject"] = "Week 2";
    EXPECT_EQ(GetLastUsedProjectPath(reader), projects + "Caffeine" + separator + "Week 2" + separator);
    values.erase(lastFiles + "Project");
    EXPECT_EQ(GetLastUsedProjectPath(reader), projects);
}

TEST_F(modRegistryUtils, AMissingValueOrAFailingReadGivesTheNeutralResult) {
    const RegistryReader failing = [](const std::string&) -> std::optional<std::string> {
        throw std::runtime_error("no registry");
    };
    values = {{lastFiles + "Project", "Caffeine"}};
    for (const auto& read : {reader, failing, RegistryReader()}) {
        EXPECT_EQ(GetHostDataLocation(read), "");
        EXPECT_EQ(GetLastUsedProjectPath(read), "");
        EXPECT_EQ(GetElementTablePath(read), "");
        EXPECT_EQ(GetQueueSampleStatus(read), 0);
    }
}

TEST_F(modRegistryUtils, QueueStatusIsASixteenBitNumber) {
    for (const auto& [text, status] : {std::pair{"4", 4}, {" 2 ", 2}, {"70000", 0}, {"done", 0}, {"", 0}}) {
        values[machine + "QueueSvr\\Current Sample Status"] = text;
        EXPECT_EQ(GetQueueSampleStatus(reader), status) << text;
    }
}

}  // namespace
