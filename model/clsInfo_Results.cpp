// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/clsInfo_Results.h"

#include <exception>
#include <vector>

#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Text.h"
#include "support/modFileUtils.h"
#include "support/modStringUtils.h"

namespace veltra {
namespace {

using support::GeneralText;
using support::JoinLines;
using support::MzText;
using support::ScientificText;

const std::string newLine = support::crLf;
const std::string sectionBreak = newLine + newLine + newLine;
const std::string notPerformed =
    "N/A (not performed for Kelvor, Dasmyr, Tulvane, Brenic, Brenic+, Solvik or Dasmyr+ instruments)";

std::string WholeText(double value) {
    return GeneralText(support::RoundHalfEven(value, 0));
}

std::string TitleSection(const std::string& startTime, const ports::DateTimeTexts& now) {
    return "Quantitative Optimization for MS3" + newLine + now.weekdayName + ", " + now.monthName + " " +
           GeneralText(now.dayOfMonth) + ", " + GeneralText(now.year) + " (Start " + startTime + ", End " +
           now.longTime + ")";
}

std::string SettingsSection(const clsInfo_Settings& settings) {
    return JoinLines({
        "Starting Parameters",
        "===================",
        "Orvanel Project: " + settings.OrvanelProjectName,
        "Starting Method: " + settings.StarterMethodFilePath,
        "  Compound Name: " + settings.CompoundName,
        "     Resolution: " + settings.Q1ResolutionWord(),
        "   Expected m/z: " + GeneralText(settings.ExpectedMZ) + " Da",
        std::string("       Polarity: ") + (settings.Polarity == 0 ? "Positive" : "Negative"),
        "",
        "   ER Scan Rate: " + settings.Advanced_ERScanRate + " Da /s",
        "   Q1MI DP Ramp: " + GeneralText(settings.Advanced_Q1MIDPRampStart) + "V to " +
            GeneralText(settings.Advanced_Q1MIDPRampStop) + "V with " + GeneralText(settings.Advanced_Q1MIDPRampStep) +
            "V step",
        "  EPI Scan Rate: " + settings.Advanced_EPIScanRate + " Da /s",
        " EPI # 2nd Prec: " + GeneralText(static_cast<int>(settings.Advanced_EPINum2ndPrec)),
        "  MS3 Scan Rate: " + settings.Advanced_MS3ScanRate + " Da /s",
        std::string("  Final Methods: ") +
            (settings.Advanced_MS3SaveAllFinalMethods ? "Save all final methods" : "Save optimal method only"),
    });
}

std::string InitialValueText(const clsItem_CompoundParam& param) {
    return " (" + GeneralText(param.Initial) + " initial value)";
}

std::string ParameterText(const clsItem_CompoundParam& param) {
    return GeneralText(param.Current) + InitialValueText(param);
}

std::string OptimumText(bool wasOptimized, double optimum, const clsItem_CompoundParam& param) {
    return (wasOptimized ? GeneralText(optimum) : "N/A") + InitialValueText(param);
}

std::string PeakRow(std::size_t number, const clsItem_Peak& peak, double fragmentMass) {
    return "         " + std::to_string(number) + "           " + support::PadRight(MzText(peak.CentroidMass), 18) +
           support::PadRight(WholeText(fragmentMass - peak.CentroidMass), 14) + ScientificText(peak.CentroidIntensity);
}

std::string FragmentBlock(const clsInfo_Results& results, std::size_t number, const clsItem_TopPeak& fragment) {
    const clsItem_Peak& peak = *fragment.SecondPrecursor;
    const double parentMass = results.ActualPeak ? results.ActualPeak->CentroidMass : 0;
    const std::string loss = WholeText(parentMass - peak.CentroidMass);
    const std::string blanks(loss.size() < 7 ? 7 - loss.size() : 0, ' ');

    std::vector<std::string> lines{
        "[MS/MS Fragment " + std::to_string(number) + "]  " + MzText(peak.CentroidMass) + " Da (Loss of " + loss +
            ")," + blanks + ScientificText(peak.CentroidIntensity) + " cps",
        "       Optimized CE: " + OptimumText(fragment.CEWasOptimized, fragment.OptimizedCE, results.CE),
        "      Optimized AF2: " + OptimumText(fragment.AF2WasOptimized, fragment.OptimizedAF2, results.AF2),
        "      MS3 Peak  Centroid Mass(Da)  2nd Loss  Centroid Intensity(cps)",
        "      --------  ------------------  --------  -----------------------",
    };
    for (std::size_t i = 0; i < fragment.MS3PeaksCollection.size(); ++i)
        lines.push_back(PeakRow(i + 1, *fragment.MS3PeaksCollection[i], peak.CentroidMass));
    const bool anyPeak = !fragment.MS3PeaksCollection.empty();
    if (!anyPeak) lines.emplace_back("         N/A           N/A             N/A             N/A");
    lines.push_back("      Final MS3 Method: " + (anyPeak ? fragment.FinalMS3Method : "N/A"));
    return JoinLines(lines);
}

std::string ResultsSection(const clsInfo_Results& results, bool epAndCepSupported) {
    std::string text = JoinLines({
        "Optimization Results",
        "====================",
        "   Actual m/z: " + (results.ActualPeak ? MzText(results.ActualPeak->CentroidMass) + " Da, " +
                                                      ScientificText(results.ActualPeak->CentroidIntensity) + " cps"
                                                : "0 Da, 0 cps"),
        " Optimized DP: " + ParameterText(results.DP),
        " Optimized EP: " + (epAndCepSupported ? ParameterText(results.EP) : notPerformed),
        "Optimized CEP: " + (epAndCepSupported ? ParameterText(results.CEP) : notPerformed),
    });
    for (std::size_t i = 0; i < results.TopPeaksInfo.size(); ++i)
        text += sectionBreak + FragmentBlock(results, i + 1, *results.TopPeaksInfo[i]);
    return text;
}

/// The rows for EP, CEP, CE and AF2 are fixed texts, uneven columns included: people compare reports line by line.
std::string RampSection(const clsInfo_Settings& settings, bool epAndCepSupported) {
    const bool negative = settings.Polarity == 1;
    const float start = settings.Advanced_Q1MIDPRampStart;
    const float stop = settings.Advanced_Q1MIDPRampStop;
    const auto column = [](float value, std::size_t width) {
        return support::PadLeft(support::FormatOneDecimal(value), width);
    };
    std::vector<std::string> lines{
        "Compound Parameter Ramping Details",
        "==================================",
        "  Parameter  Start   Stop   Step",
        "  ---------  -----   ----   ----",
        "      DP" + column(negative ? -stop : start, 10) + column(negative ? -start : stop, 7) +
            column(settings.Advanced_Q1MIDPRampStep, 7),
        std::string("      EP") + (negative ? "     -12.0   -1.0    0.5" : "       1.0   12.0    0.5"),
    };
    if (epAndCepSupported)
        lines.emplace_back(negative ? "     CEP    -100.0    0.0    2.0" : "     CEP       0.0  100.0    2.0");
    lines.push_back(std::string("      CE") + (negative ? "    -130.0   -10.0    2.0" : "       10.0  130.0    2.0"));
    lines.emplace_back("     AF2       0.0  100.0    2.0");
    return JoinLines(lines);
}

std::string ClosingSection(const clsInfo_Results& results, bool abortRequested) {
    if (abortRequested) return "Optimization was aborted!";
    if (results.OptimalMS3PeakIndex <= 0) return "No optimal MS3 quantitation path found!";
    const auto& optimal = *results.TopPeaksInfo.at(static_cast<std::size_t>(results.OptimalMS3PeakIndex - 1));
    const double parentMass = results.ActualPeak ? results.ActualPeak->CentroidMass : 0;
    return "   MS3 Quantitation Path: " + MzText(parentMass) + " Da -> " +
           MzText(optimal.SecondPrecursor->CentroidMass) + " Da -> " +
           MzText(optimal.MS3PeaksCollection.at(0)->CentroidMass) + " Da" + newLine +
           "Final Optimal MS3 Method: " + support::GetFolderNameAtDepth(results.OptimalMS3Method, 0) + newLine +
           newLine + "Optimization completed successfully!";
}

std::string Notes(const TopPeakCollection& fragments) {
    std::string notes;
    for (std::size_t i = 0; i < fragments.size(); ++i) {
        if (fragments[i]->MS3PercentBelowThreshold) continue;
        notes += newLine + (notes.empty() ? "Note: " : "      ") + "MS3 for MS/MS fragment " + std::to_string(i + 1) +
                 " yielded parent with greater than 10% of total ion counts.";
    }
    return notes;
}

}  // namespace

std::string clsInfo_Results::ReportText(const ReportContext& context) const {
    return TitleSection(StartTime, context.clock.Now()) + sectionBreak + SettingsSection(context.settings) +
           sectionBreak + ResultsSection(*this, context.EPAndCEPSupported) + sectionBreak +
           RampSection(context.settings, context.EPAndCEPSupported) + sectionBreak +
           ClosingSection(*this, context.AbortRequested) + Notes(TopPeaksInfo);
}

std::string clsInfo_Results::GenerateResults(const ReportContext& context) const {
    // A fault of the disk that passes must not cost the report of a whole run.
    constexpr int attempts = 2;
    std::string failure;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        try {
            support::WriteWholeFile(support::JoinPath(VeskOutputFilePath, "Results.txt"), ReportText(context),
                                    context.disk);
            return {};
        } catch (const std::exception& error) {
            // The findings are in the log as well; a report that cannot be written must not change how the run ends.
            failure = error.what();
        }
    }
    return failure;
}

std::string clsInfo_Results::UnwrittenMessage() const {
    if (UnwrittenFiles.empty()) return {};
    std::string message = "The run has ended, but not everything could be written:";
    for (const auto& file : UnwrittenFiles)
        message += newLine + file;
    return message;
}

}  // namespace veltra
