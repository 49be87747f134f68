// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/faults/FaultSettings.h"

#include <algorithm>

#include "support/NumberText.h"

namespace orvanel {

const std::vector<FaultKey>& FaultKeys() {
    using Faults = FaultSettings;
    static const std::vector<FaultKey> keys = {
        {"SprayInstability", {{&Faults::sprayInstability, {0.01, 2}}}},
        {"Dropouts", {{&Faults::dropoutsPerMinute, {0.1, 60}}}},
        {"SignalLoss", {{&Faults::signalLoss, {0.01, 0.99}}}},
        {"BackgroundIon", {{&Faults::backgroundIon, {0.001, 1}}}},
        {"Interference", {{&Faults::interferenceDa, {0.3, 0.9}}, {&Faults::interferenceAmount, {0.2, 2}}}},
        {"SodiumAdduct", {{&Faults::sodiumAdduct, {0.01, 100}}}},
        {"WrongPolarity", {{&Faults::wrongPolarity, {0, 1}, true}}},
        {"NoFragments", {{&Faults::noFragments, {0, 1}, true}}},
        {"StablePrecursor", {{&Faults::stablePrecursor, {100, 1000}}}},
        {"Saturation", {{&Faults::saturation, {1, 10000}}}},
        {"MassOffset", {{&Faults::massOffsetDa, {-2, 2}}}},
        {"EquilibrationDelay", {{&Faults::equilibrationDelayS, {1, 3600}}}},
        {"FailingAcquisition", {{&Faults::failingAcquisition, {1, 9999}, true}}},
    };
    return keys;
}

std::string FaultTexts(const FaultSettings& faults) {
    std::string texts;
    for (const FaultKey& key : FaultKeys()) {
        const auto isOn = [&](const FaultStrength& strength) { return faults.*strength.value != 0; };
        if (std::none_of(key.strengths.begin(), key.strengths.end(), isOn)) continue;
        texts += (texts.empty() ? "" : "; ") + std::string(key.name);
        for (std::size_t i = 0; i < key.strengths.size(); ++i)
            texts += (i == 0 ? "=" : ", ") + support::GeneralText(faults.*key.strengths[i].value);
    }
    return texts;
}

}  // namespace orvanel
