// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/MzmlGuard.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "orvanel/data/XmlTag.h"
#include "support/Text.h"

namespace orvanel {
namespace {

constexpr std::size_t longestReference = 12;

bool IsCharacter(std::uint32_t code) {
    if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
    return code < 0xD800 || (code >= 0xE000 && code < 0xFFFE) || (code >= 0x10000 && code <= 0x10FFFF);
}

struct NumberedCharacter {
    std::uint32_t code;
    std::size_t length;  ///< of the whole reference
};

/// @param text begins with "&"
std::optional<NumberedCharacter> NumberedCharacterAt(std::string_view text) {
    constexpr std::string_view opening = "&#";
    if (!text.starts_with(opening)) return std::nullopt;
    text = text.substr(0, longestReference);
    const bool hexadecimal = text.substr(opening.size()).starts_with("x");
    const char* const begin = text.data() + opening.size() + (hexadecimal ? 1 : 0);
    const char* const limit = text.data() + text.size();
    std::uint32_t code = 0;
    const auto [end, error] = std::from_chars(std::min(begin, limit), limit, code, hexadecimal ? 16 : 10);
    if (error != std::errc() || end == limit || *end != ';' || !IsCharacter(code)) return std::nullopt;
    return NumberedCharacter{code, static_cast<std::size_t>(end - text.data()) + 1};
}

/// @param text begins with "&"
bool IsReference(std::string_view text) {
    for (const std::string_view name : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"})
        if (text.starts_with(name)) return true;
    return NumberedCharacterAt(text).has_value();
}

/// As UTF-8, or as a named reference where it would be markup.
std::string Escaped(std::uint32_t code) {
    switch (code) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&apos;";
        default:
            return support::Utf8Of(code);
    }
}

[[noreturn]] void Refuse(std::string_view text, std::size_t at, const std::string& reason) {
    const auto line = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    throw std::runtime_error("line " + std::to_string(line) + ": \"" + support::Excerpt(text.substr(at), 40) + "\" " +
                             reason);
}

[[noreturn]] void RefuseXml(std::string_view text, std::size_t at, const std::string& reason) {
    Refuse(text, at, reason + ", so this is not sound XML");
}

void CheckReferences(std::string_view text, std::size_t begin, std::size_t end) {
    const std::string_view part = text.substr(0, end);  // a search must not go on to the end of the file each time
    for (auto at = part.find('&', begin); at != std::string_view::npos; at = part.find('&', at + 1))
        if (!IsReference(text.substr(at))) RefuseXml(text, at, "is no character reference");
}

/// What mzML does not allow in tags, but the library takes.
class TagRules {
  public:
    /// @param at where the tag begins in the text
    void Check(const XmlTag& tag, std::string_view text, std::size_t at);

  private:
    static void CheckTerm(std::string_view accession, std::string_view text, std::size_t at);

    std::size_t groups_ = 0;  ///< groups of parameters that are open
};

void TagRules::Check(const XmlTag& tag, std::string_view text, std::size_t at) {
    if (tag.name == "referenceableParamGroup") {
        if (!tag.closing && !tag.empty) ++groups_;
        if (tag.closing && groups_ > 0) --groups_;
    }
    // The library would follow them in circles, and over many ways to one group.
    if (tag.name == "referenceableParamGroupRef" && !tag.closing && groups_ > 0)
        Refuse(text, at, "stands in a group of parameters; groups that refer to groups are not mzML");
    for (const auto& [name, value] : tag.attributes)
        if (name == "accession") CheckTerm(value, text, at);
}

/// The library takes the number behind the colon as C does, with blanks, signs and overflow, so that a term can be
/// written in ways that do not show which one it is.
void TagRules::CheckTerm(std::string_view accession, std::string_view text, std::size_t at) {
    constexpr std::size_t mostDigits = 8;
    const auto quoted = [&] { return "has the accession \"" + support::Excerpt(accession, 40) + "\""; };
    const auto isWordPart = [](char c) {
        return support::IsDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '-' ||
               c == '.';
    };
    const std::size_t colon = accession.find(':');
    if (colon == std::string_view::npos) return;
    const std::string_view number = accession.substr(colon + 1);
    const auto digits =
        static_cast<std::size_t>(std::find_if_not(number.begin(), number.end(), support::IsDigit) - number.begin());
    if (!std::all_of(number.begin(), number.end(), isWordPart) || number.starts_with('-') || digits > mostDigits)
        Refuse(text, at, quoted() + ", which names no term");
}

constexpr std::string_view cdataOpening = "<![CDATA[";
constexpr std::string_view cdataClosing = "]]>";

/// The place behind a comment, CDATA section or instruction, npos where it has no end; nothing where none begins.
std::optional<std::size_t> OtherMarkupEnd(std::string_view text, std::size_t at) {
    constexpr std::pair<std::string_view, std::string_view> others[] = {
        {"<!--", "-->"}, {cdataOpening, cdataClosing}, {"<?", "?>"}};
    for (const auto& [opening, closing] : others) {
        if (!text.substr(at).starts_with(opening)) continue;
        const auto end = text.find(closing, at + opening.size());
        return end == std::string_view::npos ? end : end + closing.size();
    }
    return std::nullopt;
}

}  // namespace

void CheckMarkup(std::string_view text, std::size_t begin, std::size_t end) {
    const std::string_view part = text.substr(0, end);
    if (const auto zero = part.find('\0', begin); zero != std::string_view::npos)
        RefuseXml(part, zero, "begins with a byte 0");
    TagRules rules;
    for (std::size_t at = begin; at < end;) {
        const std::size_t markup = std::min(part.find('<', at), end);
        CheckReferences(part, at, markup);
        if (markup == end) return;
        if (const auto other = OtherMarkupEnd(part, markup)) {
            at = *other;
        } else if (const auto tag = XmlTagAt(part, markup)) {
            at = tag->end;
            CheckReferences(part, markup, at);
            rules.Check(*tag, part, markup);
        } else {
            at = std::string_view::npos;
        }
        if (at == std::string_view::npos) RefuseXml(part, markup, "is no sound tag");
    }
}

std::string PlainMarkup(std::string text) {
    const auto holds = [&](std::string_view part) { return text.find(part) != std::string::npos; };
    if (!holds("&#") && !holds("<!") && !holds("<?")) return text;
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = std::string_view(text).substr(at);
        if (const auto end = OtherMarkupEnd(text, at)) {
            if (rest.starts_with(cdataOpening))
                for (const char c :
                     std::string_view(text).substr(0, *end - cdataClosing.size()).substr(at + cdataOpening.size()))
                    plain +=
                        c == '&' || c == '<' || c == '>' ? Escaped(static_cast<unsigned char>(c)) : std::string(1, c);
            at = *end;
        } else if (const auto character = NumberedCharacterAt(rest)) {
            plain += Escaped(character->code);
            at += character->length;
        } else {
            plain += text[at++];
        }
    }
    return plain;
}

}  // namespace orvanel
