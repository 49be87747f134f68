// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "host/InstrumentModels.h"
#include "host/RunState.h"
#include "host/clsAcquire.h"

namespace veltra {

/// A compound parameter's ramp, in positive-polarity values.
struct ParameterRamp {
    std::string id;
    float start = 0;
    float stop = 0;
    float step = 0;
};

/// A trap scan's rate with the step that the instrument takes at it.
struct ScanRate {
    double rate = 0;    ///< Da/s
    double stepDa = 0;  ///< Da

    double DwellTimeMs() const { return stepDa / rate * 1000.0; }
};

/// @param strScanRate the settings' text: the number at its start is the rate
/// @throws ports::HostError when the host knows no step for it
ScanRate GetScanRate(RunState& runState, ScanTypeCode scanType, const std::string& strScanRate);

void SetScanRateAndDwellTime(clsAcquire& acquire, const ScanRate& scanRate);

/// DP, EP and, where the model has it, CEP at their current values.
void SetPrecursorParams(clsAcquire& acquire, const RunState& runState);
/// SetPrecursorParams, then the given CE, AF2 at its current value and no CE spread.
void SetCompoundParams(clsAcquire& acquire, const RunState& runState, float ce);

}  // namespace veltra
