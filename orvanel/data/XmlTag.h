// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace orvanel {

/// Blank, tabulator or line end, which XML takes for the same.
inline bool IsXmlBlank(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

/// One tag of an XML text; its parts are views into that text.
struct XmlTag {
    std::string_view name;
    bool closing = false;                                                   ///< </name>
    bool empty = false;                                                     ///< <name/>
    std::vector<std::pair<std::string_view, std::string_view>> attributes;  ///< names and values as they stand
    std::size_t end = 0;                                                    ///< the place behind the tag in the text

    /// @return the value of the first attribute of that name
    std::optional<std::string_view> Value(std::string_view attribute) const;
};

/// Reads the tag that begins at a "<".
/// @return nothing where it is not well-formed
std::optional<XmlTag> XmlTagAt(std::string_view text, std::size_t at);

}  // namespace orvanel
