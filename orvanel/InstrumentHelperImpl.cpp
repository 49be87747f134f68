// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/InstrumentHelperImpl.h"

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/instrument/Timing.h"
#include "orvanel/methods/PlanCheck.h"
#include "orvanel/methods/Validation.h"
#include "ports/HostError.h"

namespace orvanel {

const InstrumentModel& FindModel(const std::map<std::int32_t, InstrumentModel>& models, std::int32_t modelCode) {
    if (const auto found = models.find(modelCode); found != models.end()) return found->second;
    std::string known;
    for (const auto& [code, model] : models)
        known += (known.empty() ? "" : ", ") + std::to_string(code);
    throw ports::HostError(errorNumber::unknownModel, "Instrument model " + std::to_string(modelCode) +
                                                          " is not known, there are " +
                                                          (known.empty() ? "none" : known));
}

std::int32_t InstrumentHelperImpl::GetInstrumentModelCode() {
    if (!connectedModel_)
        throw ports::HostError(errorNumber::hostNotRunning,
                               "Orvanel is not running, so that no instrument is connected, start it first");
    return *connectedModel_;
}

bool InstrumentHelperImpl::IsLinearIonTrap(std::int32_t modelCode) {
    return Model(modelCode).linearIonTrap;
}

double InstrumentHelperImpl::GetStepSizeForScanRate(std::int32_t modelCode, int scanType, const std::string& scanRate) {
    const auto offered = HostGetScanRates(modelCode, scanType);
    if (const auto* step = FindScanRate(Model(modelCode), scanType, scanRate)) return step->stepDa;
    std::string list;
    for (const auto& rate : offered)
        list += (list.empty() ? "" : ", ") + rate;
    throw ports::HostError(errorNumber::unknownScanRate, "Scan rate \"" + scanRate + "\" is not offered by model " +
                                                             std::to_string(modelCode) + " for scan type " +
                                                             std::to_string(scanType) + ", which has " + list);
}

std::vector<std::string> InstrumentHelperImpl::HostGetScanRates(std::int32_t modelCode, int scanType) {
    const InstrumentModel& model = Model(modelCode);
    const auto found = model.scanRates.find(scanType);
    if (found == model.scanRates.end())
        throw ports::HostError(
            errorNumber::unknownScanRate,
            "Model " + std::to_string(modelCode) + " has no scan rates for scan type " + std::to_string(scanType));
    std::vector<std::string> rates;
    for (const auto& step : found->second)
        rates.push_back(step.rateText);
    return rates;
}

std::string InstrumentHelperImpl::HostGetAcquisitionProblem(std::int32_t modelCode,
                                                            const ports::PlannedAcquisition& plan) {
    const InstrumentModel& model = Model(modelCode);
    try {
        CheckScanType(model, plan.scanType);
        if (IsTrapScan(plan.scanType)) GetStepSizeForScanRate(modelCode, plan.scanType, plan.scanRate);
        CheckPlan(model, plan);
        return {};
    } catch (const ports::HostError& error) {
        return error.what();
    }
}

const InstrumentModel& InstrumentHelperImpl::Model(std::int32_t modelCode) const {
    return FindModel(models_(), modelCode);
}

}  // namespace orvanel
