// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/clsInfo_Results.h"

#include <gtest/gtest.h>

#include "support/Files.h"
#include "support/Text.h"
#include "tests/support_files/FixedClock.h"
#include "tests/support_files/TempFolder.h"

namespace {

using support::JoinLines;
using veltra::clsInfo_Results;
using veltra::clsInfo_Settings;

using Lines = std::vector<std::string>;

std::shared_ptr<veltra::clsItem_Peak> Peak(double massDa, double intensityCps) {
    return std::make_shared<veltra::clsItem_Peak>(veltra::clsItem_Peak{intensityCps, massDa});
}

class Results : public testing::Test {
  protected:
    Results() {
        settings.OrvanelProjectName = "Study1";
        settings.StarterMethodFilePath = "D:\\Projects\\Study1\\Acquisition Methods\\start.xmt";
        settings.CompoundName = "Reserpine";
        settings.ExpectedMZ = 609.28;
        settings.Advanced_ERScanRate = "250";
        settings.Advanced_EPIScanRate = "4000";
        settings.Advanced_MS3ScanRate = "10000";
        results.StartTime = "3:01:02 PM";
        results.DP = {20, 20};
        results.EP = {10, 10};
        results.CEP = {30.1f, 30.1f};
        results.CE = {0, 35};
        results.AF2 = {0, 0.1f};
        results.VeskOutputFilePath = folder.Path() + "/";
    }

    /// What the report's file holds.
    std::string Written(bool abortRequested) const {
        results.GenerateResults({settings, clock, abortRequested, true});
        return support::ReadWholeFile(folder.File("Results.txt"));
    }

    void AddTwoFragments() {
        results.ActualPeak = Peak(609.28066, 1234567);
        auto first = std::make_shared<veltra::clsItem_TopPeak>();
        first->SecondPrecursor = Peak(397.2125, 98765.4);
        first->CEWasOptimized = true;
        first->OptimizedCE = 42;
        first->AF2WasOptimized = true;
        first->OptimizedAF2 = 35 * 0.01;
        first->MS3PeaksCollection = {Peak(365.19, 5125), Peak(100.5, 0.125)};
        first->FinalMS3Method = "D:\\Projects\\Study1\\Acquisition Methods\\one.xmt";
        auto second = std::make_shared<veltra::clsItem_TopPeak>();
        second->SecondPrecursor = Peak(609.1, 2.5e10);
        second->MS3PercentBelowThreshold = false;
        second->FinalMS3Method = "never written";
        results.TopPeaksInfo = {first, second};
    }

    const TempFolder folder;
    const FixedClock clock;
    clsInfo_Settings settings{""};
    clsInfo_Results results;
};

const Lines findings{
    "   Actual m/z: 609.281 Da, 1.23E+06 cps",
    " Optimized DP: 62.5 (20 initial value)",
    " Optimized EP: 10 (10 initial value)",
    "Optimized CEP: 30.1 (30.1 initial value)",
    "",
    "",
    "[MS/MS Fragment 1]  397.212 Da (Loss of 212),    9.88E+04 cps",
    "       Optimized CE: 42 (35 initial value)",
    "      Optimized AF2: 0.35 (0.1 initial value)",
    "      MS3 Peak  Centroid Mass(Da)  2nd Loss  Centroid Intensity(cps)",
    "      --------  ------------------  --------  -----------------------",
    "         1           365.19            32            5.12E+03",
    "         2           100.5             297           1.25E-01",
    "      Final MS3 Method: D:\\Projects\\Study1\\Acquisition Methods\\one.xmt",
    "",
    "",
    "[MS/MS Fragment 2]  609.1 Da (Loss of 0),      2.50E+10 cps",
    "       Optimized CE: N/A (35 initial value)",
    "      Optimized AF2: N/A (0.1 initial value)",
    "      MS3 Peak  Centroid Mass(Da)  2nd Loss  Centroid Intensity(cps)",
    "      --------  ------------------  --------  -----------------------",
    "         N/A           N/A             N/A             N/A",
    "      Final MS3 Method: N/A",
    "",
    "",
};

TEST_F(Results, CompletedWithANoteForAFragmentThatStays) {
    AddTwoFragments();
    results.DP.Current = 62.5f;
    results.OptimalMS3PeakIndex = 1;
    results.OptimalMS3Method = "D:\\Projects\\Study1\\Acquisition Methods\\optimal.xmt";
    support::WriteWholeFile(folder.File("Results.txt"), std::string(9999, 'x'));
    const std::string report = Written(false);
    EXPECT_NE(report.find(JoinLines(findings)), std::string::npos) << report;
    EXPECT_TRUE(report.ends_with(
        JoinLines({"   MS3 Quantitation Path: 609.281 Da -> 397.212 Da -> 365.19 Da",
                   "Final Optimal MS3 Method: optimal.xmt", "", "Optimization completed successfully!",
                   "Note: MS3 for MS/MS fragment 2 yielded parent with greater than 10% of total ion counts."})))
        << report;
}

/// Whole runs compare the other lines of a negative, an aborted and a run without entrance potentials.
TEST_F(Results, OtherSettingsShowInTheirLines) {
    AddTwoFragments();
    settings.Polarity = 1;
    settings.Q1Resolution = 2;
    settings.Advanced_Q1MIDPRampStart = 20;
    settings.Advanced_Q1MIDPRampStop = 150;
    settings.Advanced_Q1MIDPRampStep = 2;
    settings.Advanced_MS3SaveAllFinalMethods = false;
    results.OptimalMS3PeakIndex = -1;
    const std::string report = Written(false);
    for (const std::string line : {"     Resolution: High", "   Q1MI DP Ramp: 20V to 150V with 2V step",
                                   "  Final Methods: Save optimal method only", "      DP    -150.0  -20.0    2.0",
                                   "No optimal MS3 quantitation path found!"})
        EXPECT_NE(report.find("\r\n" + line + "\r\n"), std::string::npos) << line;
}

TEST_F(Results, AZeroLimitIsNeverMinusZero) {
    settings.Polarity = 1;
    EXPECT_NE(Written(true).find("      DP    -100.0    0.0    5.0\r\n"), std::string::npos);
}

TEST_F(Results, AReportThatCannotBeBuiltOrWrittenIsDropped) {
    results.OptimalMS3PeakIndex = 1;
    EXPECT_NO_THROW(results.GenerateResults({settings, clock}));
    results.OptimalMS3PeakIndex = 0;
    results.VeskOutputFilePath = folder.Path() + "/missing/";
    EXPECT_NO_THROW(results.GenerateResults({settings, clock}));
    EXPECT_EQ(support::FilesIn(folder.Path()), Lines{});
    EXPECT_EQ(support::SubFolders(folder.Path()), Lines{});
}

}  // namespace
