// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "support/Files.h"
#include "tests/cli/CommandBench.h"
#include "tests/support_files/TempFolder.h"

namespace {

/// An invented spectrum of an invented compound.
std::string Spectrum(const std::string& energy, const std::string& peaks) {
    return "Name: \"Testane\"\nPrecursor_type: [M+H]+\nFormula: C17H23NO4\nInstrument_type: QqQ\nCollision_energy: " +
           energy + "\nLicense: CC0\nNum Peaks: 4\n" + peaks + "\n\n";
}

std::string Library() {
    return Spectrum("5", "306.1700 97; 288.1594 3; 174.0913 0; 105.0335 0") +
           Spectrum("15", "306.1700 62; 288.1594 31; 174.0913 7; 105.0335 0") +
           Spectrum("25", "306.1700 8; 288.1594 36; 174.0913 51; 105.0335 5") +
           Spectrum("35", "306.1700 0; 288.1594 8; 174.0913 52; 105.0335 40") +
           Spectrum("50", "306.1700 0; 288.1594 0; 174.0913 12; 105.0335 88");
}

TEST(CompoundCommands, FromSpectraToAWholeRun) {
    const TempFolder folder;
    support::WriteWholeFile(folder.File("library.msp"), Library());
    const Ended import = RunProgram(
        {"--import-compound", "testane", "--from", folder.File("library.msp"), "--to", folder.File("compounds")});
    EXPECT_EQ(import.err, "");
    EXPECT_EQ(import.status, cli::completed);
    for (const char* const line : {"Used (5):\n  library.msp, line 1: 5 -> 5 V, 4 peaks\n",
                                   "Fragments: 3 of 3 masses kept; no formulas, the masses are not accurate enough\n",
                                   "Curves are off the records by at most 0 %, 0 % on average\n"})
        EXPECT_NE(import.out.find(line), std::string::npos) << line << "in\n" << import.out;

    const std::string file = folder.File("compounds/testane.ini");
    // The quotes belong to the name.
    EXPECT_EQ(RunProgram({"--check-compound", file}).out.substr(0, 11), "\"Testane\": ");
    const Ended project = RunProgram({"--new-project", folder.File("demo"), "--compound", file});
    EXPECT_EQ(project.err, "");
    EXPECT_TRUE(support::FileExists(folder.File("demo/Projects/testane/Acquisition Methods/Start.xmt")));
    const Ended run = RunProgram({"--settings", folder.File("demo/Veltra.ini")});
    EXPECT_EQ(run.status, cli::completed) << run.err << run.out;
    EXPECT_NE(run.out.find("]  174.1"), std::string::npos) << run.out;
    EXPECT_EQ(run.out.find("No optimal MS3"), std::string::npos);
}

TEST(CompoundCommands, DrawACompoundInHundredColumns) {
    const Ended check = RunProgram({"--check-compound", "caffeine"});
    EXPECT_EQ(check.status, cli::completed);
    std::istringstream lines(check.out);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 100u) << line;
    for (const char* const line :
         {"Caffeine: [M+H]+ at m/z 195.0877, C8H11N4O2, positive, charge 1\n5 fragments; breakdown from the tree\n",
          " 100 +PPPPPPPPPPPPPPP\n", "  a  138.0662   C6H8N3O                27 V    65.7 %     110.07 85 %\n",
          "Best DP 47.5 V\n"})
        EXPECT_NE(check.out.find(line), std::string::npos) << line << "in\n" << check.out;
    EXPECT_EQ(check.out.find("Note"), std::string::npos);
}

TEST(CompoundCommands, SayWhatIsWrong) {
    const TempFolder folder;
    const std::string path = folder.File("faulty.ini");
    const std::string compound =
        "[Compound]\nTitle=X\nIonFormula=CH5O\nAdduct=[M+H]+\nPolarity=positive\nDpLow=0\nDpHigh=50\nPrecursor=P\n"
        "[Node P]\nMz=33.0335\nE50=3\nWidth=";
    support::WriteWholeFile(path, compound + "x\n");
    const Ended faulty = RunProgram({"--check-compound", path});
    EXPECT_EQ(faulty.status, cli::abortedOrFailed);
    EXPECT_EQ(faulty.err,
              "veltra-run: " + path + ", line 12: [Node P] Width: \"x\" is not a number from 0.01 to 1000\n");
    EXPECT_EQ(faulty.out, "");
    support::WriteWholeFile(path, compound + "1\n");
    const std::string notes = RunProgram({"--check-compound", path}).out;
    for (const char* const note :
         {"Note: no fragment reaches 1 %.", "Note: only 0.1 % of the precursor are left at 10 V",
          "Note: the trap does not reach the precursor's m/z."})
        EXPECT_NE(notes.find(note), std::string::npos) << notes;

    support::WriteWholeFile(folder.File("s.msp"), "Name: X\nNum Peaks: 2\n50 1\n");
    const Ended import = RunProgram({"--import-compound", "x", "--from", folder.File("s.msp"), "--to", folder.Path()});
    EXPECT_EQ(import.status, cli::abortedOrFailed);
    EXPECT_EQ(import.err, "veltra-run: " + folder.File("s.msp") +
                              ", line 2: the spectrum announces 2 peaks and has 1; it is cut off or was edited\n");
    EXPECT_EQ(RunProgram({"--import-compound", "x"}).status, cli::wrongUsage);
    EXPECT_EQ(RunProgram({"--energy-scale", "0", "--import-compound", "x", "--from", "y"}).status, cli::wrongUsage);
}

}  // namespace
