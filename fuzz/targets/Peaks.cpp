// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include "fuzz/Fuzz.h"
#include "orvanel/explore/PeakFinder.h"

namespace {

using Point = std::pair<double, double>;  // m/z, intensity

/// The spectrum that the bytes stand for: pairs of singles, as far as they are numbers, in order of m/z.
std::vector<Point> PointsOf(std::string_view bytes) {
    constexpr double furthestMz = 1e6;
    constexpr double highestIntensity = 1e30;
    std::vector<Point> points;
    for (float pair[2]; bytes.size() >= sizeof pair; bytes.remove_prefix(sizeof pair)) {
        std::memcpy(pair, bytes.data(), sizeof pair);
        if (std::abs(pair[0]) <= furthestMz && pair[1] >= 0 && pair[1] <= highestIntensity)
            points.emplace_back(pair[0], pair[1]);
    }
    std::stable_sort(points.begin(), points.end(), [](const Point& a, const Point& b) { return a.first < b.first; });
    return points;
}

void CheckPeaks(const std::vector<double>& mz, const std::vector<double>& intensity, bool profile) {
    double before = -INFINITY;
    for (const orvanel::Peak& peak : orvanel::FindPeaks(mz, intensity, profile)) {
        fuzz::Require(peak.mz >= mz.front() - 1 && peak.mz <= mz.back() + 1, "a peak lies within its spectrum");
        fuzz::Require(peak.mz >= before, "peaks are in order");
        fuzz::Require(peak.intensity > 0 && std::isfinite(peak.intensity), "a peak has a height");
        fuzz::Require(peak.area >= 0 && std::isfinite(peak.area), "a peak has an area");
        fuzz::Require(peak.widthDa >= 0 && std::isfinite(peak.widthDa), "a peak has a width");
        fuzz::Require(peak.charge >= 0 && peak.charge <= 10, "a charge is one that ions have");
        before = peak.mz;
    }
}

}  // namespace

/// As profile and as centroid spectrum.
void fuzz::Try(std::string_view input) {
    std::vector<double> mz;
    std::vector<double> intensity;
    for (const auto& [pointMz, pointIntensity] : PointsOf(input)) {
        mz.push_back(pointMz);
        intensity.push_back(pointIntensity);
    }
    CheckPeaks(mz, intensity, true);
    CheckPeaks(mz, intensity, false);
}
