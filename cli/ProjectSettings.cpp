// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/ProjectSettings.h"

#include <algorithm>

#include "support/NumberText.h"

namespace cli {

void SuitToCompound(veltra::clsInfo_Settings& settings, const std::string& compoundName,
                    const orvanel::ProjectFacts& facts) {
    constexpr double lowestMass = 50;  // Da, what every linear ion trap model scans down to, and up to
    constexpr double highestMass = 1700;
    constexpr double marginDa = 20;
    constexpr double dpRampEndV = 200;  // the most that the settings allow
    // Lines in m/z are customary; this one's constants are our own. With the default spread of 15 V it covers 10 to 40
    // V at m/z 150 and 30 to 60 V at m/z 750, where most ions of these masses break.
    constexpr double ceOffsetV = 20;
    constexpr double ceSlope = 0.034;  // V/Da
    const auto whole = [](double value) { return static_cast<float>(support::RoundHalfEven(value, 0)); };
    settings.StarterMethodFilePath = facts.starterMethodPath;
    settings.CompoundName = compoundName;
    settings.ExpectedMZ = support::RoundHalfEven(facts.expectedMz, 3);
    settings.Polarity = facts.polarity;
    settings.Advanced_EPIMassStart = whole(lowestMass);
    settings.Advanced_EPIMassEnd = whole(std::min(facts.expectedMz + marginDa, highestMass));
    settings.Advanced_MS3MassStart = settings.Advanced_EPIMassStart;
    settings.Advanced_MS3MassEnd = settings.Advanced_EPIMassEnd;
    settings.Advanced_Q1MIDPRampStop = whole(dpRampEndV);
    settings.Advanced_EPI_CE = whole(ceOffsetV + ceSlope * facts.expectedMz);
}

}  // namespace cli
