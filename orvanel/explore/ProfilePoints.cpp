// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/ProfilePoints.h"

#include <algorithm>

#include "orvanel/explore/Median.h"

namespace orvanel {

ProfilePoints::ProfilePoints(const std::vector<double>& mz, const std::vector<double>& intensity)
    : mz_(mz), intensity_(intensity) {
    FindStretches();
    EstimateIonQuantum();
}

double ProfilePoints::StepAt(std::size_t index) const {
    const double before = index > 0 ? mz_[index] - mz_[index - 1] : 0;
    const double behind = index + 1 < mz_.size() ? mz_[index + 1] - mz_[index] : 0;
    if (before <= 0) return behind;
    return behind <= 0 ? before : std::min(before, behind);
}

/// A step is a gap where it is much longer than its neighbours and than what is usual thereabouts, for steps may grow
/// with m/z.
void ProfilePoints::FindStretches() {
    constexpr double gapSteps = 1.6;
    constexpr double usualSteps = 3;
    constexpr std::size_t blockSteps = 512;
    std::vector<double> steps;
    steps.reserve(mz_.size());
    for (std::size_t i = 1; i < mz_.size(); ++i)
        steps.push_back(mz_[i] - mz_[i - 1]);
    for (std::size_t begin = 0; begin < steps.size(); begin += blockSteps) {
        const std::size_t end = std::min(begin + blockSteps, steps.size());
        const double median = Median(
            {steps.begin() + static_cast<std::ptrdiff_t>(begin), steps.begin() + static_cast<std::ptrdiff_t>(end)});
        for (std::size_t i = begin; i < end; ++i) {
            double usual = usualSteps * median;
            if (i > 0) usual = std::min(usual, steps[i - 1]);
            if (i + 1 < steps.size()) usual = std::min(usual, steps[i + 1]);
            if (steps[i] > gapSteps * usual) stretchEnds_.push_back(i + 1);
        }
    }
    stretchEnds_.push_back(mz_.size());
}

/// What one ion adds to a point: the smallest intensity, for ions come in whole numbers. Where a filter has left far
/// smaller values, what the roughness of the spectrum stands for, as the noise of counting: fourth differences, which
/// smooth peaks hardly have, with the variance 70 times that of a point.
void ProfilePoints::EstimateIonQuantum() {
    constexpr double varianceFactor = 70;
    constexpr double medianOfSquare = 0.4549;  // of a standard normal variable's square
    constexpr double wholeIons = 0.01;
    constexpr double roughShare = 0.001;  // of the highest point, above which roughness is looked at
    constexpr std::size_t enoughPlaces = 20000;
    double highest = 0;
    for (const double value : intensity_) {
        highest = std::max(highest, value);
        if (value > 0 && (ionQuantum_ == 0 || value < ionQuantum_)) ionQuantum_ = value;
    }
    std::vector<double> estimates;
    const std::size_t stride = 1 + intensity_.size() / enoughPlaces;
    std::size_t begin = 0;
    for (const std::size_t end : stretchEnds_) {
        for (std::size_t i = begin; i + 5 <= end; i += stride) {
            const double* y = intensity_.data() + i;
            const double sum = y[0] + y[1] + y[2] + y[3] + y[4];
            const double difference = y[0] - 4 * y[1] + 6 * y[2] - 4 * y[3] + y[4];
            if (sum > 5 * roughShare * highest)
                estimates.push_back(5 * difference * difference / (varianceFactor * sum));
        }
        begin = end;
    }
    if (estimates.empty()) return;
    const double roughness = Median(std::move(estimates)) / medianOfSquare;
    isFiltered_ = ionQuantum_ < wholeIons * roughness;
    if (isFiltered_) ionQuantum_ = roughness;
}

}  // namespace orvanel
