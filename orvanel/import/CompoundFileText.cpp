// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <map>

#include "orvanel/import/CompoundImport.h"
#include "orvanel/instrument/Fragmentation.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace orvanel {
namespace {

using support::GeneralText;

constexpr std::size_t commentWidth = 120;

class Writer {
  public:
    Writer(const MeasuredIon& ion, const FittedCompound& fitted) : ion_(ion), fitted_(fitted) {}

    std::string Text() {
        Attribution();
        Ion();
        Curves();
        Nodes();
        Truth();
        return text_;
    }

  private:
    const Compound& Made() const { return fitted_.compound; }
    void Line(const std::string& line = "") { text_ += line + "\n"; }
    void Key(const std::string& key, const std::string& value) { Line(key + "=" + value); }

    /// A text that begins and ends like a quotation, which a reader takes the quotes from.
    static std::string Quoted(const std::string& text) {
        const bool hasQuotes = !text.empty() && text.front() == text.back() && (text[0] == '"' || text[0] == '\'');
        return hasQuotes ? "\"" + text + "\"" : text;
    }

    /// A comment of any length, broken at blanks.
    void Comment(const std::string& text) {
        std::string line = ";";
        for (const std::string& word : support::Split(text, ' ')) {
            if (line.size() + 1 + word.size() > commentWidth && line != ";") {
                Line(line);
                line = ";";
            }
            line += " " + word;
        }
        Line(line);
    }

    /// The different texts of a field, in the order of the spectra.
    void Cite(const std::string& what, StatedText SpectrumRecord::*field) {
        std::vector<std::string> different;
        for (const MeasuredSpectrum& spectrum : ion_.spectra) {
            const StatedText& stated = spectrum.record.*field;
            if (stated.IsGiven() && std::find(different.begin(), different.end(), stated.text) == different.end())
                different.push_back(stated.text);
        }
        std::string list;
        for (const std::string& text : different)
            list += (list.empty() ? "" : ", ") + text;
        Comment(what + ": " + (list.empty() ? "not stated" : list));
    }

    void Attribution() {
        Comment("Derived from " + std::to_string(ion_.spectra.size()) +
                " library spectra, whose licence holds for this file. Changes: unit-mass bins, shares of all ions, "
                "collision energies scaled, weak fragments left out, tree and voltages added.");
        Cite("Records", &SpectrumRecord::accession);
        Cite("Licence", &SpectrumRecord::license);
        Cite("Authors", &SpectrumRecord::authors);
        Cite("Copyright", &SpectrumRecord::copyright);
        Cite("Instrument type", &SpectrumRecord::instrumentType);
        std::map<std::string, int> scales;
        for (const MeasuredSpectrum& spectrum : ion_.spectra)
            ++scales[GeneralText(spectrum.scale)];
        for (const auto& [scale, count] : scales)
            Comment("Energy scale: " + scale + " V here for 1 V there (" + std::to_string(count) + " spectra).");
        Comment(
            "[Breakdown] is what was measured. The tree of the nodes, which acts on fragments in the trap and on ions "
            "that break in the source, is derived from it: an ion leads to those that it can hold and that are there "
            "when a quarter of it has dissociated. No MS3 spectrum went into it.");
    }

    void Ion() {
        Line("[Compound]");
        Key("Title", Quoted(Made().title));
        Key("IonFormula", Made().ionFormula);
        Key("Adduct", Made().adduct);
        Key("Polarity", ion_.negative ? "negative" : "positive");
        if (ion_.charge != 1) Key("Charge", GeneralText(ion_.charge));
        Comment("Not in the records: an intensity of the simulation; DP from m/z and from how easily the ion breaks.");
        Key("Intensity", GeneralText(Made().intensity));
        Key("DpLow", GeneralText(Made().dpLow));
        Key("DpHigh", GeneralText(Made().dpHigh));
        Key("DpWidth", GeneralText(Made().dpWidth));
        Key("Precursor", Made().root);
        Line();
    }

    static std::string List(const std::vector<double>& values) {
        std::string list;
        for (const double value : values)
            list += (list.empty() ? "" : ", ") + GeneralText(value);
        return list;
    }

    void Curves() {
        Comment("Shares of all ions. What is missing to 1 are fragments too weak to be kept. 0 V is no measurement.");
        Line("[Breakdown]");
        Key("Voltages", List(Made().breakdown.voltages));
        for (const std::string& name : fitted_.order)
            Key(name, List(Made().breakdown.shares.at(name)));
        Line();
    }

    std::string FormulaRemark(std::size_t index) const {
        const int candidates = fitted_.formulaCandidates[index];
        if (candidates == 1) return "";
        if (candidates > 1) return "The nearest of " + std::to_string(candidates) + " possible formulas.";
        return fitted_.unitMasses ? "" : "No formula fits within the accuracy of the mass.";
    }

    void Nodes() {
        if (fitted_.unitMasses) Comment("The masses of the records are not accurate enough for formulas of fragments.");
        Comment("E50 and Width are read off the curves. Excitation in the trap is that of an ordinary ion (factor 1).");
        for (std::size_t i = 0; i < fitted_.order.size(); ++i) {
            const TreeNode& node = Made().nodes.at(fitted_.order[i]);
            Line("[Node " + node.name + "]");
            Key("Mz", GeneralText(node.mz));
            if (node.charge != ion_.charge) Key("Charge", GeneralText(node.charge));
            if (const std::string remark = FormulaRemark(i); !remark.empty()) Comment(remark);
            if (!node.formula.empty()) Key("Formula", node.formula);
            Key("E50", GeneralText(node.e50));
            Key("Width", GeneralText(node.width));
            for (const Branch& branch : node.branches)
                Key("To " + branch.product, GeneralText(branch.weight) + ", " + GeneralText(branch.kappa));
            Line();
        }
    }

    void Truth() {
        if (Made().truth.empty()) return;
        Comment(
            "Best measured collision energy in V, scaled, and share of all ions there, of the strongest fragments.");
        Line("[Truth]");
        for (const PlantedOptimum& truth : Made().truth)
            Key(truth.node, GeneralText(truth.ce) + ", " + GeneralText(truth.fraction));
    }

    const MeasuredIon& ion_;
    const FittedCompound& fitted_;
    std::string text_;
};

}  // namespace

std::string CompoundFileText(const MeasuredIon& ion, const FittedCompound& fitted) {
    return Writer(ion, fitted).Text();
}

}  // namespace orvanel
