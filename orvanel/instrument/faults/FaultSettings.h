// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "orvanel/instrument/InstrumentModel.h"

namespace orvanel {

/// What goes wrong with sample, spray and instrument. 0 is off.
struct FaultSettings {
    double sprayInstability = 0;     ///< relative standard deviation of the spray, in place of the model's
    double dropoutsPerMinute = 0;    ///< interruptions of the spray of 0.2 to 1 s
    double signalLoss = 0;           ///< share of every ramp after which the spray is gone
    double backgroundIon = 0;        ///< share of every ion that the trap never dissociates
    double interferenceDa = 0;       ///< distance of a foreign ion above the precursor
    double interferenceAmount = 0;   ///< of it, relative to the precursor
    double sodiumAdduct = 0;         ///< [M+Na]+ relative to [M+H]+
    double wrongPolarity = 0;        ///< 1: the sample forms no ions
    double noFragments = 0;          ///< 1: the precursor's dissociation leaves no ion
    double stablePrecursor = 0;      ///< V, at which half of the precursor has dissociated; fragments follow
    double saturation = 0;           ///< factor on the ion current
    double massOffsetDa = 0;         ///< error of the trap's mass scale, on top of the session's
    double equilibrationDelayS = 0;  ///< how much longer than expected every acquisition equilibrates
    double failingAcquisition = 0;   ///< number of the acquisition that fails, counted from 1 since the host started
};

/// One number of a fault's key.
struct FaultStrength {
    double FaultSettings::*value;
    Limits allowed;
    bool whole = false;
};

/// One key of Orvanel.ini's section [Faults].
struct FaultKey {
    std::string_view name;
    std::vector<FaultStrength> strengths;  ///< in the order in which the value gives them
};

/// Every fault there is.
const std::vector<FaultKey>& FaultKeys();

/// The faults that are on as Orvanel.ini would set them, such as "Interference=0.5, 1; Saturation=100"; empty when none
/// is.
std::string FaultTexts(const FaultSettings& faults);

}  // namespace orvanel
