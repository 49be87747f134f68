// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ports {

/// An acquisition that is planned, in positive-polarity voltages, of which the host can say whether it would refuse it.
struct PlannedAcquisition {
    struct Parameter {
        std::string id;
        float value = 0;
    };
    struct Ramp {
        std::string id;
        float start = 0;
        float stop = 0;
        float step = 0;
    };

    int scanType = 0;
    std::string scanRate = {};        ///< of a trap scan, as GetStepSizeForScanRate takes it
    double start = 0, stop = 0;       ///< as for HostSetMassRange, which gets the step that belongs to the scan rate
    double step = 0;                  ///< as for HostSetMassRange, outside the trap
    bool optimizesMassRange = false;  ///< HostOptimizeMassRange follows
    double dwellTimeMs = 0;           ///< outside the trap
    double fixedFillTimeMs = 0;       ///< 0 for a dynamic fill time
    double firstPrecursor = 0;        ///< m/z in Da; 0 for none
    double secondPrecursor = 0;       ///< m/z in Da; 0 for none
    int scansToSum = 1;
    std::int32_t cycles = 1;
    std::vector<Parameter> parameters = {};
    std::optional<Ramp> ramp = {};
};

/// What the host knows of instrument models. The caller owns the handle. Operations throw HostError on failure, an
/// unknown model code, scan type or scan rate included.
class InstrumentHelper {
  public:
    virtual ~InstrumentHelper() = default;

    /// @return the model code of the connected instrument
    virtual std::int32_t GetInstrumentModelCode() = 0;
    virtual bool IsLinearIonTrap(std::int32_t modelCode) = 0;
    /// @param scanType 11, 12 or 13
    /// @param scanRate the rate's text as HostGetScanRates gives it, in Da/s
    /// @return the step in Da
    virtual double GetStepSizeForScanRate(std::int32_t modelCode, int scanType, const std::string& scanRate) = 0;
    /// @return the offered scan rates in Da/s as texts, slowest first
    virtual std::vector<std::string> HostGetScanRates(std::int32_t modelCode, int scanType) = 0;
    /// Tells beforehand what building or submitting such a method would be refused for. Nothing is built.
    /// @return the reason in one sentence without full stop, with what is allowed; empty when nothing is known against
    /// it
    virtual std::string HostGetAcquisitionProblem(std::int32_t modelCode, const PlannedAcquisition& plan) = 0;
};

}  // namespace ports
