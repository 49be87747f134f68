#pragma once

namespace orvanel {

/// What a counting detector of dead time tau shows: r / (1 + r * tau).
/// @param rateCps true counts per second
inline double WithDeadTime(double rateCps, double deadTimeNs) {
    return rateCps / (1 + rateCps * deadTimeNs * 1e-9);
}

}  // namespace orvanel
