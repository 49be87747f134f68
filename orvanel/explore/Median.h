// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace orvanel {

/// The value at a share of the way from the lowest to the highest one, without interpolation.
/// @param values not empty
/// @param share from 0 to 1
inline double Quantile(std::vector<double> values, double share) {
    const auto place =
        std::min(static_cast<std::size_t>(share * static_cast<double>(values.size())), values.size() - 1);
    const auto there = values.begin() + static_cast<std::ptrdiff_t>(place);
    std::nth_element(values.begin(), there, values.end());
    return *there;
}

/// The upper one of two middle values.
/// @param values not empty
inline double Median(std::vector<double> values) {
    return Quantile(std::move(values), 0.5);
}

}  // namespace orvanel
