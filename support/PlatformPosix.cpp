// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef _WIN32

#include <fcntl.h>
#include <locale.h>
#include <pwd.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>

#include "support/Files.h"
#include "support/IniDocument.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/PlatformPosixFiles.h"

namespace support {

std::string CurrentUserName() {
    constexpr std::size_t longestName = 30;
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) return {};
    const std::string name = entry.pw_name;
    return name.size() > longestName ? std::string() : name;
}

std::string ProgramFolder() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : program.parent_path().string();
}

bool IsTerminal(StandardStream stream) {
    return ::isatty(static_cast<int>(stream)) != 0;
}

std::string SystemErrorText(int number) {
    const locale_t english = ::newlocale(LC_ALL_MASK, "C", nullptr);
    std::string text = english == nullptr ? "error " + std::to_string(number) : ::strerror_l(number, english);
    if (english != nullptr) ::freelocale(english);
    return text;
}

std::uint64_t ProcessNumber() {
    return static_cast<std::uint64_t>(::getpid());
}

bool IsProcessRunning(std::uint64_t number) {
    constexpr std::uint64_t largestNumber = std::numeric_limits<pid_t>::max();
    if (number == 0 || number > largestNumber) return true;
    return ::kill(static_cast<pid_t>(number), 0) == 0 || errno != ESRCH;
}

std::tm LocalTime(std::time_t time) {
    std::tm result{};
    ::localtime_r(&time, &result);
    return result;
}

std::tm UtcTime(std::time_t time) {
    std::tm result{};
    ::gmtime_r(&time, &result);
    return result;
}

std::string ProcessLocaleName() {
    for (const char* name : {"LC_ALL", "LC_TIME", "LANG"})
        if (const char* value = std::getenv(name); value != nullptr && *value != '\0') return value;
    return {};
}

std::string PlatformReadIni(const std::string& path, const std::string& section, const std::string& key,
                            const Disk& disk) {
    return IniDocument::Parse(ReadIniText(path, disk).value_or("")).ShortValue(section, key);
}

void PlatformWriteIni(const std::string& path, const std::vector<IniEntry>& entries, const Disk& disk) {
    const std::string old = ReadIniText(path, disk).value_or("");
    std::string changed = old;
    for (const auto& entry : entries) {
        try {
            changed = WithIniValue(changed, entry.section, entry.key, entry.value);
        } catch (const std::invalid_argument&) {
            // The other entries do not suffer from it.
        }
    }
    if (changed != old) WriteWholeFile(path, changed, disk);
}

}  // namespace support

#endif
