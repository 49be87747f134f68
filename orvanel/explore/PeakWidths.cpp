// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/PeakWidths.h"

#include <algorithm>
#include <cmath>

namespace orvanel {

double PeakWidths::PointsAt(double mz) const {
    constexpr double fewestPoints = 2;
    constexpr double mostPoints = 500;
    if (exponent == 0 || !(mz > 0)) return points;
    return std::clamp(points * std::pow(mz / referenceMz, exponent), fewestPoints, mostPoints);
}

}  // namespace orvanel
