// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/FragmentFormulas.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace orvanel {
namespace {

constexpr double toleranceDa = 0.005;
constexpr double radicalPenaltyDa = 0.002;  ///< ions with an odd electron are rarer
constexpr int mostNeutralsLost = 4;
constexpr long mostTried = 5'000'000;

struct Element {
    std::string symbol;
    int available = 0;
    double massDa = 0;
    double massOfRestDa = 0;  ///< all that is available of the elements behind this one
};

/// What an atom adds to twice the rings and double bonds: its valence minus 2. Elements that are not listed count as
/// having two bonds, which changes nothing.
int ValencesAboveTwo(const std::string& symbol) {
    if (symbol == "C" || symbol == "Si") return 2;
    if (symbol == "N" || symbol == "P" || symbol == "B") return 1;
    for (const char* const single : {"H", "D", "F", "Cl", "Br", "I", "Na", "K", "Li"})
        if (symbol == single) return -1;
    return 0;
}

class Search {
  public:
    Search(const Composition& ion, ports::ElementTable& elements) {
        for (const auto& [symbol, count] : ion)
            elements_.push_back({symbol, count, MonoisotopicMass({{symbol, 1}}, elements), 0});
        // Heavy elements first, so that little is left to try.
        std::sort(elements_.begin(), elements_.end(), [](const auto& a, const auto& b) { return a.massDa > b.massDa; });
        for (std::size_t i = elements_.size(); i-- > 1;)
            elements_[i - 1].massOfRestDa = elements_[i].massOfRestDa + elements_[i].available * elements_[i].massDa;
        counts_.assign(elements_.size(), 0);
    }

    /// @return the number of compositions of that mass, each handed to the action with its error in Da and
    /// whether it is a radical; 0 when there are too
    /// many to try
    template <class Action>
    int Visit(double massDa, double reachDa, Action found) {
        tried_ = 0;
        hits_ = 0;
        reachDa_ = reachDa;
        Descend(0, massDa, found);
        return tried_ > mostTried ? 0 : hits_;
    }

  private:
    template <class Action>
    void Descend(std::size_t at, double missingDa, Action& found) {
        if (++tried_ > mostTried) return;
        const Element& element = elements_[at];
        const int most = std::min(element.available, static_cast<int>((missingDa + reachDa_) / element.massDa));
        const int least =
            std::max(0, static_cast<int>(std::ceil((missingDa - reachDa_ - element.massOfRestDa) / element.massDa)));
        for (int count = least; count <= most; ++count) {
            counts_[at] = count;
            const double restDa = missingDa - count * element.massDa;
            if (at + 1 < elements_.size())
                Descend(at + 1, restDa, found);
            else if (std::fabs(restDa) <= reachDa_ && HoldsTogether())
                ++hits_, found(Counted(), std::fabs(restDa), Valences() % 2 == 0);
        }
        counts_[at] = 0;
    }

    /// Twice the rings and double bonds of the ion as it is counted: odd where all electrons are paired.
    int Valences() const {
        int valences = 2;
        for (std::size_t i = 0; i < elements_.size(); ++i)
            valences += counts_[i] * ValencesAboveTwo(elements_[i].symbol);
        return valences;
    }

    bool HoldsTogether() const {
        int lost = 2;
        for (std::size_t i = 0; i < elements_.size(); ++i)
            lost += (elements_[i].available - counts_[i]) * ValencesAboveTwo(elements_[i].symbol);
        return Valences() >= -1 && lost >= 2 - 2 * mostNeutralsLost;
    }

    Composition Counted() const {
        Composition composition;
        for (std::size_t i = 0; i < elements_.size(); ++i)
            if (counts_[i] > 0) composition[elements_[i].symbol] = counts_[i];
        return composition;
    }

    std::vector<Element> elements_;
    std::vector<int> counts_;
    double reachDa_ = 0;
    long tried_ = 0;
    int hits_ = 0;
};

}  // namespace

FragmentFormula FindFormula(const Composition& ion, double mz, int charge, bool negative,
                            ports::ElementTable& elements) {
    FragmentFormula best;
    const double electronsDa = (negative ? -1 : 1) * charge * electronMassDa;
    double smallest = (toleranceDa + radicalPenaltyDa) * charge;
    best.candidates = Search(ion, elements)
                          .Visit(mz * charge + electronsDa, toleranceDa * charge,
                                 [&](const Composition& composition, double errorDa, bool isRadical) {
                                     const double counted = errorDa + (isRadical ? radicalPenaltyDa * charge : 0);
                                     if (counted > smallest) return;
                                     smallest = counted;
                                     best.composition = composition;
                                 });
    if (best.candidates == 0) best.composition.clear();
    if (!best.composition.empty()) best.mz = IonMz(best.composition, charge, negative, elements);
    return best;
}

}  // namespace orvanel
