// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/instrument/Simulator.h"
#include "ports/HostError.h"

namespace orvanel::bench {

inline const std::string share = VELTRA_APP_LOCATION;

inline std::unique_ptr<ports::ElementTable> Elements() {
    return OpenElementTableFile(share + "/bin/QvElements.ini");
}

inline Compound Shipped(const std::string& name) {
    return LoadCompound(share + "/compounds/" + name + ".ini", *Elements());
}

inline InstrumentModel LinearTrap() {
    return LoadInstrumentModel(share + "/models/orvanel_lit.ini");
}

inline AcquisitionContext Silent() {
    AcquisitionContext context;
    context.noiseLevel = 0;
    context.countingStatistics = false;
    return context;
}

/// A method of one experiment with one mass range and voltages near a compound's best.
inline MassSpecRecord Method(ScanType scanType, const Compound& compound, MassRangeRecord range, float ce) {
    const float sign = compound.polarity == 1 ? -1.0F : 1.0F;
    range.compoundParameters = {{"DP", sign * static_cast<float>((compound.dpLow + compound.dpHigh) / 2)},
                                {"EP", sign * 9},
                                {"CEP", sign * static_cast<float>(8 + 0.033 * compound.Root().mz)},
                                {"CE", sign * ce},
                                {"CES", 0},
                                {"AF2", 0}};
    ExperimentRecord experiment;
    experiment.scanType = static_cast<int>(scanType);
    experiment.scansToSum = 1;
    experiment.polarity = compound.polarity;
    experiment.firstPrecursor = scanType == ScanType::EnhancedResolution ? 0 : compound.Root().mz;
    experiment.massRanges = {range};
    MassSpecRecord method;
    method.periods = {{1, std::nullopt, {experiment}}};
    return method;
}

inline ExperimentRecord& Experiment(MassSpecRecord& method) {
    return method.periods[0].experiments[0];
}

inline void SetRamp(MassSpecRecord& method, const std::string& id, float start, float stop, float step) {
    method.periods[0].ramp = RampRecord{id, start, stop, step};
    method.periods[0].cycles = static_cast<int>(std::lround((stop - start) / step)) + 1;
}

/// Sum of the intensities from low to high, times the step: proportional to ions.
inline double Area(const CycleRecord& cycle, double low, double high) {
    double sum = 0;
    for (std::size_t i = 0; i < cycle.mz.size(); ++i)
        if (cycle.mz[i] >= low && cycle.mz[i] <= high) sum += cycle.intensity[i];
    return sum;
}

/// Centre of mass of the intensities within so many daltons.
inline double CentroidNear(const CycleRecord& cycle, double mz, double reachDa = 1) {
    double sum = 0;
    double moment = 0;
    for (std::size_t i = 0; i < cycle.mz.size(); ++i)
        if (std::fabs(cycle.mz[i] - mz) < reachDa) {
            sum += cycle.intensity[i];
            moment += cycle.intensity[i] * cycle.mz[i];
        }
    return moment / sum;
}

inline double Sum(const std::vector<double>& values) {
    double sum = 0;
    for (const double value : values)
        sum += value;
    return sum;
}

/// The text of the error that an action gives, or nothing.
template <typename Action>
std::string ErrorOf(Action action) {
    try {
        action();
    } catch (const ports::HostError& error) {
        return error.what();
    }
    return "no error";
}

}  // namespace orvanel::bench
