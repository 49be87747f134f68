// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/IndexedFile.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "orvanel/data/XmlTag.h"
#include "support/Paths.h"

namespace orvanel {
namespace {

constexpr std::uint64_t fileEndBytes = 2048;  ///< within which the index says where it begins
constexpr std::uint64_t headerBytes = 4096;   ///< of a spectrum, read at first; the longest are read in several steps
constexpr std::uint64_t spectrumEndBytes = 256;
constexpr std::string_view spectrumEnd = "</spectrum>";
constexpr std::string_view arraysBegin = "<binaryDataArrayList";
constexpr std::string_view arraysEnd = "</binaryDataArrayList>";

void Require(bool holds, const char* what) {
    if (!holds) throw std::runtime_error(std::string("the index cannot be used: ") + what);
}

std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && IsXmlBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsXmlBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::optional<std::uint64_t> WholeNumber(std::string_view text) {
    text = WithoutBlanks(text);
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

/// What an element holds, as far as that is text.
std::string_view TextBehind(const std::string& text, const XmlTag& tag) {
    return std::string_view(text).substr(tag.end, text.find('<', tag.end) - tag.end);
}

bool IsSpectrumAt(const std::string& text, std::size_t at) {
    constexpr std::string_view name = "<spectrum";
    return text.size() > at + name.size() && IsXmlBlank(text[at + name.size()]);
}

/// Whether a spectrum begins at the place or behind it.
bool HoldsSpectrum(const std::string& text, std::size_t at) {
    for (at = text.find("<spectrum", at); at != std::string::npos; at = text.find("<spectrum", at + 1))
        if (IsSpectrumAt(text, at)) return true;
    return false;
}

}  // namespace

IndexedFile::IndexedFile(const std::string& path, const support::Disk& disk)
    : file_(disk.Open(support::NativePath(path), support::Disk::OpenFor::Reading)),
      size_(file_->Size()),
      indexBegin_(FindIndex()) {
    ReadPlaces(Read(indexBegin_, size_));
    ReadBeginning();
}

std::string IndexedFile::Read(std::uint64_t begin, std::uint64_t end) {
    Require(begin <= end && end <= size_, "it leads out of the file");
    auto text = file_->Read(begin, static_cast<std::size_t>(end - begin));
    Require(text.size() == end - begin, "the file has become shorter");
    return text;
}

std::uint64_t IndexedFile::FindIndex() {
    const auto text = Read(size_ - std::min(size_, fileEndBytes), size_);
    const auto at = text.rfind("<indexListOffset");
    Require(at != std::string::npos, "there is none");
    const auto tag = XmlTagAt(text, at);
    Require(tag && tag->name == "indexListOffset", "its place is not stated");
    const auto begin = WholeNumber(TextBehind(text, *tag));
    Require(begin && *begin < size_, "its place is not stated");
    return *begin;
}

void IndexedFile::ReadPlaces(const std::string& index) {
    Require(index.starts_with("<indexList"), "it is not where it should be");
    bool ofSpectra = false;
    for (auto at = index.find('<'); at != std::string::npos; at = index.find('<', at + 1)) {
        const auto tag = XmlTagAt(index, at);
        Require(tag.has_value(), "it is not well-formed");
        if (tag->name == "index") {
            ofSpectra = !tag->closing && tag->Value("name") == "spectrum";
            Require(!ofSpectra || spectra_.empty(), "there are two");
        }
        if (!ofSpectra || tag->closing || tag->name != "offset") continue;
        const auto begin = WholeNumber(TextBehind(index, *tag));
        Require(begin && *begin < indexBegin_, "it leads out of the document");
        Require(spectra_.empty() || spectra_.back().begin < *begin, "it does not rise");
        spectra_.push_back({std::string(tag->Value("idRef").value_or("")), *begin});
    }
    Require(!spectra_.empty(), "it names no spectra");
}

void IndexedFile::ReadBeginning() {
    beginning_ = Read(0, spectra_.front().begin);
    const auto at = beginning_.rfind('<');
    const auto list = at == std::string::npos ? std::nullopt : XmlTagAt(beginning_, at);
    Require(list && list->name == "spectrumList" && !list->closing && !list->empty &&
                WithoutBlanks(std::string_view(beginning_).substr(list->end)).empty(),
            "its first spectrum is not the first one");
    Require(WholeNumber(list->Value("count").value_or("")) == spectra_.size(), "it does not name all spectra");
    const auto document = beginning_.find("<mzML");
    Require(document != std::string::npos && !HoldsSpectrum(beginning_, 0), "it does not begin with the document");
    beginning_.erase(0, document);
}

std::uint64_t IndexedFile::EndOf(std::size_t number) const {
    return number + 1 < spectra_.size() ? spectra_[number + 1].begin : end_;
}

/// @param read the beginning of the spectrum's text, or all of it
void IndexedFile::RequireEnd(std::size_t number, const std::string& read) {
    const auto [begin, end] = std::pair(spectra_[number].begin, EndOf(number));
    const auto text = read.size() == end - begin ? read : Read(end - std::min(end - begin, spectrumEndBytes), end);
    auto rest = WithoutBlanks(text);
    Require(rest.ends_with(spectrumEnd), "a spectrum has not ended where the next one begins");
    rest = WithoutBlanks(rest.substr(0, rest.size() - spectrumEnd.size()));
    const auto spectrum = read.find(spectrumEnd);
    const auto arrays = read.find(arraysBegin);
    Require(arrays < spectrum ? rest.ends_with(arraysEnd) : WithoutBlanks(text).size() == spectrum + spectrumEnd.size(),
            "a spectrum ends in something else than its arrays");
}

std::string IndexedFile::HeaderOf(std::size_t number) {
    const auto& place = spectra_[number];
    const std::uint64_t length = EndOf(number) - place.begin;
    std::string text;
    std::size_t end = std::string::npos;
    for (std::uint64_t bytes = headerBytes; end == std::string::npos; bytes *= 2) {
        Require(text.size() < length, "a spectrum has no end");
        text = Read(place.begin, place.begin + std::min(bytes, length));
        end = std::min(text.find(arraysBegin), text.find(spectrumEnd));
    }
    const auto tag = XmlTagAt(text, 0);
    Require(tag && tag->name == "spectrum" && !tag->closing && !tag->empty, "there is no spectrum at its place");
    Require(tag->Value("id") == place.id && WholeNumber(tag->Value("index").value_or("")) == number,
            "another spectrum stands at its place");
    RequireEnd(number, text);
    text.erase(end);
    Require(!HoldsSpectrum(text, 1) && text.find("<!") == std::string::npos && text.find("<?") == std::string::npos,
            "a header holds other markup");
    return text.append(spectrumEnd);
}

std::string IndexedFile::Outline() {
    const std::uint64_t lastBegin = spectra_.back().begin;
    const auto last = Read(lastBegin, indexBegin_);
    const auto lastEnd = last.find(spectrumEnd);
    Require(lastEnd != std::string::npos, "the last spectrum has no end");
    end_ = lastBegin + lastEnd + spectrumEnd.size();
    std::string outline = beginning_;
    for (std::size_t number = 0; number < spectra_.size(); ++number)
        outline += HeaderOf(number);
    return outline.append(last, lastEnd + spectrumEnd.size(), std::string::npos);
}

std::string IndexedFile::DocumentWith(const std::vector<std::size_t>& wanted) {
    std::string document = beginning_;
    for (const std::size_t number : wanted) {
        const auto text = Read(spectra_[number].begin, EndOf(number));
        Require(!HoldsSpectrum(text, 1), "there are spectra that it does not name");
        document += text;
    }
    return document + "</spectrumList></run></mzML>";
}

}  // namespace orvanel
