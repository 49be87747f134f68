// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/Smoothing.h"

#include <algorithm>
#include <cmath>

namespace orvanel {
namespace {

constexpr double levelsPerE = 1000;  // neighbouring Gaussians differ by a thousandth

}  // namespace

Smoothing::Smoothing(const ProfilePoints& points, const PeakWidths& widths, double sigmaWidths) : points_(points) {
    const auto& mz = points.Mz();
    for (std::size_t begin = 0; begin < mz.size(); begin += blockPoints) {
        const double width = widths.PointsAt(mz[std::min(begin + blockPoints / 2, mz.size() - 1)]);
        const int level = static_cast<int>(std::lround(levelsPerE * std::log(sigmaWidths * width)));
        // Widths change slowly, so that the kernel is nearly always the last one.
        auto kernel = std::find_if(kernels_.rbegin(), kernels_.rend(),
                                   [level](const Kernel& known) { return known.level == level; });
        if (kernel == kernels_.rend()) {
            kernels_.push_back(MakeKernel(level));
            kernel = kernels_.rbegin();
        }
        kernelOfBlock_.push_back(static_cast<std::uint32_t>(kernels_.rend() - kernel - 1));
    }
}

Smoothing::Kernel Smoothing::MakeKernel(int level) {
    const double sigma = std::exp(level / levelsPerE);
    const int reach = static_cast<int>(std::ceil(3 * sigma));
    Kernel kernel{level, {}, 0};
    double sum = 0;
    for (int k = 0; k <= reach; ++k) {
        kernel.weights.push_back(std::exp(-0.5 * std::pow(k / sigma, 2)));
        sum += (k == 0 ? 1 : 2) * kernel.weights.back();
    }
    for (std::size_t k = 0; k < kernel.weights.size(); ++k) {
        kernel.weights[k] /= sum;
        kernel.energy += (k == 0 ? 1 : 2) * kernel.weights[k] * kernel.weights[k];
    }
    return kernel;
}

std::vector<double> Smoothing::Apply(const std::vector<double>& values) const {
    std::vector<double> smooth(values.size());
    std::size_t begin = 0;
    for (const std::size_t end : points_.StretchEnds()) {
        for (std::size_t i = begin; i < end; ++i) {
            const std::vector<double>& weights = KernelAt(i).weights;
            const std::size_t left = std::min(weights.size() - 1, i - begin);
            const std::size_t right = std::min(weights.size() - 1, end - 1 - i);
            double sum = weights[0] * values[i];
            for (std::size_t k = 1; k <= left; ++k)
                sum += weights[k] * values[i - k];
            for (std::size_t k = 1; k <= right; ++k)
                sum += weights[k] * values[i + k];
            smooth[i] = sum;
        }
        begin = end;
    }
    return smooth;
}

}  // namespace orvanel
