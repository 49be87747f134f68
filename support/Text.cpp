// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Text.h"

#include <algorithm>

namespace support {

namespace {
char UpperOf(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
}  // namespace

std::string_view Trim(std::string_view text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string ToUpper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), UpperOf);
    return upper;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return UpperOf(x) == UpperOf(y); });
}

std::vector<std::string> Split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    for (;;) {
        const auto at = text.find(separator);
        parts.emplace_back(text.substr(0, at));
        if (at == std::string_view::npos) return parts;
        text.remove_prefix(at + 1);
    }
}

bool EndsWithIgnoringCase(std::string_view text, std::string_view end) {
    return text.size() >= end.size() && EqualIgnoringCase(text.substr(text.size() - end.size()), end);
}

std::string Utf8Of(std::uint32_t code) {
    if (code < 0x80) return {static_cast<char>(code)};
    const int followers = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    const std::uint32_t firstBits = 0xFF00U >> (followers + 1) & 0xFF;
    std::string text(1, static_cast<char>(firstBits | code >> 6 * followers));
    for (int follower = followers - 1; follower >= 0; --follower)
        text += static_cast<char>(0x80 | (code >> 6 * follower & 0x3F));
    return text;
}

std::size_t Utf8Length(std::string_view text) {
    if (text.empty()) return 0;
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xF5 ? 0 : first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : first >= 0xC2 ? 2 : 0;
    if (length == 0 || text.size() < length) return 0;
    for (std::size_t at = 1; at < length; ++at)
        if ((byte(at) & 0xC0) != 0x80) return 0;
    const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
    const bool outside = (first == 0xED && byte(1) >= 0xA0) || (first == 0xF4 && byte(1) >= 0x90);
    return overlong || outside ? 0 : length;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = Utf8Length(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

bool IsPlainText(std::string_view text) {
    return IsUtf8(text) && std::none_of(text.begin(), text.end(), [](char c) {
               return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\r' && c != '\n';
           });
}

std::string Excerpt(std::string_view text, std::size_t longestBytes) {
    std::string excerpt;
    while (!text.empty()) {
        const std::size_t length = Utf8Length(text);
        if (excerpt.size() + std::max<std::size_t>(length, 1) > longestBytes) return excerpt + "...";
        const bool readable = length > 0 && static_cast<unsigned char>(text[0]) >= 0x20;
        excerpt += readable ? text.substr(0, length) : "?";
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return excerpt;
}

std::string JoinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (i > 0) text += crLf;
        text += lines[i];
    }
    return text;
}

std::string PadRight(std::string text, std::size_t width, char filler) {
    if (text.size() < width) text.append(width - text.size(), filler);
    return text;
}

std::string PadLeft(std::string text, std::size_t width) {
    if (text.size() < width) text.insert(0, width - text.size(), ' ');
    return text;
}

}  // namespace support
