// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvanel {

// What the mzML library does not look after itself.

/// Refuses tags and character references that are not well-formed, behind whose end the library would read on; terms
/// that are written in ways that do not show which ones they are; and groups of parameters that refer to groups, which
/// it would follow without end.
/// @param begin, end the part of the text that is looked at
/// @throws std::runtime_error naming the line
void CheckMarkup(std::string_view text, std::size_t begin, std::size_t end);

/// The same document without what the library reads wrongly: characters stand as themselves instead of by their numbers
/// (for which it reads beyond its memory), CDATA sections as ordinary text, and there are no comments and instructions.
/// @param text passed by CheckMarkup
std::string PlainMarkup(std::string text);

}  // namespace orvanel
