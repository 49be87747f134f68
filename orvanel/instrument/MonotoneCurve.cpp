// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/MonotoneCurve.h"

#include <algorithm>
#include <utility>

namespace orvanel {

MonotoneCurve::MonotoneCurve(std::vector<double> x, std::vector<double> y)
    : x_(std::move(x)), y_(std::move(y)), slope_(x_.size(), 0) {
    const std::size_t last = x_.size() - 1;
    const auto secant = [this](std::size_t i) { return (y_[i + 1] - y_[i]) / (x_[i + 1] - x_[i]); };
    slope_[0] = secant(0);
    slope_[last] = secant(last - 1);
    for (std::size_t i = 1; i < last; ++i) {
        const double before = secant(i - 1);
        const double behind = secant(i);
        if (before * behind <= 0) continue;
        const double widthBefore = x_[i] - x_[i - 1];
        const double widthBehind = x_[i + 1] - x_[i];
        const double weightBefore = widthBefore + 2 * widthBehind;
        const double weightBehind = 2 * widthBefore + widthBehind;
        slope_[i] = (weightBefore + weightBehind) / (weightBefore / before + weightBehind / behind);
    }
}

double MonotoneCurve::At(double x) const {
    if (x <= x_.front()) return y_.front();
    if (x >= x_.back()) return y_.back();
    const auto behind = static_cast<std::size_t>(std::upper_bound(x_.begin(), x_.end(), x) - x_.begin());
    const std::size_t before = behind - 1;
    const double width = x_[behind] - x_[before];
    const double t = (x - x_[before]) / width;
    const double s = 1 - t;
    return s * s * (1 + 2 * t) * y_[before] + t * t * (1 + 2 * s) * y_[behind] +
           s * t * width * (s * slope_[before] - t * slope_[behind]);
}

}  // namespace orvanel
