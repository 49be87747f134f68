// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/clsInfo_Settings.h"

#include <array>

#include "model/SettingsKeys.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/Text.h"
#include "support/modFileUtils.h"
#include "support/modGlobals.h"

namespace veltra {
namespace {

using support::GeneralText;
using support::JoinLines;

std::vector<support::IniEntry> EntriesOf(const clsInfo_Settings& settings) {
    std::vector<support::IniEntry> entries;
    for (const auto& key : SettingsKeys())
        entries.push_back({key.section, key.key, key.write(settings)});
    return entries;
}

}  // namespace

std::string clsInfo_Settings::DefaultIniPath() {
    return support::JoinPath(support::ProgramFolder(), "Veltra.ini");
}

std::vector<std::string> clsInfo_Settings::ReadGlobalSettings() {
    const auto text = support::ReadIniText(iniPath_, *disk_);
    if (!text) return {};
    support::RemoveLeftoversIn(support::FolderOf(iniPath_), 0, *disk_);
    auto ignored = ReadSettings(support::IniDocument::Parse(*text), *this);
    for (auto& line : ignored)
        line.insert(0, iniPath_ + ": ");
    return ignored;
}

void clsInfo_Settings::StoreGlobalSettings() const {
    if (const std::string failure = WriteGlobalSettings(); !failure.empty()) throw support::FileError(failure);
    clsInfo_Settings stored(iniPath_, *disk_);
    stored.ReadGlobalSettings();
    for (const auto& key : SettingsKeys())
        if (key.write(stored) != key.write(*this))
            throw support::FileError("Cannot store " + std::string(key.key) + "=" + key.write(*this) + " in " +
                                     iniPath_ + ": the file would not be read back so, choose another name");
}

std::string clsInfo_Settings::WriteGlobalSettings() const {
    try {
        const auto lock = support::LockForSaving(iniPath_);
        support::PlatformWriteIni(support::NativePath(iniPath_), EntriesOf(*this), *disk_);
        return {};
    } catch (const std::exception& error) {
        return error.what();
    }
}

std::string clsInfo_Settings::GetSettingsHeadingColumn() const {
    return JoinLines({"Current Settings:", "      Orvanel Project", "      Method", "      Compound Name",
                      "      Q1 Resolution", "      Expected m/z", "      Polarity", "",
                      "Advanced Settings:", "      ER Scan Rate", "      Q1MI DP Ramp", "      EPI Scan Rate",
                      "      EPI # 2nd Prec", "      MS3 Scan Rate", "      Final Methods"});
}

std::string clsInfo_Settings::GetCurrentGlobalSettingsString() const {
    return JoinLines({
        "",
        OrvanelProjectName,
        support::GetFolderNameAtDepth(StarterMethodFilePath, 0),
        CompoundName,
        Q1ResolutionWord(),
        GeneralText(ExpectedMZ) + " Da",
        Polarity == 0   ? "Positive"
        : Polarity == 1 ? "Negative"
                        : "",
        "",
        "",
        Advanced_ERScanRate + " Da/s",
        GeneralText(Advanced_Q1MIDPRampStart) + "V to " + GeneralText(Advanced_Q1MIDPRampStop) + "V with " +
            GeneralText(Advanced_Q1MIDPRampStep) + "V step",
        Advanced_EPIScanRate + " Da/s",
        GeneralText(static_cast<int>(Advanced_EPINum2ndPrec)),
        Advanced_MS3ScanRate + " Da/s",
        Advanced_MS3SaveAllFinalMethods ? "Save all final methods" : "Save optimal method only",
    });
}

std::string clsInfo_Settings::Q1ResolutionWord() const {
    constexpr std::array words{"Low", "Unit", "High", "Open"};
    if (Q1Resolution < 0 || Q1Resolution >= static_cast<std::int32_t>(words.size())) return {};
    return words[static_cast<std::size_t>(Q1Resolution)];
}

clsInfo_Settings::StepRange clsInfo_Settings::AllowedStepRange(float start, float stop) {
    constexpr double smallestStep = 0.001;
    const double span = static_cast<double>(stop) - static_cast<double>(start);
    if (span > 0) return {static_cast<float>(smallestStep), static_cast<float>(span)};
    return {static_cast<float>(span), static_cast<float>(-smallestStep)};
}

std::string clsInfo_Settings::StepOutOfRangeMessage(const StepRange& range) {
    const auto rounded = [](float value) { return GeneralText(support::RoundHalfEven(value, 3)); };
    return "The entered DP ramp step value is out of range (" + rounded(range.low) + " to " + rounded(range.high) +
           ").";
}

std::string clsInfo_Settings::FirstProblem() const {
    constexpr double highestMz = 1700;
    constexpr double lowestMz = 15;
    const auto isDP = [](float value) { return value >= 0 && value <= 200; };

    if (StarterMethodFilePath.empty()) return "Please select a starter acquisition method file in the Settings";
    if (CompoundName.empty()) return "Please enter a compound name in the Settings";
    if (const auto excess = support::GetCompoundNameExcess(CompoundName); excess > 0)
        return "Compound name exceeds limit by " + GeneralText(excess) + " characters, please update the Settings.";
    if (ExpectedMZ > highestMz) return "m/z  cannot exceed 1700 Da, please update the Settings";
    if (!(ExpectedMZ >= lowestMz)) return "m/z must be greater than or equal to 15, please update the Settings";
    if (!isDP(Advanced_Q1MIDPRampStart)) return "The entered DP ramp start value is out of range (0 to 200).";
    if (!isDP(Advanced_Q1MIDPRampStop)) return "The entered DP ramp stop value is out of range (0 to 200).";
    if (Advanced_Q1MIDPRampStart == Advanced_Q1MIDPRampStop)
        return "The entered DP ramp start and stop values are equal, ramp is not valid.";
    const auto range = AllowedStepRange(Advanced_Q1MIDPRampStart, Advanced_Q1MIDPRampStop);
    if (!range.Contains(Advanced_Q1MIDPRampStep)) return StepOutOfRangeMessage(range);
    if (Advanced_EPINum2ndPrec < 1 || Advanced_EPINum2ndPrec > 10)
        return "The entered EPI number of 2nd precursors to use is out of range (1 to 10).";
    return support::CompoundNameProblem(CompoundName);
}

bool clsInfo_Settings::AreSettingsValid(ports::MessageBoxes& messageBoxes) const {
    const std::string problem = FirstProblem();
    if (!problem.empty()) messageBoxes.Show(problem, ports::MessageIcon::None);
    return problem.empty();
}

}  // namespace veltra
