// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string_view>

namespace orvanel {

/// Refuses arrays whose unpacking takes more memory than their points need, before the mzML library unpacks them: zeros
/// shrink to a thousandth, so that a small file could fill the memory. Each array unpacks to as many values as its
/// spectrum or chromatogram announces, and all arrays together to what so many points can need.
/// @param mzml plain markup (PlainMarkup)
/// @throws std::runtime_error naming the spectrum or chromatogram
void CheckPackedArrays(std::string_view mzml, std::size_t pointLimit);

}  // namespace orvanel
