// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/PeakForm.h"

#include <cmath>
#include <numbers>

namespace orvanel {

PeakForm::PeakForm(double lean) {
    constexpr double fwhmPerSigma = 2.3548200450309493;  // 2 sqrt(2 ln 2)
    const double left = (1 - lean) / fwhmPerSigma;
    const double right = (1 + lean) / fwhmPerSigma;
    const double modeToCentre = std::sqrt(2 * std::numbers::inv_pi) * (right - left);
    const double height = 1 / (std::sqrt(std::numbers::pi / 2) * (left + right));
    for (double step = 0; step <= lastStep; ++step) {
        const double fromMode = step / stepsPerWidth - tailWidths + modeToCentre;
        const double z = fromMode / (fromMode < 0 ? left : right);
        table_.push_back(height * std::exp(-0.5 * z * z));
    }
}

}  // namespace orvanel
