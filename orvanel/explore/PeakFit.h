// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <vector>

namespace orvanel {

/// The shape that all peaks of a spectrum share: a Gaussian of unequal sides, placed by its centre of mass. Lengths are
/// in points.
struct PeakForm {
    double leftSigma = 1;
    double rightSigma = 1;

    /// @param distance from the centre of mass
    /// @return the share of the peak at one point there
    double At(double distance) const;
    double Fwhm() const;
};

/// One peak as a share of the spectrum.
struct FittedPeak {
    double position = 0;  ///< centre of mass, in points from the stretch's first one
    double sum = 0;       ///< of the intensities that belong to it
};

/// Shares a gapless stretch of a spectrum out between peaks that may overlap.
///
/// Positions and sums follow from the expectation-maximisation rule for mixtures (Dempster, Laird and Rubin 1977): each
/// point's intensity is divided between the peaks in proportion to what they are expected to have there, and each peak
/// then moves to the mean of what it was given. What is left over shows peaks that have no maximum of their own.
class PeakFit {
  public:
    /// @param begin, end the stretch's points in order of m/z
    /// @param ionQuantum intensity that one ion adds to a point
    PeakFit(const double* begin, const double* end, const PeakForm& form, double ionQuantum);

    /// @param positions of the maxima, in order
    /// @return in order; at least those that the maxima stand for, but of two that run into each other one
    std::vector<FittedPeak> Run(const std::vector<double>& positions);

    /// The share of the intensity at a point that belongs to the peak.
    double ShareAt(const FittedPeak& peak, std::size_t point) const;

  private:
    struct Range {
        std::size_t first = 0;
        std::size_t end = 0;
    };
    Range Reach(double position, double widths) const;
    void Expect();
    double Improve();
    void Refine();
    bool AddHidden();
    bool DropUnfounded();
    double LeftOver(double position, double& deviation) const;

    const double* intensity_;
    std::size_t size_;
    PeakForm form_;
    double ionQuantum_;
    std::vector<FittedPeak> peaks_;
    std::vector<double> expected_;
};

}  // namespace orvanel
