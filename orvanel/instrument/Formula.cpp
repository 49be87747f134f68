// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Formula.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "support/Text.h"

namespace orvanel {
namespace {

constexpr int maximumCount = 10000;

}  // namespace

Composition ParseFormula(const std::string& formula) {
    if (formula.empty()) throw std::invalid_argument("the formula is empty");
    Composition composition;
    std::size_t position = 0;
    while (position < formula.size()) {
        if (!support::IsUpper(formula[position]))
            throw std::invalid_argument("\"" + support::Excerpt(formula) + "\" has no element symbol at character " +
                                        std::to_string(position + 1));
        std::string symbol(1, formula[position++]);
        while (position < formula.size() && support::IsLower(formula[position]))
            symbol += formula[position++];
        const bool counted = position < formula.size() && support::IsDigit(formula[position]);
        int count = counted ? 0 : 1;
        while (position < formula.size() && support::IsDigit(formula[position]) && count <= maximumCount)
            count = count * 10 + (formula[position++] - '0');
        int& total = composition[symbol];
        total += count;
        if (count == 0 || total > maximumCount)
            throw std::invalid_argument("\"" + support::Excerpt(formula) + "\" has a count of " +
                                        support::Excerpt(symbol) + " that is not 1 to " + std::to_string(maximumCount));
    }
    return composition;
}

double MonoisotopicMass(const Composition& composition, ports::ElementTable& elements) {
    double massDa = 0;
    for (const auto& [symbol, count] : composition) {
        const auto isotopes = elements.GetIsotopes(symbol);
        const auto tallest = std::max_element(isotopes.begin(), isotopes.end(), [](const auto& a, const auto& b) {
            return a.abundancePercent < b.abundancePercent;
        });
        massDa += count * tallest->massDa;
    }
    return massDa;
}

double IonMz(const Composition& composition, int charge, bool negative, ports::ElementTable& elements) {
    const double electronsDa = charge * electronMassDa;
    return (MonoisotopicMass(composition, elements) + (negative ? electronsDa : -electronsDa)) / charge;
}

Composition Without(const Composition& whole, const Composition& part) {
    Composition rest;
    for (const auto& [symbol, count] : whole) {
        const auto taken = part.find(symbol);
        const int left = count - (taken == part.end() ? 0 : taken->second);
        if (left > 0) rest[symbol] = left;
    }
    return rest;
}

bool Contains(const Composition& whole, const Composition& part) {
    return std::all_of(part.begin(), part.end(), [&whole](const auto& element) {
        const auto found = whole.find(element.first);
        return found != whole.end() && found->second >= element.second;
    });
}

Composition Scaled(const Composition& composition, double factor) {
    Composition scaled;
    for (const auto& [symbol, count] : composition) {
        const int atoms = static_cast<int>(std::lround(count * factor));
        if (atoms > 0) scaled[symbol] = atoms;
    }
    return scaled;
}

}  // namespace orvanel
