// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <ostream>

#include "cli/Commands.h"
#include "cli/CompoundChart.h"
#include "cli/Guarded.h"
#include "orvanel/CompoundFolder.h"
#include "orvanel/InstrumentHelperImpl.h"
#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/import/CompoundImport.h"
#include "orvanel/instrument/Fragmentation.h"
#include "support/FileNames.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Platform.h"

namespace cli {
namespace {

using support::GeneralText;

std::string Percent(double share) {
    return GeneralText(support::RoundHalfEven(100 * share, 3)) + " %";
}

void PrintSpectra(const orvanel::MeasuredIon& ion, std::ostream& out) {
    out << "Used (" << ion.spectra.size() << "):\n";
    for (const auto& spectrum : ion.spectra)
        out << "  " << support::FileNameOf(spectrum.record.path) << ", line " << spectrum.record.line << ": "
            << spectrum.statedEnergy << " -> " << GeneralText(spectrum.volts) << " V, " << spectrum.record.peaks.size()
            << " peaks\n";
    if (ion.leftOut.empty()) return;
    out << "Left out (" << ion.leftOut.size() << "):\n";
    for (const auto& record : ion.leftOut)
        out << "  " << support::FileNameOf(record.path) << ", line " << record.line << ": " << record.reason << '\n';
}

void PrintFragments(const orvanel::ImportResult& result, std::ostream& out) {
    const auto& candidates = result.fitted.formulaCandidates;
    const auto fragments = static_cast<std::ptrdiff_t>(candidates.size()) - 1;
    const auto unique = std::count(candidates.begin() + 1, candidates.end(), 1);
    const auto none = std::count(candidates.begin() + 1, candidates.end(), 0);
    out << "Fragments: " << fragments << " of " << result.binned.bins.size() - 1 << " masses kept; ";
    if (result.fitted.unitMasses)
        out << "no formulas, the masses are not accurate enough\n";
    else
        out << unique << " have one possible formula, " << fragments - unique - none << " the nearest of several, "
            << none << " none\n";
    const auto most = [](const std::vector<double>& shares) { return *std::max_element(shares.begin(), shares.end()); };
    out << "Ions in masses that were not kept: at most " << Percent(most(result.fitted.weakShare))
        << " of a spectrum; above the precursor, not counted: at most " << Percent(most(result.binned.abovePrecursor))
        << '\n';
}

std::string DeviationText(const orvanel::Deviation& deviation) {
    const std::string where =
        deviation.node.empty() ? "" : " (m/z " + deviation.node + " at " + GeneralText(deviation.volts) + " V)";
    return "at most " + Percent(deviation.largest) + where + ", " + Percent(deviation.mean) + " on average";
}

/// Parts of all ions.
void PrintDeviations(const orvanel::ImportResult& result, std::ostream& out) {
    out << "Curves are off the records by " << DeviationText(result.curves) << '\n'
        << "With one energy left out they miss it by " << DeviationText(result.leftOut) << '\n'
        << "The tree without curves would be off by " << DeviationText(result.treeOnly) << '\n';
}

}  // namespace

ExitStatus ImportCompound(const ImportOptions& options, const TerminalStreams& streams) {
    return Guarded(streams, abortedOrFailed, [&] {
        const auto result = orvanel::ImportCompound(
            {options.name, options.from, options.toFolder, options.energyScale, DefaultAppLocation()});
        PrintSpectra(result.ion, streams.out);
        PrintFragments(result, streams.out);
        PrintDeviations(result, streams.out);
        const std::string path = support::AbsolutePath(result.path);
        const std::string program = support::JoinPath(support::ProgramFolder(), "veltra-run");
        streams.out << "Compound file: " << path << '\n'
                    << "See it with:   " << program << " --check-compound \"" << path << "\"\n"
                    << "Spray it with: " << program << " --new-project DIR --compound \"" << path << "\"\n";
        return completed;
    });
}

ExitStatus CheckCompound(const std::string& path, const TerminalStreams& streams) {
    return Guarded(streams, abortedOrFailed, [&] {
        const std::string appLocation = DefaultAppLocation();
        const auto elements = orvanel::OpenElementTableFile(orvanel::ElementTablePath(appLocation));
        const auto models = orvanel::LoadInstrumentModels(orvanel::ModelsFolder(appLocation));
        const bool isFile = support::IsFileOfKind(path, orvanel::compoundFileExtension);
        const auto compound =
            orvanel::LoadCompound(isFile ? path : orvanel::FindCompoundFile(appLocation, path), *elements);
        DrawCompound(compound, orvanel::FindModel(models, NewProjectOptions{}.modelCode), streams.out);
        return completed;
    });
}

}  // namespace cli
