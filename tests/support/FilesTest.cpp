// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Files.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>

#include "support/FolderDeferringDisk.h"
#include "support/Paths.h"
#include "support/Platform.h"
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

class Files : public testing::Test {
  protected:
    const TempFolder folder;
};

TEST_F(Files, WritesWholeFilesAndReadsThemBack) {
    const std::string path = folder.File("f\xC3\xBC.txt");
    std::string bytes("a\r\n\0\xFF", 5);
    WriteWholeFile(path, bytes);
    EXPECT_EQ(ReadWholeFile(path), bytes);
    WriteWholeFile(folder.Path() + "\\f\xC3\xBC.txt", "");
    EXPECT_EQ(ReadWholeFile(path), "");
    bytes.assign(3'000'000, 'x');
    WriteWholeFile(path, bytes);
    EXPECT_EQ(ReadWholeFile(path, bytes.size()), bytes);
    EXPECT_EQ(ErrorOf([&] { ReadWholeFile(path, bytes.size() - 1); }),
              "Cannot read " + path + ": it has 3000000 bytes, more than the 2999999 allowed");
    EXPECT_EQ(FilesIn(folder.Path()), std::vector<std::string>{"f\xC3\xBC.txt"});
}

TEST_F(Files, AFailedWriteSaysWhyAndChangesNothing) {
    const std::string target = folder.File("target");
    fs::create_directory(target);
    EXPECT_EQ(ErrorOf([&] { WriteWholeFile(target, "new"); }), "Cannot write " + target + ": Is a directory");
    const std::string orphan = folder.File("missing/a.txt");
    EXPECT_EQ(ErrorOf([&] { WriteWholeFile(orphan, "new"); }),
              "Cannot write " + orphan + ": No such file or directory");
    EXPECT_EQ(ErrorOf([&] { AppendToFile(orphan, "new"); }),
              "Cannot append to " + orphan + ": No such file or directory");
    EXPECT_EQ(ErrorOf([&] { ReadWholeFile(orphan); }), "Cannot read " + orphan + ": No such file or directory");
    EXPECT_EQ(ErrorOf([&] { ReadWholeFile(target); }), "Cannot read " + target + ": it is a folder");
    EXPECT_EQ(ErrorOf([&] { FilesIn(orphan); }), "Cannot list " + orphan + ": No such file or directory");
    EXPECT_EQ(FilesIn(folder.Path()), std::vector<std::string>{});
    EXPECT_EQ(FilesIn(target), std::vector<std::string>{});
}

TEST_F(Files, WholeFileWriterReplacesOnCommitOnly) {
    const std::string path = folder.File("a.vesk");
    WriteWholeFile(path, "old");
    {
        const WholeFileWriter writer(path, "half");
        EXPECT_EQ(ReadWholeFile(writer.TemporaryPath()), "half");
    }
    EXPECT_EQ(ReadWholeFile(path), "old");
    {
        WholeFileWriter first(path, "1");
        WholeFileWriter second(path, "2");
        second.Commit();
        EXPECT_EQ(ReadWholeFile(path), "2");
        AppendToFile(first.TemporaryPath(), "new");
        first.Commit();
    }
    EXPECT_EQ(ReadWholeFile(path), "1\r\nnew");
    EXPECT_EQ(FilesIn(folder.Path()), std::vector<std::string>{"a.vesk"});
}

TEST_F(Files, AppendsToAnOldOrNewFile) {
    AppendToFile(folder.File("log"), "one\r\n");
    AppendToFile(folder.Path() + "\\log", "two");
    EXPECT_EQ(ReadWholeFile(folder.File("log")), "one\r\ntwo");
    AppendToFile(folder.File("log"), "the line before was cut off\r\n");
    EXPECT_EQ(ReadWholeFile(folder.File("log")), "one\r\ntwo\r\nthe line before was cut off\r\n");
}

TEST_F(Files, FlushesWhatIsToOutlastAPowerCut) {
    const FaultyDisk disk;
    const std::string path = folder.File("a");
    const std::string folderEnd = FileNameOf(folder.Path()) + PathSeparator();
    std::size_t seen = 0;
    const auto flushed = [&] {
        std::string calls;
        for (; seen < disk.Operations().size(); ++seen) {
            const auto& [call, where] = disk.Operations()[seen];
            if (call == DiskCall::Flush) calls += FileNameOf(where).starts_with("a") ? " content" : where;
            if (call == DiskCall::FlushFolder) calls += where.ends_with(folderEnd) ? " name" : where;
            if (call == DiskCall::Rename) calls += " renamed";
        }
        return calls;
    };
    WriteWholeFile(path, "1", disk);
    EXPECT_EQ(flushed(), " content renamed name");
    WriteWholeFile(path, "2", disk, Durability::Process);
    EXPECT_EQ(flushed(), " renamed");
    AppendToFile(path, "3\r\n", disk);
    EXPECT_EQ(flushed(), " content");
    AppendToFile(path, "4\r\n", disk, Durability::Process);
    EXPECT_EQ(flushed(), "");
    FlushFile(path, disk);
    EXPECT_EQ(flushed(), " content");
    AppendToFile(folder.File("a2"), "new\r\n", disk, Durability::Process);
    EXPECT_EQ(flushed(), " name");
    FlushFile(folder.File("a3"), disk);
    EXPECT_EQ(flushed(), "") << "what is not there is not made";

    const FolderDeferringDisk deferring(disk);
    WriteWholeFile(path, "5", deferring);
    WriteWholeFile(folder.File("a4"), "6", deferring);
    EXPECT_EQ(flushed(), " content renamed content renamed");
    deferring.FlushDeferred();
    deferring.FlushDeferred();
    EXPECT_EQ(flushed(), " name");
    EXPECT_EQ(FilesIn(folder.Path()), (std::vector<std::string>{"a", "a2", "a4"}));
}

TEST_F(Files, WhatDeadWritersLeftIsRemoved) {
    const std::string deadProcess = "4194305";  // above every number that is given out
    const std::string running = std::to_string(ProcessNumber());
    const std::vector<std::string> others = {"a.xmt.tmp-", "a.xmt.tmp-1x", ".tmp-" + deadProcess, "b.tmp-" + running};
    for (const auto& name : others)
        WriteWholeFile(folder.File(name), "");
    const std::string deep = folder.File("Data/Run");
    CreateFolders(deep);
    for (const auto& path : {folder.Path(), deep})
        for (const char* number : {"", "-2"})
            AppendToFile(JoinPath(path, "a.xmt.tmp-" + deadProcess + number), "half");
    WriteWholeFile(folder.File("a.xmt"), "whole");
    EXPECT_THAT(FilesIn(folder.Path()),
                testing::UnorderedElementsAre("a.xmt", others[0], others[1], others[2], others[3]));
    RemoveLeftoversIn(folder.Path(), 1);
    EXPECT_EQ(FilesIn(deep).size(), 2U);
    EXPECT_THAT(FilesIn(folder.Path()), testing::UnorderedElementsAre("a.xmt", others[0], others[1], others[2]));
    RemoveLeftoversIn(folder.Path(), 2);
    EXPECT_EQ(FilesIn(deep), std::vector<std::string>());
}

TEST_F(Files, OnlyOneHoldsAFile) {
    const std::string path = folder.File("a.ini");
    WriteWholeFile(path + ".in-use", "17");  // of a process that has died
    auto held = HoldFile(path, "Veltra");
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(
        ErrorOf([&] { HoldFile(path, "Veltra"); }),
        path + " is in use by another Veltra (process " + std::to_string(ProcessNumber()) + "), end that one first");
    EXPECT_NE(HoldFile(folder.File("b.ini"), "Veltra"), nullptr);
    held.reset();
    EXPECT_EQ(FilesIn(folder.Path()), std::vector<std::string>());
    EXPECT_NE(HoldFile(path, "Veltra"), nullptr);
    EXPECT_EQ(HoldFile(folder.File("missing/a.ini"), "Veltra"), nullptr);
}

TEST_F(Files, FoldersAndWhatIsInThem) {
    const std::string file = folder.File("file");
    CreateFolders(folder.Path() + "\\a/b/");
    CreateFolders(folder.File("a/b"));
    AppendToFile(file, "");
    AppendToFile(folder.File("b file"), "");
    for (const auto& [path, isFile, isFolder] : {std::tuple{folder.File("a"), false, true},
                                                 {folder.Path() + "\\a\\b\\", false, true},
                                                 {file, true, false},
                                                 {folder.File("c"), false, false},
                                                 {std::string(), false, false}}) {
        EXPECT_EQ(FileExists(path), isFile) << path;
        EXPECT_EQ(FolderExists(path), isFolder) << path;
    }
    EXPECT_EQ(FilesIn(folder.Path()), (std::vector<std::string>{"b file", "file"}));
    EXPECT_EQ(SubFolders(folder.Path()), std::vector<std::string>{"a"});
    EXPECT_THAT(ErrorOf([&] { CreateFolders(file); }), testing::StartsWith("Cannot create folder " + file + ": "));
    EXPECT_THAT(ErrorOf([&] { CreateFolders(file + "/x"); }), testing::StartsWith("Cannot create folder " + file));
    RemoveFileIfThere(file);
    RemoveFileIfThere(file);
    EXPECT_FALSE(FileExists(file));
}

TEST(Platform, UserNameFitsItsBuffer) {
    EXPECT_LE(CurrentUserName().size(), 30U);
}

}  // namespace
