#include "support/Files.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <system_error>

#include "support/Paths.h"
#include "support/Platform.h"
#include "support/Text.h"

namespace support {
namespace {

namespace fs = std::filesystem;

fs::path Native(const std::string& path) {
    const std::string native = NativePath(path);
    return fs::path(std::u8string(native.begin(), native.end()));
}

std::string Utf8(const fs::path& path) {
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

[[noreturn]] void Fail(const std::string& operation, const std::string& path, const std::string& reason) {
    throw FileError(operation + " " + path + ": " + reason);
}

/// Why, in the same words on every system where they have them in common.
std::string Reason(const std::error_code& error) {
    return error.default_error_condition().message();
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

bool IsFlushed(OpenFile& file) {
    try {
        file.Flush();
        file.Close();
        return true;
    } catch (const DiskError&) {
        return false;
    }
}

void FlushFolderOf(const std::string& path, const Disk& disk) {
    try {
        disk.FlushFolder(FolderOf(path));
    } catch (const DiskError&) {
        // The file is in place even where a folder cannot be flushed, so that is no failure.
    }
}

/// The number of the process that a temporary file belongs to; nothing when the name is none of such a file.
std::optional<std::uint64_t> WriterOf(const std::string& name, const std::string& wholeName) {
    const std::string start = wholeName + temporaryMark;
    if (!name.starts_with(start)) return std::nullopt;
    std::uint64_t number = 0;
    const char* const end = name.data() + name.size();
    const auto [stopped, error] = std::from_chars(name.data() + start.size(), end, number);
    if (error != std::errc() || stopped != end) return std::nullopt;
    return number;
}

template <class Keep>
std::vector<std::string> NamesIn(const std::string& path, Keep keep) {
    std::error_code error;
    std::vector<std::string> names;
    for (fs::directory_iterator at(Native(path), error), end; !error && at != end; at.increment(error)) {
        std::error_code entryError;
        if (keep(*at, entryError)) names.push_back(Utf8(at->path().filename()));
    }
    if (error) Fail("Cannot list", path, Reason(error));
    return names;
}

/// What processes that have died left of a whole file that they were writing.
void RemoveLeftovers(const std::string& path, const Disk& disk) {
    const std::string folder = FolderOf(path);
    const std::string wholeName = FileNameOf(path);
    std::error_code error;
    for (fs::directory_iterator at(Native(folder.empty() ? "." : folder), error), end; !error && at != end;
         at.increment(error)) {
        const std::string name = Utf8(at->path().filename());
        const auto writer = WriterOf(name, wholeName);
        if (writer && !IsProcessRunning(*writer)) RemoveFileIfThere(JoinPath(folder, name), disk);
    }
}

}  // namespace

std::string ReadWholeFile(const std::string& path, std::uint64_t sizeLimit, const Disk& disk) {
    std::error_code error;
    const auto status = fs::status(Native(path), error);
    if (fs::is_directory(status)) Fail("Cannot read", path, "it is a folder");
    // Opening a pipe would wait for its other end.
    if (fs::exists(status) && !fs::is_regular_file(status)) Fail("Cannot read", path, "it is no ordinary file");
    try {
        const auto file = disk.Open(NativePath(path), Disk::OpenFor::Reading);
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

void WriteWholeFile(const std::string& path, std::string_view content, const Disk& disk) {
    RemoveLeftovers(NativePath(path), disk);
    WholeFileWriter writer(path, disk);
    try {
        const auto file = disk.Open(writer.TemporaryPath(), Disk::OpenFor::Replacing);
        WriteAll(*file, content, content.size());
        file->Flush();
        file->Close();
        writer.PutInPlace();
    } catch (const DiskError& error) {
        Fail("Cannot write", path, error.what());
    }
}

WholeFileWriter::WholeFileWriter(const std::string& path, const Disk& disk)
    : disk_(disk), path_(NativePath(path)), temporaryPath_(path_ + temporaryMark + std::to_string(ProcessNumber())) {}

WholeFileWriter::~WholeFileWriter() {
    if (!committed_) RemoveFileIfThere(temporaryPath_, disk_);
}

void WholeFileWriter::Commit() {
    if (!FileExists(temporaryPath_))
        Fail("Cannot write", path_, Reason(std::make_error_code(std::errc::no_such_file_or_directory)));
    try {
        // Some systems flush only what is open for writing.
        const auto file = disk_.Open(temporaryPath_, Disk::OpenFor::Appending);
        file->Flush();
        file->Close();
        PutInPlace();
    } catch (const DiskError& error) {
        Fail("Cannot write", path_, error.what());
    }
}

void WholeFileWriter::PutInPlace() {
    disk_.Rename(temporaryPath_, path_);
    committed_ = true;
    FlushFolderOf(path_, disk_);
}

bool AppendToFile(const std::string& path, std::string_view text, const Disk& disk) {
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
        if (before == 0) FlushFolderOf(native, disk);
        return IsFlushed(*file);
    } catch (const DiskError& error) {
        Fail("Cannot append to", path, error.what());
    }
}

void CreateFolders(const std::string& path, const Disk& disk) {
    std::string native = NativePath(path);
    while (native.size() > 1 && IsPathSeparator(native.back()))
        native.pop_back();
    if (FolderExists(native)) return;
    const std::string above = FolderOf(native);
    if (!above.empty() && above != native) CreateFolders(above, disk);
    try {
        disk.MakeFolder(native);
    } catch (const DiskError& error) {
        if (FolderExists(native)) return;
        Fail("Cannot create folder", path, FileExists(native) ? "a file of that name is in the way" : error.what());
    }
    FlushFolderOf(native, disk);
}

std::shared_ptr<void> HoldFile(const std::string& path, const std::string& owner) {
    const SoleUse use = TrySoleUse(path);
    if (!use.failure.empty()) Fail("Cannot lock", path, use.failure);
    if (use.takenByAnother)
        throw FileError(path + " is in use by another " + owner +
                        (use.holder.empty() ? "" : " (process " + use.holder + ")") + ", end that one first");
    return use.lock;
}

bool FileExists(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(Native(path), error);
}

bool FolderExists(const std::string& path) {
    std::error_code error;
    return !path.empty() && fs::is_directory(Native(path), error);
}

bool IsWithin(const std::string& path, const std::string& folder) {
    std::error_code error;
    const fs::path inner = fs::canonical(Native(path), error);
    if (error) return false;
    const fs::path outer = fs::canonical(Native(folder), error);
    return !error && std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

std::vector<std::string> SubFolders(const std::string& path) {
    return NamesIn(path,
                   [](const fs::directory_entry& entry, std::error_code& error) { return entry.is_directory(error); });
}

std::vector<std::string> FilesIn(const std::string& path) {
    auto names = NamesIn(
        path, [](const fs::directory_entry& entry, std::error_code& error) { return entry.is_regular_file(error); });
    std::sort(names.begin(), names.end());
    return names;
}

void RemoveFileIfThere(const std::string& path, const Disk& disk) noexcept {
    try {
        if (FileExists(path)) disk.Remove(NativePath(path));
    } catch (const std::exception&) {
        // It is in nobody's way.
    }
}

}  // namespace support
