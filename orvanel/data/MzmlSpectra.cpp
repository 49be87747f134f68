// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/MzmlSpectra.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numeric>
#include <stdexcept>

#include "orvanel/data/ExperimentIndex.h"
#include "orvanel/data/MzmlAdapter.h"
#include "orvanel/data/MzmlKind.h"
#include "orvanel/data/MzmlTerms.h"
#include "orvanel/data/Representation.h"

namespace orvanel {
namespace {

using namespace pwiz::cv;
namespace msdata = pwiz::msdata;

constexpr double profileShare = 0.5;     ///< of points at even steps; profiles have more
constexpr double sureDifference = 0.25;  ///< from that share, which leaves no doubt

/// What spectra look like together.
struct Evenness {
    double sum = 0;
    double count = 0;

    void Add(double share) {
        sum += share;
        ++count;
    }
    std::optional<double> Mean() const { return count > 0 ? std::optional(sum / count) : std::nullopt; }
};

std::string Where(std::size_t number) {
    return "spectrum " + std::to_string(number + 1);
}

msdata::SpectrumPtr SpectrumAt(const msdata::MSData& document, std::size_t place, bool withPoints, std::size_t number) {
    const auto list = document.run.spectrumListPtr;
    auto spectrum = list && place < list->size() ? list->spectrum(place, withPoints) : nullptr;
    if (!spectrum) throw std::runtime_error(Where(number) + " is missing");
    return spectrum;
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

}  // namespace

void PointBudget::Require(std::size_t points) const {
    if (points > left_) throw std::runtime_error("it holds more data points than can be explored");
}

void PointBudget::Take(std::size_t points) {
    Require(points);
    left_ -= points;
}

MzmlSpectra::Header MzmlSpectra::HeaderOf(const msdata::Spectrum& spectrum, std::size_t number) const {
    Header header;
    header.number = number;
    header.kind = KindOf(spectrum, Where(number));
    header.statesRepresentation = StatedProfile(spectrum).has_value();
    header.id = spectrum.id;
    if (!spectrum.scanList.scans.empty())
        header.startTime = spectrum.scanList.scans.front().cvParam(MS_scan_start_time);
    header.cycle = spectrum.userParam(dataParameter::cycle).value;
    header.rampValue = spectrum.userParam(dataParameter::rampValue).value;
    header.rampParameter = spectrum.userParam(dataParameter::rampParameter).value;
    header.points = spectrum.defaultArrayLength;
    return header;
}

void MzmlSpectra::ReadHeaders(DataFileContent& content) {
    const auto list = outline_->run.spectrumListPtr;
    for (std::size_t i = 0; list && i < list->size(); ++i) {
        const auto spectrum = SpectrumAt(*outline_, i, false, i);
        if (IsMassSpectrum(*spectrum))
            headers_.push_back(HeaderOf(*spectrum, i));
        else
            ++content.otherSpectra;
    }
}

std::optional<double> MzmlSpectra::EvenShareOf(const Header& header) const {
    if (points_) throw std::runtime_error("only the points tell profiles from centroids");
    budget_.Require(header.points);
    const auto spectrum = SpectrumAt(*outline_, header.number, true, header.number);
    const auto mz = spectrum->getMZArray();
    const auto intensity = spectrum->getIntensityArray();
    if (!mz || !intensity) return std::nullopt;
    return EvenShare({mz->data.begin(), mz->data.end()}, {intensity->data.begin(), intensity->data.end()});
}

/// Where the points of a spectrum leave a doubt, those of the spectra that are alike in all else are judged together,
/// then those of its MS level, and then what the file says of all its spectra counts.
void MzmlSpectra::DecideRepresentation() {
    struct Doubtful {
        Header* header;
        std::size_t group;
    };
    ExperimentIndex groups;
    std::map<std::size_t, Evenness> ofGroup;
    std::map<int, Evenness> ofLevel;
    std::vector<Doubtful> doubtful;
    for (Header& header : headers_) {
        if (header.statesRepresentation) continue;
        const std::size_t group = groups.Count(header.kind);
        const auto share = EvenShareOf(header);
        if (share) {
            ofGroup[group].Add(*share);
            ofLevel[header.kind.msLevel].Add(*share);
        }
        if (share && std::abs(*share - profileShare) >= sureDifference)
            header.kind.profile = *share > profileShare;
        else
            doubtful.push_back({&header, group});
    }
    const auto stated = StatedProfile(outline_->fileDescription.fileContent);
    for (const auto& [header, group] : doubtful) {
        auto mean = ofGroup[group].Mean();
        if (!mean) mean = ofLevel[header->kind.msLevel].Mean();
        header->kind.profile = mean ? *mean > profileShare : stated.value_or(false);
    }
}

void MzmlSpectra::AddSpectrum(const Header& header, DataFileContent& content) const {
    const std::string where = Where(header.number);
    StoredSpectrum stored;
    stored.id = header.id;
    stored.cycle = static_cast<int>(content.spectra.size()) + 1;
    if (!header.cycle.empty()) {
        const double cycle = NumberOf(header.cycle, where + ": " + dataParameter::cycle);
        if (cycle < 1 || cycle > std::numeric_limits<std::int32_t>::max())
            throw std::runtime_error(where + ": the cycle number is out of range");
        stored.cycle = static_cast<int>(cycle);
    }
    if (!header.rampValue.empty())
        stored.rampValue = NumberOf(header.rampValue, where + ": " + dataParameter::rampValue);
    if (content.rampParameter.empty()) content.rampParameter = header.rampParameter;
    stored.timeMinutes = content.spectra.empty() ? 0 : content.spectra.back().timeMinutes;
    const std::string time = where + ": the scan start time";
    if (!header.startTime.empty() && !header.startTime.value.empty())
        stored.timeMinutes = NumberOf(header.startTime.value, time) / UnitsPerMinute(header.startTime.units, time);
    RequireWithin(xRange, stored.timeMinutes, time);
    RequireWithin(xRange, stored.rampValue.value_or(0), where + ": the ramp value");
    content.spectra.push_back(std::move(stored));
}

void MzmlSpectra::TakePoints(const msdata::Spectrum& spectrum, const std::string& where, StoredSpectrum& stored) {
    stored.mz = ValuesOf(spectrum.getMZArray(), mzRange, where + ": the m/z array");
    stored.intensity = ValuesOf(spectrum.getIntensityArray(), intensityRange, where + ": the intensity array");
    if (stored.mz.size() != stored.intensity.size())
        throw std::runtime_error(where + " has " + std::to_string(stored.mz.size()) + " m/z values but " +
                                 std::to_string(stored.intensity.size()) + " intensities");
    budget_.Take(stored.mz.size());
    SortPoints(stored);
}

void MzmlSpectra::ReadPoints(const std::vector<const Header*>& headers, std::vector<StoredSpectrum>& spectra) {
    std::vector<std::size_t> numbers;
    numbers.reserve(headers.size());
    for (const Header* header : headers)
        numbers.push_back(header->number);
    const Document document = points_ ? points_(numbers) : outline_;
    for (std::size_t k = 0; k < numbers.size(); ++k) {
        budget_.Require(headers[k]->points);
        TakePoints(*SpectrumAt(*document, points_ ? k : numbers[k], true, numbers[k]), Where(numbers[k]), spectra[k]);
    }
}

void MzmlSpectra::ReadInto(DataFileContent& content, std::size_t experiment, std::optional<int> cycle) {
    ReadHeaders(content);
    DecideRepresentation();
    ExperimentIndex experiments;
    std::vector<const Header*> chosen;
    for (const Header& header : headers_) {
        if (experiments.Count(header.kind) != experiment) continue;
        AddSpectrum(header, content);
        chosen.push_back(&header);
    }
    content.experiments = experiments.Experiments();
    if (experiment > 0 && experiment >= content.experiments.size())
        throw std::runtime_error("it holds " + std::to_string(content.experiments.size()) +
                                 " experiments; there is no experiment " + std::to_string(experiment + 1));
    if (content.experiments.empty()) return;
    content.kind = content.experiments[experiment].kind;
    const auto byCycle = [](const StoredSpectrum& a, const StoredSpectrum& b) { return a.cycle < b.cycle; };
    const auto [first, last] = std::minmax_element(content.spectra.begin(), content.spectra.end(), byCycle);
    content.firstCycle = first->cycle;
    content.lastCycle = last->cycle;
    if (cycle) {
        std::vector<const Header*> ofCycle;
        for (std::size_t i = 0; i < chosen.size(); ++i)
            if (content.spectra[i].cycle == *cycle) ofCycle.push_back(chosen[i]);
        chosen.swap(ofCycle);
        std::erase_if(content.spectra, [&](const StoredSpectrum& spectrum) { return spectrum.cycle != *cycle; });
    }
    ReadPoints(chosen, content.spectra);
    std::stable_sort(content.spectra.begin(), content.spectra.end(), byCycle);
}

}  // namespace orvanel
