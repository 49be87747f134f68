// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <vector>

namespace orvanel {

/// A local maximum.
struct Maximum {
    std::size_t index = 0;
    double saddle = 0;  ///< the higher one of the two valleys that part it from higher ground; 0 where there is none
};

/// All local maxima of a spectrum, in order, of two equal neighbours the first one. Outside a stretch there is nothing.
/// @param stretchEnds one behind the last point of each gapless stretch
std::vector<Maximum> FindMaxima(const std::vector<double>& values, const std::vector<std::size_t>& stretchEnds);

}  // namespace orvanel
