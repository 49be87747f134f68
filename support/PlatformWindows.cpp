#ifdef _WIN32

#define NOMINMAX
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// after windows.h, which it needs
#include <shellapi.h>

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
#include "support/PlatformWindowsText.h"

namespace support {
namespace {

std::wstring FromCodePage(UINT codePage, std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(::MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0)),
                      L'\0');
    ::MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

}  // namespace

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

bool OpenWithDesktop(const std::string& path) {
    constexpr INT_PTR lastErrorCode = 32;
    const HINSTANCE opened = ::ShellExecuteW(nullptr, L"open", Wide(path).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(opened) > lastErrorCode;
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
