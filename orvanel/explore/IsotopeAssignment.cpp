// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/IsotopeAssignment.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

namespace orvanel {
namespace {

constexpr double isotopeSpacingDa = 1.0025;  // mean of averagine; 13C alone 1.00335, 37Cl - 35Cl 1.99705
// Isotopes of other elements lie off it: 34S 0.009 below at M+2, two 37Cl 0.016 below at M+4, 13C 0.0009 above at M+1.
constexpr double toleranceAboveDa = 0.004;
constexpr double toleranceBelowDa = 0.004;         // ... and so much for each isotope
constexpr double toleranceWidths = 0.15;           // of the peak's width, on top
constexpr double toleranceDeviations = 2;          // of the two centroids, on top
constexpr double sigmaPerFwhm = 0.42466090014401;  // 1 / (2 sqrt(2 ln 2))
constexpr int highestCharge = 4;
constexpr int mostIsotopes = 12;
constexpr std::ptrdiff_t mostCandidates = 50;  // for one isotope; among more there is always one that fits by chance
constexpr double resolvedWidths = 0.9;         // isotopes closer than so many widths cannot be told apart
constexpr double resolvedFully = 1.6;          // ... and closer than so many tell their places poorly
constexpr double overlapShare = 0.5;
constexpr double ratioOffset = 0.1;            // M+1 / M is at most so much ...
constexpr double ratioSlopePerDa = 0.00065;    // ... and so much for each Da of mass
constexpr double typicalSlopePerDa = 0.00054;  // averagine's own M+1 / M for each Da
constexpr double leastOfTypical = 0.6;         // of that, where a charge above 1 is to be believed
constexpr double mostOfTypical = 1.5;          // ... for M+1 and M+2
constexpr double mostOfTypicalBeyond = 1.9;    // ... for M+3
constexpr double sharplyResolved = 10;         // widths between isotopes
constexpr double halogenRatio = 1.1;           // M+2 / M with up to three chlorines or one bromine
constexpr double significance = 3;
constexpr double fewestIons = 8;       // that a peak has
constexpr double mostHiddenIons = 25;  // that chance can keep from being seen: below 8 + 3 sqrt(25)

/// The relative standard deviation of the ratio of two ion counts.
double CountingDeviation(const Peak& a, const Peak& b) {
    return std::sqrt(1 / a.ions + 1 / b.ions);
}

/// The chance that the ratio of two ion counts varies by, as a factor.
double RatioTolerance(const Peak& a, const Peak& b) {
    return 1 + significance * CountingDeviation(a, b);
}

/// Whether isotopes are resolved so well that hardly another peak is in their places.
bool IsSharp(const Peak& peak, int charge) {
    return isotopeSpacingDa / charge > sharplyResolved * peak.widthDa;
}

/// How far ratios may be off, as a factor: instruments that resolve so well show weak peaks too weak.
double Latitude(const Peak& peak, int charge) {
    constexpr double sharpLatitude = 1.5;
    return charge > 1 && IsSharp(peak, charge) ? sharpLatitude : 1;
}

/// One envelope: the monoisotopic peak and its heavier isotopes, as positions in the peak list.
struct Envelope {
    int charge = 0;
    std::vector<std::size_t> members;
};

class Assignment {
  public:
    explicit Assignment(std::vector<Peak>& peaks) : peaks_(peaks), taken_(peaks.size(), false) {}

    void Run();

  private:
    std::optional<std::size_t> FindIsotope(std::size_t mono, int number, int charge) const;
    Envelope EnvelopeAt(std::size_t mono, int charge) const;
    Envelope PlausiblePartOf(Envelope envelope) const;
    bool LooksDivided(const Envelope& envelope) const;

    std::vector<Peak>& peaks_;
    std::vector<bool> taken_;
};

/// @param number 1 for M+1, 2 for M+2, ...
std::optional<std::size_t> Assignment::FindIsotope(std::size_t mono, int number, int charge) const {
    const double expected = peaks_[mono].mz + number * isotopeSpacingDa / charge;
    const double below = toleranceBelowDa * (number + 1) / charge;
    const double above = toleranceAboveDa / charge;
    const double width = peaks_[mono].widthDa;
    const double most = (toleranceWidths + toleranceDeviations * sigmaPerFwhm / std::sqrt(fewestIons)) * width;
    // An isotope that melts into the one before is seen too high.
    const double overlap = overlapShare * std::max(0.0, resolvedFully * width - isotopeSpacingDa / charge);
    std::optional<std::size_t> strongest;
    auto peak =
        std::lower_bound(peaks_.begin() + static_cast<std::ptrdiff_t>(mono) + 1, peaks_.end(), expected - below - most,
                         [](const Peak& candidate, double value) { return candidate.mz < value; });
    const auto end = std::upper_bound(peak, peaks_.end(), expected + above + overlap + most,
                                      [](double value, const Peak& candidate) { return value < candidate.mz; });
    if (end - peak > mostCandidates) return std::nullopt;
    for (; peak != end; ++peak) {
        const auto index = static_cast<std::size_t>(peak - peaks_.begin());
        const double measured =
            (toleranceWidths + toleranceDeviations * sigmaPerFwhm * CountingDeviation(peaks_[mono], *peak)) * width;
        if (taken_[index] || peak->mz < expected - below - measured || peak->mz > expected + above + overlap + measured)
            continue;
        if (!strongest || peak->area > peaks_[*strongest].area) strongest = index;
    }
    return strongest;
}

/// Walks up from the monoisotopic peak as long as each next peak is there and not higher than isotopes can be.
Envelope Assignment::EnvelopeAt(std::size_t mono, int charge) const {
    Envelope envelope{charge, {mono}};
    const Peak& first = peaks_[mono];
    const double nextRatio = Latitude(first, charge) * (ratioOffset + ratioSlopePerDa * first.mz * charge);
    for (int number = 1; number <= mostIsotopes; ++number) {
        const auto index = FindIsotope(mono, number, charge);
        if (!index) break;
        const Peak& isotope = peaks_[*index];
        const double previous = peaks_[envelope.members.back()].area;
        double limit = nextRatio * previous;
        if (number == 2) limit += halogenRatio * first.area;
        if (number > 2) {
            const double pair = peaks_[envelope.members[2]].area / first.area;
            limit += pair * peaks_[envelope.members[static_cast<std::size_t>(number) - 2]].area;
        }
        if (isotope.area > limit * RatioTolerance(first, isotope)) break;
        envelope.members.push_back(*index);
    }
    return envelope;
}

/// A charge above 1 needs ratios near those of averagine of that mass, and three peaks or more: a stray peak half a
/// dalton above another one is no isotope of it. Where isotopes are resolved so sharply that hardly a stray peak is in
/// their places, two will do, and what does not fit behind them is something else. The number of heavy isotopes follows
/// Poisson's law; oxygen and sulfur add some M+2.
/// @return without members where there is none
Envelope Assignment::PlausiblePartOf(Envelope envelope) const {
    Envelope none{envelope.charge, {}};
    if (envelope.charge == 1) return envelope.members.size() > 1 && !LooksDivided(envelope) ? envelope : none;
    const Peak& first = peaks_[envelope.members[0]];
    const double mean = typicalSlopePerDa * first.mz * envelope.charge;
    const double poisson[] = {1, mean, mean * mean / 2, mean * mean * mean / 6};
    // What oxygen and sulfur add, which differs most between compounds at M+3.
    const double added[] = {0, 0, 0.03, 0.03 * mean};
    const bool isSharp = IsSharp(first, envelope.charge);
    for (std::size_t k = 1; k < std::min(envelope.members.size(), std::size(poisson)); ++k) {
        const Peak& isotope = peaks_[envelope.members[k]];
        const double found = isotope.area / first.area;
        const double tolerance = Latitude(first, envelope.charge) * RatioTolerance(first, isotope);
        const double most = k < 3 ? mostOfTypical : mostOfTypicalBeyond;
        if (found <= most * tolerance * (poisson[k] + added[k]) && found * tolerance >= leastOfTypical * poisson[k])
            continue;
        if (!isSharp) return none;
        envelope.members.resize(k);
    }
    // Two will do where the third one is too small to be seen.
    const bool thirdIsHidden = envelope.charge == 2 && poisson[2] * first.ions < mostHiddenIons;
    return envelope.members.size() < (thirdIsHidden || isSharp ? 2 : 3) ? none : envelope;
}

/// Whether a singly charged reading leaves out something stronger on the way to an M+1 that is too weak for one: then
/// the charge is likely to be higher, with isotopes that do not show it for certain.
bool Assignment::LooksDivided(const Envelope& envelope) const {
    const Peak& first = peaks_[envelope.members[0]];
    const Peak& next = peaks_[envelope.members[1]];
    if (next.area >= leastOfTypical * typicalSlopePerDa * first.mz * first.area) return false;
    for (int charge = 2; charge <= highestCharge; ++charge) {
        const auto between = FindIsotope(envelope.members[0], 1, charge);
        if (between && peaks_[*between].area > next.area && peaks_[*between].area < first.area) return true;
    }
    return false;
}

void Assignment::Run() {
    for (std::size_t mono = 0; mono < peaks_.size(); ++mono) {
        if (taken_[mono]) continue;
        // Of two charges that explain as many peaks the higher one: the lower one's isotopes are among its own.
        Envelope best;
        for (int charge = highestCharge; charge >= 1; --charge) {
            if (isotopeSpacingDa / charge < resolvedWidths * peaks_[mono].widthDa) continue;
            Envelope envelope = PlausiblePartOf(EnvelopeAt(mono, charge));
            if (envelope.members.size() > best.members.size()) best = std::move(envelope);
        }
        for (const std::size_t member : best.members) {
            taken_[member] = true;
            peaks_[member].charge = best.charge;
            peaks_[member].monoisotopic = member == mono;
        }
    }
}

}  // namespace

void AssignIsotopes(std::vector<Peak>& peaks) {
    Assignment(peaks).Run();
}

}  // namespace orvanel
