// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/MzmlAdapter.h"

#include <boost/make_shared.hpp>
#include <pwiz/data/msdata/MSData.hpp>
#include <pwiz/data/msdata/Serializer_mzML.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "orvanel/data/MzmlArrays.h"
#include "orvanel/data/MzmlGuard.h"
#include "orvanel/data/MzmlSpectra.h"
#include "orvanel/data/MzmlTerms.h"

namespace orvanel {
namespace {

using namespace pwiz::cv;
namespace msdata = pwiz::msdata;

/// Reads the chromatograms of a document.
class MzmlChromatograms {
  public:
    MzmlChromatograms(const msdata::MSData& document, PointBudget& budget) : document_(document), budget_(budget) {}

    /// Fills in all that the content says of chromatograms.
    void ReadInto(DataFileContent& content);

  private:
    void Add(const msdata::Chromatogram& chromatogram, const std::string& where, DataFileContent& content);
    void AddOther(const msdata::Chromatogram& chromatogram, DataFileContent& content);

    const msdata::MSData& document_;
    PointBudget& budget_;
};

/// What a chromatogram shows over time: the intensity, or else what the instrument measured of itself.
msdata::BinaryDataArrayPtr ValueArray(const msdata::Chromatogram& chromatogram) {
    for (const CVID kind : {MS_intensity_array, MS_pressure_array, MS_flow_rate_array, MS_temperature_array})
        for (const auto& array : chromatogram.binaryDataArrayPtrs)
            if (array && array->hasCVParam(kind)) return array;
    return nullptr;
}

/// Whose points are of no use to a run, so that faults in them are no reason to refuse the file: it then has none.
void MzmlChromatograms::AddOther(const msdata::Chromatogram& chromatogram, DataFileContent& content) {
    StoredTrace trace;
    trace.id = chromatogram.id;
    const auto kind = chromatogram.cvParamChild(MS_chromatogram_type);
    if (!kind.empty()) trace.kind = kind.name();
    try {
        const auto times = chromatogram.getTimeArray();
        auto minutes = ValuesOf(times, xRange, "");
        const double perMinute = times ? UnitsPerMinute(times->cvParam(MS_time_array).units, "") : 1;
        for (double& time : minutes)
            time /= perMinute;
        auto values = ValuesOf(ValueArray(chromatogram), intensityRange, "");
        if (minutes.size() == values.size()) {
            trace.timeMinutes = std::move(minutes);
            trace.intensity = std::move(values);
        }
    } catch (const std::runtime_error&) {
    }
    budget_.Take(trace.intensity.size());
    content.others.push_back(std::move(trace));
}

void MzmlChromatograms::Add(const msdata::Chromatogram& chromatogram, const std::string& where,
                            DataFileContent& content) {
    StoredTrace trace;
    trace.id = chromatogram.id;
    const auto& precursor = chromatogram.precursor;
    const auto q1 = PrecursorMz(precursor, where);
    const bool total = chromatogram.hasCVParam(MS_TIC_chromatogram);
    if (!total && q1.empty()) {
        AddOther(chromatogram, content);
        return;
    }
    trace.q1 = q1.empty() ? 0 : q1.front();
    trace.q3 = TermNumber(chromatogram.product.isolationWindow, MS_isolation_window_target_m_z, where).value_or(0);
    RequireWithin(mzRange, trace.q3, where + ": the product");

    const auto times = chromatogram.getTimeArray();
    const std::string timeArray = where + ": the time array";
    trace.timeMinutes = ValuesOf(times, xRange, timeArray);
    const double perMinute = times ? UnitsPerMinute(times->cvParam(MS_time_array).units, timeArray) : 1;
    for (double& time : trace.timeMinutes)
        time /= perMinute;
    trace.intensity = ValuesOf(chromatogram.getIntensityArray(), intensityRange, where + ": the intensity array");
    if (trace.timeMinutes.size() != trace.intensity.size())
        throw std::runtime_error(where + " has " + std::to_string(trace.timeMinutes.size()) + " times but " +
                                 std::to_string(trace.intensity.size()) + " intensities");
    const std::string ramped = chromatogram.userParam(dataParameter::rampParameter).value;
    if (!ramped.empty()) {
        for (const auto& array : chromatogram.binaryDataArrayPtrs)
            if (array && array->cvParam(MS_non_standard_data_array).value == ramped)
                trace.rampValues = ValuesOf(array, xRange, where + ": the array of " + ramped);
        if (trace.rampValues.size() != trace.timeMinutes.size())
            throw std::runtime_error(where + " has not one value of " + ramped + " for each point");
        content.rampParameter = ramped;
    }
    budget_.Take(trace.intensity.size());
    if (!total)
        content.traces.push_back(std::move(trace));
    else if (!content.total)
        content.total = std::move(trace);
}

void MzmlChromatograms::ReadInto(DataFileContent& content) {
    const auto list = document_.run.chromatogramListPtr;
    for (std::size_t i = 0; list && i < list->size(); ++i) {
        const std::string where = "chromatogram " + std::to_string(i + 1);
        const auto chromatogram = list->chromatogram(i, true);
        if (!chromatogram) throw std::runtime_error(where + " is missing");
        Add(*chromatogram, where, content);
    }
}

/// Numbers the elements of one kind in their order. Spectra that were picked from a larger file often keep the index
/// they had there, and the library looks for them at that place.
/// @param tag with the bracket before and the blank behind it
std::string Renumbered(const std::string& text, std::string_view tag) {
    constexpr std::string_view attribute = " index=\"";
    std::string result;
    std::size_t copied = 0;
    std::size_t number = 0;
    for (auto at = text.find(tag); at != std::string::npos; at = text.find(tag, at + tag.size())) {
        const auto tagEnd = text.find('>', at);
        if (tagEnd == std::string::npos) break;
        const auto begin = std::string_view(text).substr(at, tagEnd - at).find(attribute);
        if (begin == std::string_view::npos) continue;
        const auto value = at + begin + attribute.size();
        const auto quote = text.find('"', value);
        if (quote == std::string::npos) break;
        result.append(text, copied, value - copied).append(std::to_string(number++));
        copied = quote;
    }
    return result.append(text, copied, std::string::npos);
}

/// A document as the library has it.
MzmlSpectra::Document Parsed(std::string text, std::size_t pointLimit) {
    if (text.empty()) throw std::runtime_error("it is empty");
    const std::size_t begin = text.find("<mzML");
    if (begin == std::string::npos) throw std::runtime_error("it is not an mzML file");
    // The library reads on without a word when the end of the run is missing.
    constexpr std::string_view endTag = "</mzML>";
    const std::size_t end = text.rfind(endTag);
    if (end == std::string::npos || end < begin) throw std::runtime_error("it is cut off, its end is missing");
    CheckMarkup(text, begin, end + endTag.size());
    // Without the index around it, which may be wrong; the library then makes its own in one pass.
    text.erase(end + endTag.size());
    text.erase(0, begin);
    text = ReadableArrays(PlainMarkup(std::move(text)), pointLimit);
    text = Renumbered(text, "<spectrum ");
    text = Renumbered(text, "<chromatogram ");
    msdata::Serializer_mzML::Config config;
    config.indexed = false;
    auto in = boost::make_shared<std::istringstream>(std::move(text));
    auto document = std::make_shared<msdata::MSData>();
    msdata::Serializer_mzML(config).read(in, *document);
    return document;
}

DataFileContent ContentOf(const MzmlSpectra::Document& document, MzmlSpectra::PointSource points,
                          const MzmlSelection& selection) {
    DataFileContent content;
    PointBudget budget(selection.pointLimit);
    content.id = document->id;
    MzmlSpectra(document, std::move(points), budget).ReadInto(content, selection.experiment, selection.cycle);
    MzmlChromatograms(*document, budget).ReadInto(content);
    return content;
}

}  // namespace

DataFileContent ReadMzml(std::string text, const MzmlSelection& selection) {
    return ContentOf(Parsed(std::move(text), selection.pointLimit), {}, selection);
}

DataFileContent ReadMzmlParts(MzmlParts parts, const MzmlSelection& selection) {
    const auto outline = Parsed(std::move(parts.outline), selection.pointLimit);
    const auto list = outline->run.spectrumListPtr;
    if (!list || list->size() != parts.spectra) throw std::runtime_error("it holds other spectra than it should");
    const auto points = [&](const std::vector<std::size_t>& wanted) {
        return Parsed(parts.documentWith(wanted), selection.pointLimit);
    };
    return ContentOf(outline, points, selection);
}

}  // namespace orvanel
