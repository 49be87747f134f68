// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

namespace orvanel {

/// A smooth curve through points that rises and falls only where the points do: piecewise cubic, with the harmonic mean
/// of the neighbouring slopes at each point and none where they change sign (Fritsch and Butland, SIAM J. Sci. Stat.
/// Comput. 1984, 5, 300). Before the first and behind the last point it is held. Basic arithmetic alone, so that the
/// same points give the same curve on every machine.
class MonotoneCurve {
  public:
    /// @param x rising strictly, at least 2 values
    /// @param y as many values
    MonotoneCurve(std::vector<double> x, std::vector<double> y);

    double At(double x) const;

  private:
    std::vector<double> x_;
    std::vector<double> y_;
    std::vector<double> slope_;
};

}  // namespace orvanel
