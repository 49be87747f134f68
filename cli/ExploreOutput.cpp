// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <iomanip>
#include <ostream>

#include "cli/CleanText.h"
#include "cli/ExploreFindings.h"
#include "cli/JsonWriter.h"
#include "support/NumberText.h"

namespace cli {
namespace {

using List = ports::PeakList;
using support::GeneralText;
using support::MzText;

std::string Join(const std::vector<double>& masses, const char* separator) {
    std::string text;
    for (const double mass : masses)
        text += (text.empty() ? "" : separator) + MzText(mass);
    return text;
}

/// A time or a ramped value.
std::string PlaceText(double value) {
    return GeneralText(support::RoundHalfEven(value, 4));
}

const char* PolarityText(const orvanel::ExperimentKind& kind) {
    return kind.polarity == 1 ? "negative" : "positive";
}

const char* RepresentationText(const orvanel::ExperimentKind& kind) {
    return kind.profile ? "profile" : "centroid";
}

std::string KindText(const orvanel::ExperimentKind& kind) {
    std::string text = "MS" + std::to_string(kind.msLevel);
    for (const auto& masses : kind.isolations)
        text += (&masses == &kind.isolations.front() ? " of " : " > ") + Join(masses, "+");
    text += std::string(", ") + PolarityText(kind) + ", " + RepresentationText(kind);
    if (kind.highMz > 0) text += ", " + GeneralText(kind.lowMz) + " to " + GeneralText(kind.highMz) + " Da";
    return text;
}

void PrintUsed(const ExploreFindings& findings, std::ostream& out) {
    const auto& first = *findings.used.front();
    const auto& last = *findings.used.back();
    out << "Spectra:     ";
    if (findings.used.size() == 1)
        out << "cycle " << first.cycle << ", " << CleanText(first.id) << ", at " << PlaceText(first.timeMinutes)
            << " min";
    else
        out << "mean of " << findings.used.size() << ", cycles " << first.cycle << " to " << last.cycle << ", "
            << PlaceText(first.timeMinutes) << " to " << PlaceText(last.timeMinutes) << " min";
    if (first.rampValue && findings.used.size() == 1)
        out << ", " << CleanText(findings.content.rampParameter) << " " << PlaceText(*first.rampValue);
    out << '\n';
}

/// What a peak is taken for. One without a charge that is no parent may be background.
const char* KindText(const ports::PeakList& peaks, int peak) {
    if (peaks.ExplorePeakAttribute(peak, List::attributeIsotopeMarker) == 1) return "monoisotopic";
    return peaks.ExplorePeakAttribute(peak, List::attributeCharge) > 0 ? "isotope" : "background?";
}

void PrintPeak(const ports::PeakList& peaks, int peak, std::ostream& out) {
    const double signalToNoise = peaks.ExplorePeakAttribute(peak, List::attributeSignalToNoise);
    const auto charge = static_cast<int>(peaks.ExplorePeakAttribute(peak, List::attributeCharge));
    out << std::right << std::fixed << std::setprecision(4) << std::setw(11)
        << peaks.ExplorePeakCentroid(peak, List::centroidMz) << std::setw(12)
        << support::ScientificText(peaks.ExplorePeakCentroid(peak, List::centroidIntensity)) << std::setw(12)
        << support::ScientificText(peaks.ExplorePeakAttribute(peak, List::attributeArea)) << std::setw(9)
        << (signalToNoise > 0 ? support::FixedText(signalToNoise, 1) : "-") << std::setw(8)
        << (charge == 0 ? "-" : std::to_string(charge)) << "  " << KindText(peaks, peak) << '\n';
}

void PrintPeaks(const ExploreFindings& findings, std::ostream& out) {
    const auto& peaks = *findings.peaks;
    if (findings.wantedMz) {
        out << "Parent:      ";
        if (findings.parent > 0)
            out << MzText(peaks.ExplorePeakCentroid(findings.parent, List::centroidMz));
        else
            out << "none";
        out << ", looked for at " << GeneralText(*findings.wantedMz) << " Da\n";
    }
    if (!findings.excluded.empty())
        out << "Left out:    " << GeneralText(findings.excludedToleranceDa) << " Da around "
            << Join(findings.excluded, " and ") << '\n';
    if (findings.precursorRemains)
        out << "Note:        too much of the precursor is left for 3rd precursors to be taken\n";
    out << "Peaks:       " << peaks.ExplorePeakCount() << ", shown " << findings.shown.size() << "\n";
    if (findings.shown.empty()) return;
    out << "\n        m/z   intensity        area      S/N  charge\n";
    for (const int peak : findings.shown)
        PrintPeak(peaks, peak, out);
}

void PrintTraces(const ExploreFindings& findings, std::ostream& out) {
    const std::string& ramped = findings.content.rampParameter;
    out << "Chromatograms: " << findings.traces.size() << "\n\n         Q1         Q3  points       from         to"
        << "       apex   intensity  id" << (ramped.empty() ? " (x in minutes)" : " (x is " + CleanText(ramped) + ")")
        << '\n';
    for (const auto& [trace, x, intensity] : findings.traces) {
        const auto& axis = trace->X();
        const auto cell = [&](int width, const std::string& text) { out << std::right << std::setw(width) << text; };
        cell(11, trace->q1 > 0 ? MzText(trace->q1) : "-");
        cell(11, trace->q3 > 0 ? MzText(trace->q3) : "-");
        cell(8, std::to_string(axis.size()));
        cell(11, axis.empty() ? "-" : PlaceText(axis.front()));
        cell(11, axis.empty() ? "-" : PlaceText(axis.back()));
        cell(11, x ? PlaceText(*x) : "-");
        cell(12, x ? support::ScientificText(intensity) : "-");
        out << "  " << CleanText(trace->id) << (trace->kind.empty() ? "" : " (" + CleanText(trace->kind) + ")") << '\n';
    }
}

JsonWriter& WriteMasses(JsonWriter& json, const std::vector<double>& masses) {
    for (const double mz : masses)
        json.Number(mz);
    return json;
}

void WriteKind(JsonWriter& json, const orvanel::ExperimentSummary& experiment) {
    const auto& kind = experiment.kind;
    json.Open('{').Key("msLevel").Number(kind.msLevel).Key("polarity").Text(PolarityText(kind));
    json.Key("representation").Text(RepresentationText(kind)).Key("precursors").Open('[');
    for (const auto& masses : kind.isolations)
        WriteMasses(json, masses);
    json.Close(']').Key("isolations").Open('[');
    for (const auto& masses : kind.isolations)
        WriteMasses(json.Open('['), masses).Close(']');
    json.Close(']').Key("lowMz").Number(kind.lowMz).Key("highMz").Number(kind.highMz);
    json.Key("spectra").Number(static_cast<double>(experiment.spectra)).Close('}');
}

void WritePeak(JsonWriter& json, const ports::PeakList& peaks, int peak) {
    json.Open('{').Key("mz").Number(peaks.ExplorePeakCentroid(peak, List::centroidMz));
    json.Key("intensity").Number(peaks.ExplorePeakCentroid(peak, List::centroidIntensity));
    json.Key("area").Number(peaks.ExplorePeakAttribute(peak, List::attributeArea));
    json.Key("signalToNoise").Number(peaks.ExplorePeakAttribute(peak, List::attributeSignalToNoise));
    json.Key("charge").Number(peaks.ExplorePeakAttribute(peak, List::attributeCharge));
    json.Key("monoisotopic").Truth(peaks.ExplorePeakAttribute(peak, List::attributeIsotopeMarker) == 1).Close('}');
}

void WriteSpectrum(JsonWriter& json, const ExploreFindings& findings) {
    json.Key("spectra").Open('[');
    for (const auto* spectrum : findings.used) {
        json.Open('{').Key("cycle").Number(spectrum->cycle).Key("id").Text(spectrum->id);
        json.Key("timeMinutes").Number(spectrum->timeMinutes);
        if (spectrum->rampValue) json.Key("rampValue").Number(*spectrum->rampValue);
        json.Close('}');
    }
    json.Close(']');
    if (findings.wantedMz) {
        json.Key("parent");
        if (findings.parent > 0)
            WritePeak(json, *findings.peaks, findings.parent);
        else
            json.Null();
    }
    if (!findings.excluded.empty()) {
        json.Key("excluded").Open('{').Key("mz").Number(findings.excluded.back());
        json.Key("toleranceDa").Number(findings.excludedToleranceDa).Key("others").Open('[');
        WriteMasses(json, {findings.excluded.begin(), findings.excluded.end() - 1}).Close(']').Close('}');
    }
    json.Key("precursorRemains").Truth(findings.precursorRemains);
    json.Key("peakCount").Number(findings.peaks->ExplorePeakCount()).Key("peaks").Open('[');
    for (const int peak : findings.shown)
        WritePeak(json, *findings.peaks, peak);
    json.Close(']');
}

void WriteTraces(JsonWriter& json, const ExploreFindings& findings) {
    json.Key("chromatograms").Open('[');
    for (const auto& [trace, x, intensity] : findings.traces) {
        json.Open('{')
            .Key("id")
            .Text(trace->id)
            .Key("kind")
            .Text(trace->kind)
            .Key("q1")
            .Number(trace->q1)
            .Key("q3")
            .Number(trace->q3);
        json.Key("points").Number(static_cast<double>(trace->X().size())).Key("apex");
        if (x)
            json.Open('{').Key("x").Number(*x).Key("intensity").Number(intensity).Close('}');
        else
            json.Null();
        json.Close('}');
    }
    json.Close(']');
}

}  // namespace

void PrintFindings(const ExploreFindings& findings, const ExploreOptions& options, std::ostream& out) {
    const auto& content = findings.content;
    out << "File:        " << CleanText(options.path) << '\n';
    if (!content.id.empty()) out << "Document:    " << CleanText(content.id) << '\n';
    const std::size_t count = content.experiments.size();
    if (options.listsExperiments) {
        for (std::size_t i = 0; i < count; ++i)
            out << "Experiment " << i + 1 << ": " << KindText(content.experiments[i].kind) << ", "
                << content.experiments[i].spectra
                << (content.experiments[i].spectra == 1 ? " spectrum\n" : " spectra\n");
        out << "Chromatograms of transitions: " << content.traces.size() << '\n';
        for (const auto& trace : content.others)
            out << "Chromatogram: " << CleanText(trace.id)
                << (trace.kind.empty() ? "" : " (" + CleanText(trace.kind) + ")") << '\n';
        return;
    }
    if (findings.peaks) {
        out << "Experiment:  " << options.experiment << " of " << count << ": " << KindText(content.kind) << '\n';
        PrintUsed(findings, out);
        PrintPeaks(findings, out);
    }
    if (!content.traces.empty() || !content.others.empty() || !findings.peaks) PrintTraces(findings, out);
}

void PrintFindingsAsJson(const ExploreFindings& findings, const ExploreOptions& options, std::ostream& out) {
    const auto& content = findings.content;
    JsonWriter json(out);
    json.Open('{').Key("file").Text(options.path).Key("document").Text(content.id).Key("experiments").Open('[');
    for (const auto& experiment : content.experiments)
        WriteKind(json, experiment);
    json.Close(']').Key("rampParameter").Text(content.rampParameter);
    if (findings.peaks) {
        json.Key("experiment").Number(options.experiment);
        WriteSpectrum(json, findings);
    }
    if (!options.listsExperiments) WriteTraces(json, findings);
    json.Close('}');
    out << '\n';
}

}  // namespace cli
