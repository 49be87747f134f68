// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/Ramp.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "support/NumberText.h"

namespace orvanel {

namespace {

constexpr int maximumDecimals = 15;           ///< 10^15 times a value of ordinary size is still exact in a double
constexpr double largestExactWhole = 9.0e15;  ///< below 2^53

/// Decimals of a single's shortest text; nothing sensible (a large number) for texts with an exponent.
int DecimalsOf(float value) {
    const std::string text = support::RoundTripText(value);
    if (text.find_first_of("eEnN") != std::string::npos) return maximumDecimals + 1;
    const auto point = text.find('.');
    return point == std::string::npos ? 0 : static_cast<int>(text.size() - point - 1);
}

}  // namespace

double DecimalValue(float value) {
    return support::ParseDouble(support::RoundTripText(value))
        .value_or(static_cast<double>(value));  // not finite: as it is
}

std::vector<double> RampValues(const RampRecord& ramp, int cycles) {
    const double start = DecimalValue(ramp.start);
    const double step = DecimalValue(ramp.step);
    const int decimals = std::max(DecimalsOf(ramp.start), DecimalsOf(ramp.step));
    double scale = 1;  // a power of ten this small is exact on every machine
    for (int k = 0; k < std::min(decimals, maximumDecimals); ++k)
        scale *= 10;
    const double wholeStart = std::round(start * scale);
    const double wholeStep = std::round(step * scale);
    const bool exact = decimals <= maximumDecimals &&
                       std::abs(wholeStart) + std::abs(wholeStep) * std::max(cycles, 0) < largestExactWhole;

    std::vector<double> values;
    values.reserve(static_cast<std::size_t>(std::max(cycles, 0)));
    for (int k = 0; k < cycles; ++k)
        values.push_back(exact ? (wholeStart + k * wholeStep) / scale : start + k * step);
    return values;
}

}  // namespace orvanel
