#include "support/Files.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "support/Paths.h"
#include "support/Platform.h"

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

}  // namespace

std::string ReadWholeFile(const std::string& path, std::uint64_t sizeLimit) {
    std::error_code error;
    if (fs::is_directory(Native(path), error)) Fail("Cannot read", path, "it is a folder");
    const auto size = fs::file_size(Native(path), error);
    if (error) Fail("Cannot read", path, Reason(error));
    if (size > sizeLimit)
        Fail("Cannot read", path,
             "it has " + std::to_string(size) + " bytes, more than the " + std::to_string(sizeLimit) + " allowed");
    std::ifstream file(Native(path), std::ios::binary);
    if (!file) Fail("Cannot read", path, std::generic_category().message(errno));
    std::string content(static_cast<std::size_t>(size), '\0');
    file.read(content.data(), static_cast<std::streamsize>(size));
    if (!file || file.gcount() != static_cast<std::streamsize>(size)) Fail("Cannot read", path, "the file ended early");
    return content;
}

void WriteWholeFile(const std::string& path, std::string_view content) {
    WholeFileWriter writer(path);
    const std::string reason = WriteAndFlush(writer.TemporaryPath(), content);
    if (!reason.empty()) Fail("Cannot write", path, reason);
    std::error_code error;
    const auto size = fs::file_size(Native(writer.TemporaryPath()), error);
    if (error || size != content.size()) Fail("Cannot write", path, "only a part arrived on the disk");
    writer.Commit();
}

WholeFileWriter::WholeFileWriter(const std::string& path)
    : path_(NativePath(path)), temporaryPath_(TemporaryNameFor(path_)) {}

WholeFileWriter::~WholeFileWriter() {
    if (!committed_) RemoveFileIfThere(temporaryPath_);
}

void WholeFileWriter::Commit() {
    std::string reason = FlushToDisk(temporaryPath_);
    if (reason.empty()) reason = RenameOver(temporaryPath_, path_);
    if (!reason.empty()) Fail("Cannot write", path_, reason);
    committed_ = true;
}

void AppendToFile(const std::string& path, std::string_view text) {
    const std::string reason = AppendAndFlush(NativePath(path), text);
    if (!reason.empty()) Fail("Cannot append to", path, reason);
}

void CreateFolders(const std::string& path) {
    std::error_code error;
    fs::create_directories(Native(path), error);
    if (error) Fail("Cannot create folder", path, Reason(error));
    if (!FolderExists(path)) Fail("Cannot create folder", path, "a file of that name is in the way");
}

bool FileExists(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(Native(path), error);
}

bool FolderExists(const std::string& path) {
    std::error_code error;
    return !path.empty() && fs::is_directory(Native(path), error);
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

void RemoveFileIfThere(const std::string& path) noexcept {
    std::error_code ignored;
    fs::remove(Native(path), ignored);
}

}  // namespace support
