// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifdef _WIN32

#include "support/PlatformWindowsFiles.h"
// after windows.h, which it needs
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "support/Files.h"
#include "support/IniDocument.h"
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

bool BreaksText(std::string_view text) {
    return text.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
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

void EndAtOnce(const char* text) {
    DWORD written = 0;
    ::WriteFile(::GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
    ::TerminateProcess(::GetCurrentProcess(), 1);
    std::abort();
}

void GuardProcess() {
    // Handles have no numbers that could be taken, and there are no limits on the size of files.
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

std::string SystemErrorText(int number) {
    return std::generic_category().message(number);
}

std::uint64_t ProcessNumber() {
    return ::GetCurrentProcessId();
}

bool IsProcessRunning(std::uint64_t number) {
    constexpr std::uint64_t largestNumber = 0xFFFFFFFF;
    if (number == 0 || number > largestNumber) return true;
    const HANDLE process = ::OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(number));
    // A process of another user is there and may not be looked at.
    if (process == nullptr) return ::GetLastError() != ERROR_INVALID_PARAMETER;
    const bool isRunning = ::WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    ::CloseHandle(process);
    return isRunning;
}

std::string PlatformReadIni(const std::string& path, const std::string& section, const std::string& key, const Disk&) {
    std::array<char, 256> value{};
    const DWORD length = ::GetPrivateProfileStringA(section.c_str(), key.c_str(), "", value.data(),
                                                    static_cast<DWORD>(value.size()), PrivateProfilePath(path).c_str());
    return {value.data(), length};
}

void PlatformWriteIni(const std::string& path, const std::vector<IniEntry>& entries, const Disk& disk) {
    // The system changes the file in place, so that a copy is changed and then put in place as a whole.
    const std::string old = ReadIniText(path, disk).value_or("");
    WholeFileWriter writer(path, old, disk);
    const std::string copy = PrivateProfilePath(writer.TemporaryPath());
    for (const auto& entry : entries) {
        if (BreaksText(entry.section) || BreaksText(entry.key) || BreaksText(entry.value)) continue;
        if (::WritePrivateProfileStringA(entry.section.c_str(), entry.key.c_str(), entry.value.c_str(), copy.c_str()) ==
            0)
            throw FileError("Cannot write " + path + ": " + WindowsErrorText(::GetLastError()));
    }
    ::WritePrivateProfileStringA(nullptr, nullptr, nullptr, copy.c_str());  // what the system may keep in memory
    if (ReadWholeFile(writer.TemporaryPath(), anySize, disk) == old) return;
    disk.Open(writer.TemporaryPath(), Disk::OpenFor::Appending)->Flush();
    writer.Commit();
}

}  // namespace support

#endif
