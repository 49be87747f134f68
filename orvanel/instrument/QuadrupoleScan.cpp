// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/QuadrupoleScan.h"

#include <algorithm>
#include <cmath>

#include "orvanel/instrument/Detector.h"
#include "orvanel/instrument/Transmission.h"

namespace orvanel {
std::vector<double> QuadrupoleScan::Cycle(const ParameterTables& parameters) {
    const auto& ranges = at_.experiment.massRanges;
    std::vector<double> expected;
    for (std::size_t i = 0; i < ranges.size(); ++i)
        expected.push_back(ExpectedCps(ranges[i], parameters[i]));
    std::vector<double> intensity(ranges.size(), 0);
    for (int scan = 0; scan < at_.experiment.scansToSum; ++scan)
        for (std::size_t i = 0; i < ranges.size(); ++i) {
            const double spray = at_.spray.Advance((ranges[i].dwellTimeMs + at_.model.pauseMs) / 1000);
            intensity[i] += Counted(expected[i] * spray, ranges[i].dwellTimeMs / 1000) / at_.experiment.scansToSum;
        }
    return intensity;
}

double QuadrupoleScan::ExpectedCps(const MassRangeRecord& range, const std::vector<Parameter>& parameters) const {
    const InstrumentModel& model = at_.model;
    const Voltages voltages = VoltagesOf(parameters, model);
    const Q1Window& q1 = at_.FirstQuadrupole();
    const IonBeam passed =
        Isolated(SprayedBeam(at_.sources, model, at_.experiment.polarity, voltages), model, q1, range.start);
    if (at_.experiment.scanType == static_cast<int>(ScanType::Q1MultipleIon))
        return TotalCps(passed) + BackgroundThrough(q1, range.start);
    const Q1Window& q3 = at_.ThirdQuadrupole();
    const IonBeam products = Isolated(Dissociated(passed, model, voltages.ce, voltages.ces), model, q3, range.step);
    return TotalCps(products) + model.chemicalNoiseMs2Factor * BackgroundThrough(q3, range.step);
}

double QuadrupoleScan::BackgroundThrough(const Q1Window& window, double centreMz) const {
    const double reachDa = std::max(window.widthDa / 2 + 6 * window.sigmaDa, at_.model.q1FloorReachDa);
    const double spacingDa = at_.background.SpacingDa();
    const auto first = static_cast<std::int64_t>(std::max(1.0, std::ceil((centreMz - reachDa) / spacingDa)));
    double sum = 0;
    for (std::int64_t peak = first; at_.background.MzOf(peak) <= centreMz + reachDa; ++peak)
        sum += at_.background.RateOf(peak) *
               QuadrupoleTransmission(at_.model, window, at_.background.MzOf(peak) - centreMz);
    return sum;
}

double QuadrupoleScan::Counted(double expectedCps, double dwellS) {
    double cps = expectedCps;
    if (at_.context.countingStatistics) cps = at_.random.Poisson((expectedCps + at_.model.darkCps) * dwellS) / dwellS;
    return WithDeadTime(cps, at_.model.deadTimeNs);
}

}  // namespace orvanel
