// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvanel {

struct Parameter {
    std::string id;
    float value = 0;
    friend bool operator==(const Parameter&, const Parameter&) = default;
};

/// A parameter's value by its exact id, or nothing.
inline std::optional<float> FindParameter(const std::vector<Parameter>& table, const std::string& id) {
    for (const auto& parameter : table)
        if (parameter.id == id) return parameter.value;
    return std::nullopt;
}

/// Scan types as the host numbers them.
enum class ScanType {
    Q1MultipleIon = 1,
    MultipleReaction = 4,
    EnhancedProductIon = 11,
    EnhancedResolution = 12,
    Ms3 = 13
};

/// What start, stop and step mean depends on the scan type: a range in Da; Q1, 0, Q3 of a transition; mass, mass, 0.
struct MassRangeRecord {
    double start = 0;
    double stop = 0;
    double step = 0;
    double dwellTimeMs = 0;
    std::vector<Parameter> compoundParameters;  ///< "DP", "EP", "CEP", "CE", "CES", "AF2"
};

struct ExperimentRecord {
    int scanType = static_cast<int>(ScanType::EnhancedResolution);
    int scansToSum = 1;
    int polarity = 0;            ///< 0 positive, 1 negative
    int q1Resolution = 1;        ///< 0 low, 1 unit, 2 high, 3 open
    double firstPrecursor = 0;   ///< m/z in Da, 0 for none
    double secondPrecursor = 0;  ///< m/z in Da, 0 for none
    double scanRate = 1000;      ///< Da/s
    double fixedFillTimeMs = 20;
    bool q0Trapping = false;
    bool dynamicFillTime = true;
    double excitationTimeMs = 75;
    std::vector<Parameter> sourceGas;
    std::vector<Parameter> newRangeParameters;  ///< the table that a range added next starts with
    std::vector<MassRangeRecord> massRanges;
};

struct RampRecord {
    std::string id;
    float start = 0;
    float stop = 0;
    float step = 0;
};

struct PeriodRecord {
    int cycles = 1;
    std::optional<RampRecord> ramp;
    std::vector<ExperimentRecord> experiments;
};

struct MassSpecRecord {
    int operatingMode = 0;
    std::vector<PeriodRecord> periods;
};

/// One device's part of a method. Devices other than the mass spectrometer keep their settings as plain texts.
struct DeviceRecord {
    std::string kind;  ///< "MassSpectrometer", or another device's kind, such as "SyringePump"
    std::string name;
    std::optional<MassSpecRecord> massSpec;  ///< set exactly for the kind "MassSpectrometer"
    struct Setting {
        std::string name;
        std::string value;
    };
    std::vector<Setting> settings;
};

/// A ".xmt" acquisition method in memory.
struct MethodDocument {
    std::string comment;
    std::vector<DeviceRecord> devices;

    /// The first mass-spectrometer part, or null.
    const MassSpecRecord* MassSpec() const {
        for (const auto& device : devices)
            if (device.massSpec) return &*device.massSpec;
        return nullptr;
    }
};

}  // namespace orvanel
