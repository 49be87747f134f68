// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace support {

/// What the disk answered when it did not do as it was asked: the reason alone, such as "No space left on device".
class DiskError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A file that a disk has open. Destroying it closes it too, but then an error of closing has nobody to be told to.
/// Every operation throws DiskError.
class OpenFile {
  public:
    OpenFile() = default;
    virtual ~OpenFile() = default;
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    virtual std::uint64_t Size() = 0;
    /// @return fewer bytes than asked for only where the file ends
    virtual std::string Read(std::uint64_t offset, std::size_t count) = 0;
    /// Writes at the file's end. @return how many bytes were taken, which may be fewer
    virtual std::size_t Write(std::string_view content) = 0;
    /// Drops what lies beyond the size.
    virtual void CutTo(std::uint64_t size) = 0;
    /// Returns when what was written is on the medium and not only in memory.
    virtual void Flush() = 0;
    virtual void Close() = 0;
};

enum class PathKind {
    Nothing,  ///< there is no such file, also because a part of its path is no folder
    File,
    Folder,
    Other,  ///< such as a pipe or a device; in a folder's list also a link that leads nowhere
};

/// Which file or folder it is, whatever its path. Only to be compared.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;

    auto operator<=>(const FileIdentity&) const = default;
};

/// What a path leads to, once all links are followed.
struct PathStatus {
    PathKind kind = PathKind::Nothing;
    std::uint64_t size = 0;    ///< of a file, in bytes
    std::int64_t changed = 0;  ///< time of the last change, in a unit of the system's own; only to be compared
    FileIdentity identity;

    bool operator==(const PathStatus&) const = default;
};

struct FolderEntry {
    std::string name;
    PathKind kind = PathKind::Other;  ///< never Nothing
};

/// Where files are kept: the one way by which the programs ask what is there, read their documents and change anything
/// on disk, so that another disk can be handed in. Paths are UTF-8 with the system's own separators. Every operation
/// throws DiskError.
class Disk {
  public:
    enum class OpenFor {
        Reading,
        Appending,  ///< as it stands, also for reading; created when missing
    };

    Disk() = default;
    virtual ~Disk() = default;
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    /// An empty path is Nothing.
    virtual PathStatus Status(const std::string& path) const = 0;
    /// What is directly in the folder, in the system's order.
    virtual std::vector<FolderEntry> List(const std::string& path) const = 0;
    /// The absolute path without links that a path leads to. Its last part need not exist.
    virtual std::string RealPath(const std::string& path) const = 0;

    virtual std::unique_ptr<OpenFile> Open(const std::string& path, OpenFor purpose) const = 0;
    /// A new, empty file. @return nothing when there is one of that name, be it a link that leads nowhere
    virtual std::unique_ptr<OpenFile> Create(const std::string& path) const = 0;
    /// Over a file of the new name, unless that one must not be written to. The renamed file then has the owner, as far
    /// as the system allows that, and the rights of the one it replaces.
    virtual void Rename(const std::string& from, const std::string& to) const = 0;
    /// Returns when the folder's list of names is on the medium. @param path empty for the current folder
    virtual void FlushFolder(const std::string& path) const = 0;
    /// A file, or a folder that is empty.
    virtual void Remove(const std::string& path) const = 0;
    /// One folder in one that exists.
    virtual void MakeFolder(const std::string& path) const = 0;
};

/// The disk of the system that the program runs on. It has no state.
const Disk& SystemDisk();

}  // namespace support
