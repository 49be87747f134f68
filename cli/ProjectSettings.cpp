// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/ProjectSettings.h"

#include <algorithm>
#include <cmath>

#include "support/NumberText.h"

namespace cli {

void SuitToCompound(veltra::clsInfo_Settings& settings, const std::string& compoundName,
                    const orvanel::ProjectFacts& facts) {
    constexpr double lowestMass = 50;  // Da, what every linear ion trap model scans down to
    constexpr double marginDa = 20;
    constexpr double dpRampGridV = 10;
    constexpr double lowestDpRampEndV = 100;
    constexpr double highestDpRampEndV = 200;  // what the settings allow
    const auto whole = [](double value) { return static_cast<float>(support::RoundHalfEven(value, 0)); };
    settings.StarterMethodFilePath = facts.starterMethodPath;
    settings.CompoundName = compoundName;
    settings.ExpectedMZ = support::RoundHalfEven(facts.expectedMz, 3);
    settings.Polarity = facts.polarity;
    if (facts.lowestFragmentMz > 0)
        settings.Advanced_EPIMassStart = whole(std::max(lowestMass, facts.lowestFragmentMz - marginDa));
    settings.Advanced_EPIMassEnd = whole(facts.expectedMz + marginDa);
    settings.Advanced_MS3MassStart = settings.Advanced_EPIMassStart;
    settings.Advanced_MS3MassEnd = settings.Advanced_EPIMassEnd;
    settings.Advanced_Q1MIDPRampStop =
        whole(std::clamp(std::ceil(facts.dpRampEnd / dpRampGridV) * dpRampGridV, lowestDpRampEndV, highestDpRampEndV));
    if (facts.fragmentCe > 0) settings.Advanced_EPI_CE = whole(facts.fragmentCe);
}

}  // namespace cli
