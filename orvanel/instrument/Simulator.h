// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvanel/data/AcquiredData.h"
#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/instrument/faults/FaultSettings.h"
#include "orvanel/methods/MethodDocument.h"

namespace orvanel {

/// What the instrument stands in while it acquires.
struct AcquisitionContext {
    std::uint64_t seed = 1;
    std::uint64_t acquisitionNumber = 1;  ///< counted from 1 since the host started; with the seed it fixes all noise
    double instrumentTimeS = 0;           ///< nominal instrument time at its start, its preparation ahead; for drifts
    double noiseLevel = 1;                ///< factor on spray, chemical noise and mass error; 0 leaves none of them
    bool countingStatistics = true;       ///< false gives expected values: the noise-free signal
    FaultSettings faults;                 ///< those of the spray and the mass scale act whatever the noise level is
};

/// Acquires the first experiment of the method's first period: one CycleRecord a cycle, its scans summed.
/// The same arguments give the same data on every machine.
/// @throws ports::HostError when the method asks for what the model cannot do
AcquiredData Acquire(const MassSpecRecord& method, const InstrumentModel& model,
                     const std::vector<SprayedCompound>& sample, ports::ElementTable& elements,
                     const AcquisitionContext& context);

/// Nominal time of one acquisition in milliseconds: start, equilibration and all cycles.
double ExpectedDurationMs(const MassSpecRecord& method, const InstrumentModel& model);
/// The part of it before the first cycle.
double PreparationMs(const MassSpecRecord& method, const InstrumentModel& model);

/// The share of ions that reach the first quadrupole's exit, relative to the best voltages of this compound and model:
/// the product of the DP, EP and CEP transmissions, each 1 at its optimum. Voltages signed as applied.
double RelativeTransmission(const InstrumentModel& model, const Compound& compound, double dp, double ep, double cep);

/// The share of precursor ions that arrive as the fragment at a collision energy (signed as applied) without spread.
double FragmentYield(const Compound& compound, const std::string& node, double ce);

}  // namespace orvanel
