// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/ExploreRules.h"

#include <memory>
#include <utility>

#include "host/HostWrapper.h"
#include "support/NumberText.h"
#include "support/modSorts.h"

namespace veltra {
namespace {

/// The monoisotopic peaks of a list with the areas that the percentage test needs.
struct Monoisotopic {
    PeakCollection peaks;
    double totalArea = 0;
    double parentArea = 0;
};

/// The area window is half open, unlike the window that keeps peaks from being picked: results have always been judged
/// so.
Monoisotopic CollectMonoisotopic(const ports::PeakList& list, double mass, double tolerance, bool withAreas) {
    using List = ports::PeakList;
    const double low = mass - tolerance;
    const double high = mass + tolerance;
    Monoisotopic found;
    const int count = list.ExplorePeakCount();
    for (int number = 1; number <= count; ++number) {
        if (Finite(list.ExplorePeakAttribute(number, List::attributeIsotopeMarker)) != 1) continue;
        auto peak = std::make_shared<clsItem_Peak>();
        peak->CentroidIntensity = Finite(list.ExplorePeakCentroid(number, List::centroidIntensity));
        peak->CentroidMass = Finite(list.ExplorePeakCentroid(number, List::centroidMz));
        if (withAreas) {
            const double area = Finite(list.ExplorePeakAttribute(number, List::attributeArea));
            found.totalArea += area;
            if (peak->CentroidMass > low && peak->CentroidMass <= high) found.parentArea += area;
        }
        found.peaks.push_back(std::move(peak));
    }
    return found;
}

}  // namespace

std::optional<double> XOfMaximum(ports::ChromatogramData& chromatogram) {
    if (chromatogram.ExplorePointCount() < 1) return std::nullopt;
    chromatogram.ExploreSortPoints(false, false);
    if (!(Finite(chromatogram.ExplorePointY(1)) > 0)) return std::nullopt;
    return Finite(chromatogram.ExplorePointX(1));
}

std::optional<double> XAtPercentOfMaximum(ports::ChromatogramData& chromatogram, std::int16_t percentage) {
    const int count = chromatogram.ExplorePointCount();
    if (count < 1) return std::nullopt;
    chromatogram.ExploreSortPoints(false, true);
    const double maximum = Finite(chromatogram.ExplorePointY(count));
    if (!(maximum > 0)) return std::nullopt;
    const double threshold = percentage / 100.0 * maximum;
    for (int point = 1; point <= count; ++point)
        if (!(Finite(chromatogram.ExplorePointY(point)) < threshold)) return Finite(chromatogram.ExplorePointX(point));
    return std::nullopt;
}

int HighestMonoisotopicPeak(const ports::PeakList& peaks, double mass, double tolerance) {
    using List = ports::PeakList;
    constexpr int chargeWhenUnknown = 2;
    const auto attribute = [&](int peak, int which) { return Finite(peaks.ExplorePeakAttribute(peak, which)); };

    const int highest = peaks.ExploreFindHighestInRange(mass - tolerance, mass + tolerance);
    if (highest < 1 || attribute(highest, List::attributeIsotopeMarker) != 0) return highest;

    const auto known = support::ToInt32(attribute(highest, List::attributeCharge));
    const int charge = known == 0 ? chargeWhenUnknown : known;
    const double spacing = 1.0 / charge;
    const int lower = peaks.ExploreFindNearest(attribute(highest, List::attributeMz) - spacing, tolerance);
    if (lower < 1) return highest;
    const double ratioLimit = 1700.0 / (charge * mass) - 0.2;
    const double ratio = attribute(lower, List::attributeArea) / attribute(highest, List::attributeArea);
    return attribute(lower, List::attributeIsotopeMarker) == 1 && ratio > ratioLimit ? lower : highest;
}

PeakCollection TopMonoisotopicPeaks(const ports::PeakList& peaks, std::int16_t count, double massToExclude,
                                    double tolerance, std::int16_t areaPercentThreshold, bool& percentBelowThreshold) {
    constexpr double noExclusion = -1;
    const bool testsPercentage = areaPercentThreshold > -1;
    percentBelowThreshold = true;
    auto found = CollectMonoisotopic(peaks, massToExclude, tolerance, testsPercentage);
    if (testsPercentage && found.totalArea != 0)
        percentBelowThreshold = !(found.parentArea / found.totalArea * 100 > areaPercentThreshold);
    PeakCollection top;
    if (!percentBelowThreshold) return top;

    support::QuickSortPeaks(1, static_cast<std::int32_t>(found.peaks.size()), "Centroid Intensity", found.peaks);
    const auto isExcluded = [&](double mass) {
        return massToExclude != noExclusion && mass > massToExclude - tolerance && mass < massToExclude + tolerance;
    };
    for (auto peak = found.peaks.rbegin(); peak != found.peaks.rend(); ++peak) {
        if (static_cast<int>(top.size()) >= count) break;
        if (!isExcluded((*peak)->CentroidMass)) top.push_back(*peak);
    }
    return top;
}

}  // namespace veltra
