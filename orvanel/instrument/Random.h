// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>

namespace orvanel {

/// A stream of random numbers that is the same on every machine: xoshiro256** (D. Blackman, S. Vigna, Scrambled linear
/// pseudorandom number generators, ACM Trans. Math. Softw. 47 (2021) 36), its state filled by SplitMix64 (G. Steele,
/// D. Lea, C. Flood, OOPSLA 2014).
class Random {
  public:
    /// @param keys together they choose the stream; every one of them and their order count
    explicit Random(std::initializer_list<std::uint64_t> keys);

    std::uint64_t Next();
    /// 0 <= value < 1
    double Uniform();
    /// Mean 0, variance 1; G. Marsaglia's polar method.
    double Normal();
    /// Counts of mean and variance `mean`. Inversion below 10; above, the transformed rejection method PTRS of
    /// W. Hoermann, Insurance: Mathematics and Economics 12 (1993) 39.
    double Poisson(double mean);

  private:
    double PoissonByInversion(double mean);
    double PoissonByRejection(double mean);

    std::array<std::uint64_t, 4> state_{};
    double spareNormal_ = 0;
    bool hasSpare_ = false;
};

/// ln n! for a whole number n >= 0.
double LogFactorial(double n);

}  // namespace orvanel
