// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/config/OrvanelConfig.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>
#include <string_view>

#include "orvanel/FileFailure.h"
#include "orvanel/HostErrorNumbers.h"
#include "orvanel/instrument/StrictIni.h"
#include "support/Files.h"
#include "support/IniDocument.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {

namespace {

using support::EqualIgnoringCase;
using support::GeneralText;

constexpr int maximumCompounds = 20;

class Reader {
  public:
    Reader(const std::string& path, const support::Disk& disk) : file_(path, errorNumber::badConfiguration, disk) {}

    const std::vector<support::IniDocument::Section>& Sections() const { return file_.Sections(); }
    [[noreturn]] void Fail(int line, const std::string& text) const { file_.Fail(line, text); }
    [[noreturn]] void FailValue(const support::IniDocument::Entry& entry, const std::string& allowed) const {
        Fail(entry.line, entry.key + "=" + support::Excerpt(entry.value) + " is not allowed, " + allowed + " is");
    }

    template <typename Whole>
    Whole ReadWhole(const support::IniDocument::Entry& entry, Whole minimum, Whole maximum) const {
        Whole value{};
        const char* end = entry.value.data() + entry.value.size();
        const auto [stop, error] = std::from_chars(entry.value.data(), end, value);
        if (error != std::errc() || stop != end || value < minimum || value > maximum)
            FailValue(entry, "a whole number from " + std::to_string(minimum) + " to " + std::to_string(maximum));
        return value;
    }

    double ReadNumber(const support::IniDocument::Entry& entry, double minimum, double maximum) const {
        const auto value = support::ParseDouble(entry.value);
        if (!value || *value < minimum || *value > maximum)
            FailValue(entry, "a number from " + GeneralText(minimum) + " to " + GeneralText(maximum));
        return *value;
    }

  private:
    StrictIni file_;
};

bool IsAbsolute(const std::string& path) {
    return (!path.empty() && support::IsPathSeparator(path[0])) || (path.size() > 1 && path[1] == ':');
}

std::string WithoutSeparatorAtEnd(std::string folder) {
    while (folder.size() > 1 && support::IsPathSeparator(folder.back()))
        folder.pop_back();
    return folder;
}

std::string Resolved(const std::string& iniPath, const std::string& path) {
    return IsAbsolute(path) ? path : support::JoinPath(support::FolderOf(iniPath), path);
}

/// What follows the stem in "Compound7": 1 for nothing, or nothing when it is no number from 1 to 20.
std::optional<int> NumberBehind(std::string_view key, std::string_view stem) {
    if (key.size() < stem.size() || !EqualIgnoringCase(key.substr(0, stem.size()), stem)) return std::nullopt;
    const std::string_view digits = key.substr(stem.size());
    if (digits.empty()) return 1;
    int number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || stop != digits.data() + digits.size() || digits[0] == '0') return std::nullopt;
    if (number < 1 || number > maximumCompounds) return std::nullopt;
    return number;
}

void ReadHostSection(const Reader& reader, const support::IniDocument::Section& section, OrvanelConfig& config) {
    for (const auto& entry : section.entries) {
        if (EqualIgnoringCase(entry.key, "Running"))
            config.running = reader.ReadWhole<int>(entry, 0, 1) == 1;
        else if (EqualIgnoringCase(entry.key, "ModelCode"))
            config.modelCode = reader.ReadWhole<std::int32_t>(entry, 1, 9999);
        else if (EqualIgnoringCase(entry.key, "OperatingMode"))
            config.operatingMode = reader.ReadWhole<int>(entry, 0, 99);
        else if (EqualIgnoringCase(entry.key, "ClockFactor")) {
            config.clockFactor = reader.ReadNumber(entry, 0, 100000);
            if (config.clockFactor != 0 && config.clockFactor < 0.1)
                reader.FailValue(entry, "0 or a number from 0.1 to 100000");
        } else if (EqualIgnoringCase(entry.key, "DataLocation")) {
            if (!entry.value.empty())
                config.dataLocation = WithoutSeparatorAtEnd(Resolved(config.iniPath, entry.value));
        } else if (EqualIgnoringCase(entry.key, "AppLocation")) {
            if (!entry.value.empty()) config.appLocation = WithoutSeparatorAtEnd(Resolved(config.iniPath, entry.value));
        } else {
            reader.Fail(entry.line, "unknown key \"" + entry.key +
                                        "\", [Orvanel] may hold Running, ModelCode, OperatingMode, ClockFactor, "
                                        "DataLocation and AppLocation");
        }
    }
}

void ReadSampleSection(const Reader& reader, const support::IniDocument::Section& section, OrvanelConfig& config) {
    struct Numbered {
        SampleEntry entry;
        std::optional<support::IniDocument::Entry> amount;
    };
    std::map<int, Numbered> compounds;
    for (const auto& entry : section.entries) {
        if (const auto number = NumberBehind(entry.key, "Compound")) {
            if (entry.value.empty()) reader.FailValue(entry, "the name of a compound or the path of a compound file");
            if (!compounds[*number].entry.compound.empty())
                reader.Fail(entry.line, "compound " + std::to_string(*number) + " is given twice, remove one");
            const bool isPath = entry.value.find_first_of("\\/") != std::string::npos;
            compounds[*number].entry.compound = isPath ? Resolved(config.iniPath, entry.value) : entry.value;
        } else if (const auto amountNumber = NumberBehind(entry.key, "Amount")) {
            const double amount = reader.ReadNumber(entry, 0, 1e6);
            if (amount <= 0) reader.FailValue(entry, "a number above 0");
            if (compounds[*amountNumber].amount)
                reader.Fail(entry.line, "amount " + std::to_string(*amountNumber) + " is given twice, remove one");
            compounds[*amountNumber].entry.amount = amount;
            compounds[*amountNumber].amount = entry;
        } else {
            reader.Fail(entry.line, "unknown key \"" + entry.key +
                                        "\", [Sample] may hold Compound1 to Compound20 and Amount1 to Amount20");
        }
    }
    for (const auto& [number, numbered] : compounds) {
        if (numbered.entry.compound.empty())
            reader.Fail(numbered.amount->line, numbered.amount->key + " belongs to no compound, add Compound" +
                                                   std::to_string(number) + " or remove it");
        config.sample.push_back(numbered.entry);
    }
}

void ReadSimulationSection(const Reader& reader, const support::IniDocument::Section& section, OrvanelConfig& config) {
    for (const auto& entry : section.entries) {
        if (EqualIgnoringCase(entry.key, "Seed"))
            config.seed = reader.ReadWhole<std::uint64_t>(entry, 0, UINT64_MAX);
        else if (EqualIgnoringCase(entry.key, "NoiseLevel"))
            config.noiseLevel = reader.ReadNumber(entry, 0, 100);
        else
            reader.Fail(entry.line, "unknown key \"" + entry.key + "\", [Simulation] may hold Seed and NoiseLevel");
    }
}

/// "a number from 0.3 to 0.9" for every number that a fault's value holds.
std::string AllowedText(const FaultKey& key) {
    std::string text;
    for (const FaultStrength& strength : key.strengths)
        text += (text.empty() ? "" : ", ") + std::string(strength.whole ? "a whole number" : "a number") + " from " +
                GeneralText(strength.allowed.minimum) + " to " + GeneralText(strength.allowed.maximum);
    return text;
}

void ReadFault(const Reader& reader, const support::IniDocument::Entry& entry, const FaultKey& key,
               FaultSettings& faults) {
    const auto parts = support::Split(entry.value, ',');
    if (parts.size() != key.strengths.size()) reader.FailValue(entry, AllowedText(key));
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const FaultStrength& strength = key.strengths[i];
        const std::string text(support::Trim(parts[i]));
        const auto value = support::ParseDouble(text);
        const bool fraction = strength.whole && text.find_first_not_of("0123456789") != std::string::npos;
        if (!value || fraction || !strength.allowed.Contains(*value)) reader.FailValue(entry, AllowedText(key));
        faults.*strength.value = *value;
    }
}

void ReadFaultsSection(const Reader& reader, const support::IniDocument::Section& section, OrvanelConfig& config) {
    const auto& keys = FaultKeys();
    for (const auto& entry : section.entries) {
        const auto key = std::find_if(keys.begin(), keys.end(),
                                      [&](const FaultKey& known) { return EqualIgnoringCase(known.name, entry.key); });
        if (key == keys.end()) {
            std::string names;
            for (const FaultKey& known : keys)
                names += (names.empty() ? "" : &known == &keys.back() ? " and " : ", ") + std::string(known.name);
            reader.Fail(entry.line, "unknown key \"" + entry.key + "\", [Faults] may hold " + names);
        }
        ReadFault(reader, entry, *key, config.faults);
    }
}

}  // namespace

OrvanelConfig ReadOrvanelConfig(const std::string& iniPath, const std::string& defaultAppLocation,
                                const support::Disk& disk) {
    OrvanelConfig config;
    config.iniPath = support::AbsolutePath(iniPath);
    config.dataLocation = WithoutSeparatorAtEnd(support::FolderOf(config.iniPath));
    config.appLocation = WithoutSeparatorAtEnd(defaultAppLocation);
    if (!AsHostError(errorNumber::badConfiguration, [&] { return support::FileExists(iniPath, disk); })) {
        config.running = false;
        return config;
    }

    const Reader reader(iniPath, disk);
    for (const auto& section : reader.Sections()) {
        if (EqualIgnoringCase(section.name, "Orvanel"))
            ReadHostSection(reader, section, config);
        else if (EqualIgnoringCase(section.name, "Sample"))
            ReadSampleSection(reader, section, config);
        else if (EqualIgnoringCase(section.name, "Simulation"))
            ReadSimulationSection(reader, section, config);
        else if (EqualIgnoringCase(section.name, "Faults"))
            ReadFaultsSection(reader, section, config);
        else
            reader.Fail(section.line, "unknown section [" + section.name +
                                          "], there may be [Orvanel], [Sample], [Simulation] and [Faults]");
    }
    return config;
}

}  // namespace orvanel
