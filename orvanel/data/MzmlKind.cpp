// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/MzmlKind.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "orvanel/data/MzmlAdapter.h"
#include "orvanel/data/MzmlTerms.h"

namespace orvanel {
namespace {

using namespace pwiz::cv;
namespace msdata = pwiz::msdata;

constexpr std::size_t mostPrecursors = 100;

/// Precursors that were isolated at once, and what they are recognised by: the spectrum that they were taken from, or
/// what the isolation is called.
struct Isolation {
    std::string key;
    std::vector<double> masses;
};

std::string KeyOf(const msdata::Precursor& precursor) {
    for (const char* const name : {dataParameter::precursor, dataParameter::msLevel})
        if (const auto param = precursor.isolationWindow.userParam(name); !param.empty())
            return std::string(name) + ' ' + param.value;
    return precursor.spectrumID.empty() ? precursor.externalSpectrumID : precursor.spectrumID;
}

/// In the order of the spectrum's list; those that name no spectrum each for itself, unless others do.
std::vector<Isolation> ListedIsolations(const msdata::Spectrum& spectrum, const std::string& where) {
    const auto& listed = spectrum.precursors;
    const bool keyed = std::any_of(listed.begin(), listed.end(),
                                   [](const msdata::Precursor& precursor) { return !KeyOf(precursor).empty(); });
    std::vector<Isolation> isolations;
    std::size_t count = 0;
    for (const auto& precursor : listed) {
        const auto masses = PrecursorMz(precursor, where);
        if (masses.empty()) continue;
        count += masses.size();
        if (count > mostPrecursors)
            throw std::runtime_error(where + " has more than " + std::to_string(mostPrecursors) + " precursors");
        const std::string key = keyed ? KeyOf(precursor) : std::to_string(count);
        const auto same = std::find_if(isolations.begin(), isolations.end(),
                                       [&](const Isolation& isolation) { return isolation.key == key; });
        auto& isolation = same == isolations.end() ? isolations.emplace_back(Isolation{key, {}}) : *same;
        isolation.masses.insert(isolation.masses.end(), masses.begin(), masses.end());
    }
    return isolations;
}

/// A spectrum of MS level n has passed n - 1 isolations, so that precursors beyond these were isolated together with
/// the last one.
std::vector<std::vector<double>> IsolationsOf(const msdata::Spectrum& spectrum, int msLevel, const std::string& where) {
    auto listed = ListedIsolations(spectrum, where);
    // Other programs list the last isolation first.
    const bool firstIsFirst = !spectrum.precursors.empty() &&
                              !spectrum.precursors.front().isolationWindow.userParam(dataParameter::precursor).empty();
    if (!firstIsFirst) std::reverse(listed.begin(), listed.end());
    const auto most = static_cast<std::size_t>(std::max(msLevel - 1, 1));
    std::vector<std::vector<double>> isolations;
    for (auto& [key, masses] : listed) {
        if (isolations.size() == most)
            isolations.back().insert(isolations.back().end(), masses.begin(), masses.end());
        else
            isolations.push_back(std::move(masses));
    }
    for (auto& masses : isolations)
        std::sort(masses.begin(), masses.end());
    return isolations;
}

}  // namespace

bool IsMassSpectrum(const msdata::Spectrum& spectrum) {
    const auto type = spectrum.cvParamChild(MS_spectrum_type);
    return type.empty() || cvIsA(type.cvid, MS_mass_spectrum) || spectrum.hasCVParam(MS_ms_level);
}

std::optional<bool> StatedProfile(const pwiz::data::ParamContainer& container) {
    const bool profile = container.hasCVParam(MS_profile_spectrum);
    if (profile == container.hasCVParam(MS_centroid_spectrum)) return std::nullopt;
    return profile;
}

ExperimentKind KindOf(const msdata::Spectrum& spectrum, const std::string& where) {
    ExperimentKind kind;
    kind.profile = StatedProfile(spectrum).value_or(false);
    kind.polarity = spectrum.hasCVParam(MS_negative_scan) ? 1 : 0;
    const double level = TermNumber(spectrum, MS_ms_level, where).value_or(1);
    if (level < 1 || level > 100) throw std::runtime_error(where + ": the MS level is out of range");
    kind.msLevel = static_cast<int>(level);
    kind.isolations = IsolationsOf(spectrum, kind.msLevel, where);
    if (!spectrum.scanList.scans.empty() && !spectrum.scanList.scans.front().scanWindows.empty()) {
        const auto& windows = spectrum.scanList.scans.front().scanWindows;
        kind.lowMz = TermNumber(windows.front(), MS_scan_window_lower_limit, where).value_or(0);
        kind.highMz = TermNumber(windows.back(), MS_scan_window_upper_limit, where).value_or(0);
    }
    for (const double limit : {kind.lowMz, kind.highMz})
        RequireWithin(mzRange, limit, where + ": the scan window");
    return kind;
}

}  // namespace orvanel
