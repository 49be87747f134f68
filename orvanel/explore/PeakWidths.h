// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace orvanel {

/// How wide a spectrum's peaks are: their full width at half maximum in points, which may follow a power of m/z.
struct PeakWidths {
    double points =
        6.3;  ///< at referenceMz; what six points a width come to, where no peak is strong enough to measure
    double referenceMz = 1;
    double exponent = 0;

    /// @param mz Da; below 0 the width at referenceMz
    double PointsAt(double mz) const;
};

}  // namespace orvanel
