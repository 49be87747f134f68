// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <chrono>
#include <cstdint>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "support/Disk.h"

namespace support {

/// The seam to the operating system: everything else is the same on all systems.

#ifdef _WIN32
inline constexpr char platformPathSeparator = '\\';
#else
inline constexpr char platformPathSeparator = '/';
#endif

/// The current user's name, or empty when the system does not tell. At most 30 characters are asked for: a longer name
/// counts as not told.
std::string CurrentUserName();

/// The folder of the running program, without a separator at its end; empty when the system does not tell.
std::string ProgramFolder();

enum class StandardStream { Input = 0, Output = 1, Error = 2 };
/// Whether a person sits at the other end of the stream.
bool IsTerminal(StandardStream stream);

/// First of all in a program's main: what was started without standard streams gets some that fail, and a limit on
/// the size of files makes writing fail instead of ending the process.
void GuardProcess();

/// Lets the handler take Ctrl-C, a terminal that closes and requests to terminate until the result is destroyed. A read
/// from the terminal that is under way ends then. A reader of our output that goes away is no reason to end meanwhile.
std::shared_ptr<void> CatchStopSignals(void (*handler)(int signal));
/// Prints the text on the error stream and ends the process with status 1. May be called from a signal's handler.
[[noreturn]] void EndAtOnce(const char* text);

/// Starts a text viewer on the file and does not wait. @return false when none could be started
bool StartTextViewer(const std::string& path);
/// Opens the file in the program that the desktop has for files of its kind, and does not wait for that program.
/// @return false when the desktop has none, as far as it tells within half a second
bool OpenWithDesktop(const std::string& path);

/// What a value of errno means, in English: a toolkit sets the process's locale, and a message has one language.
std::string SystemErrorText(int number);

std::uint64_t ProcessNumber();
/// Whether a process of that number runs on this machine; true where the system does not tell.
bool IsProcessRunning(std::uint64_t number);

std::tm LocalTime(std::time_t time);
std::tm UtcTime(std::time_t time);
/// The locale whose dates and times this process writes; empty when none is set.
std::string ProcessLocaleName();
/// strftime in a named locale, in UTF-8 whatever the locale's encoding; the "C" locale when the system does not know
/// it. On every system: the letters a A b B d m y Y H I M S p F D T R r and %, and "%-" before one that is a number,
/// which drops its leading zeros.
std::string FormatTime(const std::string& localeName, const std::string& pattern, const std::tm& time);
/// The locale's strftime patterns for a short date and a long time, in its own encoding; false when the locale is
/// unknown or "C".
bool LocaleDatePatterns(const std::string& localeName, std::string& shortDate, std::string& longTime);

inline constexpr std::chrono::milliseconds savingPatience{5000};
/// Keeps every other process and thread that asks for the same file's lock waiting until the result is destroyed.
/// Nothing is left on the disk. Empty, and nothing is kept out, when the file's folder cannot be locked.
/// @param patience how long to wait for another one that has the lock
/// @throws FileError after that, naming its process where the system tells
std::shared_ptr<void> LockForSaving(const std::string& path, std::chrono::milliseconds patience = savingPatience);

/// What became of the wish to be the only one that uses a file.
struct SoleUse {
    std::shared_ptr<void> lock;  ///< keeps others out until it is destroyed or the process ends in any way
    bool takenByAnother = false;
    std::string holder;   ///< number of the process that has it; empty when it cannot be read
    std::string failure;  ///< why neither can be told
};
/// Does not wait. While the lock is held there is a file PATH.in-use with the number of the process. One without a
/// holder is removed and made anew; nothing that exists is written to, and no link followed. All members are empty
/// where nobody could write the file either, as on a read-only disk.
SoleUse TrySoleUse(const std::string& path);

struct IniEntry {
    std::string section;
    std::string key;
    std::string value;
};

/// The platform's private-profile calls. @return at most 255 bytes
std::string PlatformReadIni(const std::string& path, const std::string& section, const std::string& key,
                            const Disk& disk);
/// Replaces the file as a whole. An entry that would break the file is left out.
/// @throws std::exception when nothing was written
void PlatformWriteIni(const std::string& path, const std::vector<IniEntry>& entries, const Disk& disk);

}  // namespace support
