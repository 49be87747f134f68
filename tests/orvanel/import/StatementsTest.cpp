// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "orvanel/import/Adduct.h"
#include "orvanel/import/CollisionEnergyText.h"
#include "orvanel/import/FragmentFormulas.h"
#include "tests/orvanel/instrument/InstrumentBench.h"

namespace orvanel {
namespace {

TEST(CollisionEnergyText, KnowsItsManySpellings) {
    using enum EnergyUnit;
    using Kind = StatedEnergy::Kind;
    struct Case {
        const char* text;
        double value;
        EnergyUnit unit;
    };
    const Case cases[] = {{"30", 30, NotStated},
                          {"30 V", 30, Volts},
                          {"12.5eV", 12.5, ElectronVolts},
                          {"CE -30 V", 30, Volts},
                          {"15 (nominal)", 15, Normalised},
                          {"35 % (nominal)", 35, Normalised},
                          {"NCE 20", 20, Normalised},
                          {"NCE=35% 28eV", 28, ElectronVolts},
                          {"CID@5.0", 5, NotStated}};
    for (const auto& [text, value, unit] : cases) {
        const StatedEnergy energy = ParseCollisionEnergy(text);
        EXPECT_EQ(energy.kind, Kind::One) << text;
        EXPECT_EQ(energy.value, value) << text;
        EXPECT_EQ(energy.unit, unit) << text;
    }
    for (const char* const text : {"10-40 V", "15, 30, 45 (nominal)", "Ramp 30 V", "30,5 V"})
        EXPECT_EQ(ParseCollisionEnergy(text).kind, Kind::Several) << text;
    for (const char* const text : {"N/A", ""})
        EXPECT_EQ(ParseCollisionEnergy(text).kind, Kind::None) << text;
    EXPECT_EQ(EnergyInTitle("Testane; MS2; Frag=135.0V CID@5.0; [M+H]+"), "CID@5.0");
    EXPECT_EQ(EnergyInTitle("Placebo 12; MS2; CE: 15 NCE; R=17500"), "CE: 15 NCE");
    EXPECT_EQ(EnergyInTitle("Testane; MS2; R=17500"), "");
}

TEST(Adducts, MakeTheIonsFormula) {
    struct Case {
        const char *adduct, *ion;
        int charge;
        bool negative;
    };
    const Composition molecule = ParseFormula("C6H12O6");
    const Case cases[] = {{"[M+H]+", "C6H13O6", 1, false},         {"[M-H]-", "C6H11O6", 1, true},
                          {"[M+HCOO]-", "C7H13O8", 1, true},       {"[M-2H2O+H]+", "C6H9O4", 1, false},
                          {"[2M+Na]+", "C12H24NaO12", 1, false},   {"[M+2H]2+", "C6H14O6", 2, false},
                          {"[M+ACN+NH4]+", "C8H19N2O6", 1, false}, {"[M]+*", "C6H12O6", 1, false}};
    for (const Case& known : cases) {
        const Adduct adduct = ParseAdduct(known.adduct);
        EXPECT_EQ(FormulaText(IonOf(molecule, adduct)), known.ion) << known.adduct;
        EXPECT_EQ(adduct.charge, known.charge) << known.adduct;
        EXPECT_EQ(adduct.negative, known.negative) << known.adduct;
    }
    for (const char* const unknown :
         {"", "M+H", "[M+H]", "[N+H]+", "[M*H]+", "[M+h]+", "[M+]+", "[M+H]99+", "[M+H]+ ?"})
        EXPECT_THROW(ParseAdduct(unknown), std::invalid_argument) << unknown;
    EXPECT_THROW(IonOf(molecule, ParseAdduct("[M-NH3+H]+")), std::invalid_argument);
}

TEST(FragmentFormulas, AreWhatMassAndBondsAllow) {
    const auto elements = bench::Elements();
    const auto find = [&](const char* ion, double mz) {
        return FindFormula(ParseFormula(ion), mz, 1, false, *elements);
    };
    EXPECT_EQ(FormulaText(find("C9H11O2", 133.0650).composition), "C9H9O");
    EXPECT_EQ(find("C9H11O2", 133.0650).candidates, 1);
    EXPECT_NEAR(find("C9H11O2", 133.0650).mz, 133.0648, 1e-4);
    EXPECT_EQ(find("C9H11O2", 133.0550).candidates, 0);
    EXPECT_EQ(find("C9H11O2", 140.0).candidates, 0);
    // the mass alone would take C20H31NO7, which is nearer but a radical
    const FragmentFormula several = find("C33H41N2O9", 397.2106);
    EXPECT_GT(several.candidates, 1);
    EXPECT_EQ(FormulaText(several.composition), "C23H29N2O4");
    EXPECT_EQ(find("C9H11O2", 107.9995).candidates, 0);                      // C9, but H11O2 is more than four neutrals
    EXPECT_EQ(find("C3000H6000N1000O1000S300P200", 30000.5).candidates, 0);  // gives up
    const FragmentFormula sulfate = FindFormula(ParseFormula("C6H12NO3S"), 79.9606, 1, true, *elements);
    EXPECT_EQ(FormulaText(sulfate.composition), "O3S");
}

}  // namespace
}  // namespace orvanel
