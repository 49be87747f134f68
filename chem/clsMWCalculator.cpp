// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "chem/clsMWCalculator.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>

#include "support/NumberText.h"
#include "support/RunTimeError.h"
#include "support/Text.h"
#include "support/modRegistryUtils.h"

namespace veltra {
namespace {

constexpr double protonMassDa = 1.0072825;
constexpr double electronMassDa = 0.00054858;
constexpr double mostAbundantPercent = 100;

/// Distinct symbols in order of first appearance.
std::vector<std::string> SplitSymbols(const std::string& formula) {
    std::vector<std::string> symbols;
    for (std::size_t at = 0; at < formula.size(); ++at) {
        if (!support::IsUpper(formula[at])) continue;
        std::size_t end = at + 1;
        while (end < formula.size() && support::IsLower(formula[end]))
            ++end;
        const std::string symbol = formula.substr(at, end - at);
        if (std::find(symbols.begin(), symbols.end(), symbol) == symbols.end()) symbols.push_back(symbol);
    }
    return symbols;
}

/// Every occurrence counts; one that is only the start of a longer symbol counts nothing.
std::int32_t CountSymbol(const std::string& formula, const std::string& symbol, std::int32_t factor) {
    double total = 0;  // wider than the result, so that an overflow is seen and not made
    std::size_t at = 0;
    while ((at = formula.find(symbol, at)) != std::string::npos) {
        at += symbol.size();
        const std::size_t firstDigit = at;
        while (at < formula.size() && support::IsDigit(formula[at]))
            ++at;
        if (at > firstDigit) {
            const auto count = support::ParseInt32(formula.substr(firstDigit, at - firstDigit));
            if (!count) throw support::RunTimeError::Overflow();
            total += *count;
        } else if (at == formula.size() || !support::IsLower(formula[at])) {
            total += 1;
        }
    }
    return support::ToInt32(total * factor);
}

}  // namespace

clsMWCalculator::clsMWCalculator(ports::Host& host, ports::MessageBoxes& messageBoxes) : messageBoxes_(messageBoxes) {
    const std::string path =
        support::GetElementTablePath([&host](const std::string& value) { return host.RegRead(value); });
    try {
        elementTable_ = host.OpenElementTable(path);
    } catch (const std::exception&) {
        // Reported by the first lookup, which knows what it was needed for.
    }
}

double clsMWCalculator::CalculateMZ(double dblMolWeight, std::int16_t intCharge) {
    if (intCharge == 0) return dblMolWeight;
    return (dblMolWeight + intCharge * protonMassDa) / std::abs(static_cast<int>(intCharge));
}

bool clsMWCalculator::HasOnlyFormulaCharacters(const std::string& formula) const {
    for (std::size_t at = 0; at < formula.size(); ++at) {
        const char c = formula[at];
        if (support::IsUpper(c) || support::IsLower(c) || support::IsDigit(c)) continue;
        if (c == ' ') {
            messageBoxes_.Show("Invalid <space> character found in formula", ports::MessageIcon::None);
            return false;
        }
        // The whole character where it takes several bytes of UTF-8.
        std::size_t end = at + 1;
        while (end < formula.size() && (static_cast<unsigned char>(formula[end]) & 0xC0) == 0x80)
            ++end;
        messageBoxes_.Show("Invalid character found in formula: " + formula.substr(at, end - at),
                           ports::MessageIcon::None);
        return false;
    }
    return true;
}

bool clsMWCalculator::GetElementIsotopes(const std::string& symbol, int charge, IsotopeList& isotopes) const {
    try {
        if (!elementTable_) throw support::RunTimeError::ObjectNotSet();
        isotopes = elementTable_->GetIsotopes(symbol);
        if (charge != 0)
            for (auto& isotope : isotopes)
                isotope.massDa = (isotope.massDa - charge * electronMassDa) / std::abs(charge);
        return true;
    } catch (const std::exception&) {
        messageBoxes_.Show("Error computing molecular weight for element:" + symbol, ports::MessageIcon::None);
        return false;
    }
}

double clsMWCalculator::GetMWForFormula(const std::string& strFormula) {
    if (strFormula.empty()) {
        messageBoxes_.Show("The formula is not valid", ports::MessageIcon::None);
        return 0;
    }
    if (!HasOnlyFormulaCharacters(strFormula)) return 0;

    constexpr int neutral = 0;
    double total = 0;
    for (const auto& symbol : SplitSymbols(strFormula)) {
        IsotopeList isotopes;
        if (!GetElementIsotopes(symbol, neutral, isotopes)) return 0;
        std::int32_t count = 0;
        try {
            count = CountSymbol(strFormula, symbol, 1);
        } catch (const std::exception&) {
            messageBoxes_.Show("Error computing molecular weight for element:" + symbol, ports::MessageIcon::None);
            return 0;
        }
        const auto isotope = std::find_if(isotopes.begin(), isotopes.end(), [](const auto& entry) {
            return entry.abundancePercent == mostAbundantPercent;
        });
        if (isotope != isotopes.end()) total += count * isotope->massDa;
    }
    return total;
}

}  // namespace veltra
