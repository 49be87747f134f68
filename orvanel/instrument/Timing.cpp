// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Timing.h"

#include "orvanel/instrument/Simulator.h"

namespace orvanel {

double SegmentMs(const InstrumentModel& model, const ExperimentRecord& experiment, const MassRangeRecord& range) {
    double timeMs = experiment.fixedFillTimeMs + model.coolMs +
                    (range.stop - range.start) / experiment.scanRate * 1000 + model.emptyMs;
    if (experiment.scanType == static_cast<int>(ScanType::Ms3)) timeMs += model.isolateMs + experiment.excitationTimeMs;
    return timeMs;
}

double ScanMs(const InstrumentModel& model, const ExperimentRecord& experiment) {
    if (IsTrapScan(experiment.scanType)) {
        double timeMs = model.pauseMs;
        for (const auto& range : experiment.massRanges)
            timeMs += SegmentMs(model, experiment, range);
        return timeMs;
    }
    double timeMs = 0;
    for (const auto& range : experiment.massRanges)
        timeMs += range.dwellTimeMs + model.pauseMs;
    return timeMs;
}

double CycleMs(const InstrumentModel& model, const ExperimentRecord& experiment) {
    return ScanMs(model, experiment) * experiment.scansToSum;
}

double PreparationMs(const MassSpecRecord& method, const InstrumentModel& model) {
    // Between acquisitions the instrument stands in positive polarity.
    const bool switches = !method.periods.empty() && !method.periods[0].experiments.empty() &&
                          method.periods[0].experiments[0].polarity == 1;
    return model.startMs + model.equilibrationMs + (switches ? model.polaritySwitchMs : 0);
}

double ExpectedDurationMs(const MassSpecRecord& method, const InstrumentModel& model) {
    double timeMs = PreparationMs(method, model);
    if (!method.periods.empty() && !method.periods[0].experiments.empty())
        timeMs += method.periods[0].cycles * CycleMs(model, method.periods[0].experiments[0]);
    return timeMs;
}

}  // namespace orvanel
