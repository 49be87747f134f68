// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/CompoundChart.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "orvanel/instrument/Excitation.h"
#include "orvanel/instrument/Fragmentation.h"
#include "orvanel/instrument/Transmission.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace cli {
namespace {

using orvanel::Compound;
using orvanel::IonShares;
using support::GeneralText;
using support::PadLeft;
using support::PadRight;

constexpr double energyStepV = 0.5;
constexpr double highestTreeEnergyV = 200;
constexpr std::size_t curvesDrawn = 6;
constexpr std::size_t ionsListed = 15;
constexpr std::size_t productsListed = 3;

std::string Rounded(double value, int decimals) {
    return GeneralText(support::RoundHalfEven(value, decimals));
}

std::string Percent(double share) {
    return Rounded(100 * share, 1) + " %";
}

/// An ion with the energy at which most of it forms.
struct BestEnergy {
    std::size_t node = 0;
    double ce = 0;
    double share = 0;
};

class Chart {
  public:
    Chart(const Compound& compound, const orvanel::InstrumentModel& model, std::ostream& out)
        : compound_(compound), model_(model), tree_(compound), out_(out) {
        FindBestEnergies();
    }

    void Draw() {
        Heading();
        Curves();
        Ions();
        Declustering();
        Remarks();
    }

  private:
    bool IsMeasured() const { return !compound_.breakdown.voltages.empty(); }

    void FindBestEnergies() {
        endV_ = IsMeasured() ? compound_.breakdown.voltages.back() : highestTreeEnergyV;
        for (std::size_t node = 1; node < tree_.Size(); ++node)
            fragments_.push_back({node, 0, 0});
        const int steps = static_cast<int>(endV_ / energyStepV);
        for (int i = 0; i <= steps + 1; ++i) {
            const double ce = std::min(i * energyStepV, endV_);
            const IonShares ions = tree_.Dissociate(0, ce);
            for (BestEnergy& best : fragments_)
                if (ions.byNode[best.node] > best.share) best = {best.node, ce, ions.byNode[best.node]};
        }
        std::stable_sort(fragments_.begin(), fragments_.end(),
                         [](const auto& a, const auto& b) { return a.share > b.share; });
        if (!IsMeasured()) ShortenAxis();
    }

    /// A tree goes on for ever: what lies far behind the best energies is not drawn.
    void ShortenAxis() {
        constexpr double beyondBest = 1.5;
        double end = 2 * compound_.Root().e50 / compound_.charge;
        for (std::size_t i = 0; i < std::min(fragments_.size(), curvesDrawn); ++i)
            end = std::max(end, beyondBest * fragments_[i].ce);
        endV_ = std::min(std::ceil(end / 10) * 10, highestTreeEnergyV);
    }

    static char Letter(std::size_t rank) { return rank < curvesDrawn ? static_cast<char>('a' + rank) : ' '; }

    void Heading() {
        const auto& root = compound_.Root();
        out_ << compound_.title << ": " << compound_.adduct << " at m/z " << Rounded(root.mz, 4) << ", "
             << compound_.ionFormula << ", " << (compound_.polarity == 1 ? "negative" : "positive") << ", charge "
             << compound_.charge << '\n';
        out_ << fragments_.size() << " fragments; breakdown "
             << (IsMeasured() ? "as measured at " + std::to_string(compound_.breakdown.voltages.size()) +
                                    " voltages up to " + GeneralText(endV_) + " V, held above"
                              : std::string("from the tree"))
             << "\n\n";
    }

    void Curves() {
        constexpr std::size_t columns = 90;
        constexpr std::size_t rows = 20;
        std::vector<std::string> canvas(rows + 1, std::string(columns + 1, ' '));
        for (std::size_t column = 0; column <= columns; ++column) {
            const IonShares ions = tree_.Dissociate(0, endV_ * static_cast<double>(column) / columns);
            const auto mark = [&](double share, char letter) {
                const auto height = static_cast<std::size_t>(std::lround(share * rows));
                if (height > 0) canvas[rows - height][column] = letter;
            };
            mark(ions.byNode[0], 'P');
            for (std::size_t rank = std::min(fragments_.size(), curvesDrawn); rank-- > 0;)
                mark(ions.byNode[fragments_[rank].node], Letter(rank));
        }
        out_ << "Share of the precursor ions (%) against collision energy (V)\n";
        for (std::size_t row = 0; row < rows; ++row) {
            const bool labelled = row % 5 == 0;
            const std::string label = labelled ? GeneralText(static_cast<int>(100 - 5 * row)) : "";
            canvas[row].erase(canvas[row].find_last_not_of(' ') + 1);
            out_ << PadLeft(label, 4) << (labelled ? " +" : " |") << canvas[row] << '\n';
        }
        Axis(columns);
    }

    /// The smallest of 1, 2 and 5 times a power of ten that is not below.
    static double NiceStep(double least) {
        const double power = std::pow(10, std::floor(std::log10(least)));
        for (const double factor : {1.0, 2.0, 5.0})
            if (factor * power >= least) return factor * power;
        return 10 * power;
    }

    void Axis(std::size_t columns) {
        const double step = NiceStep(endV_ / 10);
        std::string line(columns + 1, '-');
        std::string numbers;
        for (int i = 0; i * step <= endV_; ++i) {
            const auto column = static_cast<std::size_t>(std::lround(i * step / endV_ * static_cast<double>(columns)));
            line[column] = '+';
            numbers = PadRight(numbers, column) + GeneralText(i * step);
        }
        out_ << "   0 +" << line << "\n      " << numbers << "\n\n";
    }

    /// What the trap makes of an ion when all of it dissociates.
    std::string TrapProducts(std::size_t node) const {
        const IonShares products = tree_.Products(node);
        const double cutoffMz = orvanel::Excitation::LowMassCutoff(model_, tree_.Node(node).mz);
        std::vector<std::pair<double, std::size_t>> kept;
        for (std::size_t i = 0; i < tree_.Size(); ++i)
            if (products.byNode[i] > 0 && tree_.Node(i).mz > cutoffMz) kept.push_back({-products.byNode[i], i});
        std::sort(kept.begin(), kept.end());
        std::string text;
        for (std::size_t i = 0; i < std::min(kept.size(), productsListed); ++i)
            text += (i == 0 ? "" : ", ") + Rounded(tree_.Node(kept[i].second).mz, 2) + " " +
                    Rounded(-100 * kept[i].first, 0) + " %";
        return text.empty() ? "none" : text;
    }

    void Ions() {
        out_ << "     m/z        formula             best CE     share     MS3 fragments, strongest first\n";
        out_ << "  P  " << PadRight(Rounded(compound_.Root().mz, 4), 11) << compound_.ionFormula << '\n';
        for (std::size_t rank = 0; rank < std::min(fragments_.size(), ionsListed); ++rank) {
            const BestEnergy& best = fragments_[rank];
            const auto& node = tree_.Node(best.node);
            const bool stillGrows = IsMeasured() && best.ce >= endV_;
            out_ << "  " << Letter(rank) << "  " << PadRight(Rounded(node.mz, 4), 11)
                 << PadRight(node.formula.empty() ? "unknown" : node.formula, 18)
                 << PadLeft((stillGrows ? "> " : "") + Rounded(best.ce, 1) + " V", 9)
                 << PadLeft(Percent(best.share), 10) << "     " << TrapProducts(best.node) << '\n';
        }
        if (fragments_.size() > ionsListed) out_ << "     and " << fragments_.size() - ionsListed << " weaker ones\n";
        out_ << '\n';
    }

    void Declustering() {
        constexpr int stepV = 20;
        constexpr int endV = 200;
        std::string volts = PadRight("DP (V)", 22);
        std::string passes = PadRight("passes (%)", 22);
        std::string breaks = PadRight("breaks in source (%)", 22);
        for (int dp = 0; dp <= endV; dp += stepV) {
            volts += PadLeft(GeneralText(dp), 6);
            passes += PadLeft(Rounded(100 * orvanel::DpTransmission(compound_, dp), 0), 6);
            breaks += PadLeft(Rounded(100 * orvanel::InSourceShare(compound_, dp), 0), 6);
        }
        out_ << volts << '\n'
             << passes << '\n'
             << breaks << "\nBest DP " << GeneralText((compound_.dpLow + compound_.dpHigh) / 2) << " V\n";
    }

    void Remarks() {
        constexpr double hardlySeen = 0.01;
        constexpr double lowestTrapMz = 50;
        constexpr double searchEnergyV = 10;  // of a run's Enhanced Resolution method
        constexpr double hardlyLeft = 0.1;
        if (fragments_.empty() || fragments_[0].share < hardlySeen)
            out_ << "\nNote: no fragment reaches 1 %. A run will end without an MS3 path.\n";
        else if (TrapProducts(fragments_[0].node) == "none")
            out_ << "\nNote: the strongest fragment gives nothing in the trap; add \"To\" keys to its node for MS3.\n";
        const double left = tree_.Dissociate(0, searchEnergyV).byNode[0];
        if (left < hardlyLeft)
            out_ << "\nNote: only " << Percent(left) << " of the precursor are left at " << searchEnergyV
                 << " V, where a run looks for it. If it is not found,\nraise the energies of the file, or import with "
                    "a "
                    "larger --energy-scale.\n";
        if (compound_.Root().mz < lowestTrapMz || compound_.Root().mz > model_.trapMz.maximum)
            out_ << "\nNote: the trap does not reach the precursor's m/z.\n";
    }

    const Compound& compound_;
    const orvanel::InstrumentModel& model_;
    orvanel::FragmentationTree tree_;
    std::ostream& out_;
    std::vector<BestEnergy> fragments_;  ///< by falling share
    double endV_ = 0;
};

}  // namespace

void DrawCompound(const Compound& compound, const orvanel::InstrumentModel& model, std::ostream& out) {
    Chart(compound, model, out).Draw();
}

}  // namespace cli
