// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Files.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "support/Paths.h"
#include "support/Platform.h"
#include "support/Text.h"

namespace support {
namespace {

[[noreturn]] void Fail(const std::string& operation, const std::string& path, const std::string& reason) {
    throw FileError(operation + " " + path + ": " + reason);
}

constexpr const char* temporaryMark = ".tmp-";

/// @param size what the file must have afterwards: a full disk may take less without a word
void WriteAll(OpenFile& file, std::string_view content, std::uint64_t size) {
    while (!content.empty()) {
        const std::size_t written = file.Write(content);
        if (written == 0) throw DiskError("only a part could be written");
        content.remove_prefix(written);
    }
    if (file.Size() < size) throw DiskError("only a part arrived on the disk");
}

void CutBack(OpenFile& file, std::uint64_t size) noexcept {
    try {
        file.CutTo(size);
    } catch (const DiskError&) {
        // The next line that is appended ends what is left.
    }
}

void FlushContent(OpenFile& file) {
    try {
        file.Flush();
    } catch (const DiskError&) {
        // What was written is in the file, also where the disk cannot flush it.
    }
}

/// @param path native
void FlushParent(const std::string& path, const Disk& disk) {
    try {
        disk.FlushFolder(FolderOf(path));
    } catch (const DiskError&) {
        // The file is in place even where a folder cannot be flushed, so that is no failure.
    }
}

/// Skips a whole number. @return nothing when the text does not begin with one
std::optional<std::uint64_t> TakeNumber(std::string_view& text) {
    std::uint64_t number = 0;
    const auto [stopped, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(stopped - text.data()));
    return number;
}

/// Which temporary files nobody writes any more: those of processes that have died, or where this one writes none, its
/// own too.
enum class Leftovers { OfDeadProcesses, AlsoOwn };

/// @param wholeName what the file was to become; empty for any
bool IsLeftover(std::string_view name, std::string_view wholeName, Leftovers leftovers) {
    const std::size_t mark = name.rfind(temporaryMark);
    if (mark == std::string_view::npos || mark == 0) return false;
    if (!wholeName.empty() && name.substr(0, mark) != wholeName) return false;
    name.remove_prefix(mark + std::string_view(temporaryMark).size());
    const auto number = TakeNumber(name);
    if (name.starts_with('-')) {
        name.remove_prefix(1);
        if (!TakeNumber(name)) return false;
    }
    if (!number || !name.empty()) return false;
    return !IsProcessRunning(*number) || (leftovers == Leftovers::AlsoOwn && *number == ProcessNumber());
}

void RemoveLeftovers(const std::string& folder, const std::string& wholeName, int levels, Leftovers leftovers,
                     const Disk& disk) noexcept {
    try {
        for (const FolderEntry& entry : disk.List(NativePath(folder))) {
            const std::string path = JoinPath(folder, entry.name);
            if (entry.kind == PathKind::Folder && levels > 0)
                RemoveLeftovers(path, wholeName, levels - 1, leftovers, disk);
            if (entry.kind == PathKind::File && IsLeftover(entry.name, wholeName, leftovers))
                RemoveFileIfThere(path, disk);
        }
    } catch (const std::exception&) {
        // They are in nobody's way.
    }
}

PathKind KindAt(const std::string& path, const Disk& disk) {
    try {
        return disk.Status(NativePath(path)).kind;
    } catch (const DiskError& error) {
        Fail("Cannot look at", path, error.what());
    }
}

std::string RealPath(const std::string& path, const Disk& disk) {
    try {
        return disk.RealPath(NativePath(path));
    } catch (const DiskError& error) {
        Fail("Cannot look at", path, error.what());
    }
}

std::vector<std::string> NamesIn(const std::string& path, PathKind kind, const Disk& disk) {
    std::vector<std::string> names;
    try {
        for (FolderEntry& entry : disk.List(NativePath(path)))
            if (entry.kind == kind) names.push_back(std::move(entry.name));
    } catch (const DiskError& error) {
        Fail("Cannot list", path, error.what());
    }
    return names;
}

/// @param lockPath what the file that tells is named after
std::shared_ptr<void> Hold(const std::string& lockPath, const std::string& path, const std::string& owner) {
    const SoleUse use = TrySoleUse(lockPath);
    if (!use.failure.empty()) Fail("Cannot lock", path, use.failure);
    if (use.takenByAnother)
        throw FileError(path + " is in use by another " + owner +
                        (use.holder.empty() ? "" : " (process " + use.holder + ")") + ", end that one first");
    return use.lock;
}

}  // namespace

std::string ReadWholeFile(const std::string& path, std::uint64_t sizeLimit, const Disk& disk) {
    const std::string native = NativePath(path);
    try {
        const PathKind kind = disk.Status(native).kind;
        if (kind == PathKind::Folder) Fail("Cannot read", path, "it is a folder");
        // Opening a pipe would wait for its other end.
        if (kind == PathKind::Other) Fail("Cannot read", path, "it is no ordinary file");
        const auto file = disk.Open(native, Disk::OpenFor::Reading);
        const std::uint64_t size = file->Size();
        if (size > sizeLimit)
            Fail("Cannot read", path,
                 "it has " + std::to_string(size) + " bytes, more than the " + std::to_string(sizeLimit) + " allowed");
        std::string content = file->Read(0, static_cast<std::size_t>(size));
        if (content.size() != size) Fail("Cannot read", path, "the file ended early");
        return content;
    } catch (const DiskError& diskError) {
        Fail("Cannot read", path, diskError.what());
    }
}

void WriteWholeFile(const std::string& path, std::string_view content, const Disk& disk, Durability durability) {
    WholeFileWriter(path, content, disk, durability).Commit();
}

WholeFileWriter::WholeFileWriter(const std::string& path, std::string_view content, const Disk& disk,
                                 Durability durability)
    : disk_(disk), durability_(durability), path_(path) {
    try {
        target_ = disk.RealPath(NativePath(path));
        RemoveLeftovers(FolderOf(target_), FileNameOf(target_), 0, Leftovers::OfDeadProcesses, disk);
        const auto file = CreateTemporary();
        WriteAll(*file, content, content.size());
        if (durability == Durability::PowerCut) file->Flush();
        file->Close();
    } catch (const DiskError& error) {
        RemoveFileIfThere(temporaryPath_, disk);
        Fail("Cannot write", path, error.what());
    }
}

WholeFileWriter::~WholeFileWriter() {
    RemoveFileIfThere(temporaryPath_, disk_);
}

/// Nothing that exists is ever written to: not what another thread writes, nor what a link of that name leads to.
std::unique_ptr<OpenFile> WholeFileWriter::CreateTemporary() {
    constexpr int mostNames = 1000;
    const std::string first = target_ + temporaryMark + std::to_string(ProcessNumber());
    for (int i = 1; i <= mostNames; ++i) {
        const std::string name = i == 1 ? first : first + "-" + std::to_string(i);
        if (auto file = disk_.Create(name)) {
            temporaryPath_ = name;
            return file;
        }
    }
    throw DiskError("the names of its temporary files are taken, remove " + first + " and those that begin so");
}

void WholeFileWriter::Commit() {
    try {
        disk_.Rename(temporaryPath_, target_);
    } catch (const DiskError& error) {
        Fail("Cannot write", path_, error.what());
    }
    temporaryPath_.clear();
    if (durability_ == Durability::PowerCut) FlushParent(target_, disk_);
}

void RemoveLeftoversIn(const std::string& folder, int levels, const Disk& disk) noexcept {
    RemoveLeftovers(folder, "", levels, Leftovers::AlsoOwn, disk);
}

void AppendToFile(const std::string& path, std::string_view text, const Disk& disk, Durability durability) {
    const std::string native = NativePath(path);
    try {
        const auto file = disk.Open(native, Disk::OpenFor::Appending);
        const std::uint64_t before = file->Size();
        const bool isCutOff = before > 0 && !text.empty() && file->Read(before - 1, 1) != "\n";
        const std::string lines = (isCutOff ? crLf : "") + std::string(text);
        try {
            WriteAll(*file, lines, before + lines.size());
        } catch (const DiskError&) {
            CutBack(*file, before);
            throw;
        }
        if (durability == Durability::PowerCut) FlushContent(*file);
        if (before == 0) FlushParent(native, disk);
    } catch (const DiskError& error) {
        Fail("Cannot append to", path, error.what());
    }
}

void FlushFile(const std::string& path, const Disk& disk) noexcept {
    try {
        if (FileExists(path, disk)) FlushContent(*disk.Open(NativePath(path), Disk::OpenFor::Appending));
    } catch (const std::exception&) {
        // The file is as it was.
    }
}

void FlushFolderOf(const std::string& path, const Disk& disk) noexcept {
    try {
        FlushParent(disk.RealPath(NativePath(path)), disk);
    } catch (const std::exception&) {
        // The file is in place.
    }
}

void MakeNewFolder(const std::string& path, const Disk& disk) {
    const std::string native = NativePath(path);
    try {
        disk.MakeFolder(native);
    } catch (const DiskError& error) {
        Fail("Cannot create folder", path, error.what());
    }
    FlushParent(native, disk);
}

void CreateFolders(const std::string& path, const Disk& disk) {
    std::string native = NativePath(path);
    while (native.size() > 1 && IsPathSeparator(native.back()))
        native.pop_back();
    if (FolderExists(native, disk)) return;
    const std::string above = FolderOf(native);
    if (!above.empty() && above != native) CreateFolders(above, disk);
    try {
        disk.MakeFolder(native);
    } catch (const DiskError& error) {
        if (FolderExists(native, disk)) return;
        Fail("Cannot create folder", path,
             FileExists(native, disk) ? "a file of that name is in the way" : error.what());
    }
    FlushParent(native, disk);
}

std::shared_ptr<void> HoldFile(const std::string& path, const std::string& owner) {
    std::string real = path;
    try {
        real = SystemDisk().RealPath(NativePath(path));
    } catch (const DiskError&) {
        // Its folder is not there, so that nobody can use the file.
    }
    return Hold(real, path, owner);
}

std::shared_ptr<void> HoldFolder(const std::string& path, const std::string& owner) {
    return Hold(JoinPath(path, owner), path, owner);
}

bool FileExists(const std::string& path, const Disk& disk) {
    return KindAt(path, disk) == PathKind::File;
}

bool FolderExists(const std::string& path, const Disk& disk) {
    return KindAt(path, disk) == PathKind::Folder;
}

bool IsWithin(const std::string& path, const std::string& folder, const Disk& disk) {
    if (KindAt(path, disk) == PathKind::Nothing || !FolderExists(folder, disk)) return false;
    const std::string outer = JoinPath(RealPath(folder, disk), "");
    return JoinPath(RealPath(path, disk), "").starts_with(outer);
}

std::vector<std::string> SubFolders(const std::string& path, const Disk& disk) {
    return NamesIn(path, PathKind::Folder, disk);
}

std::vector<std::string> FilesIn(const std::string& path, const Disk& disk) {
    auto names = NamesIn(path, PathKind::File, disk);
    std::sort(names.begin(), names.end());
    return names;
}

void RemoveFileIfThere(const std::string& path, const Disk& disk) noexcept {
    try {
        if (FileExists(path, disk)) disk.Remove(NativePath(path));
    } catch (const std::exception&) {
        // It is in nobody's way.
    }
}

}  // namespace support
