// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "support/Disk.h"

namespace orvanel {

struct ScanRateStep {
    std::string rateText;  ///< Da/s as the host offers it, such as "1000"
    double rate = 0;       ///< Da/s
    double stepDa = 0;
};

struct Limits {
    double minimum = 0;
    double maximum = 0;
    bool Contains(double value) const { return value >= minimum && value <= maximum; }
};

/// How a Q1 resolution setting isolates: instrument-side window, edge, floor and relative transmission.
struct Q1Window {
    double widthDa = 0.7;
    double sigmaDa = 0.08;
    double floor = 0.01;
    double transmission = 1;
};

/// An instrument model, read from a model file and validated on loading. Every physical design value of the instrument
/// stands here, none in code.
struct InstrumentModel {
    std::int32_t code = 0;
    std::string name;
    bool linearIonTrap = true;
    bool hasCep = true;
    Limits quadrupoleMz;                            ///< Da
    Limits trapMz;                                  ///< Da
    std::map<std::string, Limits> parameterLimits;  ///< absolute values by parameter id, "AF2" on the model's scale
    std::map<int, std::vector<ScanRateStep>> scanRates;  ///< by scan type 11, 12, 13; slowest first
    std::vector<int> operatingModes;
    Q1Window q1Windows[4];        ///< low, unit, high, open
    double q1FloorReachDa = 1.6;  ///< the windows' floors hold up to this far from the set mass

    // timing
    double pauseMs = 5;
    double coolMs = 15;
    double emptyMs = 8;
    double isolateMs = 20;
    double excitationTimeMs = 75;
    double startMs = 3000;
    double equilibrationMs = 10000;
    double polaritySwitchMs = 700;

    // trap and detector
    double fwhmAt1000DaPerS = 0.35;
    double fwhmExponent = 0.45;
    double rightToLeftSigma = 1.15;
    double trapCapacity = 1e6;           ///< ions, Nmax
    double spaceChargeIonsAt1000 = 5e4;  ///< ions, Nsc at 1000 Da/s; grows with the square root of the rate
    double spaceChargeShiftDa = 0.1;     ///< at N = Nsc
    double dynamicFillShare = 0.05;      ///< of Nsc
    double minimumFillMs = 0.05;
    double deadTimeNs = 20;
    double q0TrappingGain = 0.7;
    double q0TrappingWindowMs = 200;
    double q0TrappingMaximum = 10;

    // optics
    double epOptimum = 9;
    double epWidth = 5;
    double cepOffset = 8;
    double cepSlope = 0.033;
    double cepWidthOffset = 8;
    double cepWidthSlope = 0.01;
    double cepLowSideFactor = 0.7;

    // collision cell
    double minimumCollisionEnergy = 5;  ///< V; a spread does not reach below

    // excitation
    double trapIsolationWidthDa = 2;     ///< window around the second precursor
    double trapIsolationSigmaDa = 0.15;  ///< of its edges
    double af2Scale = 1;                 ///< 1 for the 0..100 scale, 0.004 for the 0..0.4 scale
    double af2At300 = 25;
    double af2Exponent = 0.7;
    double af2Width = 0.12;       ///< of A50
    double af2Ejection = 2.2;     ///< of A50
    double af2EjectionWidth = 2;  ///< of the excitation's width
    double lowMassCutoff = 0.26;
    double offResonanceDa = 0.7;

    // mass calibration
    double massOffsetSigmaDa = 0.02;
    double massDriftDaPerHour = 0.01;
    double scanJitterDa = 0.01;

    // noise
    double chemicalNoiseCps = 1e3;
    double chemicalNoiseDecayDa = 500;
    double chemicalNoiseSpacingDa = 1.0005;  ///< one peak at every multiple
    double chemicalNoiseSpread = 0.5;        ///< standard deviation of the peaks' natural logarithm
    double chemicalNoiseMs2Factor = 0.01;
    double chemicalNoiseMs3Factor = 1e-4;
    double darkCps = 1;
    double sprayRsd = 0.04;
    double sprayCorrelationS = 2;
};

/// @param path a model file (docs/formats.md)
/// @throws ports::HostError naming file, line and key
InstrumentModel LoadInstrumentModel(const std::string& path, const support::Disk& disk = support::SystemDisk());

/// Every model of a folder by its code. @throws ports::HostError
std::map<std::int32_t, InstrumentModel> LoadInstrumentModels(const std::string& folder,
                                                             const support::Disk& disk = support::SystemDisk());

/// @return the step that belongs to a rate's text, or null when the model does not offer it
const ScanRateStep* FindScanRate(const InstrumentModel& model, int scanType, const std::string& rateText);
const ScanRateStep* FindScanRate(const InstrumentModel& model, int scanType, double rate);

}  // namespace orvanel
