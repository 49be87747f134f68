// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/InstrumentModel.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "orvanel/FileFailure.h"
#include "orvanel/instrument/InstrumentErrors.h"
#include "orvanel/instrument/StrictIni.h"
#include "ports/HostError.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {
namespace {

constexpr Limits anyMz{0.1, 100000};
constexpr std::size_t maximumModes = 100;

/// A design value: where it stands in the file, what is allowed, and where it goes. Its default is the model's own.
struct DesignValue {
    const char* section;
    const char* key;
    Limits allowed;
    double InstrumentModel::*member;
};

constexpr Limits timeMs{0, 1e6};
constexpr Limits share{0, 1};
constexpr Limits factor{1e-6, 1000};
constexpr Limits volts{-1000, 1000};
constexpr Limits width{1e-4, 1000};

const std::array designValues = {
    DesignValue{"Quadrupole", "FloorReachDa", {0, 100}, &InstrumentModel::q1FloorReachDa},
    DesignValue{"Timing", "PauseMs", timeMs, &InstrumentModel::pauseMs},
    DesignValue{"Timing", "CoolMs", timeMs, &InstrumentModel::coolMs},
    DesignValue{"Timing", "EmptyMs", timeMs, &InstrumentModel::emptyMs},
    DesignValue{"Timing", "IsolateMs", timeMs, &InstrumentModel::isolateMs},
    DesignValue{"Timing", "ExcitationTimeMs", timeMs, &InstrumentModel::excitationTimeMs},
    DesignValue{"Timing", "StartMs", timeMs, &InstrumentModel::startMs},
    DesignValue{"Timing", "EquilibrationMs", timeMs, &InstrumentModel::equilibrationMs},
    DesignValue{"Timing", "PolaritySwitchMs", timeMs, &InstrumentModel::polaritySwitchMs},
    DesignValue{"Trap", "FwhmAt1000DaPerS", {0.01, 10}, &InstrumentModel::fwhmAt1000DaPerS},
    DesignValue{"Trap", "FwhmExponent", {0, 2}, &InstrumentModel::fwhmExponent},
    DesignValue{"Trap", "RightToLeftSigma", {0.2, 5}, &InstrumentModel::rightToLeftSigma},
    DesignValue{"Trap", "CapacityIons", {1, 1e12}, &InstrumentModel::trapCapacity},
    DesignValue{"Trap", "SpaceChargeIonsAt1000", {1, 1e12}, &InstrumentModel::spaceChargeIonsAt1000},
    DesignValue{"Trap", "SpaceChargeShiftDa", {0, 10}, &InstrumentModel::spaceChargeShiftDa},
    DesignValue{"Trap", "DynamicFillShare", {1e-6, 10}, &InstrumentModel::dynamicFillShare},
    DesignValue{"Trap", "MinimumFillMs", {1e-4, 1000}, &InstrumentModel::minimumFillMs},
    DesignValue{"Trap", "Q0TrappingGain", {0, 100}, &InstrumentModel::q0TrappingGain},
    DesignValue{"Trap", "Q0TrappingWindowMs", timeMs, &InstrumentModel::q0TrappingWindowMs},
    DesignValue{"Trap", "Q0TrappingMaximum", {1, 1000}, &InstrumentModel::q0TrappingMaximum},
    DesignValue{"Detector", "DeadTimeNs", {0, 1e6}, &InstrumentModel::deadTimeNs},
    DesignValue{"Optics", "EpOptimum", volts, &InstrumentModel::epOptimum},
    DesignValue{"Optics", "EpWidth", width, &InstrumentModel::epWidth},
    DesignValue{"Optics", "CepOffset", volts, &InstrumentModel::cepOffset},
    DesignValue{"Optics", "CepSlope", {-10, 10}, &InstrumentModel::cepSlope},
    DesignValue{"Optics", "CepWidthOffset", width, &InstrumentModel::cepWidthOffset},
    DesignValue{"Optics", "CepWidthSlope", {0, 10}, &InstrumentModel::cepWidthSlope},
    DesignValue{"Optics", "CepLowSideFactor", factor, &InstrumentModel::cepLowSideFactor},
    DesignValue{"CollisionCell", "MinimumCollisionEnergy", {0, 1000}, &InstrumentModel::minimumCollisionEnergy},
    DesignValue{"Excitation", "IsolationWidthDa", {0.1, 100}, &InstrumentModel::trapIsolationWidthDa},
    DesignValue{"Excitation", "IsolationSigmaDa", {0.001, 10}, &InstrumentModel::trapIsolationSigmaDa},
    DesignValue{"Excitation", "Af2Scale", factor, &InstrumentModel::af2Scale},
    DesignValue{"Excitation", "Af2At300", factor, &InstrumentModel::af2At300},
    DesignValue{"Excitation", "Af2Exponent", {0, 5}, &InstrumentModel::af2Exponent},
    DesignValue{"Excitation", "Af2Width", {0.001, 10}, &InstrumentModel::af2Width},
    DesignValue{"Excitation", "Af2Ejection", {0.1, 100}, &InstrumentModel::af2Ejection},
    DesignValue{"Excitation", "Af2EjectionWidth", {0.01, 100}, &InstrumentModel::af2EjectionWidth},
    DesignValue{"Excitation", "LowMassCutoff", share, &InstrumentModel::lowMassCutoff},
    DesignValue{"Excitation", "OffResonanceDa", {0.001, 100}, &InstrumentModel::offResonanceDa},
    DesignValue{"MassCalibration", "OffsetSigmaDa", {0, 10}, &InstrumentModel::massOffsetSigmaDa},
    DesignValue{"MassCalibration", "DriftDaPerHour", {-10, 10}, &InstrumentModel::massDriftDaPerHour},
    DesignValue{"MassCalibration", "ScanJitterDa", {0, 10}, &InstrumentModel::scanJitterDa},
    DesignValue{"Noise", "ChemicalCps", {0, 1e9}, &InstrumentModel::chemicalNoiseCps},
    DesignValue{"Noise", "ChemicalDecayDa", {1, 1e6}, &InstrumentModel::chemicalNoiseDecayDa},
    DesignValue{"Noise", "ChemicalSpacingDa", {0.1, 100}, &InstrumentModel::chemicalNoiseSpacingDa},
    DesignValue{"Noise", "ChemicalSpread", {0, 5}, &InstrumentModel::chemicalNoiseSpread},
    DesignValue{"Noise", "ChemicalMs2Factor", share, &InstrumentModel::chemicalNoiseMs2Factor},
    DesignValue{"Noise", "ChemicalMs3Factor", share, &InstrumentModel::chemicalNoiseMs3Factor},
    DesignValue{"Noise", "DarkCps", {0, 1e6}, &InstrumentModel::darkCps},
    DesignValue{"Noise", "SprayRsd", {0, 2}, &InstrumentModel::sprayRsd},
    DesignValue{"Noise", "SprayCorrelationS", {0.001, 1e6}, &InstrumentModel::sprayCorrelationS},
};

void ReadIdentity(StrictIni& file, InstrumentModel& model) {
    model.code = static_cast<std::int32_t>(file.RequiredNumber("Model", "Code", {1, 9999}));
    file.WholeNumber("Model", "Code", {1, 9999}, 1);
    model.name = file.RequiredText("Model", "Name");
    model.linearIonTrap = file.WholeNumber("Model", "LinearIonTrap", {0, 1}, 1) == 1;
    model.hasCep = file.WholeNumber("Model", "Cep", {0, 1}, 1) == 1;
    file.RequiredText("Model", "OperatingModes");
    const auto modes = *file.Find("Model", "OperatingModes");
    const std::size_t count = support::Split(modes.value, ',').size();
    if (count > maximumModes)
        file.Fail(file.Required("Model"), modes, "has more than " + std::to_string(maximumModes) + " operating modes");
    for (const double mode : file.Numbers(file.Required("Model"), modes, count, {0, 99})) {
        if (mode != std::floor(mode)) file.Fail(file.Required("Model"), modes, "an operating mode is a whole number");
        model.operatingModes.push_back(static_cast<int>(mode));
    }
}

Limits ReadLimits(StrictIni& file, const std::string& section, const std::string& key, const Limits& allowed) {
    file.RequiredText(section, key);
    const auto entry = *file.Find(section, key);
    const auto numbers = file.Numbers(file.Required(section), entry, 2, allowed);
    if (numbers[0] >= numbers[1])
        file.Fail(file.Required(section), entry, "the lower limit must be below the upper one");
    return {numbers[0], numbers[1]};
}

void ReadQ1Windows(StrictIni& file, InstrumentModel& model) {
    const char* const names[] = {"Low", "Unit", "High", "Open"};
    for (std::size_t i = 0; i < 4; ++i) {
        file.RequiredText("Quadrupole", names[i]);
        const auto entry = *file.Find("Quadrupole", names[i]);
        const auto numbers = file.Numbers(file.Required("Quadrupole"), entry, 4, {0, 1000});
        if (numbers[0] < 0.01 || numbers[1] < 0.001 || numbers[2] > 1 || numbers[3] <= 0 || numbers[3] > 100)
            file.Fail(
                file.Required("Quadrupole"), entry,
                "width (0.01 or more), edge (0.001 or more), floor (at most 1), transmission (above 0, at most 100)");
        model.q1Windows[i] = {numbers[0], numbers[1], numbers[2], numbers[3]};
    }
}

void ReadScanRates(StrictIni& file, InstrumentModel& model) {
    const std::pair<const char*, int> sections[] = {
        {"EnhancedProductIon", 11}, {"EnhancedResolution", 12}, {"Ms3", 13}};
    for (const auto& [name, scanType] : sections) {
        if (!model.linearIonTrap) continue;
        const auto& section = file.Required(name);
        auto& steps = model.scanRates[scanType];
        for (const auto& entry : section.entries) {
            const auto rate = support::ParseDouble(entry.key);
            if (!rate || *rate < 1 || *rate > 1e6) file.Fail(section, entry, "a key is a scan rate, 1 to 1000000 Da/s");
            if (FindScanRate(model, scanType, *rate) != nullptr)
                file.Fail(section, entry, "this rate is there already");
            steps.push_back({entry.key, *rate, file.Numbers(section, entry, 1, {0.001, 10})[0]});
        }
        std::stable_sort(steps.begin(), steps.end(), [](const auto& a, const auto& b) { return a.rate < b.rate; });
    }
}

void ReadParameterLimits(StrictIni& file, InstrumentModel& model) {
    for (const auto& entry : file.Required("ParameterLimits").entries)
        model.parameterLimits[entry.key] = ReadLimits(file, "ParameterLimits", entry.key, {0, 10000});
    for (const char* const needed : {"DP", "EP", "CE", "CES"})
        if (model.parameterLimits.count(needed) == 0) file.RequiredText("ParameterLimits", needed);
    if (model.linearIonTrap) file.RequiredText("ParameterLimits", "AF2");
    if (model.hasCep) file.RequiredText("ParameterLimits", "CEP");
}

}  // namespace

InstrumentModel LoadInstrumentModel(const std::string& path, const support::Disk& disk) {
    StrictIni file(path, modelFileFaulty, disk);
    InstrumentModel model;
    ReadIdentity(file, model);
    model.quadrupoleMz = ReadLimits(file, "Quadrupole", "Mz", anyMz);
    ReadQ1Windows(file, model);
    if (model.linearIonTrap) model.trapMz = ReadLimits(file, "Trap", "Mz", anyMz);
    ReadScanRates(file, model);
    ReadParameterLimits(file, model);
    for (const DesignValue& value : designValues)
        model.*value.member = file.Number(value.section, value.key, value.allowed, model.*value.member);
    file.RefuseUnread();
    return model;
}

std::map<std::int32_t, InstrumentModel> LoadInstrumentModels(const std::string& folder, const support::Disk& disk) {
    std::map<std::int32_t, InstrumentModel> models;
    for (const std::string& name : AsHostError(modelFileFaulty, [&] { return support::FilesIn(folder, disk); })) {
        if (!support::IsFileOfKind(name, ".ini")) continue;
        const std::string path = support::JoinPath(folder, name);
        InstrumentModel model = LoadInstrumentModel(path, disk);
        const std::int32_t code = model.code;
        if (!models.emplace(code, std::move(model)).second)
            throw ports::HostError(modelFileFaulty, path + ": Another model of this folder has the code " +
                                                        std::to_string(code) + " already");
    }
    if (models.empty()) throw ports::HostError(modelFileFaulty, folder + ": There is no model file (*.ini)");
    return models;
}

const ScanRateStep* FindScanRate(const InstrumentModel& model, int scanType, const std::string& rateText) {
    const auto steps = model.scanRates.find(scanType);
    if (steps == model.scanRates.end()) return nullptr;
    for (const ScanRateStep& step : steps->second)
        if (step.rateText == rateText) return &step;
    return nullptr;
}

const ScanRateStep* FindScanRate(const InstrumentModel& model, int scanType, double rate) {
    const auto steps = model.scanRates.find(scanType);
    if (steps == model.scanRates.end()) return nullptr;
    for (const ScanRateStep& step : steps->second)
        if (step.rate == rate) return &step;
    return nullptr;
}

}  // namespace orvanel
