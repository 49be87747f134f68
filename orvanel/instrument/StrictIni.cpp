// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/StrictIni.h"

#include <cmath>

#include "ports/HostError.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace orvanel {
namespace {

constexpr std::uint64_t sizeLimit = 4 << 20;
constexpr std::size_t maximumSections = 1000;
constexpr std::size_t maximumKeys = 1000;  ///< of one section
constexpr std::size_t maximumNameBytes = 100;

std::string Range(const Limits& allowed) {
    return support::GeneralText(allowed.minimum) + " to " + support::GeneralText(allowed.maximum);
}

}  // namespace

StrictIni::StrictIni(const std::string& path, std::int32_t errorNumber, const support::Disk& disk)
    : path_(path), errorNumber_(errorNumber) {
    std::string text;
    try {
        text = support::ReadWholeFile(path, sizeLimit, disk);
    } catch (const support::FileError& error) {
        throw ports::HostError(errorNumber, error.what());
    }
    CheckLines(text);
    document_ = support::IniDocument::Parse(text);
    CheckNames();
}

void StrictIni::CheckLines(const std::string& text) const {
    int line = 1;
    bool inSection = false;
    for (std::size_t begin = text.starts_with("\xEF\xBB\xBF") ? 3 : 0; begin < text.size(); ++line) {
        const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
        const std::string_view content = support::Trim(std::string_view(text).substr(begin, end - begin));
        begin = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
        if (!support::IsPlainText(content))
            Fail(line, "\"" + support::Excerpt(content) + "\" is no plain text; the file must be saved as UTF-8");
        if (content.empty() || content[0] == ';') continue;
        const std::string quoted = "\"" + support::Excerpt(content) + "\" ";
        if (content[0] == '[') {
            if (content.size() < 3 || content.find(']') != content.size() - 1)
                Fail(line, quoted + "is no section; a section is written [Name]");
            inSection = true;
        } else if (content[0] == '=' || content.find('=') == std::string_view::npos) {
            Fail(line, quoted + "is no section, no key and no comment; a key is written Key=value");
        } else if (!inSection) {
            Fail(line, quoted + "stands above the first section; move it into its section");
        }
    }
}

void StrictIni::CheckNames() const {
    if (Sections().size() > maximumSections)
        Fail(Sections()[maximumSections].line, "There are more than " + std::to_string(maximumSections) + " sections");
    std::set<std::string> sections;
    for (const Section& section : Sections()) {
        CheckLength(section.line, section.name);
        if (!sections.insert(support::ToUpper(section.name)).second)
            Fail(section.line, "Section [" + section.name + "] occurs twice; join the two");
        if (section.entries.size() > maximumKeys)
            Fail(section.line, "Section [" + section.name + "] has more than " + std::to_string(maximumKeys) + " keys");
        std::set<std::string> keys;
        for (const Entry& entry : section.entries) {
            CheckLength(entry.line, entry.key);
            if (!keys.insert(support::ToUpper(entry.key)).second) Fail(section, entry, "occurs twice; remove one");
        }
    }
}

void StrictIni::CheckLength(int line, const std::string& name) const {
    if (name.size() > maximumNameBytes)
        Fail(line, "\"" + support::Excerpt(name) + "\" is too long for a name, at most " +
                       std::to_string(maximumNameBytes) + " bytes are allowed");
}

const StrictIni::Section& StrictIni::Required(const std::string& section) const {
    const Section* found = document_.Find(section);
    if (found == nullptr) Fail(0, "Section [" + section + "] is missing");
    return *found;
}

std::optional<StrictIni::Entry> StrictIni::Find(const std::string& section, const std::string& key) {
    const Entry* entry = document_.Find(section, key);
    if (entry == nullptr) return std::nullopt;
    readLines_.insert(entry->line);
    return *entry;
}

std::string StrictIni::RequiredText(const std::string& section, const std::string& key) {
    const int sectionLine = Required(section).line;
    const auto entry = Find(section, key);
    if (!entry || entry->value.empty()) Fail(sectionLine, "[" + section + "] has no value for its key " + key);
    return entry->value;
}

double StrictIni::NumberOf(const std::string& section, const Entry& entry, const std::string& text,
                           const Limits& allowed) const {
    const auto value = support::ParseDouble(text);
    if (!value || !allowed.Contains(*value))
        Fail(entry.line, "[" + section + "] " + entry.key + ": \"" + support::Excerpt(text) +
                             "\" is not a number from " + Range(allowed));
    return *value;
}

double StrictIni::RequiredNumber(const std::string& section, const std::string& key, const Limits& allowed) {
    const std::string text = RequiredText(section, key);
    return NumberOf(section, *Find(section, key), text, allowed);
}

double StrictIni::Number(const std::string& section, const std::string& key, const Limits& allowed,
                         double defaultValue) {
    const auto entry = Find(section, key);
    return entry ? NumberOf(section, *entry, entry->value, allowed) : defaultValue;
}

int StrictIni::WholeNumber(const std::string& section, const std::string& key, const Limits& allowed,
                           int defaultValue) {
    const double value = Number(section, key, allowed, defaultValue);
    if (value != std::floor(value))
        Fail(Find(section, key)->line, "[" + section + "] " + key + ": a whole number is needed");
    return static_cast<int>(value);
}

std::vector<double> StrictIni::Numbers(const Section& section, const Entry& entry, std::size_t count,
                                       const Limits& allowed) {
    readLines_.insert(entry.line);
    const auto texts = support::Split(entry.value, ',');
    if (texts.size() != count)
        Fail(section, entry,
             "needs " + std::to_string(count) + " numbers separated by commas, not \"" + support::Excerpt(entry.value) +
                 "\"");
    std::vector<double> numbers;
    numbers.reserve(texts.size());
    for (const std::string& text : texts)
        numbers.push_back(NumberOf(section.name, entry, std::string(support::Trim(text)), allowed));
    return numbers;
}

void StrictIni::RefuseUnread() const {
    for (const Section& section : Sections()) {
        for (const Entry& entry : section.entries)
            if (readLines_.count(entry.line) == 0) Fail(section, entry, "is not a key of this section");
        if (section.entries.empty()) Fail(section.line, "Section [" + section.name + "] is empty");
    }
}

void StrictIni::Fail(int line, const std::string& text) const {
    throw ports::HostError(errorNumber_, path_ + (line > 0 ? ", line " + std::to_string(line) : "") + ": " + text);
}

void StrictIni::Fail(const Section& section, const Entry& entry, const std::string& text) const {
    Fail(entry.line, "[" + section.name + "] " + entry.key + ": " + text);
}

}  // namespace orvanel
