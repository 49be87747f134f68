#include "orvanel/explore/PeakFinder.h"

#include <algorithm>
#include <limits>

#include "orvanel/explore/IsotopeAssignment.h"
#include "orvanel/explore/PeakDetection.h"
#include "orvanel/explore/SpectrumNoise.h"

namespace orvanel {
namespace {

/// A peak has at least so many ions; fewer are dark counts or the edge of one.
constexpr double fewestIons = 8;

std::vector<Peak> CentroidPeaks(const std::vector<double>& mz, const std::vector<double>& intensity) {
    std::vector<Peak> peaks;
    for (std::size_t i = 0; i < mz.size(); ++i)
        if (intensity[i] > 0)
            peaks.push_back({mz[i], intensity[i], intensity[i], std::numeric_limits<double>::infinity(), 0, 0, true});
    return peaks;
}

}  // namespace

std::vector<Peak> FindPeaks(const std::vector<double>& mz, const std::vector<double>& intensity, bool profile) {
    if (mz.empty()) return {};
    std::vector<Peak> peaks;
    std::vector<NoiseSample> samples;
    double ionHeight = 0;
    if (profile) {
        const PeakDetection detection(mz, intensity);
        peaks = detection.Peaks();
        samples = detection.NominalMaxima();
        ionHeight = detection.IonHeight();
    } else {
        peaks = CentroidPeaks(mz, intensity);
        for (const Peak& peak : peaks)
            samples.push_back({peak.mz, peak.intensity});
    }
    const SpectrumNoise noise(samples, mz.front(), mz.back(), ionHeight);
    std::erase_if(peaks, [](const Peak& peak) { return peak.ions < fewestIons; });
    // Before the noise goes: an M+1 below the threshold still tells that M+2 is an isotope.
    AssignIsotopes(peaks);
    std::erase_if(peaks, [&](const Peak& peak) { return !(peak.intensity > noise.ThresholdAt(peak.mz)); });
    return peaks;
}

}  // namespace orvanel
