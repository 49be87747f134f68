// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvanel/import/Adduct.h"
#include "orvanel/import/SpectrumRecord.h"

namespace orvanel {

/// What a unit of energy of most libraries is worth here. Their spectra are from quadrupole time-of-flight and orbital
/// traps' collision cells; a triple quadrupole breaks the same ion at 0.5 to 0.8 of that.
inline constexpr double defaultEnergyScale = 0.65;

/// 1 for the spectra of a triple quadrupole ("LC-ESI-QQ", "QQQ", "triple quadrupole"), else the default.
double DefaultEnergyScale(const std::string& instrumentType);

/// A product-ion spectrum at one collision energy.
struct MeasuredSpectrum {
    SpectrumRecord record;
    std::string statedEnergy;  ///< as the record has it
    double scale = 1;          ///< from the source's volts to ours
    double volts = 0;          ///< collision energy here
};

struct LeftOutRecord {
    std::string path;
    int line = 0;
    std::string reason;
};

/// One ion with its spectra by rising collision energy.
struct MeasuredIon {
    std::string title;
    std::string adduct;  ///< as the records have it
    Composition composition;
    int charge = 1;
    bool negative = false;
    double mz = 0;  ///< monoisotopic, from the formula
    std::vector<MeasuredSpectrum> spectra;
    std::vector<LeftOutRecord> leftOut;
};

/// Judges records: those that are no product-ion spectrum at one energy are left out with the reason, those that
/// contradict themselves or each other are an error.
/// @param energyScale replaces the default
/// @throws ports::HostError naming file and line: damaged values, different ions, fewer than two energies
MeasuredIon JudgeRecords(const std::vector<SpectrumRecord>& records, std::optional<double> energyScale,
                         ports::ElementTable& elements);

}  // namespace orvanel
