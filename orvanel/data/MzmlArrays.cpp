// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/MzmlArrays.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string>

#include "orvanel/data/XmlTag.h"
#include "support/Text.h"

namespace orvanel {
namespace {

constexpr std::size_t bytesPerValue = sizeof(double);     ///< of the widest type
constexpr std::size_t bytesPerPoint = 3 * bytesPerValue;  ///< m/z, intensity and ramped value
constexpr std::size_t chunkBytes = 65536;                 ///< that are unpacked at once
constexpr const char* tooManyPoints = "it holds more data points than can be explored";

/// The bytes that a base64 text stands for; blanks and line ends do not count.
/// @return nothing when it is no such text
std::optional<std::string> FromBase64(std::string_view text) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    static constexpr auto values = [digits] {
        std::array<std::int16_t, 256> table{};
        table.fill(-1);
        for (std::size_t i = 0; i < digits.size(); ++i)
            table[static_cast<unsigned char>(digits[i])] = static_cast<std::int16_t>(i);
        return table;
    }();
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    unsigned bits = 0;
    int count = 0;
    bool ended = false;
    for (const char c : text) {
        if (IsXmlBlank(c)) continue;
        const int value = values[static_cast<unsigned char>(c)];
        ended = ended || c == '=';
        if (ended ? c != '=' : value < 0) return std::nullopt;
        if (ended) continue;
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
    std::array<Bytef, chunkBytes> unpacked;
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

/// Follows the tags of a document.
class ArrayCheck {
  public:
    explicit ArrayCheck(std::size_t pointLimit) : pointLimit_(pointLimit), bytesLeft_(pointLimit * bytesPerPoint) {}

    /// @param rest the text behind the tag
    void Take(const XmlTag& tag, std::string_view rest);

  private:
    std::size_t LengthIn(const XmlTag& tag, std::string_view attribute, std::size_t otherwise) const;
    void CheckArray(std::string_view text);
    [[noreturn]] void Refuse(const std::string& reason) const { throw std::runtime_error(where_ + reason); }

    std::size_t pointLimit_;
    std::size_t bytesLeft_;
    std::size_t spectra_ = 0;
    std::size_t chromatograms_ = 0;
    std::string where_;
    std::size_t pointsOfOwner_ = 0;  ///< that the spectrum or chromatogram announces
    std::size_t values_ = 0;         ///< ... or its array, which may differ
};

std::size_t ArrayCheck::LengthIn(const XmlTag& tag, std::string_view attribute, std::size_t otherwise) const {
    const auto found = tag.Value(attribute);
    if (!found) return otherwise;
    const auto text = support::Trim(*found);
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), length);
    if (error != std::errc() || end != text.data() + text.size())
        Refuse(std::string(attribute) + " is \"" + support::Excerpt(*found) + "\", which is no number of points");
    if (length > pointLimit_) throw std::runtime_error(tooManyPoints);
    return length;
}

void ArrayCheck::CheckArray(std::string_view text) {
    const std::size_t end = text.find('<');
    if (end == std::string_view::npos || !text.substr(end).starts_with("</binary"))
        Refuse("an array holds something else than its values");
    const auto packed = FromBase64(text.substr(0, end));
    if (!packed) Refuse("an array holds what is no base64 text");
    // An array that is not compressed may look like the beginning of a compressed one, for some bytes.
    const std::size_t limit = std::max(values_ * bytesPerValue, chunkBytes);
    const std::size_t size = InflatedSize(*packed, std::min(limit, bytesLeft_));
    if (size > bytesLeft_) throw std::runtime_error(tooManyPoints);
    if (size > limit)
        Refuse("an array unpacks to more than the " + std::to_string(values_) + " values that it should have");
    bytesLeft_ -= size;
}

void ArrayCheck::Take(const XmlTag& tag, std::string_view rest) {
    if (tag.closing) return;
    const bool spectrum = tag.name == "spectrum";
    if (spectrum || tag.name == "chromatogram") {
        where_ =
            spectrum ? "spectrum " + std::to_string(++spectra_) : "chromatogram " + std::to_string(++chromatograms_);
        where_ += ": ";
        pointsOfOwner_ = LengthIn(tag, "defaultArrayLength", 0);
    } else if (tag.name == "binaryDataArray") {
        values_ = LengthIn(tag, "arrayLength", pointsOfOwner_);
    } else if (tag.name == "binary" && !tag.empty) {
        CheckArray(rest);
    }
}

}  // namespace

void CheckPackedArrays(std::string_view mzml, std::size_t pointLimit) {
    ArrayCheck check(pointLimit);
    for (auto at = mzml.find('<'); at != std::string_view::npos; at = mzml.find('<', at + 1))
        if (const auto tag = XmlTagAt(mzml, at)) check.Take(*tag, mzml.substr(tag->end));
}

}  // namespace orvanel
