#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// A file or folder operation that failed. The text says what was tried, on which path, and why it failed.
class FileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// All paths are UTF-8 and may use both "\" and "/" as separators on every system.

/// @param sizeLimit files that are larger are refused
/// @throws FileError
std::string ReadWholeFile(const std::string& path, std::uint64_t sizeLimit = std::uint64_t{1} << 30);

/// Replaces the file as a whole: written to a temporary file in the same folder, checked, flushed to disk, renamed. On
/// failure the old file stays as it was and no temporary file is left.
/// @throws FileError
void WriteWholeFile(const std::string& path, std::string_view content);

/// A file that another library writes, put in place the same way: create one, let the library write to TemporaryPath(),
/// then Commit(). Without Commit the temporary file is removed.
class WholeFileWriter {
  public:
    explicit WholeFileWriter(const std::string& path);
    ~WholeFileWriter();
    WholeFileWriter(const WholeFileWriter&) = delete;
    WholeFileWriter& operator=(const WholeFileWriter&) = delete;

    const std::string& TemporaryPath() const { return temporaryPath_; }
    /// @throws FileError
    void Commit();

  private:
    std::string path_;
    std::string temporaryPath_;
    bool committed_ = false;
};

/// Appends and flushes. @throws FileError
void AppendToFile(const std::string& path, std::string_view text);

/// Creates the folder and those above it that are missing. @throws FileError
void CreateFolders(const std::string& path);

bool FileExists(const std::string& path);
bool FolderExists(const std::string& path);
/// Names of the direct sub-folders in the file system's order. @throws FileError
std::vector<std::string> SubFolders(const std::string& path);
/// Names of the files directly in the folder, sorted. @throws FileError
std::vector<std::string> FilesIn(const std::string& path);
void RemoveFileIfThere(const std::string& path) noexcept;

}  // namespace support
