// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef _WIN32

#include "support/PlatformPosixFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "support/Platform.h"
#include "support/PlatformListing.h"

namespace support {
namespace {

std::string LastError() {
    return SystemErrorText(errno);
}

[[noreturn]] void FailWithLastError() {
    throw DiskError(LastError());
}

class PosixFile : public OpenFile {
  public:
    PosixFile(const std::string& path, int flags) : file_(::open(path.c_str(), flags | O_CLOEXEC, 0666)) {
        if (!file_.Valid()) FailWithLastError();
    }
    /// @param file open
    explicit PosixFile(int file) : file_(file) {}

    std::uint64_t Size() override {
        struct stat status {};
        if (::fstat(file_.Get(), &status) != 0) FailWithLastError();
        return static_cast<std::uint64_t>(status.st_size);
    }
    std::string Read(std::uint64_t offset, std::size_t count) override {
        std::string content(count, '\0');
        std::size_t done = 0;
        while (done < count) {
            const ssize_t part =
                ::pread(file_.Get(), content.data() + done, count - done, static_cast<off_t>(offset + done));
            if (part < 0 && errno == EINTR) continue;
            if (part < 0) FailWithLastError();
            if (part == 0) break;
            done += static_cast<std::size_t>(part);
        }
        content.resize(done);
        return content;
    }
    std::size_t Write(std::string_view content) override {
        ssize_t written = 0;
        do {
            written = ::write(file_.Get(), content.data(), content.size());
        } while (written < 0 && errno == EINTR);
        if (written < 0) FailWithLastError();
        return static_cast<std::size_t>(written);
    }
    void CutTo(std::uint64_t size) override {
        if (::ftruncate(file_.Get(), static_cast<off_t>(size)) != 0) FailWithLastError();
    }
    void Flush() override {
        if (::fsync(file_.Get()) != 0) FailWithLastError();
    }
    void Close() override {
        if (!file_.Close()) FailWithLastError();
    }

  private:
    Descriptor file_;
};

PathKind KindOf(mode_t mode) {
    if (S_ISREG(mode)) return PathKind::File;
    return S_ISDIR(mode) ? PathKind::Folder : PathKind::Other;
}

FileIdentity IdentityOf(const struct stat& status) {
    return {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino)};
}

/// @return nothing when there is no such file
std::optional<struct stat> StatusOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0) return status;
    if (errno == ENOENT || errno == ENOTDIR) return std::nullopt;
    FailWithLastError();
}

/// Gives the file the owner and the rights of another. An ordinary user cannot give files away: then the file stays
/// this user's, and a group that it cannot have gets the rights of everybody.
void TakeRights(const std::string& path, const struct stat& other) {
    constexpr mode_t allRights = 0777;
    constexpr uid_t unchanged = static_cast<uid_t>(-1);
    struct stat own {};
    if (::lstat(path.c_str(), &own) != 0) FailWithLastError();
    mode_t rights = other.st_mode & allRights;
    if (own.st_gid != other.st_gid && ::lchown(path.c_str(), unchanged, other.st_gid) != 0)
        rights = (rights & ~mode_t{S_IRWXG}) | ((rights & S_IRWXO) << 3);
    if ((own.st_mode & allRights) != rights && ::chmod(path.c_str(), rights) != 0) FailWithLastError();
    [[maybe_unused]] const bool isGiven =
        own.st_uid == other.st_uid || ::lchown(path.c_str(), other.st_uid, unchanged) == 0;
}

class PosixDisk : public Disk {
  public:
    PathStatus Status(const std::string& path) const override {
        constexpr std::int64_t nanoseconds = 1'000'000'000;
        const auto status = StatusOf(path);
        if (!status) return {};
        return {KindOf(status->st_mode), static_cast<std::uint64_t>(status->st_size),
                status->st_mtim.tv_sec * nanoseconds + status->st_mtim.tv_nsec, IdentityOf(*status)};
    }
    std::vector<FolderEntry> List(const std::string& path) const override { return ListFolder(path); }
    std::string RealPath(const std::string& path) const override { return FollowLinks(path); }
    std::unique_ptr<OpenFile> Open(const std::string& path, OpenFor purpose) const override {
        return std::make_unique<PosixFile>(path, purpose == OpenFor::Reading ? O_RDONLY : O_RDWR | O_CREAT | O_APPEND);
    }
    std::unique_ptr<OpenFile> Create(const std::string& path) const override {
        const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (file < 0 && errno != EEXIST) FailWithLastError();
        return file < 0 ? nullptr : std::make_unique<PosixFile>(file);
    }
    void Rename(const std::string& from, const std::string& to) const override {
        if (const auto replaced = StatusOf(to)) {
            // Renaming asks for the folder's permission only, but a file that is protected against writing is to stay.
            if (::faccessat(AT_FDCWD, to.c_str(), W_OK, AT_EACCESS) != 0) FailWithLastError();
            if (S_ISREG(replaced->st_mode)) TakeRights(from, *replaced);
        }
        if (::rename(from.c_str(), to.c_str()) != 0) FailWithLastError();
    }
    void FlushFolder(const std::string& path) const override {
        PosixFile(path.empty() ? "." : path, O_RDONLY | O_DIRECTORY).Flush();
    }
    void Remove(const std::string& path) const override {
        if (::remove(path.c_str()) != 0) FailWithLastError();
    }
    void MakeFolder(const std::string& path) const override {
        if (::mkdir(path.c_str(), 0777) != 0) FailWithLastError();
    }
};

}  // namespace

const Disk& SystemDisk() {
    static const PosixDisk disk;
    return disk;
}

}  // namespace support

#endif
