// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/TrapScan.h"

#include <algorithm>
#include <cmath>

#include "orvanel/instrument/Detector.h"
#include "orvanel/instrument/MethodCheck.h"
#include "orvanel/instrument/Timing.h"

namespace orvanel {
namespace {

constexpr double negligibleCps = 1e-6;

/// Appends the points that differ from 0 and the two ends of every run of zeros.
void AppendPoints(const BinGrid& grid, const std::vector<double>& intensity, CycleRecord& record) {
    for (std::size_t bin = 0; bin < grid.count; ++bin) {
        const bool inner = bin > 0 && bin + 1 < grid.count;
        if (inner && intensity[bin] == 0 && intensity[bin - 1] == 0 && intensity[bin + 1] == 0) continue;
        record.mz.push_back(grid.Mz(bin));
        record.intensity.push_back(intensity[bin]);
    }
}

}  // namespace

TrapScan::TrapScan(const ScanConditions& conditions) : at_(conditions) {
    for (const MassRangeRecord& range : at_.experiment.massRanges)
        segments_.push_back(MakeSegment(range));
}

TrapScan::Segment TrapScan::MakeSegment(const MassRangeRecord& range) const {
    Segment segment;
    segment.grid = {range.start, range.step, PointCount(range)};
    segment.dwellS = range.step / at_.experiment.scanRate;
    segment.nonFillMs = ScanMs(at_.model, at_.experiment) - at_.experiment.fixedFillTimeMs;
    double factor = IsolationWindow(range).transmission;
    if (at_.experiment.scanType == static_cast<int>(ScanType::EnhancedProductIon))
        factor = at_.model.chemicalNoiseMs2Factor;
    if (at_.experiment.scanType == static_cast<int>(ScanType::Ms3)) factor = at_.model.chemicalNoiseMs3Factor;
    const ChemicalBackground& background = at_.background;
    double sum = 0;
    for (auto peak = static_cast<std::int64_t>(std::ceil(range.start / background.SpacingDa()));
         background.MzOf(peak) <= range.stop; ++peak) {
        const double cps = factor * background.RateOf(peak);
        if (cps <= 0) continue;
        segment.background.push_back({background.MzOf(peak), cps});
        segment.cumulativeBackground.push_back(sum += cps);
    }
    return segment;
}

/// Without a precursor the first quadrupole lets the whole scanned range through.
Q1Window TrapScan::IsolationWindow(const MassRangeRecord& range) const {
    Q1Window window = at_.FirstQuadrupole();
    if (at_.experiment.firstPrecursor == 0) window.widthDa = std::max(window.widthDa, range.stop - range.start);
    return window;
}

TrapScan::Ions TrapScan::IonsOf(const MassRangeRecord& range, const Voltages& voltages,
                                double calibrationErrorDa) const {
    const ExperimentRecord& experiment = at_.experiment;
    const double centreMz = experiment.firstPrecursor > 0 ? experiment.firstPrecursor : (range.start + range.stop) / 2;
    const IonBeam selected = Isolated(SprayedBeam(at_.sources, at_.model, experiment.polarity, voltages), at_.model,
                                      IsolationWindow(range), centreMz);
    IonBeam trapped = Dissociated(selected, at_.model, voltages.ce, voltages.ces);
    Ions ions;
    ions.enteringCps = TotalCps(trapped);
    if (experiment.scanType == static_cast<int>(ScanType::Ms3))
        trapped = Excited(trapped, at_.model, experiment.secondPrecursor, voltages.af2, calibrationErrorDa);
    for (const IonPopulation& population : trapped)
        for (std::size_t i = 0; i < population.cps.size(); ++i) {
            const double cps = population.cps[i] * population.source->Envelope(population.node).share[i];
            if (cps > negligibleCps) ions.peaks.push_back({population.IsotopologueMz(i), cps});
        }
    return ions;
}

void TrapScan::Cycle(const ParameterTables& parameters, double instrumentTimeS, CycleRecord& record) {
    const ExperimentRecord& experiment = at_.experiment;
    const double errorDa = CalibrationErrorDa(at_.model, at_.context.seed, instrumentTimeS, at_.context.noiseLevel) +
                           at_.context.faults.massOffsetDa;
    std::vector<Ions> ions;
    std::vector<double> fillMs;
    std::vector<std::vector<double>> intensity;
    for (std::size_t i = 0; i < segments_.size(); ++i) {
        const Segment& segment = segments_[i];
        ions.push_back(IonsOf(experiment.massRanges[i], VoltagesOf(parameters[i], at_.model), errorDa));
        ions.back().enteringCps += segment.BackgroundCps();
        fillMs.push_back(experiment.dynamicFillTime
                             ? DynamicFillMs(at_.model, experiment, segment.nonFillMs, ions.back().enteringCps)
                             : experiment.fixedFillTimeMs);
        intensity.emplace_back(segment.grid.count, 0);
    }
    for (int scan = 0; scan < experiment.scansToSum; ++scan)
        for (std::size_t i = 0; i < segments_.size(); ++i)
            ScanOnce(segments_[i], ions[i], fillMs[i], errorDa, intensity[i]);
    for (std::size_t i = 0; i < segments_.size(); ++i)
        AppendPoints(segments_[i].grid, intensity[i], record);
}

void TrapScan::ScanOnce(const Segment& segment, const Ions& ions, double fillMs, double calibrationErrorDa,
                        std::vector<double>& intensity) {
    const double spray = at_.spray.Advance((segment.nonFillMs + fillMs) / 1000);
    const TrapFill fill = FillTrap(at_.model, at_.experiment, segment.nonFillMs, fillMs, ions.enteringCps * spray);
    const PeakShape shape(PeakFwhmDa(at_.model, at_.experiment.scanRate) * fill.broadening, at_.model.rightToLeftSigma);
    double errorDa = calibrationErrorDa + fill.shiftDa;
    if (at_.context.noiseLevel > 0) errorDa += at_.context.noiseLevel * at_.model.scanJitterDa * at_.random.Normal();
    const double ionsPerCps = fill.ionsPerCps * spray;
    counts_.assign(segment.grid.count, 0);
    for (const IonPeak& peak : ions.peaks)
        AddPeak(counts_, segment.grid, shape, normal_, peak.mz + errorDa, peak.cps * ionsPerCps);
    if (at_.context.countingStatistics)
        Count(segment, shape, errorDa, ionsPerCps);
    else
        AddBackground(segment, shape, errorDa, ionsPerCps);
    for (std::size_t bin = 0; bin < segment.grid.count; ++bin)
        if (counts_[bin] > 0)
            intensity[bin] +=
                WithDeadTime(counts_[bin] / segment.dwellS, at_.model.deadTimeNs) / at_.experiment.scansToSum;
}

/// Turns the expected counts of the ions into counted ones and places the few of the background and the detector's own.
void TrapScan::Count(const Segment& segment, const PeakShape& shape, double errorDa, double ionsPerCps) {
    for (double& count : counts_)
        if (count > 0) count = at_.random.Poisson(count);
    const auto& cumulative = segment.cumulativeBackground;
    for (double left = at_.random.Poisson(segment.BackgroundCps() * ionsPerCps); left > 0; --left) {
        const double position = at_.random.Uniform() * segment.BackgroundCps();
        const auto found = std::upper_bound(cumulative.begin(), cumulative.end(), position) - cumulative.begin();
        const auto peak = std::min(static_cast<std::size_t>(found), cumulative.size() - 1);
        const double uniform = at_.random.Uniform();
        const double distanceDa = shape.Sample(uniform, at_.random.Normal());
        const std::size_t bin = segment.grid.BinOf(segment.background[peak].mz + errorDa + distanceDa);
        if (bin < segment.grid.count) ++counts_[bin];
    }
    const double scanS = static_cast<double>(segment.grid.count) * segment.dwellS;
    for (double left = at_.random.Poisson(at_.model.darkCps * scanS); left > 0; --left) {
        const double position = at_.random.Uniform() * static_cast<double>(segment.grid.count);
        ++counts_[std::min(static_cast<std::size_t>(position), segment.grid.count - 1)];
    }
}

void TrapScan::AddBackground(const Segment& segment, const PeakShape& shape, double errorDa, double ionsPerCps) {
    for (const IonPeak& peak : segment.background)
        AddPeak(counts_, segment.grid, shape, normal_, peak.mz + errorDa, peak.cps * ionsPerCps);
}

}  // namespace orvanel
