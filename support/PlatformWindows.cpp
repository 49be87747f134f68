#ifdef _WIN32

#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"

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

/// In English and the same as elsewhere where the system's number has a portable meaning.
std::string ErrorText(DWORD error) {
    return std::system_category().default_error_condition(static_cast<int>(error)).message();
}

std::string LastError() {
    return ErrorText(::GetLastError());
}

std::wstring FromCodePage(UINT codePage, std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(::MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0)),
                      L'\0');
    ::MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::wstring Wide(std::string_view utf8) {
    return FromCodePage(CP_UTF8, utf8);
}

std::string Utf8(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(length), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, text.data(), length, nullptr, nullptr);
    return text;
}

std::string WriteAll(const std::string& path, DWORD access, DWORD creation, std::string_view content) {
    constexpr std::size_t largestPart = std::size_t{1} << 30;
    FileHandle file(::CreateFileW(Wide(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, creation,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.Valid()) return LastError();
    while (!content.empty()) {
        const auto part = static_cast<DWORD>(std::min(content.size(), largestPart));
        DWORD written = 0;
        if (::WriteFile(file.Get(), content.data(), part, &written, nullptr) == 0) return LastError();
        if (written == 0) return "only a part could be written";
        content.remove_prefix(written);
    }
    if (::FlushFileBuffers(file.Get()) == 0) return LastError();
    if (!file.Close()) return LastError();
    return {};
}

std::wstring LocaleText(const std::wstring& locale, LCTYPE what) {
    std::array<wchar_t, 256> text{};
    const int length = ::GetLocaleInfoEx(locale.c_str(), what, text.data(), static_cast<int>(text.size()));
    return length > 0 ? std::wstring(text.data(), static_cast<std::size_t>(length) - 1) : std::wstring();
}

/// The system's name of a locale, also for "de_DE.UTF-8"; empty for "C" and where the system does not know it.
std::wstring KnownLocale(const std::string& name) {
    std::string base = name.substr(0, name.find_first_of(".@"));
    std::replace(base.begin(), base.end(), '_', '-');
    if (base.empty() || base == "C" || base == "POSIX") return {};
    std::wstring locale = Wide(base);
    return LocaleText(locale, LOCALE_SNAME).empty() ? std::wstring() : locale;
}

/// One letter of a date or time picture, written count times in a row, as a strftime pattern.
std::wstring PatternOf(wchar_t letter, std::size_t count) {
    const auto choose = [count](std::initializer_list<const wchar_t*> forms) {
        return std::wstring(forms.begin()[std::min(count, forms.size()) - 1]);
    };
    switch (letter) {
        case L'd':
            return choose({L"%-d", L"%d", L"%a", L"%A"});
        case L'M':
            return choose({L"%-m", L"%m", L"%b", L"%B"});
        case L'y':
            return choose({L"%-y", L"%y", L"%Y"});
        case L'h':
            return choose({L"%-I", L"%I"});
        case L'H':
            return choose({L"%-H", L"%H"});
        case L'm':
            return choose({L"%-M", L"%M"});
        case L's':
            return choose({L"%-S", L"%S"});
        case L't':
            return L"%p";
        case L'g':  // the era, which strftime does not write
            return {};
        default:
            return std::wstring(letter == L'%' ? count * 2 : count, letter);
    }
}

/// The strftime pattern of a date or time picture such as "dd.MM.yyyy" or "h:mm:ss tt", in which text stands in single
/// quotes and a quote in it is doubled.
std::string PatternOfPicture(std::wstring_view picture) {
    std::wstring pattern;
    bool quoted = false;
    for (std::size_t at = 0; at < picture.size();) {
        const wchar_t letter = picture[at];
        if (letter == L'\'') {
            const bool doubled = quoted && at + 1 < picture.size() && picture[at + 1] == letter;
            if (doubled) pattern += letter;
            if (!doubled) quoted = !quoted;
            at += doubled ? 2 : 1;
            continue;
        }
        const std::size_t end = std::min(picture.find_first_not_of(letter, at), picture.size());
        if (quoted)
            pattern.append(letter == L'%' ? 2 * (end - at) : end - at, letter);
        else
            pattern += PatternOf(letter, end - at);
        at = end;
    }
    return Utf8(pattern);
}

constexpr std::array<const char*, 7> englishWeekdays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                     "Thursday", "Friday", "Saturday"};
constexpr std::array<const char*, 12> englishMonths{"January",   "February", "March",    "April",
                                                    "May",       "June",     "July",     "August",
                                                    "September", "October",  "November", "December"};

/// @param locale as KnownLocale gives it
std::string WeekdayName(const std::wstring& locale, int daysSinceSunday, bool abbreviated) {
    const std::string english = englishWeekdays.at(static_cast<std::size_t>(daysSinceSunday));
    if (locale.empty()) return abbreviated ? english.substr(0, 3) : english;
    const auto daysSinceMonday = static_cast<LCTYPE>((daysSinceSunday + 6) % 7);
    return Utf8(LocaleText(locale, (abbreviated ? LOCALE_SABBREVDAYNAME1 : LOCALE_SDAYNAME1) + daysSinceMonday));
}

std::string MonthName(const std::wstring& locale, int monthsSinceJanuary, bool abbreviated) {
    const std::string english = englishMonths.at(static_cast<std::size_t>(monthsSinceJanuary));
    if (locale.empty()) return abbreviated ? english.substr(0, 3) : english;
    const auto month = static_cast<LCTYPE>(monthsSinceJanuary);
    return Utf8(LocaleText(locale, (abbreviated ? LOCALE_SABBREVMONTHNAME1 : LOCALE_SMONTHNAME1) + month));
}

std::string HalfOfDay(const std::wstring& locale, int hour) {
    if (locale.empty()) return hour < 12 ? "AM" : "PM";
    return Utf8(LocaleText(locale, hour < 12 ? LOCALE_S1159 : LOCALE_S2359));
}

/// What strftime writes for "%" and the letter, or for "%-" and the letter, which drops leading zeros. The C library's
/// own knows neither the flag nor every letter, and no locale but the one that the whole program has set.
std::string Conversion(char letter, bool dropZeros, const std::wstring& locale, const std::tm& time) {
    const auto number = [dropZeros](int value, std::size_t digits) {
        std::string text = std::to_string(value);
        if (!dropZeros && text.size() < digits) text.insert(0, digits - text.size(), '0');
        return text;
    };
    const int year = time.tm_year + 1900;
    switch (letter) {
        case 'a':
            return WeekdayName(locale, time.tm_wday, true);
        case 'A':
            return WeekdayName(locale, time.tm_wday, false);
        case 'b':
            return MonthName(locale, time.tm_mon, true);
        case 'B':
            return MonthName(locale, time.tm_mon, false);
        case 'd':
            return number(time.tm_mday, 2);
        case 'm':
            return number(time.tm_mon + 1, 2);
        case 'y':
            return number(year % 100, 2);
        case 'Y':
            return number(year, 1);
        case 'H':
            return number(time.tm_hour, 2);
        case 'I':
            return number((time.tm_hour + 11) % 12 + 1, 2);
        case 'M':
            return number(time.tm_min, 2);
        case 'S':
            return number(time.tm_sec, 2);
        case 'p':
            return HalfOfDay(locale, time.tm_hour);
        case '%':
            return "%";
        default:
            throw std::invalid_argument(std::string("Cannot write a date: % must not stand before ") + letter);
    }
}

/// The pattern with every letter that stands for several others written out.
std::string WrittenOut(std::string pattern) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 5> longForms{{
        {"%F", "%Y-%m-%d"},
        {"%D", "%m/%d/%y"},
        {"%T", "%H:%M:%S"},
        {"%R", "%H:%M"},
        {"%r", "%I:%M:%S %p"},
    }};
    for (std::size_t at = pattern.find('%'); at < pattern.size(); at = pattern.find('%', at + 2)) {
        for (const auto& [shortForm, longForm] : longForms)
            if (pattern.compare(at, shortForm.size(), shortForm) == 0) pattern.replace(at, shortForm.size(), longForm);
    }
    return pattern;
}

/// The text in the system's code page; empty when a character is not in it.
std::string InCodePage(const std::wstring& text) {
    if (::GetACP() == CP_UTF8) return Utf8(text);
    const int size = static_cast<int>(text.size());
    std::string narrow(text.size() * 4, '\0');
    BOOL lost = FALSE;
    const int length = ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), size, narrow.data(),
                                             static_cast<int>(narrow.size()), nullptr, &lost);
    return lost ? std::string() : narrow.substr(0, static_cast<std::size_t>(length));
}

std::wstring ShortPath(const std::wstring& path) {
    std::wstring shortened(::GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
    if (shortened.empty()) return {};
    shortened.resize(::GetShortPathNameW(path.c_str(), shortened.data(), static_cast<DWORD>(shortened.size())));
    return shortened;
}

/// The path for the private-profile functions. They must be the narrow ones: these write a value's bytes as they come,
/// whereas the wide ones take the text apart and write it in the system's code page, so that a UTF-8 text would lose
/// characters and the file would differ from the same file written elsewhere. The path they take has to be in that code
/// page; where it cannot be, the short names that the file system may keep beside the long ones stand in for it. It is
/// absolute, since a relative one is looked for in the system's own folder.
std::string PrivateProfilePath(const std::string& path) {
    const std::wstring absolute = Wide(AbsolutePath(path));
    std::string narrow = InCodePage(absolute);
    if (!narrow.empty()) return narrow;
    narrow = InCodePage(ShortPath(absolute));
    if (!narrow.empty()) return narrow;
    const std::filesystem::path whole(absolute);
    const std::wstring folder = ShortPath(whole.parent_path().wstring());
    if (!folder.empty()) narrow = InCodePage((std::filesystem::path(folder) / whole.filename()).wstring());
    if (narrow.empty())
        throw FileError("Cannot open " + path +
                        ": its name holds characters that this system's code page lacks; rename the folder or file");
    return narrow;
}

bool HasLineEnd(std::string_view text) {
    return text.find_first_of("\r\n") != std::string_view::npos;
}

// The system hands a console routine no context, so that it can reach nothing but a global.
std::atomic<void (*)(int)> stopHandler = nullptr;

/// Runs in a thread that the system starts for it.
BOOL WINAPI OnConsoleEvent(DWORD event) {
    const auto handler = stopHandler.load();
    if (handler == nullptr) return FALSE;
    handler(event == CTRL_C_EVENT ? SIGINT : SIGTERM);
    // The process is ended as soon as this returns from anything but a key, and some seconds later in any case.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) ::Sleep(INFINITE);
    return TRUE;
}

}  // namespace

std::string CurrentUserName() {
    constexpr DWORD bufferSize = 31;
    std::array<char, bufferSize> buffer{};
    DWORD size = bufferSize;
    if (::GetUserNameA(buffer.data(), &size) == 0 || size == 0) return {};
    return Utf8(FromCodePage(CP_ACP, {buffer.data(), size - 1}));
}

std::string ProgramFolder() {
    constexpr std::size_t longestPath = 32768;
    std::wstring program(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size()));
        if (length == 0) return {};
        if (length < program.size()) return Utf8(program.substr(0, program.substr(0, length).find_last_of(L'\\')));
        if (program.size() >= longestPath) return {};
        program.resize(program.size() * 2);
    }
}

bool IsTerminal(StandardStream stream) {
    // Not _isatty, for which the device "NUL" is a terminal too.
    constexpr std::array<DWORD, 3> handles{STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(handles.at(static_cast<std::size_t>(stream))), &mode) != 0;
}

std::shared_ptr<void> CatchStopSignals(void (*handler)(int signal)) {
    struct Restore {
        void (*before)(int);
        ~Restore() {
            ::SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
            stopHandler = before;
        }
    };
    const auto restore = std::shared_ptr<Restore>(new Restore{stopHandler.exchange(handler)});
    ::SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
    return restore;
}

bool StartTextViewer(const std::string& path) {
    // The viewer takes all that follows its name for the path, so that blanks in it need no quotes.
    std::wstring command = L"Notepad.exe " + Wide(path);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process) ==
        0)
        return false;
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return true;
}

std::string WriteAndFlush(const std::string& path, std::string_view content) {
    return WriteAll(path, GENERIC_WRITE, CREATE_ALWAYS, content);
}

std::string AppendAndFlush(const std::string& path, std::string_view content) {
    return WriteAll(path, FILE_APPEND_DATA | SYNCHRONIZE, OPEN_ALWAYS, content);
}

std::string FlushToDisk(const std::string& path) {
    const FileHandle file(::CreateFileW(Wide(path).c_str(), GENERIC_WRITE, sharedByAll, nullptr, OPEN_EXISTING,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.Valid() || ::FlushFileBuffers(file.Get()) == 0) return LastError();
    return {};
}

std::string RenameOver(const std::string& from, const std::string& to) {
    const std::wstring target = Wide(to);
    const DWORD attributes = ::GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return std::make_error_code(std::errc::is_a_directory).message();
    {
        // The folder's rights may allow to replace a file that is itself protected against writing.
        const FileHandle old(::CreateFileW(target.c_str(), GENERIC_WRITE, sharedByAll, nullptr, OPEN_EXISTING,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!old.Valid() && ::GetLastError() == ERROR_ACCESS_DENIED) return LastError();
    }
    if (::MoveFileExW(Wide(from).c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0)
        return LastError();
    return {};
}

std::string TemporaryNameFor(const std::string& path) {
    return path + ".tmp-" + std::to_string(::GetCurrentProcessId());
}

std::tm LocalTime(std::time_t time) {
    std::tm result{};
    ::localtime_s(&result, &time);
    return result;
}

std::tm UtcTime(std::time_t time) {
    std::tm result{};
    ::gmtime_s(&result, &time);
    return result;
}

std::string ProcessLocaleName() {
    std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
    const int length = ::GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size()));
    return length > 0 ? Utf8({name.data(), static_cast<std::size_t>(length) - 1}) : std::string();
}

std::string FormatTime(const std::string& localeName, const std::string& pattern, const std::tm& time) {
    const std::wstring locale = KnownLocale(localeName);
    const std::string letters = WrittenOut(pattern);
    std::string text;
    for (std::size_t at = 0; at < letters.size(); ++at) {
        if (letters[at] != '%' || at + 1 == letters.size()) {
            text += letters[at];
            continue;
        }
        const bool dropZeros = letters[at + 1] == '-' && at + 2 < letters.size();
        at += dropZeros ? 2 : 1;
        text += Conversion(letters[at], dropZeros, locale, time);
    }
    return text;
}

bool LocaleDatePatterns(const std::string& localeName, std::string& shortDate, std::string& longTime) {
    const std::wstring locale = KnownLocale(localeName);
    if (locale.empty()) return false;
    const std::string date = PatternOfPicture(LocaleText(locale, LOCALE_SSHORTDATE));
    const std::string time = PatternOfPicture(LocaleText(locale, LOCALE_STIMEFORMAT));
    if (date.empty() || time.empty()) return false;
    shortDate = date;
    longTime = time;
    return true;
}

std::shared_ptr<void> LockForSaving(const std::string& path) {
    // A file that the system removes with its only handle, also when the process dies: unlike a mutex it may be let go
    // by any thread, and it is seen from other machines too.
    constexpr DWORD pauseMs = 10;
    constexpr int refusalsTaken = 100;
    const std::wstring name = Wide(NativePath(path) + ".lock");
    for (int refusals = 0; refusals < refusalsTaken;) {
        auto lock = std::make_shared<FileHandle>(
            ::CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                          FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        if (lock->Valid()) return lock;
        const DWORD error = ::GetLastError();
        // While the file of the one before is being removed it is refused in the same way as in a protected folder.
        if (error == ERROR_ACCESS_DENIED)
            ++refusals;
        else if (error != ERROR_SHARING_VIOLATION)
            return {};
        ::Sleep(pauseMs);
    }
    return {};
}

std::string PlatformReadIni(const std::string& path, const std::string& section, const std::string& key) {
    std::array<char, 256> value{};
    const DWORD length = ::GetPrivateProfileStringA(section.c_str(), key.c_str(), "", value.data(),
                                                    static_cast<DWORD>(value.size()), PrivateProfilePath(path).c_str());
    return {value.data(), length};
}

bool PlatformWriteIni(const std::string& path, const std::string& section, const std::string& key,
                      const std::string& value) {
    if (HasLineEnd(section) || HasLineEnd(key) || HasLineEnd(value))
        throw std::invalid_argument("a line end inside the value of " + key + " would break the file");
    if (::WritePrivateProfileStringA(section.c_str(), key.c_str(), value.c_str(), PrivateProfilePath(path).c_str()) ==
        0)
        return false;
    return FlushToDisk(path).empty();
}

}  // namespace support

#endif
