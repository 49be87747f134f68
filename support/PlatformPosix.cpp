#ifndef _WIN32

#include <fcntl.h>
#include <langinfo.h>
#include <locale.h>
#include <pwd.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
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

constexpr std::uint64_t largestIniFile = 1 << 20;

std::string LastError() {
    return std::strerror(errno);
}

[[noreturn]] void FailWithLastError() {
    throw DiskError(LastError());
}

std::string FolderToOpen(const std::string& path) {
    const std::string folder = FolderOf(path);
    return folder.empty() ? "." : folder;
}

class PosixFile : public OpenFile {
  public:
    PosixFile(const std::string& path, int flags) : file_(::open(path.c_str(), flags | O_CLOEXEC, 0666)) {
        if (!file_.Valid()) FailWithLastError();
    }

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

class PosixDisk : public Disk {
  public:
    std::unique_ptr<OpenFile> Open(const std::string& path, OpenFor purpose) const override {
        const int flags = purpose == OpenFor::Reading     ? O_RDONLY
                          : purpose == OpenFor::Replacing ? O_WRONLY | O_CREAT | O_TRUNC
                                                          : O_RDWR | O_CREAT | O_APPEND;
        return std::make_unique<PosixFile>(path, flags);
    }
    void Rename(const std::string& from, const std::string& to) const override {
        // Renaming asks for the folder's permission only, but a file that is protected against writing is to stay.
        if (::faccessat(AT_FDCWD, to.c_str(), W_OK, AT_EACCESS) != 0 && errno != ENOENT) FailWithLastError();
        if (::rename(from.c_str(), to.c_str()) != 0) FailWithLastError();
    }
    void FlushFolder(const std::string& path) const override {
        PosixFile(path.empty() ? "." : path, O_RDONLY | O_DIRECTORY).Flush();
    }
    void Remove(const std::string& path) const override {
        if (::unlink(path.c_str()) != 0) FailWithLastError();
    }
    void MakeFolder(const std::string& path) const override {
        if (::mkdir(path.c_str(), 0777) != 0) FailWithLastError();
    }
};

/// Whether the open file is still the one of that name, and not one whose holder has removed it meanwhile.
bool IsStillNamed(const Descriptor& file, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(file.Get(), &opened) == 0 && ::stat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

/// Writes the number of this process into the file and removes the file when the lock is let go.
std::shared_ptr<void> KeepLocked(std::unique_ptr<Descriptor> file, const std::string& path) {
    const std::string number = std::to_string(ProcessNumber());
    // The number is there for people; the lock is held without it too.
    [[maybe_unused]] const bool written =
        ::ftruncate(file->Get(), 0) == 0 && ::pwrite(file->Get(), number.data(), number.size(), 0) >= 0;
    return {file.release(), [path](Descriptor* held) {
                ::unlink(path.c_str());
                delete held;
            }};
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

const Disk& SystemDisk() {
    static const PosixDisk disk;
    return disk;
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

SoleUse TrySoleUse(const std::string& path) {
    constexpr std::size_t longestNumber = 20;
    const std::string name = NativePath(path) + ".in-use";
    for (;;) {
        auto file = std::make_unique<Descriptor>(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
        // Another user's file may be locked as well as one's own.
        if (!file->Valid() && errno == EACCES)
            file = std::make_unique<Descriptor>(::open(name.c_str(), O_RDONLY | O_CLOEXEC));
        if (!file->Valid()) {
            const bool nobodyWritesHere = errno == EACCES || errno == EPERM || errno == EROFS || errno == ENOENT;
            return {{}, false, {}, nobodyWritesHere ? std::string() : LastError()};
        }
        if (::flock(file->Get(), LOCK_EX | LOCK_NB) == 0) {
            if (IsStillNamed(*file, name)) return {KeepLocked(std::move(file), name), false, {}, {}};
            continue;
        }
        if (errno == EINTR) continue;
        // Some network disks know no locks.
        if (errno != EWOULDBLOCK) return {};
        std::string holder(longestNumber, '\0');
        const ssize_t length = ::pread(file->Get(), holder.data(), holder.size(), 0);
        holder.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
        return {{}, true, holder, {}};
    }
}

std::string PlatformReadIni(const std::string& path, const std::string& section, const std::string& key,
                            const Disk& disk) {
    constexpr std::size_t longestValue = 255;
    const auto value = IniDocument::Parse(ReadWholeFile(path, largestIniFile, disk)).Value(section, key);
    return value.value_or("").substr(0, longestValue);
}

void PlatformWriteIni(const std::string& path, const std::vector<IniEntry>& entries, const Disk& disk) {
    const std::string old = FileExists(path) ? ReadWholeFile(path, largestIniFile, disk) : std::string();
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
