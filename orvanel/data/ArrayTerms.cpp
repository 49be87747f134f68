// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/ArrayTerms.h"

#include <charconv>

namespace orvanel {
namespace {

/// The compressions of the PSI-MS vocabulary that are not read: what unpacks them in the library does not look where
/// the packed bytes end, or is missing.
const char* UnreadCompression(std::uint32_t term) {
    switch (term) {
        case 1002312:
            return "MS-Numpress linear prediction";
        case 1002313:
            return "MS-Numpress positive integer";
        case 1002314:
            return "MS-Numpress short logged float";
        case 1002746:
            return "MS-Numpress linear prediction and zlib";
        case 1002747:
            return "MS-Numpress positive integer and zlib";
        case 1002748:
            return "MS-Numpress short logged float and zlib";
        case 1003088:
            return "truncation and zlib";
        case 1003089:
            return "truncation, delta prediction and zlib";
        case 1003090:
            return "truncation, linear prediction and zlib";
        default:
            return nullptr;
    }
}

}  // namespace

std::optional<std::uint32_t> MsTermOf(std::string_view accession) {
    constexpr std::string_view prefix = "MS:";
    if (!accession.starts_with(prefix)) return std::nullopt;
    const auto digits = accession.substr(prefix.size());
    std::uint32_t term = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), term).ec != std::errc()) return std::nullopt;
    return term;
}

void ArrayTerms::Take(const XmlTag& cvParam) {
    const auto term = MsTermOf(cvParam.Value("accession").value_or(""));
    if (!term) return;
    switch (*term) {
        case 1000514:
            mz = true;
            break;
        case 1000515:
            intensity = true;
            break;
        case 1000595:
            time = true;
            break;
        case 1000786:
            nonStandardName = cvParam.Value("value").value_or("");
            break;
        case 1000820:
        case 1000821:
        case 1000822:
            otherValue = true;
            break;
        case 1001479:
            text = true;
            break;
        default:
            if (const char* name = UnreadCompression(*term)) unreadCompression = name;
    }
}

void ArrayTerms::Add(const ArrayTerms& other) {
    mz = mz || other.mz;
    time = time || other.time;
    intensity = intensity || other.intensity;
    otherValue = otherValue || other.otherValue;
    text = text || other.text;
    if (!other.nonStandardName.empty()) nonStandardName = other.nonStandardName;
    if (other.unreadCompression) unreadCompression = other.unreadCompression;
}

void ArrayTermGroups::Take(const XmlTag& tag) {
    if (tag.name == "referenceableParamGroup")
        open_ = tag.closing || tag.empty ? nullptr : &groups_[tag.Value("id").value_or("")];
    else if (open_ && tag.name == "cvParam")
        open_->Take(tag);
}

ArrayTerms ArrayTermGroups::Of(const XmlTag& reference) const {
    const auto found = groups_.find(reference.Value("ref").value_or(""));
    return found == groups_.end() ? ArrayTerms() : found->second;
}

}  // namespace orvanel
