// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/CleanText.h"

#include <algorithm>
#include <cstddef>

#include "support/Text.h"

namespace cli {
namespace {

bool IsControl(std::string_view character) {
    const auto first = static_cast<unsigned char>(character[0]);
    if (character.size() == 1) return first < 0x20 || first == 0x7F;
    return first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
}

/// @param kept control characters that stay
std::string Cleaned(std::string_view text, std::string_view kept) {
    std::string clean;
    while (!text.empty()) {
        const std::size_t length = support::Utf8Length(text);
        const bool stays = length > 0 && (!IsControl(text.substr(0, length)) || kept.find(text[0]) != kept.npos);
        clean += stays ? text.substr(0, length) : "\xEF\xBF\xBD";
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return clean;
}

/// How many bytes at the text's end begin a UTF-8 character that needs more of them.
std::size_t UnfinishedBytes(std::string_view text) {
    for (std::size_t count = 1; count <= std::min<std::size_t>(text.size(), 3); ++count) {
        const auto byte = static_cast<unsigned char>(text[text.size() - count]);
        if (byte < 0x80) return 0;
        if (byte < 0xC0) continue;
        const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : 2;
        return length > count ? count : 0;
    }
    return 0;
}

}  // namespace

std::string CleanText(std::string_view text) {
    return Cleaned(text, {});
}

CleanBuffer::~CleanBuffer() {
    const std::string rest = CleanText(begun_);
    target_.sputn(rest.data(), static_cast<std::streamsize>(rest.size()));
}

bool CleanBuffer::Put(std::string_view text) {
    begun_ += text;
    const std::size_t whole = begun_.size() - UnfinishedBytes(begun_);
    const std::string clean = Cleaned(std::string_view(begun_).substr(0, whole), "\t\n");
    begun_.erase(0, whole);
    const auto size = static_cast<std::streamsize>(clean.size());
    return target_.sputn(clean.data(), size) == size;
}

CleanBuffer::int_type CleanBuffer::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    const char byte = traits_type::to_char_type(character);
    return Put({&byte, 1}) ? character : traits_type::eof();
}

std::streamsize CleanBuffer::xsputn(const char* text, std::streamsize size) {
    return Put({text, static_cast<std::size_t>(size)}) ? size : 0;
}

int CleanBuffer::sync() {
    return target_.pubsync();
}

}  // namespace cli
