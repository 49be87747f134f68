// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/modFileUtils.h"

#include <exception>
#include <optional>

#include "support/Paths.h"

namespace support {
namespace {

/// The position of the n-th separator from the end, counted from 1.
std::optional<std::size_t> SeparatorFromEnd(const std::string& path, int n) {
    for (std::size_t at = path.size(); at-- > 0;)
        if (IsPathSeparator(path[at]) && --n == 0) return at;
    return std::nullopt;
}

}  // namespace

std::string GetPathToNthBackslash(const std::string& strPath, bool blnIncludeBackslash, std::int16_t intN) {
    if (intN < 0) return {};
    const auto at = SeparatorFromEnd(strPath, intN + 1);
    if (!at) return {};
    return strPath.substr(0, *at + (blnIncludeBackslash ? 1 : 0));
}

std::string GetFolderNameAtDepth(const std::string& strPath, std::int16_t intN) {
    if (intN < 0) return {};
    const auto begin = SeparatorFromEnd(strPath, intN + 1);
    const auto end = intN == 0 ? std::optional(strPath.size()) : SeparatorFromEnd(strPath, intN);
    if (!begin || !end) return {};
    return strPath.substr(*begin + 1, *end - *begin - 1);
}

std::string GetLastTwoPathParts(const std::string& strPath) {
    const auto at = SeparatorFromEnd(strPath, 2);
    return at ? strPath.substr(*at + 1) : std::string();
}

bool modFileUtils::FileExists(const std::string& strPath, const Disk& disk) noexcept {
    try {
        return support::FileExists(strPath, disk);
    } catch (const std::exception&) {
        return false;
    }
}

std::string ReadIniString(const std::string& strIniPath, const std::string& strSection, const std::string& strKey,
                          const Disk& disk) {
    try {
        return PlatformReadIni(NativePath(strIniPath), strSection, strKey, disk);
    } catch (const std::exception&) {
        return {};
    }
}

void WriteIniString(const std::string& strIniPath, const std::string& strSection, const std::string& strKey,
                    const std::string& strValue, const Disk& disk) {
    WriteIniStrings(strIniPath, {{strSection, strKey, strValue}}, disk);
}

void WriteIniStrings(const std::string& strIniPath, const std::vector<IniEntry>& entries, const Disk& disk) {
    try {
        PlatformWriteIni(NativePath(strIniPath), entries, disk);
    } catch (const std::exception&) {
        // A settings file that cannot be written leaves the run as it is.
    }
}

bool OpenInNotepad(const std::string& strPath) {
    return StartTextViewer(NativePath(strPath));
}

}  // namespace support
