// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Fragmentation.h"

#include <gtest/gtest.h>

#include "orvanel/instrument/Formula.h"
#include "support/Files.h"
#include "tests/orvanel/instrument/InstrumentBench.h"

namespace orvanel {
namespace {

/// On a grid of 0.1 V.
PlantedOptimum Optimum(const FragmentationTree& tree, const std::string& node) {
    PlantedOptimum best{node, 0, 0};
    for (int tenths = 50; tenths <= 1000; ++tenths) {
        const double share = tree.Dissociate(0, tenths / 10.0).byNode[tree.IndexOf(node)];
        if (share > best.fraction) best = {node, tenths / 10.0, share};
    }
    return best;
}

TEST(ShippedCompounds, GiveWhatWasPlanted) {
    const auto elements = bench::Elements();
    int compounds = 0;
    for (const std::string& file : support::FilesIn(bench::share + "/compounds")) {
        const Compound compound = LoadCompound(bench::share + "/compounds/" + file, *elements);
        const FragmentationTree tree(compound);
        ++compounds;
        EXPECT_EQ(compound.truth.size(), compound.nodes.size() - 1) << file;
        for (const PlantedOptimum& truth : compound.truth) {
            const PlantedOptimum found = Optimum(tree, truth.node);
            EXPECT_NEAR(found.ce, truth.ce, 0.11) << file << " " << truth.node;
            EXPECT_NEAR(found.fraction, truth.fraction, 0.0006) << file << " " << truth.node;
            EXPECT_DOUBLE_EQ(FragmentYield(compound, truth.node, -found.ce), found.fraction);
        }
        for (const auto& [name, node] : compound.nodes)
            EXPECT_NEAR(IonMz(ParseFormula(node.formula), node.charge, compound.polarity == 1, *elements), node.mz,
                        0.002)
                << file << " " << name;
    }
    EXPECT_EQ(compounds, 10);
}

TEST(Fragmentation, IonsAreConservedAtEveryEnergyAndSpread) {
    for (const char* const name : {"reserpine", "chloramphenicol", "taurocholate"}) {
        const Compound compound = bench::Shipped(name);
        const FragmentationTree tree(compound);
        for (const double ce : {0.0, 12.0, 40.0, 200.0})
            for (const double spread : {0.0, 15.0, 80.0}) {
                const IonShares ions = tree.Dissociate(0, ce, spread, 5);
                EXPECT_NEAR(bench::Sum(ions.byNode) + ions.lost, 1, 1e-12) << name << ce << spread;
            }
    }
}

TEST(Fragmentation, SpreadIsTheMeanOfThreeEnergiesAboveTheMinimum) {
    const Compound compound = bench::Shipped("clenbuterol");
    const FragmentationTree tree(compound);
    const auto at = [&tree](double ce) { return tree.Dissociate(0, ce).byNode[1]; };
    EXPECT_NEAR(tree.Dissociate(0, 20, 8, 5).byNode[1], (at(12) + at(20) + at(28)) / 3, 1e-12);
    EXPECT_NEAR(tree.Dissociate(0, 10, 30, 5).byNode[1], (at(5) + at(10) + at(40)) / 3, 1e-12);
    EXPECT_NEAR(tree.Dissociate(0, 0, 0, 5).byNode[1], at(5), 1e-12);
    // a transfer energy of 10 V costs this labile ion a third
    EXPECT_NEAR(tree.Dissociate(0, 10, 0, 5).byNode[0], 0.66, 0.005);
}

TEST(Fragmentation, ChargeRaisesTheLaboratoryEnergy) {
    Compound compound = bench::Shipped("reserpine");
    const double single = FragmentYield(compound, "397.2122", 40);
    compound.charge = 2;
    EXPECT_DOUBLE_EQ(FragmentYield(compound, "397.2122", 20), single);
    EXPECT_EQ(FragmentYield(compound, "nothing", 20), 0);
}

TEST(Fragmentation, KappaFavoursDirectCleavageAtHighEnergy) {
    Compound compound;
    compound.root = "P";
    compound.nodes["P"] = {"P", 100, 1, "", 20, 2, {{"A", 1, -0.2}, {"B", 1, 0.2}, {"C", 1, 0}}, 1, 0};
    for (const char* const name : {"A", "B", "C"})
        compound.nodes[name] = {name, 50, 1, "", 1e4, 1, {}, 1, 0};
    const double e = std::exp(0.2);
    EXPECT_NEAR(FragmentYield(compound, "B", 22) / FragmentYield(compound, "A", 22), e * e, 1e-9);
    EXPECT_NEAR(FragmentYield(compound, "B", 18) / FragmentYield(compound, "C", 18), 1 / e, 1e-9);
    EXPECT_DOUBLE_EQ(FragmentYield(compound, "B", 20), 0.5 / 3);
    // exponents of any size leave finite shares
    compound.nodes["P"].branches = {{"A", 1, 900}, {"B", 1, -900}};
    EXPECT_NEAR(FragmentYield(compound, "A", 40), 1, 1e-4);
    EXPECT_GE(FragmentYield(compound, "B", 0), 0);
}

/// The curves pass through what was measured, overshoot nowhere, and act on the precursor alone.
TEST(Fragmentation, MeasuredBreakdownReplacesTheTreeForThePrecursor) {
    Compound compound = bench::Shipped("clenbuterol");
    const double ofFragment = FragmentationTree(compound).Dissociate(1, 20).byNode[1];
    compound.breakdown = {{0, 10, 20, 40}, {{"277.0869", {1, 0.6, 0.1, 0}}, {"259.0763", {0, 0.3, 0.8, 0.2}}}};
    EXPECT_DOUBLE_EQ(FragmentYield(compound, "277.0869", 10), 0.6);
    EXPECT_DOUBLE_EQ(FragmentYield(compound, "259.0763", 40), 0.2);
    EXPECT_DOUBLE_EQ(FragmentYield(compound, "259.0763", 400), 0.2);
    EXPECT_EQ(FragmentYield(compound, "203.0137", 20), 0);
    const FragmentationTree tree(compound);
    double before = 1;
    for (int ce = 1; ce <= 60; ++ce) {
        const IonShares ions = tree.Dissociate(0, ce);
        EXPECT_NEAR(bench::Sum(ions.byNode) + ions.lost, 1, 1e-12);
        EXPECT_GE(ions.lost, 0);
        EXPECT_LE(ions.byNode[0], before) << ce;
        EXPECT_LE(ions.byNode[1], 0.81) << ce;  // division by the sum moves the top by half a percent
        before = ions.byNode[0];
    }
    EXPECT_DOUBLE_EQ(tree.Dissociate(1, 20).byNode[1], ofFragment);
    // a node that the tree does not reach is there because it was measured
    compound.nodes.at("277.0869").branches.clear();
    EXPECT_DOUBLE_EQ(FragmentYield(compound, "259.0763", 20), 0.8);
    compound.nodes.at("259.0763").branches = {{"277.0869", 1, 0}};
    EXPECT_NE(NodesFromPrecursorDown(compound).front(), "277.0869");  // what reading a file refuses
}

TEST(Fragmentation, InstableSourceProductsFollowTheWeights) {
    const Compound compound = bench::Shipped("clenbuterol");
    const FragmentationTree tree(compound);
    const IonShares products = tree.Products(0);
    EXPECT_NEAR(products.byNode[tree.IndexOf("259.0763")], 0.97, 1e-12);
    EXPECT_NEAR(products.lost, 0.03, 1e-12);
    EXPECT_EQ(products.byNode[0], 0);
}

}  // namespace
}  // namespace orvanel
