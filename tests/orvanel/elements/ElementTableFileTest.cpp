// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/elements/ElementTableFile.h"

#include <gtest/gtest.h>

#include "support/Files.h"
#include "tests/orvanel/instrument/InstrumentBench.h"
#include "tests/support_files/TempFolder.h"

namespace orvanel {
namespace {

const std::string shipped = std::string(VELTRA_APP_LOCATION) + "/bin/QvElements.ini";

TEST(ElementTableFile, ShippedTableHasTheKnownMasses) {
    const auto table = OpenElementTableFile(shipped);
    struct Case {
        const char* symbol;
        std::size_t isotopes;
        double massDa;
    };
    // Most abundant isotopes, masses to 8 decimals as tabulated by AME2020.
    for (const auto& [symbol, isotopes, massDa] :
         {Case{"H", 2, 1.00782503}, Case{"C", 2, 12}, Case{"N", 2, 14.00307400}, Case{"O", 3, 15.99491462},
          Case{"Na", 1, 22.98976928}, Case{"S", 4, 31.97207117}, Case{"Cl", 2, 34.96885269}, Case{"Br", 2, 78.91833758},
          Case{"I", 1, 126.90447186}, Case{"B", 2, 11.00930517}, Case{"Sn", 10, 119.90220265},
          Case{"U", 3, 238.05078699}}) {
        const auto found = table->GetIsotopes(symbol);
        EXPECT_EQ(found.size(), isotopes) << symbol;
        int tallest = 0;
        for (const auto& isotope : found)
            if (isotope.abundancePercent == 100) {
                ++tallest;
                EXPECT_NEAR(isotope.massDa, massDa, 2e-6) << symbol;
            }
        EXPECT_EQ(tallest, 1) << symbol;
    }
    EXPECT_NEAR(table->GetIsotopes("Cl")[1].abundancePercent, 31.996, 0.001);
}

TEST(ElementTableFile, UnknownSymbolNamesSymbolAndFile) {
    const auto table = OpenElementTableFile(shipped);
    for (const char* const symbol : {"Xx", "cl", "CL", "", "Tc"}) {
        EXPECT_EQ(bench::ErrorOf([&] { table->GetIsotopes(symbol); }),
                  "\"" + std::string(symbol) + "\" is no element of " + shipped);
    }
}

TEST(ElementTableFile, RefusesFaultsByFileAndLine) {
    struct Case {
        const char *text, *message;
    };
    const Case cases[] = {
        {"", ": The file holds 0 elements; it needs 1 to 200"},
        {"[H]\n1=-1.0078, 100\n", ", line 2: [H] 1: \"-1.0078\" is not a number from 0 to 500"},
        {"[H]\n1=2.0141, 100\n", ", line 2: [H] 1: the mass 2.0141 Da does not belong to this mass number"},
        {"[H]\nx=1.0078, 100\n", ", line 2: [H] x: a key is an isotope's mass number, 1 to 400"},
        {"[H]\n1=1.0078, 0\n", ", line 2: [H] 1: an abundance is above 0 and at most 100 percent"},
        {"[H]\n1=1.0078, 99.9\n",
         ", line 1: [H] has 0 isotopes of abundance 100; exactly the most abundant one has 100"},
        {"[H]\n1=1.0078, 100\n2=2.0141, 100\n",
         ", line 1: [H] has 2 isotopes of abundance 100; exactly the most abundant one has 100"},
        {"[hydrogen]\n1=1.0078, 100\n", ", line 1: \"hydrogen\" is no element symbol, such as Cl"},
    };
    const TempFolder folder;
    const std::string path = folder.File("e.ini");
    for (const Case& faulty : cases) {
        support::WriteWholeFile(path, faulty.text);
        EXPECT_EQ(bench::ErrorOf([&] { OpenElementTableFile(path); }), path + faulty.message);
    }
    const std::string none = folder.File("none.ini");
    EXPECT_EQ(bench::ErrorOf([&] { OpenElementTableFile(none); }),
              "Cannot read " + none + ": No such file or directory");
}

}  // namespace
}  // namespace orvanel
