// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>

namespace orvanel {

/// The document without the arrays that are not read: those of a spectrum but m/z and intensity; those of a
/// chromatogram but time, what was measured, and the one named after its ramped parameter. They may hold what the mzML
/// library does not know.
///
/// Refuses arrays whose unpacking takes more memory than their points need, before the library unpacks them: zeros
/// shrink to a thousandth, so that a small file could fill the memory. Each array unpacks to as many values as its
/// spectrum or chromatogram announces, and all arrays together to what so many points can need. Refuses compressions
/// that the library cannot unpack safely.
/// @param mzml plain markup (PlainMarkup)
/// @throws std::runtime_error naming the spectrum or chromatogram
std::string ReadableArrays(const std::string& mzml, std::size_t pointLimit);

}  // namespace orvanel
