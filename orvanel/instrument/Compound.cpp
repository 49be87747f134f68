// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Compound.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <stdexcept>

#include "orvanel/instrument/Formula.h"
#include "orvanel/instrument/Fragmentation.h"
#include "orvanel/instrument/InstrumentErrors.h"
#include "orvanel/instrument/StrictIni.h"
#include "support/FileNames.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {
namespace {

constexpr double formulaToleranceDa = 0.005;
constexpr std::size_t maximumNodes = 500;
constexpr std::size_t maximumVoltages = 500;
constexpr std::string_view nodePrefix = "Node ";
constexpr std::string_view branchPrefix = "To ";

bool HasPrefix(const std::string& text, std::string_view prefix) {
    return text.size() > prefix.size() && support::EqualIgnoringCase(text.substr(0, prefix.size()), prefix);
}

/// A node's name as it stands somewhere. More blanks, which nobody sees, make no other name: one stands for several.
std::string NodeName(std::string_view text) {
    std::string name(support::Trim(text));
    std::replace(name.begin(), name.end(), '\t', ' ');
    const auto repeated = std::unique(name.begin(), name.end(), [](char a, char b) { return a == ' ' && b == ' '; });
    name.erase(repeated, name.end());
    return name;
}

std::string NodeNameBehind(std::string_view prefix, std::string_view text) {
    return NodeName(text.substr(prefix.size()));
}

class CompoundReader {
  public:
    CompoundReader(const std::string& path, ports::ElementTable& elements, const support::Disk& disk)
        : file_(path, compoundFileFaulty, disk), elements_(elements) {
        compound_.name = support::WithoutExtension(support::FileNameOf(path), ".ini");
    }

    Compound Read() {
        ReadIon();
        for (const auto& section : file_.Sections())
            if (HasPrefix(section.name, nodePrefix)) ReadNode(section);
        ReadBreakdown();
        ReadTruth();
        file_.RefuseUnread();
        CheckTree();
        CheckFormulas();
        return compound_;
    }

  private:
    void ReadIon() {
        const std::string ion = "Compound";
        compound_.title = file_.RequiredText(ion, "Title");
        compound_.ionFormula = file_.RequiredText(ion, "IonFormula");
        compound_.adduct = file_.RequiredText(ion, "Adduct");
        compound_.root = NodeName(file_.RequiredText(ion, "Precursor"));
        const std::string polarity = file_.RequiredText(ion, "Polarity");
        if (polarity != "positive" && polarity != "negative")
            file_.Fail(file_.Required(ion), *file_.Find(ion, "Polarity"), "is positive or negative");
        compound_.polarity = polarity == "negative" ? 1 : 0;
        compound_.charge = file_.WholeNumber(ion, "Charge", {1, 20}, 1);
        compound_.intensity = file_.Number(ion, "Intensity", {1, 1e12}, compound_.intensity);
        compound_.dpLow = file_.RequiredNumber(ion, "DpLow", {-1000, 1000});
        compound_.dpHigh = file_.RequiredNumber(ion, "DpHigh", {-1000, 1000});
        compound_.dpWidth = file_.Number(ion, "DpWidth", {0.1, 500}, compound_.dpWidth);
        if (compound_.dpHigh <= compound_.dpLow)
            file_.Fail(file_.Required(ion), *file_.Find(ion, "DpHigh"), "must be above DpLow");
    }

    void ReadNode(const StrictIni::Section& section) {
        TreeNode node;
        node.name = NodeNameBehind(nodePrefix, section.name);
        if (const auto other = nodeSections_.find(node.name); other != nodeSections_.end())
            file_.Fail(section.line, "[Node " + node.name + "] stands in line " + std::to_string(other->second->line) +
                                         " already; join the two");
        node.mz = file_.RequiredNumber(section.name, "Mz", {1, 100000});
        node.charge = file_.WholeNumber(section.name, "Charge", {1, 20}, compound_.charge);
        node.e50 = file_.RequiredNumber(section.name, "E50", {0.1, 10000});
        node.width = file_.RequiredNumber(section.name, "Width", {0.01, 1000});
        node.excitationFactor = file_.Number(section.name, "ExcitationFactor", {0.01, 100}, 1);
        node.backgroundShare = file_.Number(section.name, "BackgroundShare", {0, 1}, 0);
        if (const auto formula = file_.Find(section.name, "Formula")) node.formula = formula->value;
        for (const auto& entry : section.entries)
            if (HasPrefix(entry.key, branchPrefix)) AddBranch(node, section, entry);
        nodeSections_[node.name] = &section;
        compound_.nodes[node.name] = node;
        if (compound_.nodes.size() > maximumNodes)
            file_.Fail(section.line, "There are more than " + std::to_string(maximumNodes) + " nodes");
    }

    void AddBranch(TreeNode& node, const StrictIni::Section& section, const StrictIni::Entry& entry) {
        const std::string product = NodeNameBehind(branchPrefix, entry.key);
        for (const Branch& other : node.branches)
            if (other.product == product) file_.Fail(section, entry, "occurs twice; remove one");
        const auto numbers = file_.Numbers(section, entry, 2, {-1000, 1000});
        if (numbers[0] <= 0) file_.Fail(section, entry, "the weight must be above 0");
        branchEntries_.push_back({section, entry});
        node.branches.push_back({product, numbers[0], numbers[1]});
    }

    void ReadBreakdown() {
        const std::string name = "Breakdown";
        for (const auto& section : file_.Sections()) {
            if (!support::EqualIgnoringCase(section.name, name)) continue;
            file_.RequiredText(name, "Voltages");
            const auto voltages = *file_.Find(name, "Voltages");
            MeasuredBreakdown& measured = compound_.breakdown;
            measured.voltages = file_.Numbers(section, voltages, CountOfVoltages(section, voltages), {0, 10000});
            if (measured.voltages[0] != 0) file_.Fail(section, voltages, "the first voltage must be 0");
            for (std::size_t i = 1; i < measured.voltages.size(); ++i)
                if (measured.voltages[i] <= measured.voltages[i - 1])
                    file_.Fail(section, voltages, "each voltage must be above the one before it");
            for (const auto& entry : section.entries) {
                if (entry.line == voltages.line) continue;
                const std::string node = NodeNameIn(section, entry);
                if (measured.shares.contains(node)) file_.Fail(section, entry, "occurs twice; remove one");
                measured.shares[node] = file_.Numbers(section, entry, measured.voltages.size(), {0, 1});
            }
            if (measured.shares.count(compound_.root) == 0)
                file_.Fail(section.line, "[Breakdown] has no key " + compound_.root + ", the precursor");
            CheckSums(section);
        }
    }

    std::size_t CountOfVoltages(const StrictIni::Section& section, const StrictIni::Entry& entry) {
        const std::size_t count = support::Split(entry.value, ',').size();
        if (count < 2 || count > maximumVoltages)
            file_.Fail(section, entry, "needs 2 to " + std::to_string(maximumVoltages) + " voltages");
        return count;
    }

    void CheckSums(const StrictIni::Section& section) {
        constexpr double roundingAllowance = 0.005;
        for (std::size_t i = 0; i < compound_.breakdown.voltages.size(); ++i) {
            double sum = 0;
            for (const auto& [node, shares] : compound_.breakdown.shares)
                sum += shares[i];
            if (sum > 1 + roundingAllowance)
                file_.Fail(section.line, "[Breakdown] the shares at " +
                                             support::GeneralText(compound_.breakdown.voltages[i]) + " V add up to " +
                                             support::GeneralText(sum) + ", more than 1");
        }
    }

    void ReadTruth() {
        for (const auto& section : file_.Sections()) {
            if (!support::EqualIgnoringCase(section.name, "Truth")) continue;
            for (const auto& entry : section.entries) {
                const auto numbers = file_.Numbers(section, entry, 2, {0, 10000});
                const std::string node = NodeNameIn(section, entry);
                if (numbers[1] > 1) file_.Fail(section, entry, "the share must be 0 to 1");
                compound_.truth.push_back({node, numbers[0], numbers[1]});
            }
        }
    }

    /// The node that a key names.
    std::string NodeNameIn(const StrictIni::Section& section, const StrictIni::Entry& entry) const {
        std::string name = NodeName(entry.key);
        if (!compound_.nodes.contains(name)) file_.Fail(section, entry, "there is no node of this name");
        return name;
    }

    void CheckTree() {
        if (compound_.nodes.count(compound_.root) == 0)
            file_.Fail(file_.Required("Compound"), *file_.Find("Compound", "Precursor"),
                       "there is no section [Node " + compound_.root + "]");
        for (const auto& [section, entry] : branchEntries_) {
            const std::string product = NodeNameBehind(branchPrefix, entry.key);
            if (product != lostProduct && compound_.nodes.count(product) == 0)
                file_.Fail(section, entry, "there is no section [Node " + product + "] and it is not \"lost\"");
        }
        try {
            const auto order = NodesFromPrecursorDown(compound_);
            if (order.front() != compound_.root)
                file_.Fail(nodeSections_.at(compound_.root)->line,
                           "[Node " + compound_.root + "] is the precursor, and " +
                               "another node leads to it; a tree leads away from it");
            const std::set<std::string> reached(order.begin(), order.end());
            for (const auto& [name, section] : nodeSections_)
                if (reached.count(name) == 0)
                    file_.Fail(section->line, "[Node " + name + "] is formed by no other node");
        } catch (const CycleInTree& cycle) {
            file_.Fail(nodeSections_.at(cycle.node)->line,
                       "[Node " + cycle.node + "] is formed from itself; a tree leads from heavy ions to light ones");
        }
    }

    void CheckFormulas() {
        TreeNode& root = compound_.nodes.at(compound_.root);
        if (root.formula.empty()) root.formula = compound_.ionFormula;
        const auto& ion = file_.Required("Compound");
        const auto ionFormula = *file_.Find("Compound", "IonFormula");
        const Composition whole = Checked(ion, ionFormula, root);
        for (const auto& [name, node] : compound_.nodes) {
            const auto& section = *nodeSections_.at(name);
            if (node.mz * node.charge > root.mz * root.charge + formulaToleranceDa)
                file_.Fail(section, *file_.Find(section.name, "Mz"), "is heavier than the precursor");
            const auto entry = file_.Find(section.name, "Formula");
            if (entry && !Contains(whole, Checked(section, *entry, node)))
                file_.Fail(section, *entry, "is not part of the ion formula " + support::Excerpt(compound_.ionFormula));
        }
    }

    Composition Checked(const StrictIni::Section& section, const StrictIni::Entry& entry, const TreeNode& node) {
        std::string problem;
        try {
            Composition composition = ParseFormula(entry.value);
            const double mz = IonMz(composition, node.charge, compound_.polarity == 1, elements_);
            if (std::fabs(mz - node.mz) <= formulaToleranceDa) return composition;
            problem = support::Excerpt(entry.value) + " has m/z " + support::MzText(mz) +
                      ", more than 0.005 Da from the m/z " + support::GeneralText(node.mz) + " of node " + node.name;
        } catch (const std::exception& error) {
            problem = error.what();
        }
        file_.Fail(section, entry, problem);
    }

    StrictIni file_;
    ports::ElementTable& elements_;
    Compound compound_;
    std::map<std::string, const StrictIni::Section*> nodeSections_;
    std::vector<std::pair<StrictIni::Section, StrictIni::Entry>> branchEntries_;
};

}  // namespace

Compound LoadCompound(const std::string& path, ports::ElementTable& elements, const support::Disk& disk) {
    return CompoundReader(path, elements, disk).Read();
}

}  // namespace orvanel
