#include "host/clsExplore.h"
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
        if (list.ExplorePeakAttribute(number, List::attributeIsotopeMarker) != 1) continue;
        auto peak = std::make_shared<clsItem_Peak>();
        peak->CentroidIntensity = list.ExplorePeakCentroid(number, List::centroidIntensity);
        peak->CentroidMass = list.ExplorePeakCentroid(number, List::centroidMz);
        if (withAreas) {
            const double area = list.ExplorePeakAttribute(number, List::attributeArea);
            found.totalArea += area;
            if (peak->CentroidMass > low && peak->CentroidMass <= high) found.parentArea += area;
        }
        found.peaks.push_back(std::move(peak));
    }
    return found;
}

}  // namespace

PeakCollection clsExplore::Spectrum_GetTopPeaks(std::int16_t intNumOfPeaksToGet, double dblMassToExclude,
                                                double dblMassExclusionTolerance,
                                                std::int16_t intPeakAreaPercentThreshold,
                                                bool& pBlnPercentBelowThreshold) {
    constexpr double noExclusion = -1;
    PeakCollection top;
    Step(
        [&] {
            pBlnPercentBelowThreshold = true;
            const bool testsPercentage = intPeakAreaPercentThreshold > -1;
            auto found =
                CollectMonoisotopic(*LoadedPeakList(), dblMassToExclude, dblMassExclusionTolerance, testsPercentage);
            if (testsPercentage && found.totalArea != 0)
                pBlnPercentBelowThreshold = !(found.parentArea / found.totalArea * 100 > intPeakAreaPercentThreshold);
            if (!pBlnPercentBelowThreshold) return;

            support::QuickSortPeaks(1, static_cast<std::int32_t>(found.peaks.size()), "Centroid Intensity",
                                    found.peaks);
            const auto isExcluded = [&](double mass) {
                return dblMassToExclude != noExclusion && mass > dblMassToExclude - dblMassExclusionTolerance &&
                       mass < dblMassToExclude + dblMassExclusionTolerance;
            };
            for (auto peak = found.peaks.rbegin(); peak != found.peaks.rend(); ++peak) {
                if (static_cast<int>(top.size()) >= intNumOfPeaksToGet) break;
                if (!isExcluded((*peak)->CentroidMass)) top.push_back(*peak);
            }
        },
        [&] {
            return "Explore Data: Error during getting of " +
                   support::GeneralText(static_cast<int>(intNumOfPeaksToGet)) + " top peaks";
        });
    return top;
}

}  // namespace veltra
