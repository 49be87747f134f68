#include "orvanel/data/MzmlGuard.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "support/Text.h"

namespace orvanel {
namespace {

/// Bytes of a point's m/z, intensity and ramped value.
constexpr std::size_t bytesPerPoint = 3 * sizeof(double);

bool IsBlank(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

/// The bytes that a base64 text stands for, up to the first character that belongs to none; blanks and line ends do not
/// count.
std::string FromBase64(std::string_view text) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    static constexpr auto values = [digits] {
        std::array<signed char, 256> table{};
        table.fill(-1);
        for (std::size_t i = 0; i < digits.size(); ++i)
            table[static_cast<unsigned char>(digits[i])] = static_cast<signed char>(i);
        return table;
    }();
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    unsigned bits = 0;
    int count = 0;
    for (const char c : text) {
        if (IsBlank(c)) continue;
        const int value = values[static_cast<unsigned char>(c)];
        if (value < 0) break;
        bits = bits << 6 | static_cast<unsigned>(value);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xFF);
    }
    return bytes;
}

/// How many bytes come out of a zlib stream, counted until they exceed the limit; 0 when it is no such stream.
std::size_t InflatedSize(std::string packed, std::size_t limit) {
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) throw std::runtime_error("its compressed arrays cannot be unpacked");
    stream.next_in = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_in = static_cast<uInt>(packed.size());
    std::array<Bytef, 65536> unpacked;
    std::size_t size = 0;
    int state = Z_OK;
    while (state == Z_OK && size <= limit) {
        stream.next_out = unpacked.data();
        stream.avail_out = static_cast<uInt>(unpacked.size());
        state = inflate(&stream, Z_NO_FLUSH);
        size += unpacked.size() - stream.avail_out;
    }
    inflateEnd(&stream);
    return size;
}

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
                             reason + ", so this is not sound XML");
}

void CheckReferences(std::string_view text, std::size_t begin, std::size_t end) {
    const std::string_view part = text.substr(0, end);  // a search must not go on to the end of the file each time
    for (auto at = part.find('&', begin); at != std::string_view::npos; at = part.find('&', at + 1))
        if (!IsReference(text.substr(at))) Refuse(text, at, "is no character reference");
}

/// Walks through one tag.
class TagScanner {
  public:
    TagScanner(std::string_view text, std::size_t at) : text_(text), at_(at) {}

    /// @return the place behind the tag, npos where it is not well-formed
    std::size_t End() {
        Take("<");
        Take("/");
        if (!TakeName()) return std::string_view::npos;
        for (;;) {
            const bool blank = TakeBlanks();
            if (Take(">") || Take("/>")) return at_;
            if (!blank || !TakeAttribute()) return std::string_view::npos;
        }
    }

  private:
    bool Take(std::string_view expected) {
        if (!text_.substr(at_).starts_with(expected)) return false;
        at_ += expected.size();
        return true;
    }
    bool TakeBlanks() {
        const std::size_t before = at_;
        while (at_ < text_.size() && IsBlank(text_[at_]))
            ++at_;
        return at_ > before;
    }
    bool TakeName() {
        const std::size_t before = at_;
        while (at_ < text_.size() && !IsBlank(text_[at_]) &&
               std::string_view("<>/=\"'&!?").find(text_[at_]) == std::string_view::npos)
            ++at_;
        return at_ > before;
    }
    bool TakeAttribute() {
        if (!TakeName()) return false;
        TakeBlanks();
        if (!Take("=")) return false;
        TakeBlanks();
        const char quote = at_ < text_.size() ? text_[at_] : ' ';
        if (quote != '"' && quote != '\'') return false;
        const std::size_t closing = text_.find(quote, at_ + 1);
        if (closing == std::string_view::npos || text_.substr(at_, closing - at_).find('<') != std::string_view::npos)
            return false;
        at_ = closing + 1;
        return true;
    }

    std::string_view text_;
    std::size_t at_;
};

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

/// The place behind a tag, comment, CDATA section or instruction; npos where it is not well-formed.
std::size_t MarkupEnd(std::string_view text, std::size_t at) {
    const auto other = OtherMarkupEnd(text, at);
    return other ? *other : TagScanner(text, at).End();
}

}  // namespace

void CheckMarkup(std::string_view text, std::size_t begin, std::size_t end) {
    const std::string_view part = text.substr(0, end);
    for (std::size_t at = begin; at < end;) {
        const std::size_t markup = std::min(part.find('<', at), end);
        CheckReferences(part, at, markup);
        if (markup == end) return;
        at = MarkupEnd(part, markup);
        if (at == std::string_view::npos) Refuse(part, markup, "is no sound tag");
        const bool tag = part[markup + 1] != '!' && part[markup + 1] != '?';
        if (tag) CheckReferences(part, markup, at);
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

void CheckUnpackedSize(std::string_view mzml, std::size_t pointLimit) {
    constexpr std::string_view opening = "<binary";
    const std::size_t limit = pointLimit * bytesPerPoint;
    std::size_t total = 0;
    for (auto at = mzml.find(opening); at != std::string_view::npos; at = mzml.find(opening, at + 1)) {
        const auto behind = at + opening.size();
        if (behind >= mzml.size() || std::string_view("> \t\r\n").find(mzml[behind]) == std::string_view::npos)
            continue;
        const auto begin = mzml.find('>', behind);
        if (begin == std::string_view::npos) return;
        const auto end = mzml.find('<', begin);
        total += InflatedSize(FromBase64(mzml.substr(begin + 1, end - begin - 1)), limit - total);
        if (total > limit) throw std::runtime_error("it holds more data points than can be explored");
    }
}

}  // namespace orvanel
