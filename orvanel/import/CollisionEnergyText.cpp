// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/CollisionEnergyText.h"

#include <vector>

#include "support/NumberText.h"
#include "support/Text.h"

namespace orvanel {
namespace {

/// A number and the letters and "%" up to the next one.
struct Energy {
    double value = 0;
    EnergyUnit unit = EnergyUnit::NotStated;
};

bool Has(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

/// @param text in capitals
EnergyUnit UnitIn(const std::string& text) {
    if (Has(text, "%") || Has(text, "NCE") || Has(text, "NOMINAL") || Has(text, "NORMALI"))
        return EnergyUnit::Normalised;
    if (Has(text, "EV")) return EnergyUnit::ElectronVolts;
    return Has(text, "V") ? EnergyUnit::Volts : EnergyUnit::NotStated;
}

std::vector<Energy> EnergiesIn(const std::string& text, std::string& before) {
    const auto isNumber = [&text](std::size_t at) {
        return support::IsDigit(text[at]) ||
               (text[at] == '.' && at + 1 < text.size() && support::IsDigit(text[at + 1]));
    };
    std::vector<Energy> energies;
    std::string words;
    for (std::size_t at = 0; at < text.size();) {
        if (!isNumber(at)) {
            words += text[at++];
            continue;
        }
        std::size_t end = text.find_first_not_of("0123456789.", at);
        if (end == std::string::npos) end = text.size();
        if (energies.empty())
            before = words;
        else
            energies.back().unit = UnitIn(words);
        words.clear();
        // What is no number after all ("1.2.3") counts as one above every limit.
        energies.push_back({support::ParseDouble(text.substr(at, end - at)).value_or(1e300), EnergyUnit::NotStated});
        at = end;
    }
    if (!energies.empty()) energies.back().unit = UnitIn(words);
    return energies;
}

}  // namespace

StatedEnergy ParseCollisionEnergy(const std::string& text) {
    using Kind = StatedEnergy::Kind;
    const std::string upper = support::ToUpper(text);
    std::string before;
    const auto energies = EnergiesIn(upper, before);
    if (energies.empty()) return {};
    if (Has(upper, "RAMP") || Has(upper, "STEP") || Has(upper, "KEV")) return {Kind::Several, 0, EnergyUnit::NotStated};
    if (energies.size() == 1) {
        const Energy& only = energies[0];
        return {Kind::One, only.value, only.unit == EnergyUnit::NotStated ? UnitIn(before) : only.unit};
    }
    if (energies.size() == 2 && energies[0].unit == EnergyUnit::Normalised &&
        energies[1].unit == EnergyUnit::ElectronVolts)
        return {Kind::One, energies[1].value, energies[1].unit};
    return {Kind::Several, 0, EnergyUnit::NotStated};
}

std::string EnergyInTitle(const std::string& title) {
    for (const std::string& part : support::Split(support::ToUpper(title), ';'))
        for (const std::string_view mark : {"CID@", "HCD@", "CE"}) {
            const auto at = part.find(mark);
            if (at == std::string::npos || (at > 0 && support::IsUpper(part[at - 1]))) continue;
            const auto value = part.find_first_not_of(" :=", at + mark.size());
            if (value != std::string::npos && support::IsDigit(part[value])) return part.substr(at);
        }
    return "";
}

}  // namespace orvanel
