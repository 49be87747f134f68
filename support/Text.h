// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace support {

inline constexpr const char* crLf = "\r\n";

/// ASCII characters, whatever the locale.
inline bool IsUpper(char c) {
    return c >= 'A' && c <= 'Z';
}
inline bool IsLower(char c) {
    return c >= 'a' && c <= 'z';
}
inline bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Without blanks and tabs at both ends.
std::string_view Trim(std::string_view text);
/// ASCII letters only.
std::string ToUpper(std::string_view text);
/// Without regard to the case of ASCII letters.
bool EqualIgnoringCase(std::string_view a, std::string_view b);
bool EndsWithIgnoringCase(std::string_view text, std::string_view end);
/// The character of a Unicode code point, which is at most 0x10FFFF and no surrogate, as UTF-8.
std::string Utf8Of(std::uint32_t code);
/// Bytes of the UTF-8 character at the text's start, 0 when there is none.
std::size_t Utf8Length(std::string_view text);
bool IsUtf8(std::string_view text);
/// Whether the text is UTF-8 without control characters other than tab and line ends, as XML wants it.
bool IsPlainText(std::string_view text);
/// The start of a text from elsewhere, to be quoted in a message: "..." where something is cut off, "?" for what is a
/// control character or not UTF-8.
std::string Excerpt(std::string_view text, std::size_t longestBytes = 80);
/// The lines with CR LF between them.
std::string JoinLines(const std::vector<std::string>& lines);
std::vector<std::string> Split(std::string_view text, char separator);
/// The text with blanks, or another character, behind it up to the width; unchanged when it is longer.
std::string PadRight(std::string text, std::size_t width, char filler = ' ');
/// The text with blanks before it up to the width; unchanged when it is longer.
std::string PadLeft(std::string text, std::size_t width);

}  // namespace support
