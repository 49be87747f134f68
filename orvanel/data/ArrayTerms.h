// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "orvanel/data/XmlTag.h"

namespace orvanel {

/// The number of a term of the PSI-MS vocabulary: the digits behind "MS:", whatever follows them, as the mzML library
/// takes it. Nothing for other accessions.
std::optional<std::uint32_t> MsTermOf(std::string_view accession);

/// What the terms of a binary data array say about it.
struct ArrayTerms {
    bool mz = false;
    bool time = false;
    bool intensity = false;
    bool otherValue = false;                  ///< pressure, flow rate or temperature
    bool text = false;                        ///< holds characters instead of numbers
    std::string_view nonStandardName;         ///< of a "non-standard data array"
    const char* unreadCompression = nullptr;  ///< the name of a compression that is not read

    /// Adds what a cvParam says.
    void Take(const XmlTag& cvParam);
    void Add(const ArrayTerms& other);
};

/// The terms that a document's groups of parameters hold, collected from its tags one after the other.
class ArrayTermGroups {
  public:
    void Take(const XmlTag& tag);
    /// @return what a reference to a group adds
    ArrayTerms Of(const XmlTag& reference) const;

  private:
    std::map<std::string_view, ArrayTerms> groups_;
    ArrayTerms* open_ = nullptr;
};

}  // namespace orvanel
