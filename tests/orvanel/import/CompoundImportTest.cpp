// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/CompoundImport.h"

#include <gtest/gtest.h>

#include "orvanel/instrument/Fragmentation.h"
#include "tests/orvanel/import/ImportBench.h"

namespace orvanel {
namespace {

using bench::At;
using bench::Record;
using bench::Series;

ImportResult Import(const TempFolder& folder, std::optional<double> scale = std::nullopt) {
    return ImportCompound({"testane", {folder.Path()}, folder.File("out"), scale, bench::share});
}

TEST(CompoundImport, GivesBackWhatTheRecordsHave) {
    const TempFolder folder;
    bench::Write(folder, Series());
    const ImportResult result = Import(folder);
    EXPECT_LT(result.curves.largest, 1e-5);
    EXPECT_GT(result.treeOnly.largest, 0.01);
    EXPECT_GT(result.leftOut.largest, 0.01);
    const Compound compound = LoadCompound(result.path, *bench::Elements());
    EXPECT_EQ(compound.title, "Testane");
    EXPECT_EQ(compound.ionFormula, "C9H11O2");
    EXPECT_EQ(compound.root, "151.0754");
    EXPECT_EQ(compound.nodes.size(), 3u);  // 79 stays below 0.5 %
    EXPECT_EQ(compound.nodes.at("105.0699").formula, "C8H9");
    EXPECT_EQ(compound.breakdown.voltages, (std::vector<double>{0, 6.5, 13, 19.5, 26}));
    EXPECT_DOUBLE_EQ(FragmentYield(compound, "133.0648", 13), 0.54);
    EXPECT_DOUBLE_EQ(FragmentYield(compound, "151.0754", 0), 1);
    EXPECT_DOUBLE_EQ(FragmentYield(compound, "105.0699", 100), 0.9);  // held
    // water leaves before carbon monoxide, so in the trap 133 gives 105 and 105 nothing
    EXPECT_EQ(compound.nodes.at("133.0648").branches[0].product, "105.0699");
    EXPECT_EQ(compound.nodes.at("105.0699").branches[0].product, "lost");
    EXPECT_NEAR(compound.Root().e50, 11.8, 0.1);
    ASSERT_EQ(compound.truth.size(), 1u);  // 105 still grows
    EXPECT_EQ(compound.truth[0].ce, 19.5);
    EXPECT_EQ(compound.dpLow + compound.dpHigh, 0 + 87);
    const std::string text = support::ReadWholeFile(result.path);
    for (const char* const cited : {"; Records: TEST-0001\n", "; Licence: CC BY\n", "; Authors: A. Tester\n",
                                    "; Energy scale: 0.65 V here for 1 V there (4 spectra).\n"})
        EXPECT_NE(text.find(cited), std::string::npos) << cited;
}

TEST(CompoundImport, LeadsFragmentsOnlyToWhatTheyCanHold) {
    const TempFolder folder;
    bench::Write(folder, {At("10 V", {"151.0754 20", "133.0648 80"}),
                          At("20 V", {"133.0648 40", "105.0699 30", "95.0128 20", "128.0 10"})});
    const ImportResult result = Import(folder);
    const auto& nodes = result.fitted.compound.nodes;
    ASSERT_EQ(nodes.at("95.0128").formula, "C5H3O2");
    std::vector<std::string> products;
    for (const Branch& branch : nodes.at("133.0648").branches)
        products.push_back(branch.product);
    // not 95, which has two oxygens, and not 128: nothing weighs 5 Da
    EXPECT_EQ(products, (std::vector<std::string>{"105.0699", "lost"}));
}

TEST(CompoundImport, ScalesEnergiesByInstrumentUnitAndCharge) {
    struct Case {
        const char *instrument, *energy, *adduct, *precursor;
        std::optional<double> scale;
        double volts;
    };
    for (const Case& known : {Case{"LC-ESI-QQQ", "30", "[M+H]+", "151.08", {}, 30},
                              {"LC-ESI-QTOF", "30 V", "[M+H]+", "151.08", 0.5, 15},
                              {"LC-ESI-QFT", "30", "[M+H]+", "151.08", 1.0, 9.06},
                              {"LC-ESI-QTOF", "30 (NCE)", "[M+H]+", "151.08", 1.0, 9.06},
                              {"LC-ESI-QTOF", "30 eV", "[M+2H]2+", "76.04", 1.0, 15}}) {
        const TempFolder folder;
        std::vector<Record> records{At("1 V", {"70.1 1"}), At(known.energy, {"70.1 1"})};
        for (Record& record : records) {
            record.instrument = known.instrument;
            record.adduct = known.adduct;
            record.precursor = std::string("MS$FOCUSED_ION: PRECURSOR_M/Z ") + known.precursor + "\n";
        }
        bench::Write(folder, records);
        EXPECT_DOUBLE_EQ(Import(folder, known.scale).ion.spectra[1].volts, known.volts) << known.energy;
    }
}

TEST(CompoundImport, LeavesOutWhatIsNoSpectrumAtOneEnergy) {
    const TempFolder folder;
    auto records = Series();
    records.push_back(At("10-40 V", {"133.0650 1"}));
    records.push_back(At("15 V", {}));
    records.push_back(At("20 V", {"133.0650 1"}));
    records.back().msType = "MS3";
    records.push_back(Series()[1]);  // once more at 20 V, with another share of 133
    records.back().peaks = {"133.0650 74", "151.0750 26"};
    records.push_back(Series()[3]);
    records.back().energy = "";  // the title says 44 V
    bench::Write(folder, records);
    const ImportResult result = Import(folder, 1);
    ASSERT_EQ(result.ion.leftOut.size(), 3u);
    EXPECT_EQ(result.ion.leftOut[0].reason, "was measured at several energies (10-40 V)");
    EXPECT_EQ(result.ion.leftOut[1].reason, "has no peaks");
    EXPECT_EQ(result.ion.leftOut[2].reason, "is MS3, no spectrum of product ions");
    EXPECT_EQ(result.ion.spectra.size(), 6u);
    EXPECT_EQ(result.ion.spectra.back().volts, 44);
    const Compound compound = LoadCompound(result.path, *bench::Elements());
    EXPECT_NEAR(FragmentYield(compound, "133.0648", 20), (0.54 + 0.74) / 2, 1e-9);
    EXPECT_NEAR(result.curves.largest, 0.1, 1e-4);
}

/// Triple quadrupoles measure profiles a dalton wide, some tenths off.
TEST(CompoundImport, TakesProfilesAsUnitMassesWithoutFormulas) {
    const TempFolder folder;
    std::vector<Record> records;
    for (const char* const energy : {"10 V", "20 V"}) {
        records.push_back(At(energy, {"104.5 2", "104.6 2", "104.7 3", "104.9 4", "105.1 6", "105.2 9", "105.3 9",
                                      "150.5 2", "150.7 4", "150.8 6", "150.9 9", "151.0 8", "151.1 5", "151.2 1"}));
        records.back().instrument = "LC-ESI-QQQ";
    }
    bench::Write(folder, records);
    const ImportResult result = Import(folder);
    EXPECT_TRUE(result.fitted.unitMasses);
    ASSERT_EQ(result.fitted.order.size(), 2u);
    EXPECT_NEAR(result.fitted.compound.nodes.at(result.fitted.order[1]).mz, 105.05, 0.05);
    EXPECT_EQ(result.fitted.compound.nodes.at(result.fitted.order[1]).formula, "");
    EXPECT_DOUBLE_EQ(result.fitted.compound.breakdown.shares.at("151.0754")[1], 0.5);
}

TEST(CompoundImport, RefusesContradictionsByFileAndLine) {
    struct Case {
        std::string Record::*field;
        const char *value, *message;
    };
    const Case cases[] = {
        {&Record::formula, "C9H10O3", "rec1.txt, line 6: the formula C9H10O3 is not the C9H10O2 of "},
        {&Record::formula, "C9Q10", "rec1.txt, line 6: the formula C9Q10 is not the C9H10O2 of "},
        {&Record::formula, "c9", "rec1.txt, line 6: \"c9\" has no element symbol at character 1"},
        {&Record::adduct, "[M+Na]+", "rec1.txt, line 12: the adduct [M+Na]+ is not the [M+H]+ of "},
        {&Record::adduct, "M plus H", "rec1.txt, line 12: \"M plus H\" is no adduct that is known"},
        {&Record::mode, "NEGATIVE", "rec1.txt, line 9: the ion mode NEGATIVE contradicts the adduct [M+H]+"},
        {&Record::precursor, "MS$FOCUSED_ION: PRECURSOR_M/Z 173.06\n",
         "rec1.txt, line 11: the precursor's m/z 173.06 is not that of C9H10O2 as [M+H]+, 151.0754"},
        {&Record::precursor, "MS$FOCUSED_ION: PRECURSOR_M/Z 151/133\n",
         "rec1.txt, line 11: \"151/133\" is no m/z of one precursor"},
        {&Record::energy, "AC$MASS_SPECTROMETRY: COLLISION_ENERGY 99999 V\n",
         "rec1.txt, line 10: the collision energy \"99999 V\" is above 1000 V"},
    };
    for (const Case& faulty : cases) {
        const TempFolder folder;
        auto records = Series();
        records[1].*(faulty.field) = faulty.value;
        bench::Write(folder, records);
        const std::string expected = folder.File(faulty.message);
        EXPECT_EQ(bench::ErrorOf([&] { Import(folder); }).substr(0, expected.size()), expected);
        EXPECT_FALSE(support::FileExists(folder.File("out/testane.ini")));
    }
}

TEST(CompoundImport, NeedsTwoEnergiesAndAFreeName) {
    const TempFolder folder;
    bench::Write(folder, {Series()[0], At("ramp 5 V", {"133.065 1"})});
    EXPECT_EQ(bench::ErrorOf([&] { Import(folder); }),
              folder.File("rec0.txt") + ": spectra at two or more collision energies are needed, 1 of 2 can be used; " +
                  folder.File("rec1.txt") + ", line 1: was measured at several energies (ramp 5 V)");
    bench::Write(folder, {At("5 V", {"400.1 7"}), Series()[1]});
    EXPECT_EQ(bench::ErrorOf([&] { Import(folder); }),
              folder.File("rec0.txt") +
                  ", line 1: all peaks lie above the precursor, so this is no spectrum of its products");
    bench::Write(folder, Series());
    Import(folder);
    EXPECT_NE(bench::ErrorOf([&] { Import(folder); }).find("testane.ini is there already"), std::string::npos);
    EXPECT_NE(bench::ErrorOf([&] {
                  ImportCompound({"a/b", {folder.Path()}, "", {}, bench::share});
              }).find("is no name of"),
              std::string::npos);
}

/// Every example of the page about compounds is a whole file.
TEST(CompoundExamples, LoadAndBreakIntoWhatTheySay) {
    const std::string page = support::ReadWholeFile(bench::share + "/../../docs/compounds.md");
    const TempFolder folder;
    const std::string begin = "```ini\n";
    std::vector<Compound> examples;
    for (std::size_t at = page.find(begin); at != std::string::npos; at = page.find(begin, at + 1)) {
        const std::size_t from = at + begin.size();
        support::WriteWholeFile(folder.File("example.ini"), page.substr(from, page.find("```", from) - from));
        examples.push_back(LoadCompound(folder.File("example.ini"), *bench::Elements()));
    }
    ASSERT_EQ(examples.size(), 4u);
    EXPECT_EQ(examples[0].nodes.size(), 1u);
    EXPECT_GT(FragmentYield(examples[1], "105.0699", 26), 0.3);
    for (const Compound& measured : {examples[2], examples[3]})
        EXPECT_DOUBLE_EQ(FragmentYield(measured, "133.0648", 20), 0.54);
    for (const PlantedOptimum& truth : examples[3].truth)
        EXPECT_DOUBLE_EQ(FragmentYield(examples[3], truth.node, truth.ce), truth.fraction) << truth.node;
}

}  // namespace
}  // namespace orvanel
