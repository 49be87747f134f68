// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef _WIN32

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <utility>

#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/PlatformPosixFiles.h"

namespace support {
namespace {

using Clock = std::chrono::steady_clock;

enum class Lock { Taken, TakenByAnother, Unknown };

Lock TryLock(const Descriptor& file) {
    while (::flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) continue;
        return errno == EWOULDBLOCK ? Lock::TakenByAnother : Lock::Unknown;
    }
    return Lock::Taken;
}

/// The number of the process that holds the file's lock, as the kernel's list of locks has it; empty when it is not
/// there, as for a process of another machine or container.
std::string HolderOf(const Descriptor& file) {
    struct stat status {};
    if (::fstat(file.Get(), &status) != 0) return {};
    std::array<char, 64> wanted{};
    std::snprintf(wanted.data(), wanted.size(), "%02x:%02x:%llu", major(status.st_dev), minor(status.st_dev),
                  static_cast<unsigned long long>(status.st_ino));
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) {
        std::istringstream fields(line);
        std::string ordinal, kind, strictness, access, process, identity;
        fields >> ordinal >> kind >> strictness >> access >> process >> identity;
        if (kind == "FLOCK" && identity == wanted.data() && process.front() != '-' && process != "0") return process;
    }
    return {};
}

/// Whether the open file is still the one of that name, and not one whose holder has removed it meanwhile.
bool IsStillNamed(const Descriptor& file, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(file.Get(), &opened) == 0 && ::lstat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

/// Writes the number of this process into its new file and removes the file when the lock is let go.
std::shared_ptr<void> KeepLocked(std::unique_ptr<Descriptor> file, const std::string& path) {
    const std::string number = std::to_string(ProcessNumber());
    // The number is there for people; the lock is held without it too.
    [[maybe_unused]] const bool isWritten = ::pwrite(file->Get(), number.data(), number.size(), 0) >= 0;
    return {file.release(), [path](Descriptor* held) {
                if (IsStillNamed(*held, path)) ::unlink(path.c_str());
                delete held;
            }};
}

std::string NumberIn(const Descriptor& file) {
    constexpr std::size_t longestNumber = 20;
    std::string number(longestNumber, '\0');
    const ssize_t length = ::pread(file.Get(), number.data(), number.size(), 0);
    number.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return number.find_first_not_of("0123456789") == std::string::npos ? number : std::string();
}

SoleUse Failure(const std::string& reason) {
    return {{}, false, {}, reason};
}

/// What another process has made of that name. It is only ever read: what stands in it may be anything.
/// @return nothing when it is gone: its holder has died or ended
std::optional<SoleUse> LookAtHolder(const std::string& name) {
    const Descriptor file(::open(name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.Valid() && errno == ENOENT) return std::nullopt;
    if (!file.Valid() && errno == ELOOP) return Failure(name + " is a link, remove it");
    struct stat status {};
    // A file that this user may not read is another's, who has the lock or has died with it.
    if (!file.Valid() || ::fstat(file.Get(), &status) != 0) return Failure(name + ": " + SystemErrorText(errno));
    if (!S_ISREG(status.st_mode)) return Failure(name + " is no ordinary file, remove it");
    switch (TryLock(file)) {
        case Lock::Unknown:
            return SoleUse{};  // some network disks know no locks
        case Lock::TakenByAnother:
            return SoleUse{{}, true, NumberIn(file), {}};
        case Lock::Taken:
            break;
    }
    // Only who has the lock removes the file, so that it is nobody's new one.
    if (IsStillNamed(file, name) && ::unlink(name.c_str()) != 0)
        return Failure(name + " was left behind and cannot be removed: " + SystemErrorText(errno));
    return std::nullopt;
}

}  // namespace

std::shared_ptr<void> LockForSaving(const std::string& path, std::chrono::milliseconds patience) {
    constexpr auto pause = std::chrono::milliseconds(5);
    const std::string folder = FolderOf(NativePath(path));
    auto file =
        std::make_shared<Descriptor>(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!file->Valid()) return {};
    const auto end = Clock::now() + patience;
    for (;;) {
        const Lock lock = TryLock(*file);
        if (lock == Lock::Taken) return file;
        if (lock == Lock::Unknown) return {};
        if (Clock::now() >= end) {
            const std::string holder = HolderOf(*file);
            throw FileError("Cannot write " + path + ": another program" +
                            (holder.empty() ? "" : " (process " + holder + ")") + " has locked its folder");
        }
        std::this_thread::sleep_for(pause);
    }
}

SoleUse TrySoleUse(const std::string& path) {
    const std::string name = NativePath(path) + ".in-use";
    // Each further try means that another process has just made or removed the file.
    constexpr int mostTries = 1000;
    for (int tries = 0; tries < mostTries; ++tries) {
        auto file = std::make_unique<Descriptor>(
            ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
        if (!file->Valid() && errno != EEXIST) {
            const bool nobodyWritesHere = errno == EACCES || errno == EPERM || errno == EROFS || errno == ENOENT;
            return nobodyWritesHere ? SoleUse{} : Failure(SystemErrorText(errno));
        }
        if (!file->Valid()) {
            if (auto use = LookAtHolder(name)) return *use;
            continue;
        }
        const Lock lock = TryLock(*file);
        if (lock == Lock::Unknown) {
            ::unlink(name.c_str());
            return {};
        }
        // Another one may have found the new file before it was locked, and is removing it.
        if (lock == Lock::Taken && IsStillNamed(*file, name)) return {KeepLocked(std::move(file), name), false, {}, {}};
    }
    return Failure(name + " is made and removed all the time");
}

}  // namespace support

#endif
