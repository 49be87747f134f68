// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <ostream>
#include <stdexcept>

#include "cli/CleanText.h"
#include "cli/ExploreFindings.h"
#include "host/ExploreRules.h"
#include "model/clsInfo_Settings.h"
#include "orvanel/explore/Exploration.h"
#include "orvanel/explore/MeanSpectrum.h"
#include "orvanel/explore/SpectrumPeakList.h"
#include "scans/clsScan1_ER.h"
#include "scans/clsScan3_EPI.h"
#include "scans/clsScan5_MS3.h"

namespace cli {
namespace {

using veltra::clsScan5_MS3;

void Smooth(ports::DataExploration& exploration, ports::ChromatogramData& chromatogram) {
    const auto smoothing = exploration.CreateSmoothingProcessor();
    for (int pass = 0; pass < clsScan5_MS3::smoothes; ++pass)
        smoothing->ExploreSmooth(chromatogram, {});
}

std::vector<TraceApex> FindApexes(const orvanel::DataFileContent& content) {
    const auto exploration = orvanel::CreateDataExploration();
    const auto chromatogram = exploration->CreateChromatogramData();
    std::vector<TraceApex> apexes;
    const auto add = [&](const orvanel::StoredTrace& trace) {
        chromatogram->SetXValues(trace.X());
        chromatogram->SetYValues(trace.intensity);
        Smooth(*exploration, *chromatogram);
        apexes.push_back({&trace, veltra::XOfMaximum(*chromatogram), chromatogram->GetYValueRange().maximum});
    };
    for (const auto& trace : content.traces)
        add(trace);
    if (content.traces.empty() && content.total) add(*content.total);
    for (const auto& trace : content.others)
        add(trace);
    return apexes;
}

/// An MS3 ramp is judged at the cycle that leaves little of the precursor, as the MS3 stage does.
std::optional<double> RampValueOfMs3(const ExploreOptions& options, const orvanel::DataFileContent& content) {
    if (content.kind.msLevel != 3 || content.rampParameter.empty() || content.kind.isolations.empty()) return {};
    const auto exploration = orvanel::CreateDataExploration();
    const auto chromatogram = exploration->CreateChromatogramData();
    const double precursor = content.kind.isolations.back().back();
    chromatogram->ExploreSetDataFile(options.path);
    chromatogram->ExploreLoadXIC(1, 0, 0, precursor, precursor + clsScan5_MS3::remainderWindowDa);
    Smooth(*exploration, *chromatogram);
    return veltra::XAtPercentOfMaximum(*chromatogram, clsScan5_MS3::remainingPercent);
}

std::vector<const orvanel::StoredSpectrum*> ChooseSpectra(const ExploreOptions& options,
                                                          const orvanel::DataFileContent& content) {
    std::optional<double> rampValue;
    if (!options.cycle && options.experiment == 1) rampValue = RampValueOfMs3(options, content);
    std::vector<const orvanel::StoredSpectrum*> chosen;
    for (const auto& spectrum : content.spectra)
        if (options.cycle ? spectrum.cycle == *options.cycle : !rampValue || spectrum.rampValue == rampValue)
            chosen.push_back(&spectrum);
    if (chosen.empty())
        throw std::runtime_error("The data file \"" + options.path + "\" holds cycles " +
                                 std::to_string(content.firstCycle) + " to " + std::to_string(content.lastCycle) +
                                 " of this experiment; there is no cycle " + std::to_string(options.cycle.value_or(0)));
    return chosen;
}

/// The number that a monoisotopic peak has in its list. Several may share an m/z, and even an intensity.
/// @param taken numbers of others
int NumberOf(const veltra::clsItem_Peak& wanted, const ports::PeakList& peaks, const std::vector<int>& taken) {
    using List = ports::PeakList;
    int number = peaks.ExplorePeakCount();
    const auto isWanted = [&] {
        return peaks.ExplorePeakAttribute(number, List::attributeIsotopeMarker) == 1 &&
               peaks.ExplorePeakCentroid(number, List::centroidMz) == wanted.CentroidMass &&
               peaks.ExplorePeakCentroid(number, List::centroidIntensity) == wanted.CentroidIntensity &&
               std::find(taken.begin(), taken.end(), number) == taken.end();
    };
    while (number > 1 && !isWanted())
        --number;
    return number;
}

/// The strongest monoisotopic peaks away from the precursors, as the EPI and the MS3 stage take them away from one.
void TakeTopPeaks(const ExploreOptions& options, ExploreFindings& findings) {
    const auto& kind = findings.content.kind;
    const bool isMs3 = kind.msLevel > 2;
    if (kind.msLevel > 1) {
        if (options.mz)
            findings.excluded = {*options.mz};
        else if (!kind.isolations.empty())
            findings.excluded = kind.isolations.back();
    }
    findings.excludedToleranceDa =
        isMs3 ? clsScan5_MS3::exclusionToleranceDa : veltra::clsScan3_EPI::exclusionToleranceDa;
    const int usual = isMs3 ? clsScan5_MS3::peaksWanted : veltra::clsInfo_Settings("").Advanced_EPINum2ndPrec;
    const int wanted = options.top.value_or(usual);
    const int percentLimit = isMs3 && !findings.excluded.empty() ? clsScan5_MS3::parentAreaPercentLimit : -1;
    const auto take = [&](double excludedMz) {
        bool belowThreshold = true;
        auto top = veltra::TopMonoisotopicPeaks(*findings.peaks, std::numeric_limits<std::int16_t>::max(), excludedMz,
                                                findings.excludedToleranceDa, static_cast<std::int16_t>(percentLimit),
                                                belowThreshold);
        findings.precursorRemains = findings.precursorRemains || !belowThreshold;
        return top;
    };
    const auto isExcluded = [&](double mz) {
        return std::any_of(findings.excluded.begin(), findings.excluded.end(),
                           [&](double excludedMz) { return std::abs(mz - excludedMz) < findings.excludedToleranceDa; });
    };
    const auto top = take(findings.excluded.empty() ? -1 : findings.excluded.back());
    for (std::size_t i = 0; i + 1 < findings.excluded.size(); ++i)
        take(findings.excluded[i]);
    if (findings.precursorRemains) return;
    for (const auto& peak : top) {
        if (static_cast<int>(findings.shown.size()) == wanted) break;
        if (!isExcluded(peak->CentroidMass)) findings.shown.push_back(NumberOf(*peak, *findings.peaks, findings.shown));
    }
}

void FindPeaks(const ExploreOptions& options, ExploreFindings& findings) {
    const auto& kind = findings.content.kind;
    findings.used = ChooseSpectra(options, findings.content);
    const auto mean = orvanel::MeanSpectrum(findings.used, kind.profile);
    findings.peaks = std::make_unique<orvanel::SpectrumPeakList>(mean.mz, mean.intensity, kind.profile);
    if (kind.msLevel == 1 && options.mz) {
        findings.wantedMz = options.mz;
        findings.parent =
            veltra::HighestMonoisotopicPeak(*findings.peaks, *options.mz, veltra::clsScan1_ER::parentToleranceDa);
    }
    if (options.top || (options.mz && kind.msLevel > 1)) {
        TakeTopPeaks(options, findings);
        return;
    }
    for (int peak = 1; peak <= findings.peaks->ExplorePeakCount(); ++peak)
        findings.shown.push_back(peak);
    const auto intensity = [&](int peak) {
        return findings.peaks->ExplorePeakCentroid(peak, ports::PeakList::centroidIntensity);
    };
    std::stable_sort(findings.shown.begin(), findings.shown.end(),
                     [&](int a, int b) { return intensity(a) > intensity(b); });
}

/// No more of the file than is shown.
orvanel::DataFileContent Read(const ExploreOptions& options) {
    const auto experiment = static_cast<std::size_t>(options.experiment - 1);
    if (options.listsExperiments) return orvanel::ReadExperiments(options.path);
    if (options.cycle) return orvanel::ReadCycle(options.path, experiment, *options.cycle);
    return orvanel::ReadDataFile(options.path, experiment);
}

std::string OtherSpectraText(std::size_t count) {
    if (count == 0) return "";
    return ", but " + std::to_string(count) + (count == 1 ? " spectrum" : " spectra") + " of another kind";
}

}  // namespace

ExploreFindings Explore(const ExploreOptions& options) {
    ExploreFindings findings;
    findings.content = Read(options);
    if (options.listsExperiments) return findings;
    const bool asksForSpectra = options.experiment > 1 || options.cycle || options.mz || options.top;
    const bool hasSpectra = !findings.content.experiments.empty();
    if (!hasSpectra && asksForSpectra)
        throw std::runtime_error("The data file \"" + options.path +
                                 "\" holds no mass spectra; --experiment, --cycle, --mz and --top ask for some");
    if (hasSpectra) FindPeaks(options, findings);
    findings.traces = FindApexes(findings.content);
    if (!findings.peaks && findings.traces.empty())
        throw std::runtime_error("The data file \"" + options.path + "\" holds neither mass spectra nor chromatograms" +
                                 OtherSpectraText(findings.content.otherSpectra));
    return findings;
}

ExitStatus ExploreFile(const ExploreOptions& options, const TerminalStreams& streams) {
    try {
        const ExploreFindings findings = Explore(options);
        (options.json ? PrintFindingsAsJson : PrintFindings)(findings, options, streams.out);
        return completed;
    } catch (const std::exception& error) {
        streams.err << "veltra-run: " << CleanText(error.what()) << '\n';
        return abortedOrFailed;
    }
}

}  // namespace cli
