#ifndef _WIN32

#include <fcntl.h>
#include <langinfo.h>
#include <locale.h>
#include <poll.h>
#include <pwd.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <utility>

#include "support/Files.h"
#include "support/IniDocument.h"
#include "support/Paths.h"
#include "support/Platform.h"

namespace support {
namespace {

/// Closes a file descriptor on every way out.
class Descriptor {
  public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool Valid() const { return descriptor_ >= 0; }
    int Get() const { return descriptor_; }
    bool Close() {
        if (descriptor_ < 0) return true;
        const int closing = descriptor_;
        descriptor_ = -1;
        return ::close(closing) == 0;
    }

  private:
    int descriptor_;
};

std::string LastError() {
    return std::strerror(errno);
}

std::string WriteAll(const std::string& path, int flags, std::string_view content) {
    Descriptor file(::open(path.c_str(), flags | O_CLOEXEC, 0666));
    if (!file.Valid()) return LastError();
    while (!content.empty()) {
        const ssize_t written = ::write(file.Get(), content.data(), content.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return LastError();
        if (written == 0) return "only a part could be written";
        content.remove_prefix(static_cast<std::size_t>(written));
    }
    if (::fsync(file.Get()) != 0) return LastError();
    if (!file.Close()) return LastError();
    return {};
}

std::string FolderToOpen(const std::string& path) {
    const std::string folder = FolderOf(path);
    return folder.empty() ? "." : folder;
}

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

std::shared_ptr<void> CatchStopSignals(void (*handler)(int signal)) {
    using Actions = std::array<std::pair<int, struct sigaction>, 3>;
    const auto install = [](int signal, void (*action)(int)) {
        struct sigaction wanted {};
        struct sigaction before {};
        wanted.sa_handler = action;  // without SA_RESTART, so that reads are interrupted
        ::sigaction(signal, &wanted, &before);
        return std::pair(signal, before);
    };
    return {new Actions{install(SIGINT, handler), install(SIGTERM, handler), install(SIGPIPE, SIG_IGN)},
            [](Actions* before) {
                for (const auto& [signal, action] : *before)
                    ::sigaction(signal, &action, nullptr);
                delete before;
            }};
}

bool StartTextViewer(const std::string& path) {
    return OpenWithDesktop(path);
}

bool OpenWithDesktop(const std::string& path) {
    // The shell ends at once, so that the program is nobody's child here and leaves no zombie. What stays behind writes
    // into the pipe when the program failed and closes it when that has gone well.
    constexpr int patienceMs = 500;
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return false;
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    std::string shell = "/bin/sh";
    std::string flag = "-c";
    std::string script =
        "command -v xdg-open >/dev/null 2>&1 || exit 1; { xdg-open \"$1\" >/dev/null 2>&1 || echo failed; } &";
    std::string name = "xdg-open";
    std::string argument = path;
    std::array<char*, 6> arguments{shell.data(), flag.data(), script.data(), name.data(), argument.data(), nullptr};
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, writing.Get(), STDOUT_FILENO);
    pid_t child = 0;
    const int failure = ::posix_spawn(&child, shell.c_str(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (failure != 0) return false;
    writing.Close();
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return false;
    pollfd answer{reading.Get(), POLLIN, 0};
    return ::poll(&answer, 1, patienceMs) <= 0 || (answer.revents & POLLIN) == 0;
}

std::string WriteAndFlush(const std::string& path, std::string_view content) {
    return WriteAll(path, O_WRONLY | O_CREAT | O_TRUNC, content);
}

std::string AppendAndFlush(const std::string& path, std::string_view content) {
    return WriteAll(path, O_WRONLY | O_CREAT | O_APPEND, content);
}

std::string FlushToDisk(const std::string& path) {
    Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.Valid() || ::fsync(file.Get()) != 0) return LastError();
    return {};
}

std::string RenameOver(const std::string& from, const std::string& to) {
    // Renaming asks for the folder's permission only, but a file that is protected against writing is to stay.
    if (::faccessat(AT_FDCWD, to.c_str(), W_OK, AT_EACCESS) != 0 && errno != ENOENT) return LastError();
    if (::rename(from.c_str(), to.c_str()) != 0) return LastError();
    // The new file is in place even where a folder cannot be flushed, so that is no failure.
    FlushToDisk(FolderToOpen(to));
    return {};
}

std::string TemporaryNameFor(const std::string& path) {
    return path + ".tmp-" + std::to_string(::getpid());
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

std::shared_ptr<void> LockForSaving(const std::string& path) {
    auto folder = std::make_shared<Descriptor>(::open(FolderToOpen(NativePath(path)).c_str(), O_RDONLY | O_CLOEXEC));
    if (!folder->Valid()) return {};
    int result = 0;
    do {
        result = ::flock(folder->Get(), LOCK_EX);
    } while (result != 0 && errno == EINTR);
    if (result != 0) return {};
    return folder;
}

std::string PlatformReadIni(const std::string& path, const std::string& section, const std::string& key) {
    constexpr std::size_t longestValue = 255;
    constexpr std::uint64_t largestFile = 1 << 20;
    const auto value = IniDocument::Parse(ReadWholeFile(path, largestFile)).Value(section, key);
    return value.value_or("").substr(0, longestValue);
}

bool PlatformWriteIni(const std::string& path, const std::string& section, const std::string& key,
                      const std::string& value) {
    const std::string old = FileExists(path) ? ReadWholeFile(path) : std::string();
    const std::string changed = WithIniValue(old, section, key, value);
    if (changed != old) WriteWholeFile(path, changed);
    return true;
}

}  // namespace support

#endif
