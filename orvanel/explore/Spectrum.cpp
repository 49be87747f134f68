// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/Spectrum.h"

#include <algorithm>
#include <cmath>

#include "orvanel/data/DataErrors.h"
#include "orvanel/explore/MeanSpectrum.h"
#include "ports/HostError.h"
#include "support/NumberText.h"

namespace orvanel {
namespace {

/// Half the typical distance of two neighbouring cycles on the axis (its median), in seconds. For a single cycle what
/// the rounding of single-precision minutes times 60 can cost.
double HalfCycleSeconds(const DataFileContent& content) {
    std::vector<double> distances;
    for (std::size_t i = 1; i < content.spectra.size(); ++i)
        distances.push_back(std::abs(content.X(content.spectra[i]) - content.X(content.spectra[i - 1])) * 60);
    const double rounding = 1e-6 * (1 + std::abs(content.X(content.spectra.front())) * 60);
    if (distances.empty()) return rounding;
    const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
    std::nth_element(distances.begin(), middle, distances.end());
    return std::max(*middle / 2, rounding);
}

void RequireSpectra(const DataFileContent& content) {
    if (content.spectra.empty())
        throw ports::HostError(exploreNoSpectra, "The data file holds no spectra of this experiment");
}

}  // namespace

void Spectrum::Load(const std::vector<const StoredSpectrum*>& chosen, bool profile) {
    auto mean = MeanSpectrum(chosen, profile);
    points_.SetX(std::move(mean.mz));
    points_.SetY(std::move(mean.intensity));
}

void Spectrum::ExploreLoadSpectrumByTime(int sample, int period, int experiment, float startSeconds,
                                         float stopSeconds) {
    RequireExperiment(sample, period, experiment);
    const auto content = points_.Open();
    RequireSpectra(*content);
    // A falling ramp starts at its larger value.
    const double tolerance = HalfCycleSeconds(*content);
    const double low = double{std::min(startSeconds, stopSeconds)} - tolerance;
    const double high = double{std::max(startSeconds, stopSeconds)} + tolerance;
    std::vector<const StoredSpectrum*> chosen;
    for (const auto& spectrum : content->spectra) {
        const double seconds = content->X(spectrum) * 60;
        if (seconds >= low && seconds <= high) chosen.push_back(&spectrum);
    }
    if (chosen.empty())
        throw ports::HostError(exploreNoSuchCycle, "There is no spectrum between " +
                                                       support::GeneralText(startSeconds) + " s and " +
                                                       support::GeneralText(stopSeconds) + " s");
    Load(chosen, content->kind.profile);
}

void Spectrum::ExploreLoadSpectrumByCycle(int sample, int firstCycle, int lastCycle) {
    RequireExperiment(sample, 0, 0);
    const auto content = points_.Open();
    RequireSpectra(*content);
    std::vector<const StoredSpectrum*> chosen;
    for (const auto& spectrum : content->spectra)
        if (spectrum.cycle >= firstCycle && spectrum.cycle <= lastCycle) chosen.push_back(&spectrum);
    if (chosen.empty() || content->spectra.front().cycle > firstCycle || content->spectra.back().cycle < lastCycle)
        throw ports::HostError(exploreNoSuchCycle,
                               "The data file holds cycles " + std::to_string(content->spectra.front().cycle) + " to " +
                                   std::to_string(content->spectra.back().cycle) + "; asked for were cycles " +
                                   std::to_string(firstCycle) + " to " + std::to_string(lastCycle));
    Load(chosen, content->kind.profile);
}

}  // namespace orvanel
