// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/SpectrumPeakList.h"

#include <cmath>
#include <string>

#include "orvanel/data/DataErrors.h"
#include "ports/HostError.h"

namespace orvanel {

SpectrumPeakList::SpectrumPeakList(const std::vector<double>& mz, const std::vector<double>& intensity, bool profile) {
    if (mz.size() != intensity.size())
        throw ports::HostError(exploreUnequalArrays, "The spectrum has " + std::to_string(mz.size()) +
                                                         " m/z values but " + std::to_string(intensity.size()) +
                                                         " intensities");
    peaks_ = FindPeaks(mz, intensity, profile);
}

int SpectrumPeakList::ExploreFindHighestInRange(double lowMz, double highMz) const {
    int found = 0;
    double highest = 0;
    for (std::size_t i = 0; i < peaks_.size(); ++i) {
        const Peak& peak = peaks_[i];
        if (peak.mz < lowMz || peak.mz > highMz || peak.intensity <= highest) continue;
        highest = peak.intensity;
        found = static_cast<int>(i) + 1;
    }
    return found;
}

int SpectrumPeakList::ExploreFindNearest(double mz, double tolerance) const {
    int found = 0;
    double nearest = 0;
    for (std::size_t i = 0; i < peaks_.size(); ++i) {
        const double distance = std::abs(peaks_[i].mz - mz);
        if (distance > tolerance || (found != 0 && distance >= nearest)) continue;
        nearest = distance;
        found = static_cast<int>(i) + 1;
    }
    return found;
}

const Peak& SpectrumPeakList::At(int peak) const {
    if (peak < 1 || peak > ExplorePeakCount())
        throw ports::HostError(exploreNoSuchPeak, "The peak list has " + std::to_string(ExplorePeakCount()) +
                                                      " peaks, counted from 1; there is no peak " +
                                                      std::to_string(peak));
    return peaks_[static_cast<std::size_t>(peak - 1)];
}

double SpectrumPeakList::ExplorePeakAttribute(int peak, int attribute) const {
    const Peak& found = At(peak);
    switch (attribute) {
        case attributeMz:
            return found.mz;
        case attributeCharge:
            return found.charge;
        case attributeArea:
            return found.area;
        case attributeSignalToNoise:
            return found.signalToNoise;
        case attributeIsotopeMarker:
            return found.monoisotopic ? 1 : 0;
        default:
            throw ports::HostError(
                exploreNoSuchAttribute,
                "A peak has the attributes 0 (m/z), 3 (charge), 4 (area), 5 (signal to noise) and 8 (isotope marker); "
                "there is no attribute " +
                    std::to_string(attribute));
    }
}

double SpectrumPeakList::ExplorePeakCentroid(int peak, int which) const {
    const Peak& found = At(peak);
    if (which == centroidMz) return found.mz;
    if (which == centroidIntensity) return found.intensity;
    throw ports::HostError(
        exploreNoSuchAttribute,
        "A centroid has the values 0 (m/z) and 1 (intensity); there is no value " + std::to_string(which));
}

}  // namespace orvanel
