// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/Adduct.h"

#include <map>
#include <stdexcept>

#include "support/Text.h"

namespace orvanel {
namespace {

constexpr int maximumCount = 20;

[[noreturn]] void Fail(const std::string& text) {
    throw std::invalid_argument("\"" + text +
                                "\" is no adduct that is known; it is written like [M+H]+, [M-H2O+H]+ or [M+2H]2+");
}

/// A number from 1 to 20 at a position, which moves behind it; 1 when there is none.
int TakeCount(const std::string& text, std::size_t& at) {
    if (at >= text.size() || !support::IsDigit(text[at])) return 1;
    int count = 0;
    while (at < text.size() && support::IsDigit(text[at]) && count <= maximumCount)
        count = count * 10 + (text[at++] - '0');
    if (count == 0 || count > maximumCount) Fail(text);
    return count;
}

/// Groups that are written by a short name instead of their formula.
Composition GroupOf(const std::string& name) {
    static const std::map<std::string, std::string> formulas{{"ACN", "C2H3N"},  {"FA", "CH2O2"},  {"HAc", "C2H4O2"},
                                                             {"Hac", "C2H4O2"}, {"Ac", "C2H3O2"}, {"MeOH", "CH4O"}};
    const auto found = formulas.find(name);
    return ParseFormula(found == formulas.end() ? name : found->second);
}

void AddTo(Composition& sum, const Composition& part, int times) {
    for (const auto& [symbol, count] : part)
        sum[symbol] += count * times;
}

}  // namespace

Adduct ParseAdduct(const std::string& text) {
    const auto close = text.find(']');
    if (text.empty() || text[0] != '[' || close == std::string::npos) Fail(text);
    Adduct adduct;
    std::size_t at = 1;
    adduct.molecules = TakeCount(text, at);
    if (text[at++] != 'M') Fail(text);
    while (at < close) {
        const char sign = text[at++];
        if (sign != '+' && sign != '-') Fail(text);
        const int times = TakeCount(text, at);
        const std::size_t end = std::min(text.find_first_of("+-]", at), close);
        AddTo(sign == '+' ? adduct.gained : adduct.lost, GroupOf(text.substr(at, end - at)), times);
        at = end;
    }
    at = close + 1;
    adduct.charge = TakeCount(text, at);
    if (at >= text.size() || (text[at] != '+' && text[at] != '-')) Fail(text);
    adduct.negative = text[at] == '-';
    const auto radical = text.find_first_not_of("*.", at + 1);
    if (radical != std::string::npos) Fail(text);
    return adduct;
}

Composition IonOf(const Composition& molecule, const Adduct& adduct) {
    Composition ion;
    AddTo(ion, molecule, adduct.molecules);
    AddTo(ion, adduct.gained, 1);
    if (!Contains(ion, adduct.lost))
        throw std::invalid_argument("the molecule does not hold the " + FormulaText(adduct.lost) +
                                    " that the ion loses");
    return Without(ion, adduct.lost);
}

std::string FormulaText(const Composition& composition) {
    std::string text;
    const auto add = [&text](const std::string& symbol, int count) {
        text += symbol + (count == 1 ? "" : std::to_string(count));
    };
    for (const char* const symbol : {"C", "H"})
        if (const auto found = composition.find(symbol); found != composition.end()) add(symbol, found->second);
    for (const auto& [symbol, count] : composition)
        if (symbol != "C" && symbol != "H") add(symbol, count);
    return text;
}

}  // namespace orvanel
