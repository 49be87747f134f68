// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace orvanel {

/// What a counting detector of dead time tau shows: r / (1 + r * tau).
/// @param rateCps true counts per second
inline double WithDeadTime(double rateCps, double deadTimeNs) {
    return rateCps / (1 + rateCps * deadTimeNs * 1e-9);
}

}  // namespace orvanel
