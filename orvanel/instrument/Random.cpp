// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Random.h"

#include <bit>
#include <cmath>
#include <numbers>

#include "orvanel/instrument/PortableMath.h"

namespace orvanel {
namespace {

std::uint64_t SplitMix(std::uint64_t& state) {
    state += 0x9E3779B97F4A7C15ULL;
    std::uint64_t mixed = state;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9ULL;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBULL;
    return mixed ^ (mixed >> 31);
}

}  // namespace

Random::Random(std::initializer_list<std::uint64_t> keys) {
    std::uint64_t mixed = 0;
    for (const std::uint64_t key : keys) {
        mixed ^= key;
        mixed = SplitMix(mixed);
    }
    for (auto& word : state_)
        word = SplitMix(mixed);
}

std::uint64_t Random::Next() {
    const std::uint64_t result = std::rotl(state_[1] * 5, 7) * 9;
    const std::uint64_t shifted = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= shifted;
    state_[3] = std::rotl(state_[3], 45);
    return result;
}

double Random::Uniform() {
    return static_cast<double>(Next() >> 11) * 0x1p-53;
}

double Random::Normal() {
    if (hasSpare_) {
        hasSpare_ = false;
        return spareNormal_;
    }
    for (;;) {
        const double u = 2 * Uniform() - 1;
        const double v = 2 * Uniform() - 1;
        const double square = u * u + v * v;
        if (square >= 1 || square == 0) continue;
        const double factor = std::sqrt(-2 * Log(square) / square);
        spareNormal_ = v * factor;
        hasSpare_ = true;
        return u * factor;
    }
}

double Random::Poisson(double mean) {
    if (!(mean > 0)) return 0;
    return mean < 10 ? PoissonByInversion(mean) : PoissonByRejection(mean);
}

double Random::PoissonByInversion(double mean) {
    double rest = Uniform();
    double probability = Exp(-mean);
    double count = 0;
    while (rest > probability && count < 200) {
        rest -= probability;
        probability *= mean / ++count;
    }
    return count;
}

double Random::PoissonByRejection(double mean) {
    const double b = 0.931 + 2.53 * std::sqrt(mean);
    const double a = -0.059 + 0.02483 * b;
    const double inverseAlpha = 1.1239 + 1.1328 / (b - 3.4);
    const double squeeze = 0.9277 - 3.6224 / (b - 2);
    const double logMean = Log(mean);
    for (;;) {
        const double u = Uniform() - 0.5;
        const double v = 1 - Uniform();
        const double edge = 0.5 - std::fabs(u);
        const double count = std::floor((2 * a / edge + b) * u + mean + 0.43);
        if (edge >= 0.07 && v <= squeeze) return count;
        if (count < 0 || (edge < 0.013 && v > edge)) continue;
        if (Log(v * inverseAlpha / (a / (edge * edge) + b)) <= count * logMean - mean - LogFactorial(count))
            return count;
    }
}

double LogFactorial(double n) {
    if (n < 10) {
        double product = 1;
        for (double factor = 2; factor <= n; ++factor)
            product *= factor;
        return Log(product);
    }
    // Stirling's series for ln Gamma(n + 1)
    const double x = n + 1;
    const double inverse = 1 / x;
    const double square = inverse * inverse;
    return (x - 0.5) * Log(x) - x + 0.5 * Log(2 * std::numbers::pi) +
           inverse * (1.0 / 12 - square * (1.0 / 360 - square * (1.0 / 1260 - square / 1680)));
}

}  // namespace orvanel
