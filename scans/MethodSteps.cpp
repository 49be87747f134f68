// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scans/MethodSteps.h"

#include "support/NumberText.h"

namespace veltra {

ScanRate GetScanRate(RunState& runState, ScanTypeCode scanType, const std::string& strScanRate) {
    const auto helper = runState.host.CreateInstrumentHelper();
    return {support::LeadingNumber(strScanRate),
            Finite(Required(helper).GetStepSizeForScanRate(runState.InstrumentModelCode, static_cast<int>(scanType),
                                                           strScanRate))};
}

void SetScanRateAndDwellTime(clsAcquire& acquire, const ScanRate& scanRate) {
    acquire.Step4a_SetScanRate(scanRate.rate);
    acquire.Step4b_SetDwellTime(scanRate.DwellTimeMs());
}

void SetPrecursorParams(clsAcquire& acquire, const RunState& runState) {
    const auto& results = *runState.results;
    acquire.Step4c_SetCompoundParam("DP", results.DP.Current);
    acquire.Step4c_SetCompoundParam("EP", results.EP.Current);
    if (runState.EPAndCEPSupported) acquire.Step4c_SetCompoundParam("CEP", results.CEP.Current);
}

void SetCompoundParams(clsAcquire& acquire, const RunState& runState, float ce) {
    SetPrecursorParams(acquire, runState);
    acquire.Step4c_SetCompoundParam("CE", ce);
    acquire.Step4c_SetCompoundParam("AF2", runState.results->AF2.Current);
    acquire.Step4c_SetCompoundParam("CES", 0);
}

}  // namespace veltra
