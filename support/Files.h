// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "support/Disk.h"

namespace support {

/// A file or folder operation that failed. The text says what was tried, on which path, and why it failed.
class FileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// All paths are UTF-8 and may use both "\" and "/" as separators on every system.

inline constexpr std::uint64_t anySize = std::uint64_t{1} << 30;

/// @param sizeLimit files that are larger are refused
/// @throws FileError
std::string ReadWholeFile(const std::string& path, std::uint64_t sizeLimit = anySize, const Disk& disk = SystemDisk());

/// What the content of a file outlasts once it is written. The death of the process it always does.
enum class Durability {
    Process,   ///< not flushed: a power cut may leave what was there before, a part, an empty file or none
    PowerCut,  ///< flushed to the medium
};

/// Replaces the file as a whole: written to a new temporary file in the same folder ("NAME.tmp-PROCESS", with "-2" and
/// so on behind it where that name is taken), checked, flushed to disk, renamed. The file keeps its rights and, as far
/// as the system lets it, its owner; a link stays one, and what it leads to is replaced. On failure the old file stays
/// as it was and no temporary file is left, if the disk lets it be removed. Those that processes which have died left
/// of this file are removed.
/// @throws FileError
void WriteWholeFile(const std::string& path, std::string_view content, const Disk& disk = SystemDisk(),
                    Durability durability = Durability::PowerCut);

/// A whole file that is looked at, or changed by another library, before it is put in place in the same way. Without
/// Commit the temporary file is removed.
class WholeFileWriter {
  public:
    /// Writes the temporary file.
    /// @param disk must outlive the writer
    /// @throws FileError
    WholeFileWriter(const std::string& path, std::string_view content, const Disk& disk = SystemDisk(),
                    Durability durability = Durability::PowerCut);
    ~WholeFileWriter();
    WholeFileWriter(const WholeFileWriter&) = delete;
    WholeFileWriter& operator=(const WholeFileWriter&) = delete;

    const std::string& TemporaryPath() const { return temporaryPath_; }
    /// @throws FileError
    void Commit();

  private:
    std::unique_ptr<OpenFile> CreateTemporary();

    const Disk& disk_;
    Durability durability_;
    std::string path_;           ///< as it was given
    std::string target_;         ///< where its links lead
    std::string temporaryPath_;  ///< empty while there is none
};

/// Removes the temporary files that processes which have died left in the folder and in its folders, and those that
/// this process could not remove itself: not to be called while it writes there. Failures are ignored.
/// @param levels how many folders deep, 0 for the folder alone
void RemoveLeftoversIn(const std::string& folder, int levels, const Disk& disk = SystemDisk()) noexcept;

/// Appends lines. A line that was cut off there before, as by the death of its writer, is ended first. When only a part
/// can be written the file is cut back to what it was. The name of a new file is flushed in any case, so that flushing
/// its content later is enough.
/// @param text whole lines
/// @throws FileError when they are not in the file; that they are, but could not be flushed, is ignored
void AppendToFile(const std::string& path, std::string_view text, const Disk& disk = SystemDisk(),
                  Durability durability = Durability::PowerCut);

/// Flushes the content of a file that was written without it. Failures are ignored.
void FlushFile(const std::string& path, const Disk& disk = SystemDisk()) noexcept;
/// Flushes the names in the file's folder, the one that its links lead to. Failures are ignored: not every disk can do
/// it.
void FlushFolderOf(const std::string& path, const Disk& disk = SystemDisk()) noexcept;

/// One folder in one that exists. @throws FileError, also when it is there already
void MakeNewFolder(const std::string& path, const Disk& disk = SystemDisk());
/// Creates the folder and those above it that are missing. @throws FileError
void CreateFolders(const std::string& path, const Disk& disk = SystemDisk());

/// Keeps every other program that asks for the same from using the file, by whatever links it gets there, until the
/// result is destroyed or the process ends in any way. Empty where nobody could write the file either.
/// @param owner what holds such a file, such as "Veltra"
/// @throws FileError when another one has it, whose process it names, or the disk fails
std::shared_ptr<void> HoldFile(const std::string& path, const std::string& owner);
/// The same for a folder, whatever path leads to it: the file that tells is in it.
std::shared_ptr<void> HoldFolder(const std::string& path, const std::string& owner);

/// Only where the disk says that there is no such file or folder the answer is no.
/// @throws FileError on any other answer, since nobody knows then
bool FileExists(const std::string& path, const Disk& disk = SystemDisk());
bool FolderExists(const std::string& path, const Disk& disk = SystemDisk());
/// Whether an existing path lies in the folder or below it once all links are followed. @throws FileError
bool IsWithin(const std::string& path, const std::string& folder, const Disk& disk = SystemDisk());
/// Names of the direct sub-folders in the file system's order. @throws FileError
std::vector<std::string> SubFolders(const std::string& path, const Disk& disk = SystemDisk());
/// Names of the files directly in the folder, sorted. @throws FileError
std::vector<std::string> FilesIn(const std::string& path, const Disk& disk = SystemDisk());
/// Failures are ignored.
void RemoveFileIfThere(const std::string& path, const Disk& disk = SystemDisk()) noexcept;

}  // namespace support
