// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz/Fuzz.h"
#include "model/SettingsKeys.h"
#include "model/clsInfo_Settings.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/IniDocument.h"
#include "tests/support_files/RecordedMessageBoxes.h"

namespace {

bool IsWrapped(const std::string& value) {
    return value.size() > 1 && value.front() == value.back() && (value[0] == '"' || value[0] == '\'');
}

}  // namespace

/// Any file can be read as settings; what was read is read again after it was written; and settings that pass the
/// checks name their files with a name that files can have.
void fuzz::Try(std::string_view input) {
    const std::string path = FileWith("Veltra.ini", input);
    veltra::clsInfo_Settings settings(path);
    try {
        settings.ReadGlobalSettings();
    } catch (const support::FileError& error) {
        RequireRefusal(error.what(), path);
        return;
    }
    RecordedMessageBoxes boxes;
    if (settings.AreSettingsValid(boxes))
        Require(support::IsPortableName(settings.CompoundName), "valid settings have a compound name for files");
    else
        Require(boxes.shown.size() == 1, "what is wrong is said once");

    std::string text;
    for (const auto& key : veltra::SettingsKeys())
        text = support::WithIniValue(text, key.section, key.key, key.write(settings));
    veltra::clsInfo_Settings again(FileWith("Written.ini", text));
    again.ReadGlobalSettings();
    for (const auto& key : veltra::SettingsKeys()) {
        const std::string value = key.write(settings);
        // The reading drops blanks and one pair of quotes around a value and cuts it at 255 bytes.
        if (value.empty() || IsWrapped(value) || value.size() > 200) continue;
        Require(key.write(again) == value, std::string("a setting is read as it was written: ") + key.key);
    }
}
