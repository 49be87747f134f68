// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/MzmlArrays.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "orvanel/data/ArrayTerms.h"
#include "orvanel/data/MzmlAdapter.h"
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
    ArrayCheck(std::string_view mzml, std::size_t pointLimit)
        : mzml_(mzml), pointLimit_(pointLimit), bytesLeft_(pointLimit * bytesPerPoint) {}

    /// @return the document without what is not read
    std::string Result() const;
    /// @param at where the tag begins
    void Take(const XmlTag& tag, std::size_t at);

  private:
    std::size_t LengthIn(const XmlTag& tag, std::string_view attribute, std::size_t otherwise) const;
    void TakeOpening(const XmlTag& tag, std::size_t at);
    void BeginOwner(const XmlTag& tag);
    void EndArray(std::size_t end);
    bool IsRead() const;
    void CheckValues(std::string_view text, std::size_t values);
    [[noreturn]] void Refuse(const std::string& reason) const { throw std::runtime_error(where_ + reason); }

    std::string_view mzml_;
    std::size_t pointLimit_;
    std::size_t bytesLeft_;
    ArrayTermGroups groups_;
    std::string kept_;        ///< of the document before copied_
    std::size_t copied_ = 0;  ///< the place up to which it is in kept_ or left out

    std::size_t spectra_ = 0;
    std::size_t chromatograms_ = 0;
    bool ownerIsSpectrum_ = false;
    std::string where_;
    std::size_t pointsOfOwner_ = 0;          ///< that the spectrum or chromatogram announces
    std::string_view rampParameterOfOwner_;  ///< empty where nothing is ramped

    std::optional<std::size_t> array_;           ///< where the array begins that is open
    XmlTag arrayTag_;                            ///< ... its opening tag
    ArrayTerms terms_;                           ///< ... what it holds
    std::vector<std::string_view> valuesTexts_;  ///< ... and what begins with them
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

void ArrayCheck::CheckValues(std::string_view text, std::size_t values) {
    const std::size_t end = text.find('<');
    if (end == std::string_view::npos || !text.substr(end).starts_with("</binary"))
        Refuse("an array holds something else than its values");
    const auto packed = FromBase64(text.substr(0, end));
    if (!packed) Refuse("an array holds what is no base64 text");
    // An array that is not compressed may look like the beginning of a compressed one, for some bytes.
    const std::size_t limit = std::max(values * bytesPerValue, chunkBytes);
    const std::size_t size = InflatedSize(*packed, std::min(limit, bytesLeft_));
    if (size > bytesLeft_) throw std::runtime_error(tooManyPoints);
    if (size > limit)
        Refuse("an array unpacks to more than the " + std::to_string(values) + " values that it should have");
    bytesLeft_ -= size;
}

bool ArrayCheck::IsRead() const {
    if (ownerIsSpectrum_) return terms_.mz || terms_.intensity;
    const bool ramp = !rampParameterOfOwner_.empty() && terms_.nonStandardName == rampParameterOfOwner_ && !terms_.text;
    return terms_.time || terms_.intensity || terms_.otherValue || ramp;
}

void ArrayCheck::EndArray(std::size_t end) {
    if (!array_) return;
    if (IsRead()) {
        if (terms_.unreadCompression)
            Refuse("an array is compressed by " + std::string(terms_.unreadCompression) +
                   ", which is not read; write the file with zlib compression, or with none");
        const std::size_t values = LengthIn(arrayTag_, "arrayLength", pointsOfOwner_);
        for (const auto text : valuesTexts_)
            CheckValues(text, values);
    } else {
        kept_.append(mzml_, copied_, *array_ - copied_);
        copied_ = end;
    }
    array_.reset();
}

void ArrayCheck::BeginOwner(const XmlTag& tag) {
    ownerIsSpectrum_ = tag.name == "spectrum";
    where_ = ownerIsSpectrum_ ? "spectrum " + std::to_string(++spectra_)
                              : "chromatogram " + std::to_string(++chromatograms_);
    where_ += ": ";
    pointsOfOwner_ = LengthIn(tag, "defaultArrayLength", 0);
    rampParameterOfOwner_ = {};
}

void ArrayCheck::TakeOpening(const XmlTag& tag, std::size_t at) {
    if (tag.name == "spectrum" || tag.name == "chromatogram") {
        if (array_) Refuse("an array has no end");
        BeginOwner(tag);
    } else if (tag.name == "binaryDataArray") {
        if (array_) Refuse("an array stands in another one");
        array_ = at;
        arrayTag_ = tag;
        terms_ = {};
        valuesTexts_.clear();
        if (tag.empty) EndArray(tag.end);
    } else if (tag.name == "binary" && !tag.empty) {
        if (!array_) Refuse("values stand outside an array");
        valuesTexts_.push_back(mzml_.substr(tag.end));
    } else if (tag.name == "cvParam" && array_) {
        terms_.Take(tag);
    } else if (tag.name == "referenceableParamGroupRef" && array_) {
        terms_.Add(groups_.Of(tag));
    } else if (tag.name == "userParam" && tag.Value("name") == dataParameter::rampParameter) {
        rampParameterOfOwner_ = tag.Value("value").value_or("");
    }
}

void ArrayCheck::Take(const XmlTag& tag, std::size_t at) {
    groups_.Take(tag);
    if (!tag.closing)
        TakeOpening(tag, at);
    else if (tag.name == "binaryDataArray")
        EndArray(tag.end);
}

std::string ArrayCheck::Result() const {
    if (array_) Refuse("an array has no end");
    return kept_ + std::string(mzml_.substr(copied_));
}

}  // namespace

std::string ReadableArrays(const std::string& mzml, std::size_t pointLimit) {
    ArrayCheck check(mzml, pointLimit);
    for (auto at = mzml.find('<'); at != std::string::npos; at = mzml.find('<', at + 1))
        if (const auto tag = XmlTagAt(mzml, at)) check.Take(*tag, at);
    return check.Result();
}

}  // namespace orvanel
