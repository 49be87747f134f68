// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/IniDocument.h"

#include <algorithm>
#include <stdexcept>

#include "support/Files.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace support {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// One line of an INI text. begin and end are offsets without the line's end.
struct Line {
    enum class Kind { Other, Section, Entry } kind = Kind::Other;
    std::string_view name;   ///< of the section or key
    std::string_view value;  ///< of an entry, as it stands
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t next = 0;  ///< where the next line begins
};

Line ReadLine(std::string_view text, std::size_t begin) {
    Line line;
    line.begin = begin;
    line.end = std::min(text.find_first_of("\r\n", begin), text.size());
    line.next = line.end;
    if (line.next < text.size()) line.next += text.substr(line.next, 2) == crLf ? 2 : 1;

    const std::string_view content = Trim(text.substr(begin, line.end - begin));
    if (content.empty() || content.front() == ';') return line;
    if (content.front() == '[') {
        const auto close = content.find(']');
        if (close == std::string_view::npos) return line;
        line.kind = Line::Kind::Section;
        line.name = Trim(content.substr(1, close - 1));
        return line;
    }
    const auto equals = content.find('=');
    if (equals == std::string_view::npos) return line;
    line.kind = Line::Kind::Entry;
    line.name = Trim(content.substr(0, equals));
    line.value = Trim(content.substr(equals + 1));
    return line;
}

std::string_view WithoutQuotes(std::string_view value) {
    if (value.size() < 2 || value.front() != value.back()) return value;
    if (value.front() != '"' && value.front() != '\'') return value;
    return value.substr(1, value.size() - 2);
}

std::size_t SkipByteOrderMark(std::string_view text) {
    std::size_t at = 0;
    while (text.substr(at, byteOrderMark.size()) == byteOrderMark)  // more than one where files were joined
        at += byteOrderMark.size();
    return at;
}

bool BreaksText(std::string_view text) {
    return text.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos;
}

/// Where a value is to be written: over a line, or on a new one.
struct Target {
    bool sectionFound = false;
    bool keyFound = false;
    Line line;                 ///< the key's line
    std::size_t insertAt = 0;  ///< behind the section's last line that is not blank
};

Target FindTarget(std::string_view text, std::string_view section, std::string_view key) {
    Target target;
    bool inSection = false;
    for (std::size_t at = 0; at < text.size();) {
        const Line line = ReadLine(text, at);
        at = line.next;
        if (line.kind == Line::Kind::Section) {
            if (target.sectionFound) return target;
            inSection = EqualIgnoringCase(line.name, section);
            target.sectionFound = inSection;
            if (inSection) target.insertAt = line.next;
        } else if (inSection) {
            if (line.kind == Line::Kind::Entry && EqualIgnoringCase(line.name, key)) {
                target.keyFound = true;
                target.line = line;
                return target;
            }
            if (!Trim(text.substr(line.begin, line.end - line.begin)).empty()) target.insertAt = line.next;
        }
    }
    return target;
}

}  // namespace

IniDocument IniDocument::Parse(std::string_view text) {
    IniDocument document;
    int number = 0;
    for (std::size_t at = SkipByteOrderMark(text); at < text.size();) {
        const Line line = ReadLine(text, at);
        at = line.next;
        ++number;
        if (line.kind == Line::Kind::Section) {
            document.sections_.push_back({std::string(line.name), number, {}});
        } else if (line.kind == Line::Kind::Entry && !document.sections_.empty()) {
            document.sections_.back().entries.push_back(
                {std::string(line.name), std::string(WithoutQuotes(line.value)), number});
        }
    }
    return document;
}

const IniDocument::Section* IniDocument::Find(std::string_view section) const {
    for (const auto& candidate : sections_)
        if (EqualIgnoringCase(candidate.name, Trim(section))) return &candidate;
    return nullptr;
}

const IniDocument::Entry* IniDocument::Find(std::string_view section, std::string_view key) const {
    const Section* found = Find(section);
    if (found == nullptr) return nullptr;
    for (const auto& entry : found->entries)
        if (EqualIgnoringCase(entry.key, Trim(key))) return &entry;
    return nullptr;
}

std::optional<std::string> IniDocument::Value(std::string_view section, std::string_view key) const {
    const Entry* entry = Find(section, key);
    if (entry == nullptr) return std::nullopt;
    return entry->value;
}

std::string IniDocument::ShortValue(std::string_view section, std::string_view key) const {
    constexpr std::size_t longestValue = 255;
    return Value(section, key).value_or("").substr(0, longestValue);
}

std::optional<std::string> ReadIniText(const std::string& path, const Disk& disk) {
    constexpr std::uint64_t sizeLimit = 1 << 20;
    try {
        if (disk.Status(NativePath(path)).kind == PathKind::Nothing) return std::nullopt;
    } catch (const DiskError& error) {
        throw FileError("Cannot read " + path + ": " + error.what());
    }
    std::string text = ReadWholeFile(path, sizeLimit, disk);
    // Also behind a mark of UTF-8, which a save leaves out: the rest must be readable again.
    const std::string_view content = std::string_view(text).substr(SkipByteOrderMark(text));
    if (content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF") || content.find('\0') != content.npos)
        throw FileError("Cannot read " + path + ": it is UTF-16 or no text, save it as UTF-8");
    return text;
}

std::string WithIniValue(std::string_view text, std::string_view section, std::string_view key,
                         std::string_view value) {
    if (BreaksText(section) || BreaksText(key) || BreaksText(value))
        throw std::invalid_argument("a line end or a byte 0 inside the value of " + std::string(key) +
                                    " would break the file");
    const std::string_view original = text;
    text.remove_prefix(SkipByteOrderMark(text));
    section = Trim(section);
    key = Trim(key);
    value = value.substr(std::min(value.find_first_not_of(" \t"), value.size()));

    const Target target = FindTarget(text, section, key);
    std::string result(text);
    if (target.keyFound) {
        if (target.line.value == value) return std::string(original);
        const std::string line = std::string(target.line.name) + "=" + std::string(value);
        return result.replace(target.line.begin, target.line.end - target.line.begin, line);
    }
    const std::string line = std::string(key) + "=" + std::string(value) + crLf;
    if (!target.sectionFound) {
        if (!result.empty() && result.back() != '\n' && result.back() != '\r') result += crLf;
        return result + "[" + std::string(section) + "]" + crLf + line;
    }
    const bool lineIsOpen =
        target.insertAt > 0 && result[target.insertAt - 1] != '\n' && result[target.insertAt - 1] != '\r';
    return result.insert(target.insertAt, lineIsOpen ? crLf + line : line);
}

}  // namespace support
