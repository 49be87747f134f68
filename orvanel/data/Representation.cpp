// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/Representation.h"

#include <algorithm>
#include <cmath>

namespace orvanel {
namespace {

constexpr std::size_t fewestPoints = 10;  ///< above zero, that have neighbours on both sides
constexpr double largestStepDa = 0.3;     ///< lines may be even too, but isotopes are further apart up to charge 3
constexpr double evenRatio = 1.2;         ///< of two neighbouring steps, the larger to the smaller

}  // namespace

std::optional<double> EvenShare(const std::vector<double>& mz, const std::vector<double>& intensity) {
    if (mz.size() != intensity.size()) return std::nullopt;
    std::size_t points = 0;
    double even = 0;
    double all = 0;
    for (std::size_t i = 1; i + 1 < mz.size(); ++i) {
        const double below = mz[i] - mz[i - 1];
        const double above = mz[i + 1] - mz[i];
        if (!(below >= 0 && above >= 0)) return std::nullopt;
        if (!(intensity[i] > 0)) continue;
        const double weight = std::sqrt(intensity[i]);
        const double larger = std::max(below, above);
        ++points;
        all += weight;
        if (larger <= largestStepDa && larger <= evenRatio * std::min(below, above)) even += weight;
    }
    if (points < fewestPoints || !std::isfinite(all)) return std::nullopt;
    return even / all;
}

}  // namespace orvanel
