// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

/// Pseudo-random numbers for spectra made in tests (splitmix64), the same everywhere.
class TestRandom {
  public:
    explicit TestRandom(std::uint64_t seed) : state_(seed) {}
    double Uniform() {
        state_ += 0x9E3779B97F4A7C15ULL;
        std::uint64_t z = (state_ ^ (state_ >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return (static_cast<double>((z ^ (z >> 31)) >> 11) + 0.5) * 0x1p-53;
    }
    double Normal() { return std::sqrt(-2 * std::log(Uniform())) * std::cos(2 * std::numbers::pi * Uniform()); }
    double Poisson(double mean) {
        if (mean > 500) return std::max(0.0, std::round(mean + std::sqrt(mean) * Normal()));
        double count = -1;
        for (double product = 1; product > std::exp(-mean); ++count)
            product *= Uniform();
        return std::max(count, 0.0);
    }

  private:
    std::uint64_t state_;
};

struct Line {
    double mz = 0;
    double ions = 0;
};

/// A profile spectrum of split-Gaussian peaks placed by their centres of mass, with counting statistics.
class SyntheticSpectrum {
  public:
    SyntheticSpectrum(double low, double high, double step, double fwhm) : step_(step) {
        for (double m = low; m <= high; m += step)
            mz.push_back(m);
        expected_.assign(mz.size(), 0);
        leftSigma_ = fwhm / (1.17741 * 2.15);
        rightSigma_ = 1.15 * leftSigma_;
    }
    void Add(const Line& line) {
        const double mode = line.mz - std::sqrt(2 / std::numbers::pi) * (rightSigma_ - leftSigma_);
        const double height = line.ions * step_ / (std::sqrt(std::numbers::pi / 2) * (leftSigma_ + rightSigma_));
        for (std::size_t i = 0; i < mz.size(); ++i) {
            const double distance = mz[i] - mode;
            if (std::abs(distance) > 6 * rightSigma_) continue;
            const double z = distance / (distance < 0 ? leftSigma_ : rightSigma_);
            expected_[i] += height * std::exp(-0.5 * z * z);
        }
    }
    void Add(const std::vector<Line>& lines) {
        for (const Line& line : lines)
            Add(line);
    }
    void AddChemicalNoise(TestRandom& random, double medianIons, double spread) {
        for (double k = std::ceil(mz.front() / 1.0005); k * 1.0005 < mz.back(); ++k)
            Add({k * 1.0005, medianIons * std::exp(spread * random.Normal() - k / 500)});
    }
    /// Counts ions; every ion adds cpsPerIon to its point. Inner zeros are dropped as an acquisition drops them.
    /// @param saturationIons above 0: of so many ions a point the detector shows half (dead time, not paralysed)
    void Count(TestRandom& random, double cpsPerIon, double darkIonsPerPoint = 0, double saturationIons = 0) {
        std::vector<double> counted;
        for (const double mean : expected_) {
            const double ions = random.Poisson(mean + darkIonsPerPoint);
            counted.push_back(cpsPerIon * (saturationIons > 0 ? std::round(ions / (1 + ions / saturationIons)) : ions));
        }
        std::vector<double> keptMz;
        for (std::size_t i = 0; i < counted.size(); ++i) {
            const bool inner = i > 0 && i + 1 < counted.size();
            if (inner && counted[i - 1] == 0 && counted[i] == 0 && counted[i + 1] == 0) continue;
            keptMz.push_back(mz[i]);
            intensity.push_back(counted[i]);
        }
        mz = keptMz;
    }

    std::vector<double> mz;
    std::vector<double> intensity;

  private:
    double step_;
    double leftSigma_ = 0;
    double rightSigma_ = 0;
    std::vector<double> expected_;
};
