// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <vector>

namespace orvanel {

/// The share of a spectrum's points that lie at even steps, small beside the distance of isotopes: near 1 where they
/// sample the peaks (profile), near 0 where they are one a peak (centroid). Points count by the square root of their
/// intensity.
/// @return nothing where too few points say anything, or m/z do not ascend
std::optional<double> EvenShare(const std::vector<double>& mz, const std::vector<double>& intensity);

}  // namespace orvanel
