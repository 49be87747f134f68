// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/PeakShape.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "orvanel/instrument/PortableMath.h"

namespace orvanel {
namespace {

constexpr double tableReach = 6;
constexpr double tableStep = 0.002;
constexpr double peakReach = 5;
// Half width at half maximum of a Gaussian of sigma 1: sqrt(2 ln 2).
constexpr double halfWidth = 1.1774100225154747;

}  // namespace

double PeakFwhmDa(const InstrumentModel& model, double rateDaPerS) {
    return model.fwhmAt1000DaPerS * Pow(rateDaPerS / 1000, model.fwhmExponent);
}

NormalTable::NormalTable() {
    const auto size = static_cast<std::size_t>(std::lround(2 * tableReach / tableStep));
    for (std::size_t i = 0; i <= size + 1; ++i)
        values_.push_back(0.5 + 0.5 * Erf((static_cast<double>(i) * tableStep - tableReach) / std::numbers::sqrt2));
}

double NormalTable::operator()(double x) const {
    if (x <= -tableReach) return 0;
    if (x >= tableReach) return 1;
    const double position = (x + tableReach) / tableStep;
    const auto index = static_cast<std::size_t>(position);
    const double rest = position - static_cast<double>(index);
    return values_[index] * (1 - rest) + values_[index + 1] * rest;
}

PeakShape::PeakShape(double fwhmDa, double rightToLeftSigma)
    : leftSigma_(fwhmDa / (halfWidth * (1 + rightToLeftSigma))),
      rightSigma_(leftSigma_ * rightToLeftSigma),
      modeOffset_(-std::sqrt(2 * std::numbers::inv_pi) * (rightSigma_ - leftSigma_)) {}

double PeakShape::Below(const NormalTable& table, double distanceDa) const {
    const double fromMode = distanceDa - modeOffset_;
    const double leftShare = leftSigma_ / (leftSigma_ + rightSigma_);
    if (fromMode < 0) return 2 * leftShare * table(fromMode / leftSigma_);
    return leftShare + (1 - leftShare) * (2 * table(fromMode / rightSigma_) - 1);
}

double PeakShape::Sample(double uniform, double normal) const {
    const bool left = uniform < leftSigma_ / (leftSigma_ + rightSigma_);
    return modeOffset_ + (left ? -leftSigma_ : rightSigma_) * std::fabs(normal);
}

double PeakShape::ReachDa() const {
    return std::fabs(modeOffset_) + peakReach * std::max(leftSigma_, rightSigma_);
}

std::size_t BinGrid::BinOf(double mz) const {
    const double position = std::floor((mz - start) / step + 0.5);
    return position >= 0 && position < static_cast<double>(count) ? static_cast<std::size_t>(position) : count;
}

void AddPeak(std::vector<double>& expected, const BinGrid& grid, const PeakShape& shape, const NormalTable& table,
             double mz, double ions) {
    const double firstPosition = std::max(0.0, std::ceil((mz - shape.ReachDa() - grid.start) / grid.step));
    const double endPosition =
        std::min(static_cast<double>(grid.count), std::floor((mz + shape.ReachDa() - grid.start) / grid.step) + 1);
    if (firstPosition >= endPosition) return;
    const auto end = static_cast<std::size_t>(endPosition);
    auto bin = static_cast<std::size_t>(firstPosition);
    double below = shape.Below(table, grid.Mz(bin) - grid.step / 2 - mz);
    for (; bin < end; ++bin) {
        const double next = shape.Below(table, grid.Mz(bin) + grid.step / 2 - mz);
        expected[bin] += ions * (next - below);
        below = next;
    }
}

}  // namespace orvanel
