// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "orvanel/data/AcquiredData.h"

/// A small acquisition without ramp: so many cycles of an enhanced resolution scan with a triangle at m/z 100.
inline orvanel::AcquiredData SampleScan(int cycles) {
    orvanel::AcquiredData data;
    data.startTimestamp = "2026-01-02T03:04:05Z";
    data.methodName = "Start.xmt";
    data.modelCode = 27;
    data.modelName = "Model \"27\" <&>";
    data.seed = 18446744073709551615ULL;
    data.compounds = {"reserpine", "caffeine"};
    data.experiment.scanType = 12;
    data.experiment.scansToSum = 3;
    data.experiment.massRanges = {{99, 101, 0.25, 0.25, {}}};
    for (int k = 1; k <= cycles; ++k) {
        orvanel::CycleRecord cycle;
        cycle.cycle = k;
        cycle.timeMinutes = 0.1 * k / 3;
        cycle.applied = {{{"DP", 45.5F}, {"EP", 10}, {"CE", 0.35F}, {"AF2", 0}}};
        cycle.mz = {99.5, 99.75, 100, 100.25, 100.5};
        cycle.intensity = {0, 10.0 * k, 20.0 * k, 10.0 * k, 0};
        data.cycles.push_back(cycle);
    }
    return data;
}

/// The same as a scan with a ramp of the parameter from start in steps.
inline orvanel::AcquiredData SampleRamp(int scanType, const std::string& id, float start, float step, int cycles) {
    auto data = SampleScan(cycles);
    data.experiment.scanType = scanType;
    data.experiment.firstPrecursor = 609.28;
    data.experiment.secondPrecursor = scanType == 13 ? 397.21 : 0;
    data.ramp = orvanel::RampRecord{id, start, start + step * static_cast<float>(cycles - 1), step};
    for (auto& cycle : data.cycles)
        cycle.rampValue = double{start} + (cycle.cycle - 1) * double{step};
    return data;
}

/// A ramp of CE over transitions (scan type 4) or of DP over single masses (scan type 1).
inline orvanel::AcquiredData SampleTraces(int scanType, int cycles) {
    auto data = SampleRamp(scanType, scanType == 4 ? "CE" : "DP", 10, 2, cycles);
    data.experiment.massRanges.resize(3);
    for (auto& cycle : data.cycles) {
        cycle.mz.clear();
        cycle.intensity.clear();
        cycle.applied.resize(3, cycle.applied[0]);
    }
    for (int m = 0; m < 3; ++m) {
        orvanel::MassTrace trace{609.28, scanType == 4 ? 200.5 + m : 0, 50, {}};
        if (scanType == 1) trace.q1 += m;
        for (int k = 0; k < cycles; ++k)
            trace.intensity.push_back(100.0 * (m + 1) + k);
        data.traces.push_back(trace);
    }
    return data;
}
