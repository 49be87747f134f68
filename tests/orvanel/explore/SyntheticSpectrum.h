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

/// What a line looks like. The peak finder fits split Gaussians; the other forms are none.
enum class LineShape { splitGaussian, gaussian, lorentzianTails, tailing, fronting };

/// A line's density at a distance from its centre of mass, both in units of its full width at half maximum.
inline double DensityOf(LineShape shape, double distance) {
    const auto gaussian = [](double z) {  // 2 sqrt(ln 2 / pi) exp(-4 ln 2 z^2)
        return 0.9394372786996513 * std::exp(-2.772588722239781 * z * z);
    };
    switch (shape) {
        case LineShape::splitGaussian: {
            constexpr double left = 1 / (1.17741 * 2.15);
            constexpr double right = 1.15 * left;
            const double fromMode = distance + std::sqrt(2 / std::numbers::pi) * (right - left);
            const double z = fromMode / (fromMode < 0 ? left : right);
            return std::exp(-0.5 * z * z) / (std::sqrt(std::numbers::pi / 2) * (left + right));
        }
        case LineShape::gaussian:
            return gaussian(distance);
        case LineShape::lorentzianTails:
            return 0.8 * gaussian(distance) + 0.2 * 2 * std::numbers::inv_pi / (1 + 4 * distance * distance);
        case LineShape::tailing:  // a fifth of it late and wider; the centre of both is 0
            return 0.8 * gaussian(distance + 0.11) + 0.2 * gaussian((distance - 0.44) / 1.2) / 1.2;
        case LineShape::fronting:
            return DensityOf(LineShape::tailing, -distance);
    }
    return 0;
}

/// How a spectrum's lines are drawn.
struct LineForm {
    double fwhm = 0.65;  ///< Da, at m/z 350
    LineShape shape = LineShape::splitGaussian;
    double widthExponent = 0;  ///< power of m/z that the width follows
};

/// A profile spectrum of lines placed by their centres of mass, with counting statistics.
class SyntheticSpectrum {
  public:
    SyntheticSpectrum(double low, double high, double step, double fwhm)
        : SyntheticSpectrum(low, high, step, LineForm{.fwhm = fwhm}) {}
    SyntheticSpectrum(double low, double high, double step, const LineForm& form) : step_(step), form_(form) {
        for (double m = low; m <= high; m += step)
            mz.push_back(m);
        expected_.assign(mz.size(), 0);
    }
    void Add(const Line& line) {
        const double width = form_.fwhm * std::pow(line.mz / 350, form_.widthExponent);
        const double reach = (form_.shape == LineShape::lorentzianTails ? 12 : 3) * width;
        const auto first = std::lower_bound(mz.begin(), mz.end(), line.mz - reach) - mz.begin();
        for (auto i = static_cast<std::size_t>(first); i < mz.size() && mz[i] < line.mz + reach; ++i)
            expected_[i] += line.ions * step_ / width * DensityOf(form_.shape, (mz[i] - line.mz) / width);
    }
    void Add(const std::vector<Line>& lines) {
        for (const Line& line : lines)
            Add(line);
    }
    /// @param offNominalDa how far at most each peak lies off its nominal mass
    void AddChemicalNoise(TestRandom& random, double medianIons, double spread, double offNominalDa = 0) {
        for (double k = std::ceil(mz.front() / 1.0005); k * 1.0005 < mz.back(); ++k) {
            const double ions = medianIons * std::exp(spread * random.Normal() - k / 500);
            Add({k * 1.0005 + (offNominalDa > 0 ? offNominalDa * (2 * random.Uniform() - 1) : 0), ions});
        }
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
    LineForm form_;
    std::vector<double> expected_;
};
