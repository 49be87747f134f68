// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "orvanel/CompoundFolder.h"
#include "support/Files.h"
#include "tests/orvanel/instrument/InstrumentBench.h"
#include "tests/support_files/TempFolder.h"

namespace orvanel {
namespace {

/// Makes a good file a faulty one, and what is said about that behind the path.
struct Replacement {
    const char *old, *replacement, *message;
};

/// The text with one line (or part of one) replaced, which must be there.
std::string With(std::string text, const std::string& old, const std::string& replacement) {
    const std::size_t found = text.find(old);
    EXPECT_NE(found, std::string::npos) << old;
    return text.replace(found, old.size(), replacement);
}

const char* const toluene =
    "[Compound]\nTitle=Toluene\nIonFormula=C7H7\nAdduct=[M-H]+\nPolarity=positive\nDpLow=0\nDpHigh=60\nPrecursor=P\n"
    "[Node P]\nMz=91.0542\nE50=20\nWidth=2\nTo F=0.5, 0\nTo lost=0.5, 0.1\n"
    "[Node F]\nMz=65.0386\nFormula=C5H5\nE50=40\nWidth=4\n[Truth]\nF=28, 0.4\n";

TEST(CompoundFile, ReadsWhatStandsThere) {
    const TempFolder folder;
    const std::string path = folder.File("Tropylium.INI");
    support::WriteWholeFile(path, With(toluene, "[Node F]\n", "[Node  F]\nBackgroundShare=0.1\nExcitationFactor=2\n"));
    const Compound compound = LoadCompound(path, *bench::Elements());
    EXPECT_EQ(compound.name, "Tropylium");
    EXPECT_EQ(compound.intensity, 2e5);
    EXPECT_EQ(compound.dpWidth, 12);
    EXPECT_EQ(compound.Root().formula, "C7H7");
    ASSERT_EQ(compound.Root().branches.size(), 2u);
    EXPECT_EQ(compound.Root().branches[1].product, "lost");
    EXPECT_EQ(compound.Root().branches[1].kappa, 0.1);
    EXPECT_EQ(compound.nodes.at("F").backgroundShare, 0.1);
    EXPECT_EQ(compound.nodes.at("F").excitationFactor, 2);
    ASSERT_EQ(compound.truth.size(), 1u);
    EXPECT_EQ(compound.truth[0].ce, 28);
}

TEST(CompoundFile, IsFoundByItsNameWhateverTheCase) {
    const TempFolder folder;
    support::CreateFolders(folder.File("compounds"));
    for (const char* name : {"Tropylium.INI", "benzyl.ini", ".ini", "notes.txt"})
        support::WriteWholeFile(folder.File("compounds/") + name, toluene);
    EXPECT_EQ(CompoundNames(folder.Path()), (std::vector<std::string>{"Tropylium", "benzyl"}));
    EXPECT_EQ(FindCompoundFile(folder.Path(), "tropylium"), folder.File("compounds/Tropylium.INI"));
    EXPECT_EQ(FindCompoundFile(folder.Path(), "Benzyl"), folder.File("compounds/benzyl.ini"));
}

TEST(CompoundFile, RefusesFaultsByFileLineAndKey) {
    const Replacement cases[] = {
        {"To F=0.5, 0", "To G=0.5, 0", ", line 13: [Node P] To G: there is no section [Node G] and it is not \"lost\""},
        {"E50=40\n", "E50=40\nTo P=1, 0\n",
         ", line 9: [Node P] is formed from itself; a tree leads from heavy ions to light ones"},
        {"To F=0.5, 0\n", "", ", line 14: [Node F] is formed by no other node"},
        {"Mz=65.0386\n", "", ", line 15: [Node F] has no value for its key Mz"},
        {"Mz=65.0386", "Mz=65.05",
         ", line 17: [Node F] Formula: C5H5 has m/z 65.039, more than 0.005 Da from the m/z "
         "65.05 of node F"},
        {"Mz=65.0386\nFormula=C5H5", "Mz=100", ", line 16: [Node F] Mz: is heavier than the precursor"},
        {"Mz=65.0386\nFormula=C5H5", "Mz=68.9947\nFormula=CF3",
         ", line 17: [Node F] Formula: is not part of the ion formula C7H7"},
        {"IonFormula=C7H7", "IonFormula=C7Xx7", ", line 3: [Compound] IonFormula: \"Xx\" is no element of "},
        {"To F=0.5, 0", "To F=0, 0", ", line 13: [Node P] To F: the weight must be above 0"},
        {"To F=0.5, 0", "To F=0.5", ", line 13: [Node P] To F: needs 2 numbers separated by commas, not \"0.5\""},
        {"To F=0.5, 0", "To F=0.5, nan", ", line 13: [Node P] To F: \"nan\" is not a number from -1000 to 1000"},
        {"E50=20", "E50=20 V", ", line 11: [Node P] E50: \"20 V\" is not a number from 0.1 to 10000"},
        {"Width=4", "Width=4\nWitdh=5", ", line 20: [Node F] Witdh: is not a key of this section"},
        {"Width=4", "Width=4\nwidth=5", ", line 20: [Node F] width: occurs twice; remove one"},
        {"Width=4", "Width=4\n[Note]\nBy=me", ", line 21: [Note] By: is not a key of this section"},
        {"Width=4", "Width 4",
         ", line 19: \"Width 4\" is no section, no key and no comment; a key is written Key=value"},
        {"Width=4", "=4", ", line 19: \"=4\" is no section, no key and no comment; a key is written Key=value"},
        {"[Node F]", "[Node F", ", line 15: \"[Node F\" is no section; a section is written [Name]"},
        {"[Node F]", "[Node F] x", ", line 15: \"[Node F] x\" is no section; a section is written [Name]"},
        {"[Node F]", "[]", ", line 15: \"[]\" is no section; a section is written [Name]"},
        {"[Compound]", "a=b\n[Compound]", ", line 1: \"a=b\" stands above the first section; move it into its section"},
        {"Title=", "Title=\xE9 ", ", line 2: \"Title=? "},
        {"[Node F]",
         "[Node FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF]",
         ", line 15: \"Node FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF...\" is too "
         "long for a name, at most 100 bytes are allowed"},
        {"[Truth]", "[Node  F]\nMz=65\nE50=4\nWidth=4\n[Truth]",
         ", line 20: [Node F] stands in line 15 already; join the two"},
        {"[Truth]", "[Node F x]\nMz=65\nE50=4\nWidth=4\n[Node F  x]\nMz=65\nE50=4\nWidth=4\n[Truth]",
         ", line 24: [Node F x] stands in line 20 already; join the two"},
        {"To F=0.5, 0", "To F=0.5, 0\nTo  F=0.2, 0", ", line 14: [Node P] To  F: occurs twice; remove one"},
        {"[Truth]", "[Breakdown]\nVoltages=0, 9\nP=1, 0\nP =1, 1\n[Truth]",
         ", line 23: [Breakdown] P: occurs twice; remove one"},
        {"[Node F]", "[Node P]", ", line 15: Section [Node P] occurs twice; join the two"},
        {"Precursor=P", "Precursor=Q", ", line 8: [Compound] Precursor: there is no section [Node Q]"},
        {"Polarity=positive", "Polarity=+", ", line 5: [Compound] Polarity: is positive or negative"},
        {"DpHigh=60", "DpHigh=0", ", line 7: [Compound] DpHigh: must be above DpLow"},
        {"DpHigh=60", "DpHigh=60\nCharge=1.5", ", line 8: [Compound] Charge: a whole number is needed"},
        {"F=28, 0.4", "X=28, 0.4", ", line 21: [Truth] X: there is no node of this name"},
        {"[Compound]", "[Component]", ": Section [Compound] is missing"},
        {"[Truth]", "[Breakdown]\nVoltages=0, 9\nP=1, 0\nF=0, 1.1\n[Truth]",
         ", line 23: [Breakdown] F: \"1.1\" is not a number from 0 to 1"},
        {"[Truth]", "[Breakdown]\nVoltages=0, 9\nP=1, 0.6\nF=0, 0.5\n[Truth]",
         ", line 20: [Breakdown] the shares at 9 V add up to 1.1, more than 1"},
        {"[Truth]", "[Breakdown]\nVoltages=0, 9, 9\nP=1, 0, 0\n[Truth]",
         ", line 21: [Breakdown] Voltages: each voltage must be above the one before it"},
        {"[Truth]", "[Breakdown]\nVoltages=5, 9\nP=1, 0\n[Truth]",
         ", line 21: [Breakdown] Voltages: the first voltage must be 0"},
        {"[Truth]", "[Breakdown]\nVoltages=0\nP=1\n[Truth]",
         ", line 21: [Breakdown] Voltages: needs 2 to 500 voltages"},
        {"[Truth]", "[Breakdown]\nVoltages=0, 9\nP=1\n[Truth]",
         ", line 22: [Breakdown] P: needs 2 numbers separated by commas, not \"1\""},
        {"[Truth]", "[Breakdown]\nVoltages=0, 9\nG=1, 0\n[Truth]",
         ", line 22: [Breakdown] G: there is no node of this name"},
        {"[Truth]", "[Breakdown]\nVoltages=0, 9\nF=0, 1\n[Truth]",
         ", line 20: [Breakdown] has no key P, the precursor"},
    };
    const TempFolder folder;
    const auto elements = bench::Elements();
    const std::string path = folder.File("c.ini");
    for (const Replacement& faulty : cases) {
        support::WriteWholeFile(path, With(toluene, faulty.old, faulty.replacement));
        const std::string expected = path + faulty.message;
        EXPECT_EQ(bench::ErrorOf([&] { LoadCompound(path, *elements); }).substr(0, expected.size()), expected);
    }
    support::WriteWholeFile(path, With(toluene, "Node F", "Node " + std::string(96, 'F')));
    EXPECT_NE(
        bench::ErrorOf([&] { LoadCompound(path, *elements); }).find("FFF...\" is too long for a name, at most 100"),
        std::string::npos);
    std::string sections;
    std::string keys = "[A]\n";
    for (int i = 0; i <= 1000; ++i) {
        sections += "[" + std::to_string(i) + "]\n";
        keys += std::to_string(i) + "=\n";
    }
    for (const auto& [text, message] : {std::pair(sections, ", line 1001: There are more than 1000 sections"),
                                        std::pair(keys, ", line 1: Section [A] has more than 1000 keys")}) {
        support::WriteWholeFile(path, text);
        EXPECT_EQ(bench::ErrorOf([&] { LoadCompound(path, *elements); }), path + message);
    }
}

TEST(ModelFiles, ShippedModels) {
    const auto models = LoadInstrumentModels(bench::share + "/models");
    std::vector<std::int32_t> codes;
    for (const auto& [code, model] : models) {
        codes.push_back(code);
        EXPECT_EQ(model.linearIonTrap, code != 99) << code;
        const bool lowScale = code >= 22 && code <= 33 && code != 27;
        EXPECT_EQ(model.hasCep, code == 27 || code == 99) << code;
        EXPECT_EQ(model.af2Scale, lowScale ? 0.004 : 1) << code;
        if (!model.linearIonTrap) continue;
        EXPECT_EQ(model.parameterLimits.at("AF2").maximum, lowScale ? 0.4 : 100) << code;
        for (const int scanType : {11, 12, 13}) {
            ASSERT_NE(FindScanRate(model, scanType, "10000"), nullptr);
            EXPECT_EQ(FindScanRate(model, scanType, 250.0)->stepDa, 0.03);
            EXPECT_EQ(FindScanRate(model, scanType, "10000")->stepDa, 0.15);
            EXPECT_EQ(model.scanRates.at(scanType).front().rateText, "250");
        }
        EXPECT_EQ(FindScanRate(model, 4, "1000"), nullptr);
        EXPECT_EQ(FindScanRate(model, 12, "1e3"), nullptr);
    }
    EXPECT_EQ(codes, (std::vector<std::int32_t>{14, 22, 24, 26, 27, 29, 31, 33, 99}));
}

TEST(ModelFiles, EveryDesignValueCanBeSet) {
    const TempFolder folder;
    const std::string text = support::ReadWholeFile(bench::share + "/models/orvanel_lit.ini");
    support::WriteWholeFile(folder.File("m.ini"),
                            With(text, "[Trap]\n", "[Trap]\nCapacityIons=5e5\n") +
                                "[Timing]\nPauseMs=3\n[Noise]\nDarkCps=0\n[Detector]\nDeadTimeNs=5\n");
    const InstrumentModel model = LoadInstrumentModel(folder.File("m.ini"));
    EXPECT_EQ(model.trapCapacity, 5e5);
    EXPECT_EQ(model.pauseMs, 3);
    EXPECT_EQ(model.darkCps, 0);
    EXPECT_EQ(model.deadTimeNs, 5);
    EXPECT_EQ(model.coolMs, 15);
}

TEST(ModelFiles, RefusesFaultsByFileLineAndKey) {
    const Replacement cases[] = {
        {"Code=27", "Code=0", ", line 2: [Model] Code: \"0\" is not a number from 1 to 9999"},
        {"Mz=5, 1800", "Mz=1800, 5", ", line 10: [Quadrupole] Mz: the lower limit must be below the upper one"},
        {"Unit=0.7, 0.08, 0.01, 1", "Unit=0.7, 0.08, 2, 1",
         ", line 12: [Quadrupole] Unit: width (0.01 or more), edge (0.001 or more), floor (at most 1), transmission "
         "(above 0, at most 100)"},
        {"AF2=0, 100\n", "", ", line 18: [ParameterLimits] has no value for its key AF2"},
        {"[Ms3]\n250=", "[Ms3]\nslow=", ", line 45: [Ms3] slow: a key is a scan rate, 1 to 1000000 Da/s"},
        {"[Trap]\n", "[Trap]\nQ0TrappingMaximum=0.5\n",
         ", line 27: [Trap] Q0TrappingMaximum: \"0.5\" is not a number from 1 to 1000"},
    };
    const TempFolder folder;
    const std::string path = folder.File("m.ini");
    const std::string text = support::ReadWholeFile(bench::share + "/models/orvanel_lit.ini");
    for (const Replacement& faulty : cases) {
        support::WriteWholeFile(path, With(text, faulty.old, faulty.replacement));
        EXPECT_EQ(bench::ErrorOf([&] { LoadInstrumentModel(path); }), path + faulty.message);
    }
    std::string modes = "OperatingModes=0";
    for (int k = 1; k <= 100; ++k)
        modes += ",1";
    support::WriteWholeFile(path, With(text, "OperatingModes=0, 1", modes));
    EXPECT_EQ(bench::ErrorOf([&] { LoadInstrumentModel(path); }),
              path + ", line 6: [Model] OperatingModes: has more than 100 operating modes");
    support::WriteWholeFile(folder.File("m.ini"), text);
    support::WriteWholeFile(folder.File("n.ini"), text);
    EXPECT_EQ(bench::ErrorOf([&] { LoadInstrumentModels(folder.Path()); }),
              folder.Path() + "/n.ini: Another model of this folder has the code 27 already");
}

}  // namespace
}  // namespace orvanel
