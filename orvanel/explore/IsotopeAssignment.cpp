#include "orvanel/explore/IsotopeAssignment.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

namespace orvanel {
namespace {

constexpr double isotopeSpacingDa = 1.0025;  // mean of averagine; 13C alone 1.00335, 37Cl - 35Cl 1.99705
constexpr double spacingToleranceDa = 0.03;
constexpr double toleranceWidths = 0.1;  // of the peak's width, on top
constexpr int highestCharge = 4;
constexpr int mostIsotopes = 12;
constexpr double resolvedWidths = 1.1;         // isotopes closer than so many widths cannot be told apart
constexpr double ratioOffset = 0.1;            // M+1 / M is at most so much ...
constexpr double ratioSlopePerDa = 0.00065;    // ... and so much for each Da of mass
constexpr double typicalSlopePerDa = 0.00054;  // averagine's own M+1 / M for each Da
constexpr double halogenRatio = 1.1;           // M+2 / M with up to three chlorines or one bromine
constexpr double significance = 3;

/// The chance that the ratio of two ion counts varies by, as a factor.
double RatioTolerance(const Peak& a, const Peak& b) {
    return 1 + significance * std::sqrt(1 / a.ions + 1 / b.ions);
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
    bool IsPlausible(const Envelope& envelope) const;

    std::vector<Peak>& peaks_;
    std::vector<bool> taken_;
};

/// @param number 1 for M+1, 2 for M+2, ...
std::optional<std::size_t> Assignment::FindIsotope(std::size_t mono, int number, int charge) const {
    const double expected = peaks_[mono].mz + number * isotopeSpacingDa / charge;
    const double tolerance = (spacingToleranceDa + 0.003 * number) / charge + toleranceWidths * peaks_[mono].widthDa;
    std::optional<std::size_t> strongest;
    auto peak =
        std::lower_bound(peaks_.begin() + static_cast<std::ptrdiff_t>(mono) + 1, peaks_.end(), expected - tolerance,
                         [](const Peak& candidate, double value) { return candidate.mz < value; });
    for (; peak != peaks_.end() && peak->mz <= expected + tolerance; ++peak) {
        const auto index = static_cast<std::size_t>(peak - peaks_.begin());
        if (taken_[index]) continue;
        if (!strongest || peak->intensity > peaks_[*strongest].intensity) strongest = index;
    }
    return strongest;
}

/// Walks up from the monoisotopic peak as long as each next peak is there and not higher than isotopes can be.
Envelope Assignment::EnvelopeAt(std::size_t mono, int charge) const {
    Envelope envelope{charge, {mono}};
    const Peak& first = peaks_[mono];
    const double nextRatio = ratioOffset + ratioSlopePerDa * first.mz * charge;
    for (int number = 1; number <= mostIsotopes; ++number) {
        const auto index = FindIsotope(mono, number, charge);
        if (!index) break;
        const Peak& isotope = peaks_[*index];
        const double previous = peaks_[envelope.members.back()].intensity;
        double limit = nextRatio * previous;
        if (number == 2) limit += halogenRatio * first.intensity;
        if (number > 2) {
            const double pair = peaks_[envelope.members[2]].intensity / first.intensity;
            limit += pair * peaks_[envelope.members[static_cast<std::size_t>(number) - 2]].intensity;
        }
        if (isotope.intensity > limit * RatioTolerance(first, isotope)) break;
        envelope.members.push_back(*index);
    }
    return envelope;
}

/// A charge above 1 needs three peaks or more with ratios near those of averagine of that mass: a stray peak half a
/// dalton above another one is no isotope of it. The number of heavy isotopes follows Poisson's law; oxygen and sulfur
/// add some M+2.
bool Assignment::IsPlausible(const Envelope& envelope) const {
    if (envelope.charge == 1) return envelope.members.size() > 1;
    if (envelope.members.size() < 3) return false;
    const Peak& first = peaks_[envelope.members[0]];
    const double mean = typicalSlopePerDa * first.mz * envelope.charge;
    const double expected[] = {1, mean, mean * mean / 2 + 0.03, mean * mean * mean / 6 + 0.03 * mean};
    for (std::size_t k = 1; k < std::min(envelope.members.size(), std::size(expected)); ++k) {
        const Peak& isotope = peaks_[envelope.members[k]];
        const double found = isotope.intensity / first.intensity;
        const double tolerance = RatioTolerance(first, isotope);
        // What oxygen and sulfur add differs most between compounds at M+3.
        const double most = k < 3 ? 1.5 : 1.9;
        if (found > most * tolerance * expected[k] || found * tolerance < 0.6 * expected[k]) return false;
    }
    return true;
}

void Assignment::Run() {
    for (std::size_t mono = 0; mono < peaks_.size(); ++mono) {
        if (taken_[mono]) continue;
        for (int charge = highestCharge; charge >= 1; --charge) {
            if (isotopeSpacingDa / charge < resolvedWidths * peaks_[mono].widthDa) continue;
            const Envelope envelope = EnvelopeAt(mono, charge);
            if (!IsPlausible(envelope)) continue;
            for (const std::size_t member : envelope.members) {
                taken_[member] = true;
                peaks_[member].charge = charge;
                peaks_[member].monoisotopic = member == mono;
            }
            break;
        }
    }
}

}  // namespace

void AssignIsotopes(std::vector<Peak>& peaks) {
    Assignment(peaks).Run();
}

}  // namespace orvanel
