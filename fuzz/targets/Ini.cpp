// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>

#include "fuzz/Fuzz.h"
#include "support/IniDocument.h"
#include "support/Text.h"

namespace {

using support::IniDocument;

/// The value as a reader gets it: without what surrounds it and one pair of quotes.
std::string AsRead(std::string_view value) {
    value = support::Trim(value);
    const bool quoted = value.size() > 1 && value.front() == value.back() && (value[0] == '"' || value[0] == '\'');
    return std::string(quoted ? value.substr(1, value.size() - 2) : value);
}

/// Every value but the one by section and key, with its line's distance from the first one left out.
std::string Others(const IniDocument& document, const std::string& section, const std::string& key) {
    std::string all;
    for (const auto& one : document.Sections())
        for (const auto& entry : one.entries)
            if (!support::EqualIgnoringCase(one.name, section) || !support::EqualIgnoringCase(entry.key, key))
                all += one.name + '\0' + entry.key + '\0' + entry.value + '\0';
    return all;
}

void Change(const std::string& text, const std::string& section, const std::string& key, const std::string& value) {
    const std::string changed = support::WithIniValue(text, section, key, value);
    const auto document = IniDocument::Parse(changed);
    fuzz::Require(document.Value(section, key) == AsRead(value), "a value that was written is read");
    fuzz::Require(Others(document, section, key) == Others(IniDocument::Parse(text), section, key),
                  "the other values stay");
    fuzz::Require(support::WithIniValue(changed, section, key, value) == changed, "writing it again changes nothing");
}

}  // namespace

void fuzz::Try(std::string_view input) {
    const std::string text(input);
    const auto document = IniDocument::Parse(text);
    const auto lines = 1 + std::count_if(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; });
    for (const auto& section : document.Sections()) {
        Require(section.line >= 1 && section.line <= lines, "a section stands on a line of the text");
        Require(document.Find(section.name) != nullptr, "a section is found by its name");
        for (const auto& entry : section.entries)
            Require(entry.line > section.line && entry.line <= lines, "a key stands below its section");
    }
    Change(text, "Veltra", "CompoundName", "  'a b'\t");
    // A writer is handed no names that a line cannot hold.
    if (text.find('\0') != std::string::npos || document.Sections().empty() ||
        document.Sections().back().name.find(']') != std::string::npos)
        return;
    const auto& last = document.Sections().back();
    Change(text, last.name, "New", "=;[x]");
    if (!last.entries.empty()) Change(text, last.name, last.entries.back().key, last.entries.back().value + "1");
}
