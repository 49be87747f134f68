// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/SettingsKeys.h"

#include <optional>

#include "support/NumberText.h"
#include "support/Text.h"
#include "support/modFileUtils.h"

namespace veltra {
namespace {

constexpr const char* basic = "Veltra";
constexpr const char* advanced = "Advanced Settings";

std::string Written(const std::string& value) {
    return value;
}
std::string Written(double value) {
    return support::RoundTripText(value);
}
std::string Written(float value) {
    return support::RoundTripText(value);
}
std::string Written(std::int32_t value) {
    return support::GeneralText(value);
}
std::string Written(std::int16_t value) {
    return support::GeneralText(static_cast<int>(value));
}
std::string Written(bool value) {
    return value ? "True" : "False";
}

// The pointer only tells the type to read.
std::optional<std::string> Read(const std::string& text, const std::string*) {
    return text;
}
std::optional<double> Read(const std::string& text, const double*) {
    return support::ParseDouble(text);
}
std::optional<float> Read(const std::string& text, const float*) {
    return support::ParseSingle(text);
}
std::optional<std::int32_t> Read(const std::string& text, const std::int32_t*) {
    return support::ParseInt32(text);
}
std::optional<std::int16_t> Read(const std::string& text, const std::int16_t*) {
    return support::ParseInt16(text);
}
std::optional<bool> Read(const std::string& text, const bool*) {
    return support::ToUpper(text) == "TRUE";
}

template <class Value>
SettingsKey Key(const char* section, const char* key, Value clsInfo_Settings::*property) {
    return {section, key, false, [property](const clsInfo_Settings& settings) { return Written(settings.*property); },
            [property](clsInfo_Settings& settings, const std::string& text) {
                const auto value = Read(text, &(settings.*property));
                if (value) settings.*property = *value;
                return value.has_value();
            }};
}

/// Polarity and Q1 resolution are kept as 32-bit codes but read as 16-bit numbers.
SettingsKey CodeKey(const char* key, std::int32_t clsInfo_Settings::*property) {
    SettingsKey code = Key(basic, key, property);
    code.read = [property](clsInfo_Settings& settings, const std::string& text) {
        const auto value = support::ParseInt16(text);
        if (value) settings.*property = *value;
        return value.has_value();
    };
    return code;
}

SettingsKey MethodPathKey() {
    SettingsKey key = Key(basic, "MethodFilePath", &clsInfo_Settings::StarterMethodFilePath);
    key.takesEmpty = true;
    key.read = [](clsInfo_Settings& settings, const std::string& text) {
        settings.StarterMethodFilePath = text;
        settings.OrvanelProjectName = support::GetFolderNameAtDepth(text, 2);
        return true;
    };
    return key;
}

SettingsKey CompoundNameKey() {
    SettingsKey key = Key(basic, "CompoundName", &clsInfo_Settings::CompoundName);
    key.takesEmpty = true;
    return key;
}

}  // namespace

const std::vector<SettingsKey>& SettingsKeys() {
    using S = clsInfo_Settings;
    static const std::vector<SettingsKey> keys{
        MethodPathKey(),
        CompoundNameKey(),
        Key(basic, "ExpectedMZ", &S::ExpectedMZ),
        CodeKey("Q1Resolution", &S::Q1Resolution),
        CodeKey("Polarity", &S::Polarity),
        Key(advanced, "ERScanRate", &S::Advanced_ERScanRate),
        Key(advanced, "ERCycles", &S::Advanced_ERCycles),
        Key(advanced, "Q1MIDPRampStart", &S::Advanced_Q1MIDPRampStart),
        Key(advanced, "Q1MIDPRampStop", &S::Advanced_Q1MIDPRampStop),
        Key(advanced, "Q1MIDPRampStep", &S::Advanced_Q1MIDPRampStep),
        Key(advanced, "Q1MIDwellTime", &S::Advanced_Q1MIDwellTime),
        Key(advanced, "EPIScanRate", &S::Advanced_EPIScanRate),
        Key(advanced, "EPINum2ndPrec", &S::Advanced_EPINum2ndPrec),
        Key(advanced, "EPICycles", &S::Advanced_EPICycles),
        Key(advanced, "EPIMassStart", &S::Advanced_EPIMassStart),
        Key(advanced, "EPIMassEnd", &S::Advanced_EPIMassEnd),
        Key(advanced, "EPI_CE", &S::Advanced_EPI_CE),
        Key(advanced, "EPI_CES", &S::Advanced_EPI_CES),
        Key(advanced, "MRMDwellTime", &S::Advanced_MRMDwellTime),
        Key(advanced, "MS3ScanRate", &S::Advanced_MS3ScanRate),
        Key(advanced, "MS3FixedFillTime", &S::Advanced_MS3FixedFillTime),
        Key(advanced, "MS3MassStart", &S::Advanced_MS3MassStart),
        Key(advanced, "MS3MassEnd", &S::Advanced_MS3MassEnd),
        Key(advanced, "MS3UseQ0Trapping", &S::Advanced_MS3UseQ0Trapping),
        Key(advanced, "MS3SaveAllFinalMethods", &S::Advanced_MS3SaveAllFinalMethods),
    };
    return keys;
}

std::vector<std::string> ReadSettings(const support::IniDocument& document, clsInfo_Settings& settings) {
    std::vector<std::string> ignored;
    std::string culprit;
    for (const auto& key : SettingsKeys()) {
        const std::string text = document.ShortValue(key.section, key.key);
        if (text.empty() && !key.takesEmpty) continue;
        if (culprit.empty() && key.read(settings, text)) continue;
        const std::string used = key.write(settings);
        if (!culprit.empty() && used == text) continue;
        ignored.push_back(std::string(key.key) + "=" + support::Excerpt(text) + " is ignored" +
                          (culprit.empty() ? ", it is no such value" : " after the wrong " + culprit) + "; " + used +
                          " is used instead");
        if (culprit.empty()) culprit = key.key;
    }
    return ignored;
}

}  // namespace veltra
