// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/MzmlAdapter.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cmath>
#include <limits>
#include <numeric>
#include <pwiz/data/msdata/MSData.hpp>
#include <pwiz/data/msdata/Serializer_mzML.hpp>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "orvanel/data/ExperimentIndex.h"
#include "orvanel/data/MzmlArrays.h"
#include "orvanel/data/MzmlGuard.h"
#include "support/NumberText.h"

namespace orvanel {
namespace {

using namespace pwiz::cv;
namespace msdata = pwiz::msdata;
using pwiz::data::ParamContainer;

double NumberOf(const std::string& text, const std::string& where) {
    const auto value = support::ParseDouble(text);
    if (!value) throw std::runtime_error(where + " is \"" + text + "\", which is no number");
    return *value;
}

std::optional<double> TermNumber(const ParamContainer& container, CVID term, const std::string& where) {
    const auto param = container.cvParam(term);
    if (param.empty() || param.value.empty()) return std::nullopt;
    return NumberOf(param.value, where + ": " + param.name());
}

std::optional<double> UserNumber(const ParamContainer& container, const char* name, const std::string& where) {
    const auto param = container.userParam(name);
    if (param.empty() || param.value.empty()) return std::nullopt;
    return NumberOf(param.value, where + ": " + name);
}

struct Range {
    double lowest;
    double highest;
};

/// What no instrument leaves; values beyond it would overflow in sums or keep the peak finder busy without end.
constexpr Range mzRange = {0, 1e6};
constexpr Range intensityRange = {-1e30, 1e30};
constexpr Range xRange = {-1e9, 1e9};  ///< times in minutes, ramped values
constexpr std::size_t mostPrecursors = 100;

void RequireWithin(const Range& range, double value, const std::string& where) {
    if (!std::isfinite(value)) throw std::runtime_error(where + " holds a value that is no finite number");
    if (value < range.lowest || value > range.highest)
        throw std::runtime_error(where + " holds " + support::GeneralText(value) + ", allowed is " +
                                 support::GeneralText(range.lowest) + " to " + support::GeneralText(range.highest));
}

/// Copies an array, checked to be finite and of no absurd magnitude.
std::vector<double> ValuesOf(const msdata::BinaryDataArrayPtr& array, const Range& range, const std::string& where) {
    if (!array) return {};
    std::vector<double> values(array->data.begin(), array->data.end());
    for (const double value : values)
        RequireWithin(range, value, where);
    return values;
}

/// Reads the document into the content of its experiment.
class MzmlExtractor {
  public:
    MzmlExtractor(const msdata::MSData& document, std::size_t pointLimit, std::size_t experiment)
        : document_(document), pointsLeft_(pointLimit), experiment_(experiment) {}

    DataFileContent Extract();

  private:
    void ReadSpectra();
    void ReadChromatograms();
    void TakePoints(std::size_t count);
    void AddSpectrum(const msdata::Spectrum& spectrum, const std::string& where);
    void AddChromatogram(const msdata::Chromatogram& chromatogram, const std::string& where);

    const msdata::MSData& document_;
    std::size_t pointsLeft_;
    std::size_t experiment_;
    DataFileContent content_;
};

void MzmlExtractor::TakePoints(std::size_t count) {
    if (count > pointsLeft_) throw std::runtime_error("it holds more data points than can be explored");
    pointsLeft_ -= count;
}

bool IsMassSpectrum(const msdata::Spectrum& spectrum) {
    const auto type = spectrum.cvParamChild(MS_spectrum_type);
    return type.empty() || cvIsA(type.cvid, MS_mass_spectrum) || spectrum.hasCVParam(MS_ms_level);
}

std::optional<double> PrecursorMz(const msdata::Precursor& precursor, const std::string& where) {
    auto mz = TermNumber(precursor.isolationWindow, MS_isolation_window_target_m_z, where);
    if (!mz && !precursor.selectedIons.empty())
        mz = TermNumber(precursor.selectedIons.front(), MS_selected_ion_m_z, where);
    if (mz) RequireWithin(mzRange, *mz, where + ": the precursor");
    return mz;
}

ExperimentKind KindOf(const msdata::Spectrum& spectrum, const std::string& where) {
    ExperimentKind kind;
    kind.profile = spectrum.hasCVParam(MS_profile_spectrum);
    kind.polarity = spectrum.hasCVParam(MS_negative_scan) ? 1 : 0;
    const double level = TermNumber(spectrum, MS_ms_level, where).value_or(1);
    if (level < 1 || level > 100) throw std::runtime_error(where + ": the MS level is out of range");
    kind.msLevel = static_cast<int>(level);
    for (const auto& precursor : spectrum.precursors)
        if (const auto mz = PrecursorMz(precursor, where)) kind.precursors.push_back(*mz);
    if (kind.precursors.size() > mostPrecursors)
        throw std::runtime_error(where + " has more than " + std::to_string(mostPrecursors) + " precursors");
    // Other programs list the last isolation first.
    if (!spectrum.precursors.empty() &&
        spectrum.precursors.front().isolationWindow.userParam(dataParameter::precursor).empty())
        std::reverse(kind.precursors.begin(), kind.precursors.end());
    if (!spectrum.scanList.scans.empty() && !spectrum.scanList.scans.front().scanWindows.empty()) {
        const auto& windows = spectrum.scanList.scans.front().scanWindows;
        kind.lowMz = TermNumber(windows.front(), MS_scan_window_lower_limit, where).value_or(0);
        kind.highMz = TermNumber(windows.back(), MS_scan_window_upper_limit, where).value_or(0);
    }
    for (const double limit : {kind.lowMz, kind.highMz})
        RequireWithin(mzRange, limit, where + ": the scan window");
    return kind;
}

/// Points in order of m/z; a negative intensity, which some baseline corrections leave, counts as zero.
void SortPoints(StoredSpectrum& stored) {
    for (double& value : stored.intensity)
        value = std::max(value, 0.0);
    if (std::is_sorted(stored.mz.begin(), stored.mz.end())) return;
    std::vector<std::size_t> order(stored.mz.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return stored.mz[a] < stored.mz[b]; });
    StoredSpectrum sorted;
    for (const std::size_t i : order) {
        sorted.mz.push_back(stored.mz[i]);
        sorted.intensity.push_back(stored.intensity[i]);
    }
    stored.mz.swap(sorted.mz);
    stored.intensity.swap(sorted.intensity);
}

/// How many of a unit of time are a minute. No unit is taken for minutes.
double UnitsPerMinute(CVID unit, const std::string& where) {
    switch (unit) {
        case CVID_Unknown:
        case UO_minute:
            return 1;
        case UO_second:
            return 60;
        case UO_millisecond:
            return 60000;
        default:
            throw std::runtime_error(where + " is in a unit other than minute, second and millisecond");
    }
}

double MinutesOf(const msdata::CVParam& time, const std::string& where) {
    return NumberOf(time.value, where) / UnitsPerMinute(time.units, where);
}

void MzmlExtractor::AddSpectrum(const msdata::Spectrum& spectrum, const std::string& where) {
    StoredSpectrum stored;
    stored.id = spectrum.id;
    stored.cycle = static_cast<int>(content_.spectra.size()) + 1;
    if (const auto cycle = UserNumber(spectrum, dataParameter::cycle, where)) {
        if (*cycle < 1 || *cycle > std::numeric_limits<std::int32_t>::max())
            throw std::runtime_error(where + ": the cycle number is out of range");
        stored.cycle = static_cast<int>(*cycle);
    }
    stored.rampValue = UserNumber(spectrum, dataParameter::rampValue, where);
    if (content_.rampParameter.empty()) content_.rampParameter = spectrum.userParam(dataParameter::rampParameter).value;
    stored.timeMinutes = content_.spectra.empty() ? 0 : content_.spectra.back().timeMinutes;
    if (!spectrum.scanList.scans.empty()) {
        const auto time = spectrum.scanList.scans.front().cvParam(MS_scan_start_time);
        if (!time.empty() && !time.value.empty()) stored.timeMinutes = MinutesOf(time, where + ": the scan start time");
    }
    RequireWithin(xRange, stored.timeMinutes, where + ": the scan start time");
    RequireWithin(xRange, stored.rampValue.value_or(0), where + ": the ramp value");
    stored.mz = ValuesOf(spectrum.getMZArray(), mzRange, where + ": the m/z array");
    stored.intensity = ValuesOf(spectrum.getIntensityArray(), intensityRange, where + ": the intensity array");
    if (stored.mz.size() != stored.intensity.size())
        throw std::runtime_error(where + " has " + std::to_string(stored.mz.size()) + " m/z values but " +
                                 std::to_string(stored.intensity.size()) + " intensities");
    TakePoints(stored.mz.size());
    SortPoints(stored);
    content_.spectra.push_back(std::move(stored));
}

void MzmlExtractor::ReadSpectra() {
    const auto list = document_.run.spectrumListPtr;
    if (!list) return;
    ExperimentIndex experiments;
    for (std::size_t i = 0; i < list->size(); ++i) {
        const std::string where = "spectrum " + std::to_string(i + 1);
        const auto header = list->spectrum(i, false);
        if (!header || !IsMassSpectrum(*header)) continue;
        if (experiments.Count(KindOf(*header, where)) != experiment_) continue;
        if (header->defaultArrayLength > pointsLeft_) TakePoints(header->defaultArrayLength);
        const auto spectrum = list->spectrum(i, true);
        if (!spectrum) throw std::runtime_error(where + " is missing");
        AddSpectrum(*spectrum, where);
    }
    content_.experiments = experiments.Experiments();
    if (experiment_ > 0 && experiment_ >= content_.experiments.size())
        throw std::runtime_error("it holds " + std::to_string(content_.experiments.size()) +
                                 " experiments; there is no experiment " + std::to_string(experiment_ + 1));
    if (content_.experiments.empty()) return;
    content_.kind = content_.experiments[experiment_].kind;
    std::stable_sort(content_.spectra.begin(), content_.spectra.end(),
                     [](const StoredSpectrum& a, const StoredSpectrum& b) { return a.cycle < b.cycle; });
}

void MzmlExtractor::AddChromatogram(const msdata::Chromatogram& chromatogram, const std::string& where) {
    StoredTrace trace;
    trace.id = chromatogram.id;
    const auto& precursor = chromatogram.precursor;
    const auto q1 = PrecursorMz(precursor, where);
    const bool total = chromatogram.hasCVParam(MS_TIC_chromatogram);
    if (!total && !q1) return;
    trace.q1 = q1.value_or(0);
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
        content_.rampParameter = ramped;
    }
    TakePoints(trace.intensity.size());
    if (!total)
        content_.traces.push_back(std::move(trace));
    else if (!content_.total)
        content_.total = std::move(trace);
}

void MzmlExtractor::ReadChromatograms() {
    const auto list = document_.run.chromatogramListPtr;
    if (!list) return;
    for (std::size_t i = 0; i < list->size(); ++i) {
        const std::string where = "chromatogram " + std::to_string(i + 1);
        const auto chromatogram = list->chromatogram(i, true);
        if (!chromatogram) throw std::runtime_error(where + " is missing");
        AddChromatogram(*chromatogram, where);
    }
}

DataFileContent MzmlExtractor::Extract() {
    content_.id = document_.id;
    ReadSpectra();
    ReadChromatograms();
    return std::move(content_);
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

}  // namespace

DataFileContent ReadMzml(std::string text, std::size_t pointLimit, std::size_t experiment) {
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
    text = PlainMarkup(std::move(text));
    CheckPackedArrays(text, pointLimit);
    text = Renumbered(text, "<spectrum ");
    text = Renumbered(text, "<chromatogram ");
    msdata::Serializer_mzML::Config config;
    config.indexed = false;
    auto in = boost::make_shared<std::istringstream>(std::move(text));
    msdata::MSData document;
    msdata::Serializer_mzML(config).read(in, document);
    return MzmlExtractor(document, pointLimit, experiment).Extract();
}

}  // namespace orvanel
