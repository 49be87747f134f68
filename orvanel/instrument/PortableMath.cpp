// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/PortableMath.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace orvanel {
namespace {

// ln 2 in two parts: the first has so few digits that its products with whole numbers up to 1100 are exact.
constexpr double ln2High = 0x1.62e42feep-1;
constexpr double ln2Low = 0x1.a39ef35793c76p-33;

}  // namespace

double Exp(double x) {
    if (x > 709.7) return std::numeric_limits<double>::infinity();
    if (x < -745.0) return 0;
    const double powerOfTwo = std::floor(x / std::numbers::ln2 + 0.5);
    const double rest = (x - powerOfTwo * ln2High) - powerOfTwo * ln2Low;
    double sum = 1;
    for (int degree = 14; degree > 0; --degree)
        sum = 1 + sum * rest / degree;
    return std::ldexp(sum, static_cast<int>(powerOfTwo));
}

double Log(double x) {
    int exponent = 0;
    double mantissa = std::frexp(x, &exponent);
    if (mantissa < std::numbers::sqrt2 / 2) {
        mantissa *= 2;
        --exponent;
    }
    // ln m = 2 artanh((m - 1) / (m + 1))
    const double ratio = (mantissa - 1) / (mantissa + 1);
    const double square = ratio * ratio;
    double sum = 0;
    for (int odd = 25; odd > 0; odd -= 2)
        sum = sum * square + 1.0 / odd;
    return exponent * ln2High + (exponent * ln2Low + 2 * ratio * sum);
}

double Pow(double base, double exponent) {
    return Exp(exponent * Log(base));
}

double Erf(double x) {
    if (x < 0) return -Erf(-x);
    if (x > 6) return 1;
    // erf x = 2/sqrt(pi) e^(-x^2) sum over n of 2^n x^(2n+1) / (2n+1)!!, whose terms are all positive (Abramowitz and
    // Stegun, Handbook of Mathematical Functions, 7.1.6).
    double term = x;
    double sum = x;
    for (int odd = 3; term > 1e-17 * sum; odd += 2) {
        term *= 2 * x * x / odd;
        sum += term;
    }
    return 2 * std::numbers::inv_sqrtpi * Exp(-x * x) * sum;
}

double Sigmoid(double x) {
    return x >= 0 ? 1 / (1 + Exp(-x)) : Exp(x) / (1 + Exp(x));
}

}  // namespace orvanel
