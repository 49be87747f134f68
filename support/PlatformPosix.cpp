#ifndef _WIN32

#include <fcntl.h>
#include <langinfo.h>
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
namespace {

struct LocaleRelease {
    void operator()(locale_t locale) const { ::freelocale(locale); }
};
using LocalePointer = std::unique_ptr<std::remove_pointer_t<locale_t>, LocaleRelease>;

LocalePointer OpenLocale(const std::string& name) {
    return LocalePointer(::newlocale(LC_TIME_MASK | LC_CTYPE_MASK, name.c_str(), nullptr));
}

}  // namespace

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

std::string FormatTime(const std::string& localeName, const std::string& pattern, const std::tm& time) {
    if (pattern.empty()) return {};
    auto locale = OpenLocale(localeName);
    if (!locale) locale = OpenLocale("C");
    std::array<char, 256> text{};
    const std::size_t length = ::strftime_l(text.data(), text.size(), pattern.c_str(), &time, locale.get());
    return {text.data(), length};
}

bool LocaleDatePatterns(const std::string& localeName, std::string& shortDate, std::string& longTime) {
    const auto locale = OpenLocale(localeName);
    const std::string base = localeName.substr(0, localeName.find('.'));
    if (!locale || base == "C" || base == "POSIX") return false;
    shortDate = ::nl_langinfo_l(D_FMT, locale.get());
    longTime = ::nl_langinfo_l(T_FMT, locale.get());
    return true;
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
