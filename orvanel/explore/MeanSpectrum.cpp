// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/MeanSpectrum.h"

#include <algorithm>

#include "orvanel/explore/PeakFinder.h"

namespace orvanel {
namespace {

// Lines of a centroid spectrum scatter from one spectrum to the next by a share of their width.
constexpr double scatterWidths = 0.5;
constexpr double smallestScatterDa = 0.01;
constexpr double largestStepDa = 0.2;
constexpr double shareOfStep = 0.95;  // below 1, so that neighbours on a shared grid stay apart

struct SourcePoint {
    double mz;
    double intensity;
    double reach;  // how far above its m/z another spectrum's point may lie, Da
    std::size_t spectrum;
};

double StepAt(const std::vector<double>& mz, std::size_t i) {
    double step = largestStepDa;
    if (i > 0) step = std::min(step, mz[i] - mz[i - 1]);
    if (i + 1 < mz.size()) step = std::min(step, mz[i + 1] - mz[i]);
    return step;
}

}  // namespace

SpectrumPoints MeanSpectrum(const std::vector<const StoredSpectrum*>& spectra, bool profile) {
    if (spectra.size() == 1) return {spectra.front()->mz, spectra.front()->intensity};
    std::vector<SourcePoint> all;
    for (std::size_t k = 0; k < spectra.size(); ++k) {
        const double scatter = profile ? 0 : std::max(scatterWidths * LineWidthDa(spectra[k]->mz), smallestScatterDa);
        for (std::size_t i = 0; i < spectra[k]->mz.size(); ++i)
            all.push_back({spectra[k]->mz[i], spectra[k]->intensity[i],
                           profile ? shareOfStep * StepAt(spectra[k]->mz, i) : scatter, k});
    }
    std::sort(all.begin(), all.end(), [](const SourcePoint& a, const SourcePoint& b) {
        return a.mz != b.mz ? a.mz < b.mz : a.spectrum < b.spectrum;
    });

    SpectrumPoints mean;
    const auto count = static_cast<double>(spectra.size());
    std::vector<std::size_t> lastGroup(spectra.size(), 0);
    std::size_t group = 0;
    for (std::size_t i = 0; i < all.size();) {
        ++group;
        const SourcePoint& first = all[i];
        double offset = 0;
        double intensity = 0;
        std::size_t members = 0;
        for (; i < all.size() && all[i].mz - first.mz <= first.reach && lastGroup[all[i].spectrum] != group; ++i) {
            lastGroup[all[i].spectrum] = group;
            offset += all[i].mz - first.mz;
            intensity += all[i].intensity;
            ++members;
        }
        mean.mz.push_back(first.mz + offset / static_cast<double>(members));
        mean.intensity.push_back(intensity / count);
    }
    return mean;
}

}  // namespace orvanel
