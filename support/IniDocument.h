// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Disk.h"

namespace support {

/// An INI text in the reading of the platform's private-profile functions: sections and keys without regard to (ASCII)
/// case, blanks and tabs around names and values dropped, a value split off at the first "=", one matching pair of
/// quotes around it dropped, the first of several equal sections or keys counts, a line that starts with ";" is a
/// comment, a byte order mark is skipped, LF, CR LF and CR all end a line.
class IniDocument {
  public:
    struct Entry {
        std::string key;
        std::string value;
        int line = 0;  ///< counted from 1
    };
    struct Section {
        std::string name;
        int line = 0;
        std::vector<Entry> entries;  ///< in file order, repeated keys included
    };

    static IniDocument Parse(std::string_view text);

    const std::vector<Section>& Sections() const { return sections_; }
    /// The first section of that name, or null.
    const Section* Find(std::string_view section) const;
    /// The first entry of that name in the first section of that name, or null.
    const Entry* Find(std::string_view section, std::string_view key) const;
    /// The value, or nothing when section or key is missing.
    std::optional<std::string> Value(std::string_view section, std::string_view key) const;
    /// As the private-profile functions give it: at most 255 bytes, empty when section or key is missing.
    std::string ShortValue(std::string_view section, std::string_view key) const;

  private:
    std::vector<Section> sections_;
};

/// The text of an INI file that programs write, read as one, so that all its values come from one state of it.
/// @return nothing when there is no such file
/// @throws FileError when it cannot be read, is larger than 1 MiB, or is UTF-16
std::optional<std::string> ReadIniText(const std::string& path, const Disk& disk = SystemDisk());

/// The text with one value set: the first match is replaced and keeps its key's spelling, a new key goes to its
/// section's end, a new section to the text's end; everything else stays byte for byte, but a text that changes loses
/// its byte order mark, which hides the first section from other readers.
/// @throws std::invalid_argument when section, key or value holds a line end or a byte 0
std::string WithIniValue(std::string_view text, std::string_view section, std::string_view key, std::string_view value);

}  // namespace support
