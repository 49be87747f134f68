#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ports {

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
};

}  // namespace ports
