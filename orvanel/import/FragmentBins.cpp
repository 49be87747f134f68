// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/FragmentBins.h"

#include <algorithm>
#include <cmath>

namespace orvanel {
namespace {

constexpr double halfBinDa = 0.5;
constexpr double accurateDa = 0.01;  ///< accurate masses of one fragment differ by less
constexpr int accurateDecimals = 3;
constexpr double profileGapDa = 0.25;
constexpr std::size_t maximumPeaksOfAll = 200000;
constexpr std::size_t maximumBins = 5000;

/// Sums of m/z and intensity of what belongs to one peak.
RecordPeak Centre(const std::vector<RecordPeak>& points, std::size_t begin, std::size_t end) {
    RecordPeak peak;
    for (std::size_t i = begin; i < end; ++i) {
        peak.mz += points[i].mz * points[i].intensity;
        peak.intensity += points[i].intensity;
    }
    peak.mz = peak.intensity > 0 ? peak.mz / peak.intensity : points[begin].mz;
    return peak;
}

/// Most points have a neighbour nearer than peaks of a list ever lie.
bool IsProfile(const std::vector<RecordPeak>& points) {
    constexpr std::size_t fewestPoints = 8;
    if (points.size() < fewestPoints) return false;
    std::size_t near = 0;
    for (std::size_t i = 1; i < points.size(); ++i)
        if (points[i].mz - points[i - 1].mz < profileGapDa) ++near;
    return near * 4 > points.size() * 3;
}

/// Runs of points, cut at gaps and at the lowest point between two maxima.
std::vector<RecordPeak> PeaksOfProfile(const std::vector<RecordPeak>& points) {
    std::vector<RecordPeak> peaks;
    std::size_t begin = 0;
    for (std::size_t i = 1; i <= points.size(); ++i) {
        const bool gap = i == points.size() || points[i].mz - points[i - 1].mz >= profileGapDa;
        const bool valley = !gap && i - begin >= 2 && i + 1 < points.size() &&
                            points[i].intensity < points[i - 1].intensity &&
                            points[i].intensity < points[i + 1].intensity;
        if (!gap && !valley) continue;
        peaks.push_back(Centre(points, begin, i));
        begin = i;
    }
    return peaks;
}

/// A peak with its spectrum and its share of that spectrum's ions.
struct Weighed {
    double mz = 0;
    double share = 0;
    std::size_t spectrum = 0;
};

std::vector<Weighed> Weigh(const MeasuredIon& ion, double highestMz, std::vector<double>& above) {
    std::vector<Weighed> weighed;
    for (std::size_t i = 0; i < ion.spectra.size(); ++i) {
        const auto& points = ion.spectra[i].record.peaks;
        const auto peaks = IsProfile(points) ? PeaksOfProfile(points) : points;
        double kept = 0;
        double left = 0;
        for (const RecordPeak& peak : peaks)
            (peak.mz <= highestMz ? kept : left) += peak.intensity;
        if (kept <= 0)
            FailImport(ion.spectra[i].record.path, ion.spectra[i].record.line,
                       "all peaks lie above the precursor, so this is no spectrum of its products");
        above.push_back(left / (kept + left));
        for (const RecordPeak& peak : peaks)
            if (peak.mz <= highestMz && peak.intensity > 0) weighed.push_back({peak.mz, peak.intensity / kept, i});
        if (weighed.size() > maximumPeaksOfAll)
            FailImport(ion.spectra[i].record.path, ion.spectra[i].record.line,
                       "the spectra have more than " + std::to_string(maximumPeaksOfAll) +
                           " peaks up to this one; import fewer");
    }
    std::stable_sort(weighed.begin(), weighed.end(), [](const auto& a, const auto& b) { return a.share > b.share; });
    return weighed;
}

bool HasUnitMasses(const MeasuredIon& ion, const std::vector<Weighed>& weighed) {
    int decimals = 0;
    bool tripleQuadrupole = false;
    for (const MeasuredSpectrum& spectrum : ion.spectra) {
        decimals = std::max(decimals, spectrum.record.mzDecimals);
        tripleQuadrupole = tripleQuadrupole || DefaultEnergyScale(spectrum.record.instrumentType.text) == 1;
    }
    if (decimals < accurateDecimals || tripleQuadrupole) return true;
    const auto precursor = std::find_if(weighed.begin(), weighed.end(),
                                        [&](const Weighed& peak) { return std::fabs(peak.mz - ion.mz) <= halfBinDa; });
    return precursor != weighed.end() && std::fabs(precursor->mz - ion.mz) > accurateDa;
}

/// The bin whose centre lies nearest, within half a dalton.
FragmentBin* Nearest(std::vector<FragmentBin>& bins, double mz) {
    FragmentBin* nearest = nullptr;
    for (FragmentBin& bin : bins)
        if (std::fabs(bin.mz - mz) <= halfBinDa &&
            (nearest == nullptr || std::fabs(bin.mz - mz) < std::fabs(nearest->mz - mz)))
            nearest = &bin;
    return nearest;
}

/// The mean m/z of a bin's strongest peak and of those that are the same ion.
double MeanMz(const std::vector<Weighed>& weighed, double seedMz, double reachDa) {
    double sum = 0;
    double moment = 0;
    for (const Weighed& peak : weighed)
        if (std::fabs(peak.mz - seedMz) <= reachDa) {
            sum += peak.share;
            moment += peak.share * peak.mz;
        }
    return moment / sum;
}

}  // namespace

BinnedSpectra BinSpectra(const MeasuredIon& ion) {
    BinnedSpectra binned;
    // Fragments of a multiply charged ion can lie above it in m/z.
    const double highestMz = ion.charge == 1 ? ion.mz + halfBinDa : ion.mz * ion.charge;
    const auto weighed = Weigh(ion, highestMz, binned.abovePrecursor);
    binned.unitMasses = HasUnitMasses(ion, weighed);
    auto& bins = binned.bins;
    bins.push_back({ion.mz, std::vector<double>(ion.spectra.size(), 0)});
    for (const Weighed& peak : weighed)
        if (Nearest(bins, peak.mz) == nullptr) {
            if (bins.size() == maximumBins)
                FailImport(ion.spectra[peak.spectrum].record.path, ion.spectra[peak.spectrum].record.line,
                           "the spectra have peaks at more than " + std::to_string(maximumBins) +
                               " masses; import fewer, or without their noise");
            bins.push_back({peak.mz, std::vector<double>(ion.spectra.size(), 0)});
        }
    for (const Weighed& peak : weighed)
        Nearest(bins, peak.mz)->shares[peak.spectrum] += peak.share;
    for (std::size_t i = 1; i < bins.size(); ++i)
        bins[i].mz = MeanMz(weighed, bins[i].mz, binned.unitMasses ? halfBinDa / 2 : accurateDa);
    return binned;
}

}  // namespace orvanel
