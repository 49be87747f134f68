// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/modGlobals.h"

#include <algorithm>
#include <exception>

#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace support {
namespace {

void ReplaceFirst(std::string& text, char from, const char* to) {
    const auto at = text.find(from);
    if (at != std::string::npos) text.replace(at, 1, to);
}

/// Characters, not bytes, of a UTF-8 text.
std::int32_t CharacterCount(const std::string& text) {
    return static_cast<std::int32_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

bool AppendLineToFile(const std::string& strFilePath, const std::string& strText, const Disk& disk) {
    if (Trim(strFilePath).empty()) return true;
    try {
        AppendToFile(strFilePath, strText + crLf, disk, Durability::Process);
        return true;
    } catch (const std::exception&) {
        return false;  // a log that cannot be written must not stop a run
    }
}

std::string GetRunTimeTag(const std::string& strGeneralDate) {
    std::string tag = "(" + strGeneralDate + ")";
    ReplaceFirst(tag, ' ', ", ");
    std::replace(tag.begin(), tag.end(), '/', '-');
    ReplaceFirst(tag, ':', "h");
    ReplaceFirst(tag, ':', "m");
    return tag;
}

std::string OutputFolderPath(const std::string& strPath, const std::string& strGeneralDate) {
    std::string folder = strPath;
    if (!folder.empty() && IsPathSeparator(folder.back())) folder.pop_back();
    return folder + " " + GetRunTimeTag(strGeneralDate) + PathSeparator();
}

std::string MakeOutputFolder(const std::string& strPath, const std::string& strGeneralDate, const Disk& disk) {
    std::string folder = OutputFolderPath(strPath, strGeneralDate);
    try {
        MakeNewFolder(folder.substr(0, folder.size() - 1), disk);
        return folder;
    } catch (const std::exception&) {
        return {};
    }
}

std::int32_t GetCompoundNameExcess(const std::string& strCompoundName) {
    // The run's folder name and its longest data file name may take so many characters of a path together.
    constexpr std::int32_t limit = 125;
    const std::int32_t overshoot = CharacterCount(strCompoundName + " Veltra (YYYY-MM-DD, HHhMMmSS PM)\\" +
                                                  strCompoundName + "_EPI_CE_Spread_9999.999.vesk") -
                                   limit;
    return overshoot <= 0 ? 0 : ToInt32(overshoot / 2.0 + 0.1);
}

}  // namespace support
