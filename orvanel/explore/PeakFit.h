// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "orvanel/explore/PeakForm.h"

namespace orvanel {

/// One peak as a share of the spectrum. Lengths are in points.
struct FittedPeak {
    double position = 0;  ///< centre of mass, from the first point
    double width = 1;     ///< full width at half maximum; given, not fitted
    double sum = 0;       ///< of the intensities that belong to it
};

/// What peaks show beside them although nothing is there, because they differ from the form: shares of a peak's sum by
/// side and distance.
class FormMisfit {
  public:
    static constexpr double closestWidths = 0.65;  // peaks closer than so many widths are one
    static constexpr double stepWidths = 0.1;
    static constexpr std::size_t distances = 14;  // up to 1.95 widths
    enum class Side { left, right };

    static double WidthsAt(std::size_t distance) { return closestWidths + stepWidths * static_cast<double>(distance); }
    double At(Side side, std::size_t distance) const { return shares_[static_cast<std::size_t>(side)][distance]; }
    double& At(Side side, std::size_t distance) { return shares_[static_cast<std::size_t>(side)][distance]; }

  private:
    std::array<std::array<double, distances>, 2> shares_{};
};

/// Shares neighbouring points of a spectrum out between peaks that may overlap.
///
/// Positions and sums follow from the expectation-maximisation rule for mixtures (Dempster, Laird and Rubin 1977): each
/// point's intensity is divided between the peaks in proportion to what they are expected to have there, and each peak
/// then moves to the mean of what it was given. Peaks take their turns until all have settled; one that has settled
/// takes no more until a neighbour moves. What is left over shows peaks that have no maximum of their own.
class PeakFit {
  public:
    /// @param begin, end points in order of m/z without a gap
    /// @param form must outlive the fit
    /// @param ionQuantum intensity that one ion adds to a point
    /// @param maxima positions and widths, in order, not empty; sums are ignored
    PeakFit(const double* begin, const double* end, const PeakForm& form, double ionQuantum,
            std::vector<FittedPeak> maxima);

    /// In order, at least one; of two that run into each other one.
    const std::vector<FittedPeak>& Peaks() const { return peaks_; }

    /// Adds peaks wherever more is left over than chance, misfit and the far tails of other peaks explain.
    /// @param tails what these may add up to, one a point, from the first one
    void AddHidden(const FormMisfit& misfit, const double* tails);

    /// What is left over beside a peak at a distance, as a share of its sum; none where another peak may reach, points
    /// are missing, or counting statistics leave more than a 50th of the peak in doubt.
    std::optional<double> MisfitAt(std::size_t peak, FormMisfit::Side side, std::size_t distance) const;

    /// The share of the intensity at a point that belongs to the peak.
    double ShareAt(const FittedPeak& peak, std::size_t point) const;
    /// What all peaks together are expected to have at each point.
    const std::vector<double>& Expected() const { return expected_; }

  private:
    struct Range {
        std::size_t first = 0;
        std::size_t end = 0;
    };
    struct Excess {
        double sum = 0;
        double deviation = 0;  ///< of the sum, from counting
    };
    /// How a peak is getting on with its turns.
    struct Course {
        double lastMove = 0;
        int steps = 0;
        bool waits = true;  ///< for its next turn
        bool fresh = true;  ///< nothing was looked for beside it since it last moved
    };

    Range Reach(const FittedPeak& peak, double widths) const;
    double FormAt(const FittedPeak& peak, std::size_t point) const;
    void Expect();
    void Add(const FittedPeak& peak, double sign);
    bool Improve(FittedPeak& peak, Course& course);
    template <typename Visit>
    void VisitNeighbours(std::size_t peak, Visit visit);
    void Refine();
    void Insert(const std::vector<FittedPeak>& added);
    bool DropUnfounded();
    bool MayHide(const FittedPeak& peak, FormMisfit::Side side) const;
    FittedPeak BestHidden(const FittedPeak& peak, FormMisfit::Side side, const FormMisfit& misfit,
                          const double* tails) const;
    std::vector<FittedPeak> HiddenPeaks(const FormMisfit& misfit, const double* tails);
    Excess ExcessAt(const FittedPeak& place) const;

    const double* intensity_;
    std::size_t size_;
    const PeakForm* form_;
    double ionQuantum_;
    std::vector<FittedPeak> peaks_;
    std::vector<Course> courses_;  ///< one a peak
    std::vector<double> expected_;
};

}  // namespace orvanel
