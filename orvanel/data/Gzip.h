// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orvanel {

/// Whether the bytes begin as those of a gzip file (RFC 1952) do.
bool IsGzip(std::string_view bytes);

/// Unpacks a gzip file: its members one after the other; zeros behind the last one are padding.
/// @return nothing when more than so many bytes come out
/// @throws std::runtime_error when it is cut off or damaged
std::optional<std::string> Gunzip(std::string_view packed, std::size_t sizeLimit);

}  // namespace orvanel
