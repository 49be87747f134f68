// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Text.h"
#include "tests/support_files/WholeRun.h"

/// Whole runs on reserpine (m/z 609.281, best DP 75, CEP 28) with something made to go wrong. What is expected of each
/// follows from the rules of the run, whose lines (of the log, without time, and of the report) are given to the
/// letter.

namespace {

using orvanel::FaultSettings;
using Outcome = veltra::StartButton::Outcome;
using Boxes = std::vector<RecordedMessageBoxes::Box>;
using Adjust = std::function<void(veltra::clsInfo_Settings&)>;
using ports::MessageIcon;

std::set<std::string> Lines(const WholeRun& run) {
    std::set<std::string> lines;
    for (const auto& line : support::Split(run.LogText() + "\n" + run.ReportText(), '\n')) {
        const auto afterTime = line.starts_with("[5/13/2024 ") ? line.find("]  ") : std::string::npos;
        lines.insert(afterTime == std::string::npos ? line : line.substr(afterTime + 3));
    }
    return lines;
}

/// Runs to the end when there are no boxes to be shown, and aborts otherwise.
void ExpectRun(
    const FaultSettings& faults, const Boxes& boxes, const std::vector<std::string>& expected,
    const Adjust& adjust = [](auto&) {}) {
    SCOPED_TRACE(FaultTexts(faults));
    WholeRun run({.configure = [&](auto& config) { config.faults = faults; }, .adjust = adjust});
    EXPECT_EQ(run.Start(), boxes.empty() ? Outcome::Completed : Outcome::Aborted);
    for (auto& box : run.boxes.shown)
        box.text = run.Anonymous(box.text);
    EXPECT_EQ(run.boxes.shown, boxes);
    const auto lines = Lines(run);
    for (const auto& line : expected)
        EXPECT_TRUE(lines.contains(line)) << line << "\n" << run.LogText() << run.ReportText();
    if (!boxes.empty()) return;
    const std::string name = "reserpine_ER_" + support::MzText(run.settings.ExpectedMZ) + ".vesk";
    const std::string mark = "name=\"injected faults\" value=\"" + FaultTexts(faults) + "\"";
    EXPECT_NE(support::ReadWholeFile(run.run.results->VeskOutputFilePath + name).find(mark), std::string::npos);
}

const std::string aborted = "Optimization was aborted!";
const std::string noPath = "No optimal MS3 quantitation path found!";
const std::string path = "   MS3 Quantitation Path: ";
const Boxes noParent = {{"No peaks found within 608.281 - 610.281 Da mass range of ER spectrum.", MessageIcon::None}};
const Boxes noFragments = {{"No EPI spectrum peaks found.", MessageIcon::None}};

TEST(Faults, SprayAndSignal) {
    const std::string notBelow = "Parent not below 10% total ion count, final method not generated for ";
    // The tops of the ramps are noise, and so are the optima; what is left of a 2nd precursor in a single excitation
    // step is noise too, so that 448 is flagged, which it is not on a steady spray.
    ExpectRun({.sprayInstability = 0.25, .dropoutsPerMinute = 20}, {},
              {"Optimized DP = 90", "Optimized CEP = 38", notBelow + "448.219 Da.",
               path + "609.297 Da -> 397.231 Da -> 365.233 Da"});
    // The ramps' rules take the highest point that is there, before the loss at 40 % of the ramp. Only smoothing across
    // the loss takes AF2 one step into it, where the spectrum is empty.
    ExpectRun(
        {.signalLoss = 0.4}, {},
        {"Optimized DP = 40", "Re-optimized DP = 40", "Optimized EP = 4.5", "Optimized CEP = 32", "Optimized AF2 = 42",
         "No peaks found, final method not generated for 448.21 Da.", path + "609.298 Da -> 397.223 Da -> 365.219 Da"});
    // Ten thousand times the ions: the ramps are flat at what the detector's dead time lets through, and the optima
    // stay inside the flat top. The overfilled trap shifts MS3 peaks by 2 Da.
    ExpectRun({.saturation = 10000}, {},
              {"609.465 Da, 2.73E+07 cps", "Re-optimized DP = 70", "Optimized EP = 9",
               path + "609.465 Da -> 448.299 Da -> 197.139 Da"});
    // 0.3 Da more on everything that the trap reads. Q1, set to that mass, still lets most through. A parent more than
    // 1 Da off is not looked for.
    ExpectRun(
        {.massOffsetDa = 0.3}, {},
        {"609.598 Da, 3.18E+06 cps", "397.526 Da, 4.07E+05 cps", path + "609.598 Da -> 448.508 Da -> 195.404 Da"});
    ExpectRun({.massOffsetDa = 1.2}, noParent, {"N/A", aborted});
}

TEST(Faults, Sample) {
    // Nothing falls to 5 %: the least intense point of the plateau is taken, wherever noise puts it, and no 2nd
    // precursor is usable.
    ExpectRun({.backgroundIon = 0.1}, {},
              {"Optimized AF2 = 58", "Optimized AF2 = 100", noPath,
               "Note: MS3 for MS/MS fragment 1 yielded parent with greater than 10% of total ion counts.",
               "      MS3 for MS/MS fragment 5 yielded parent with greater than 10% of total ion counts."});
    // Resolved by the trap, the analyte's peak is the most intense one within 1 Da, and Q1 keeps the foreign fragments
    // out.
    ExpectRun({.interferenceDa = 0.5, .interferenceAmount = 0.5}, {},
              {"609.317 Da, 2.43E+06 cps", path + "609.317 Da -> 448.213 Da -> 195.124 Da"});
    // The most intense peak within 1 Da is the foreign one, with its own fragments. The analyte's first isotopologue
    // passes Q1 with it, hence 174 at the end of the list.
    ExpectRun(
        {.interferenceDa = 0.9, .interferenceAmount = 2}, {},
        {"610.216 Da, 2.83E+06 cps", "174.108 Da, 1.76E+05 cps", path + "610.216 Da -> 488.263 Da -> 336.252 Da"});
    // One peak of two unresolved ions at their common centre of mass, and fragments of both.
    ExpectRun({.interferenceDa = 0.3, .interferenceAmount = 2}, {},
              {"609.488 Da, 2.52E+06 cps", "488.259 Da, 8.70E+05 cps", "195.084 Da, 5.29E+05 cps",
               path + "609.488 Da -> 488.259 Da -> 335.274 Da"});
    // 22 Da away the adduct is not looked at: the expected ion is optimised, with the sixth that is left of it.
    ExpectRun({.sodiumAdduct = 5}, {},
              {"609.3 Da, 7.42E+05 cps", "Re-optimized DP = 75", path + "609.3 Da -> 448.2 Da -> 195.082 Da"});
    // Asked for, it is found, wants a higher DP, and hardly fragments, as sodium adducts do.
    ExpectRun({.sodiumAdduct = 5}, {},
              {"631.281 Da, 2.23E+06 cps", "Re-optimized DP = 100", "470.192 Da, 9.13E+04 cps", noPath},
              [](auto& settings) { settings.ExpectedMZ = 631.26; });
    ExpectRun({.wrongPolarity = 1}, noParent, {noParent[0].text, aborted});
    ExpectRun({.noFragments = 1}, noFragments, {"Re-optimized DP = 70", "2nd precursors: N/A", aborted});
    // Nothing dissociates at the collision energies of the product ion scan, and at higher ones every optimum lies
    // beyond the ramp, whose end is taken.
    ExpectRun({.stablePrecursor = 150}, noFragments, {"2nd precursors: N/A"});
    ExpectRun({.stablePrecursor = 150}, {},
              {"130 (397.242 Da, 2.07E+05 cps)", "130 (448.231 Da, 1.63E+05 cps)", "130 (174.12 Da, 4.03E+04 cps)",
               path + "609.3 Da -> 448.231 Da -> 195.116 Da"},
              [](auto& settings) { settings.Advanced_EPI_CE = 110; });
}

TEST(Faults, Queue) {
    const std::string data = "<DIR>/Projects/reserpine/Data/reserpine Veltra (5-13-2024, 3h45m12 PM)/reserpine_";
    const std::string asked = " failed: The acquisition failed as FailingAcquisition in <DIR>/Orvanel.ini asks (1302)";
    const std::string notThere =
        "Explore Data: Error loading XIC overlay (Error 1302: The acquisition of data file \"" + data +
        "MRM_RampCE_609.298.vesk\"" + asked + ").";
    // A failed acquisition leaves no data. What was found before it is in the report.
    ExpectRun({.failingAcquisition = 7}, {{notThere, MessageIcon::Critical}},
              {notThere, "N/A (448.214 Da, 5.57E+05 cps)", "Optimized CEP: 32 (18 initial value)", aborted});

    WholeRun run({.configure = [](auto& config) { config.faults.failingAcquisition = 1; }});
    EXPECT_EQ(run.Start(), Outcome::Aborted);
    const std::string log = run.Anonymous(support::ReadWholeFile(run.project.folder.File("Orvanel.log")));
    EXPECT_NE(log.find("\t" + data +
                       "ER_609.281.vesk\tfailed: The acquisition failed as FailingAcquisition in "
                       "<DIR>/Orvanel.ini asks (1302)\r\n"),
              std::string::npos)
        << log;
}

}  // namespace
