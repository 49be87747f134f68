#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

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

/// Where files are kept: the one way by which the programs read their documents and change anything on disk, so that
/// another disk can be handed in. Paths are UTF-8 with the system's own separators. Every operation throws DiskError.
/// Whether something exists, and what a folder lists, is asked of the system itself: an answer that is wrong shows when
/// the file is opened.
class Disk {
  public:
    enum class OpenFor {
        Reading,
        Replacing,  ///< empty, whatever was there; created when missing
        Appending,  ///< as it stands, also for reading; created when missing
    };

    Disk() = default;
    virtual ~Disk() = default;
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    virtual std::unique_ptr<OpenFile> Open(const std::string& path, OpenFor purpose) const = 0;
    /// Over a file of the new name, unless that one must not be written to.
    virtual void Rename(const std::string& from, const std::string& to) const = 0;
    /// Returns when the folder's list of names is on the medium. @param path empty for the current folder
    virtual void FlushFolder(const std::string& path) const = 0;
    virtual void Remove(const std::string& path) const = 0;
    /// One folder in one that exists.
    virtual void MakeFolder(const std::string& path) const = 0;
};

/// The disk of the system that the program runs on. It has no state.
const Disk& SystemDisk();

}  // namespace support
