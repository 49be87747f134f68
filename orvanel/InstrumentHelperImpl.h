// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <map>
#include <optional>

#include "orvanel/instrument/InstrumentModel.h"
#include "ports/InstrumentHelper.h"

namespace orvanel {

/// What is known of the instrument models.
class InstrumentHelperImpl : public ports::InstrumentHelper {
  public:
    /// @param connectedModel the connected instrument's code, or nothing when the host is not running
    /// @param models gives all models by code; may throw ports::HostError
    InstrumentHelperImpl(std::optional<std::int32_t> connectedModel,
                         std::function<const std::map<std::int32_t, InstrumentModel>&()> models)
        : connectedModel_(connectedModel), models_(std::move(models)) {}

    std::int32_t GetInstrumentModelCode() override;
    bool IsLinearIonTrap(std::int32_t modelCode) override;
    double GetStepSizeForScanRate(std::int32_t modelCode, int scanType, const std::string& scanRate) override;
    std::vector<std::string> HostGetScanRates(std::int32_t modelCode, int scanType) override;
    std::string HostGetAcquisitionProblem(std::int32_t modelCode, const ports::PlannedAcquisition& plan) override;

  private:
    const InstrumentModel& Model(std::int32_t modelCode) const;

    std::optional<std::int32_t> connectedModel_;
    std::function<const std::map<std::int32_t, InstrumentModel>&()> models_;
};

/// @throws ports::HostError when the code is none of the models'; the text lists them
const InstrumentModel& FindModel(const std::map<std::int32_t, InstrumentModel>& models, std::int32_t modelCode);

}  // namespace orvanel
