// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/instrument/InstrumentModel.h"

namespace orvanel {

/// The trap's mass peak at a scan rate: fwhmAt1000DaPerS * (rate / 1000)^fwhmExponent, in Da.
double PeakFwhmDa(const InstrumentModel& model, double rateDaPerS);

/// The distribution function of the standard normal distribution from a table; absolute error below 2e-7.
class NormalTable {
  public:
    NormalTable();
    double operator()(double x) const;

  private:
    std::vector<double> values_;
};

/// A Gaussian of unequal sides. It is placed by its centre of mass, which the mass calibration refers to.
class PeakShape {
  public:
    PeakShape(double fwhmDa, double rightToLeftSigma);

    /// The share of the peak below a distance from its centre of mass.
    double Below(const NormalTable& table, double distanceDa) const;
    /// A distance from the centre of mass, of this distribution: from a uniform and a standard normal random number.
    double Sample(double uniform, double normal) const;
    /// Nothing noticeable (1e-6 of a side) lies further away.
    double ReachDa() const;

  private:
    double leftSigma_;
    double rightSigma_;
    double modeOffset_;
};

/// A grid of bins, each centred at start + i * step.
struct BinGrid {
    double start = 0;
    double step = 1;
    std::size_t count = 0;

    double Mz(std::size_t bin) const { return start + static_cast<double>(bin) * step; }
    /// @return the bin, or count when the mass lies outside
    std::size_t BinOf(double mz) const;
};

/// Adds the peak of so many ions to the bins' expected counts.
void AddPeak(std::vector<double>& expected, const BinGrid& grid, const PeakShape& shape, const NormalTable& table,
             double mz, double ions);

}  // namespace orvanel
