// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifdef _WIN32

#include "support/PlatformWindowsFiles.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/PlatformListing.h"
#include "support/PlatformWindowsText.h"

namespace support {
namespace {

/// Closes a file on every way out.
class FileHandle {
  public:
    explicit FileHandle(HANDLE handle) : handle_(handle) {}
    ~FileHandle() { Close(); }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    bool Valid() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return handle_; }
    bool Close() {
        if (!Valid()) return true;
        const HANDLE closing = handle_;
        handle_ = INVALID_HANDLE_VALUE;
        return ::CloseHandle(closing) != 0;
    }

  private:
    HANDLE handle_;
};

constexpr DWORD sharedByAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

[[noreturn]] void FailWithLastError() {
    throw DiskError(WindowsErrorText(::GetLastError()));
}

class WindowsFile : public OpenFile {
  public:
    WindowsFile(const std::string& path, DWORD access, DWORD creation)
        : file_(::CreateFileW(Wide(path).c_str(), access, sharedByAll, nullptr, creation, FILE_ATTRIBUTE_NORMAL,
                              nullptr)) {
        if (!file_.Valid()) FailWithLastError();
    }
    /// @param file open
    explicit WindowsFile(HANDLE file) : file_(file) {}

    std::uint64_t Size() override {
        LARGE_INTEGER size{};
        if (::GetFileSizeEx(file_.Get(), &size) == 0) FailWithLastError();
        return static_cast<std::uint64_t>(size.QuadPart);
    }
    std::string Read(std::uint64_t offset, std::size_t count) override {
        MoveTo(offset);
        std::string content(count, '\0');
        std::size_t done = 0;
        while (done < count) {
            DWORD part = 0;
            if (::ReadFile(file_.Get(), content.data() + done, PartOf(count - done), &part, nullptr) == 0)
                FailWithLastError();
            if (part == 0) break;
            done += part;
        }
        content.resize(done);
        return content;
    }
    std::size_t Write(std::string_view content) override {
        MoveTo(Size());
        DWORD written = 0;
        if (::WriteFile(file_.Get(), content.data(), PartOf(content.size()), &written, nullptr) == 0)
            FailWithLastError();
        return written;
    }
    void CutTo(std::uint64_t size) override {
        MoveTo(size);
        if (::SetEndOfFile(file_.Get()) == 0) FailWithLastError();
    }
    void Flush() override {
        if (::FlushFileBuffers(file_.Get()) == 0) FailWithLastError();
    }
    void Close() override {
        if (!file_.Close()) FailWithLastError();
    }

  private:
    static DWORD PartOf(std::size_t size) {
        constexpr std::size_t largestPart = std::size_t{1} << 30;
        return static_cast<DWORD>(std::min(size, largestPart));
    }
    void MoveTo(std::uint64_t offset) {
        LARGE_INTEGER distance{};
        distance.QuadPart = static_cast<LONGLONG>(offset);
        if (::SetFilePointerEx(file_.Get(), distance, nullptr, FILE_BEGIN) == 0) FailWithLastError();
    }

    FileHandle file_;
};

/// The file or folder that a path leads to, to ask about it; not valid where there is none.
FileHandle OpenToAsk(const std::string& path) {
    return FileHandle(
        ::CreateFileW(Wide(path).c_str(), 0, sharedByAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

PathKind KindOf(HANDLE file, DWORD attributes) {
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return PathKind::Folder;
    return ::GetFileType(file) == FILE_TYPE_DISK ? PathKind::File : PathKind::Other;
}

std::uint64_t Joined(DWORD high, DWORD low) {
    constexpr int bits = 32;
    return std::uint64_t{high} << bits | low;
}

/// Gives the file the access list of another, where it may.
void TakeRights(const std::wstring& path, const std::wstring& other) {
    DWORD size = 0;
    ::GetFileSecurityW(other.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<std::byte> rights(size);
    if (size > 0 && ::GetFileSecurityW(other.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size) != 0)
        ::SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data());
}

class WindowsDisk : public Disk {
  public:
    PathStatus Status(const std::string& path) const override {
        if (path.empty()) return {};
        const FileHandle file = OpenToAsk(path);
        if (!file.Valid()) {
            const DWORD error = ::GetLastError();
            // Nothing has a name that none can have.
            if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME)
                return {};
            throw DiskError(WindowsErrorText(error));
        }
        BY_HANDLE_FILE_INFORMATION known{};
        if (::GetFileInformationByHandle(file.Get(), &known) == 0) FailWithLastError();
        return {KindOf(file.Get(), known.dwFileAttributes),
                Joined(known.nFileSizeHigh, known.nFileSizeLow),
                static_cast<std::int64_t>(
                    Joined(known.ftLastWriteTime.dwHighDateTime, known.ftLastWriteTime.dwLowDateTime)),
                {known.dwVolumeSerialNumber, Joined(known.nFileIndexHigh, known.nFileIndexLow)}};
    }
    std::vector<FolderEntry> List(const std::string& path) const override { return ListFolder(path); }
    std::string RealPath(const std::string& path) const override { return FollowLinks(path); }
    std::unique_ptr<OpenFile> Open(const std::string& path, OpenFor purpose) const override {
        const bool isRead = purpose == OpenFor::Reading;
        return std::make_unique<WindowsFile>(path, isRead ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE,
                                             isRead ? OPEN_EXISTING : OPEN_ALWAYS);
    }
    std::unique_ptr<OpenFile> Create(const std::string& path) const override {
        const HANDLE file = ::CreateFileW(Wide(path).c_str(), GENERIC_READ | GENERIC_WRITE, sharedByAll, nullptr,
                                          CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE) return std::make_unique<WindowsFile>(file);
        if (::GetLastError() == ERROR_FILE_EXISTS || ::GetLastError() == ERROR_ALREADY_EXISTS) return nullptr;
        FailWithLastError();
    }
    void Rename(const std::string& from, const std::string& to) const override {
        const std::wstring target = Wide(to);
        const DWORD attributes = ::GetFileAttributesW(target.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
            throw DiskError(std::make_error_code(std::errc::is_a_directory).message());
        {
            // The folder's rights may allow to replace a file that is itself protected against writing.
            const FileHandle old(::CreateFileW(target.c_str(), GENERIC_WRITE, sharedByAll, nullptr, OPEN_EXISTING,
                                               FILE_ATTRIBUTE_NORMAL, nullptr));
            if (!old.Valid() && ::GetLastError() == ERROR_ACCESS_DENIED) FailWithLastError();
            if (old.Valid()) TakeRights(Wide(from), target);
        }
        if (::MoveFileExW(Wide(from).c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0)
            FailWithLastError();
    }
    void FlushFolder(const std::string&) const override {
        // Renaming has written through already, and a folder has no handle that could be flushed.
    }
    void Remove(const std::string& path) const override {
        const DWORD attributes = ::GetFileAttributesW(Wide(path).c_str());
        const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if ((isFolder ? ::RemoveDirectoryW : ::DeleteFileW)(Wide(path).c_str()) == 0) FailWithLastError();
    }
    void MakeFolder(const std::string& path) const override {
        if (::CreateDirectoryW(Wide(path).c_str(), nullptr) == 0) FailWithLastError();
    }
};

/// A new hidden file that goes with its handle; one that nobody has open, as after a power cut, is removed first. While
/// the one of the holder before is being removed it is refused in the same way as in a protected folder, so that some
/// refusals are waited out.
std::shared_ptr<FileHandle> OpenLockFile(const std::wstring& name, DWORD sharing) {
    constexpr DWORD pauseMs = 10;
    constexpr int refusalsTaken = 100;
    constexpr DWORD flags = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE;
    for (int refusals = 0;; ++refusals) {
        auto lock = std::make_shared<FileHandle>(
            ::CreateFileW(name.c_str(), GENERIC_WRITE, sharing, nullptr, CREATE_NEW, flags, nullptr));
        if (!lock->Valid() && ::GetLastError() == ERROR_FILE_EXISTS) {
            // What exists is opened for nothing but its removal, and as it is where it is a link.
            const FileHandle left(::CreateFileW(name.c_str(), DELETE, 0, nullptr, OPEN_EXISTING,
                                                FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
            if (!left.Valid() && ::GetLastError() == ERROR_SHARING_VIOLATION) return lock;
            if (refusals < refusalsTaken) continue;
        }
        if (lock->Valid() || refusals >= refusalsTaken || ::GetLastError() != ERROR_ACCESS_DENIED) return lock;
        ::Sleep(pauseMs);
    }
}

}  // namespace

/// In English and the same as elsewhere where the system's number has a portable meaning.
std::string WindowsErrorText(DWORD error) {
    return std::system_category().default_error_condition(static_cast<int>(error)).message();
}

const Disk& SystemDisk() {
    static const WindowsDisk disk;
    return disk;
}

std::shared_ptr<void> LockForSaving(const std::string& path, std::chrono::milliseconds patience) {
    // A file that the system removes with its only handle, also when the process dies: unlike a mutex it may be let go
    // by any thread, and it is seen from other machines too.
    constexpr DWORD pauseMs = 10;
    const std::wstring name = Wide(NativePath(path) + ".lock");
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        auto lock = OpenLockFile(name, 0);
        if (lock->Valid()) return lock;
        if (::GetLastError() != ERROR_SHARING_VIOLATION) return {};
        if (std::chrono::steady_clock::now() >= end)
            throw FileError("Cannot write " + path + ": another program is writing it");
        ::Sleep(pauseMs);
    }
}

SoleUse TrySoleUse(const std::string& path) {
    constexpr DWORD longestNumber = 20;
    const std::wstring name = Wide(NativePath(path) + ".in-use");
    auto lock = OpenLockFile(name, FILE_SHARE_READ);
    if (lock->Valid()) {
        // The number is there for people; the lock is held without it too.
        const std::string number = std::to_string(ProcessNumber());
        DWORD written = 0;
        ::WriteFile(lock->Get(), number.data(), static_cast<DWORD>(number.size()), &written, nullptr);
        return {lock, false, {}, {}};
    }
    const DWORD error = ::GetLastError();
    const bool nobodyWritesHere =
        error == ERROR_ACCESS_DENIED || error == ERROR_WRITE_PROTECT || error == ERROR_PATH_NOT_FOUND;
    if (nobodyWritesHere) return {};
    if (error != ERROR_SHARING_VIOLATION) return {{}, false, {}, WindowsErrorText(error)};
    const FileHandle file(
        ::CreateFileW(name.c_str(), GENERIC_READ, sharedByAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    std::string holder(longestNumber, '\0');
    DWORD length = 0;
    if (!file.Valid() || ::ReadFile(file.Get(), holder.data(), longestNumber, &length, nullptr) == 0) length = 0;
    holder.resize(length);
    return {{}, true, holder, {}};
}

}  // namespace support

#endif
