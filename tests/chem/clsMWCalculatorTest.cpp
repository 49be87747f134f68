// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "chem/clsMWCalculator.h"

#include <gtest/gtest.h>

#include "support/Paths.h"
#include "tests/support_files/FakeHost.h"
#include "tests/support_files/RecordedMessageBoxes.h"

namespace {

using veltra::clsMWCalculator;

constexpr double hydrogen = 1.00782503;
constexpr double oxygen = 15.99491462;
constexpr double chlorine = 34.96885271;

/// Has enough elements for the formulas here; the most abundant isotope is not always the first.
class ElementHost : public FakeHost {
  public:
    ElementHost() {
        registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\Dravik\\Orvanel\\Install\\AppLocation"] = "/app";
        elements = {{"H", {{hydrogen, 100}, {2.0141018, 0.0115}}},
                    {"C", {{12, 100}, {13.00335484, 1.08}}},
                    {"O", {{oxygen, 100}, {17.9991604, 0.2}}},
                    {"Cl", {{36.96590259, 31.98}, {chlorine, 100}}}};
    }
    std::unique_ptr<ports::ElementTable> OpenElementTable(const std::string& path) override {
        openedPath = path;
        if (path.empty() || tableIsMissing) throw ports::HostError(53, "there is no such file");
        return FakeHost::OpenElementTable(path);
    }
    bool tableIsMissing = false;
    std::string openedPath;
};

const std::string elementMessage = "Error computing molecular weight for element:";

TEST(clsMWCalculator, MassOfTheMostAbundantIsotopesOrAMessage) {
    const std::pair<const char*, double> masses[] = {
        {"C6H6", 6 * 12 + 6 * hydrogen},
        {"CH3CH2OH", 2 * 12 + 6 * hydrogen + oxygen},
        {"CCl4", 12 + 4 * chlorine},
        {"Cl2CHCl", 12 + 3 * chlorine + hydrogen},
        {"H", hydrogen},
        {"C0H2", 2 * hydrogen},
        {"H010", 10 * hydrogen},
        {"2H2", 2 * hydrogen},
        {"C2147483647", 12.0 * 2147483647},
        {"c6h6", 0},
        {"12", 0},
    };
    const std::string character = "Invalid character found in formula: ";
    const std::pair<std::string, std::string> refusals[] = {
        {"C2147483647C", elementMessage + "C"},
        {"C2147483648", elementMessage + "C"},
        {"C" + std::string(400, '9'), elementMessage + "C"},
        {"C6XyQq", elementMessage + "Xy"},
        {"CO2Co", elementMessage + "Co"},
        {"", "The formula is not valid"},
        {"C6 H6", "Invalid <space> character found in formula"},
        {"C6H6+ ", character + "+"},
        {"Ca(OH)2", character + "("},
        {"C6\tH6", character + "\t"},
        {"H2\xE2\x82\x82O", character + "\xE2\x82\x82"},
    };
    ElementHost host;
    RecordedMessageBoxes boxes;
    clsMWCalculator calculator(host, boxes);
    for (const auto& [formula, massDa] : masses)
        EXPECT_NEAR(calculator.GetMWForFormula(formula), massDa, 1e-9) << formula;
    EXPECT_EQ(boxes.shown, std::vector<RecordedMessageBoxes::Box>());
    for (const auto& [formula, message] : refusals) {
        boxes.shown.clear();
        EXPECT_EQ(calculator.GetMWForFormula(formula), 0) << formula;
        EXPECT_EQ(boxes.shown, (std::vector<RecordedMessageBoxes::Box>{{message, ports::MessageIcon::None}}));
    }
}

TEST(clsMWCalculator, AnElementTableThatCannotBeOpenedShowsAtTheFirstLookup) {
    for (const bool locationKnown : {true, false}) {
        ElementHost host;
        host.tableIsMissing = true;
        if (!locationKnown) host.registry.clear();
        RecordedMessageBoxes boxes;
        clsMWCalculator calculator(host, boxes);
        EXPECT_EQ(support::NativePath(host.openedPath),
                  locationKnown ? support::NativePath("/app/bin/QvElements.ini") : "");
        EXPECT_TRUE(boxes.shown.empty());
        EXPECT_EQ(calculator.GetMWForFormula("H2O"), 0);
        EXPECT_EQ(boxes.shown,
                  (std::vector<RecordedMessageBoxes::Box>{{elementMessage + "H", ports::MessageIcon::None}}));
    }
}

TEST(clsMWCalculator, MassToChargeRatio) {
    for (const auto& [massDa, charge, mz] : {std::tuple{100.0, 0, 100.0},
                                             {100.0, 1, 101.0072825},
                                             {100.0, -1, 98.9927175},
                                             {100.0, -2, (100 - 2.014565) / 2},
                                             {100.0, 3, (100 + 3.0218475) / 3},
                                             {0.0, -32768, -1.0072825}})
        EXPECT_NEAR(clsMWCalculator::CalculateMZ(massDa, static_cast<std::int16_t>(charge)), mz, 1e-12) << charge;
}

}  // namespace
