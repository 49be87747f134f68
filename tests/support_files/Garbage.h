// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cmath>
#include <concepts>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "ports/DataExploration.h"

/// What a host may answer that it should not. Handles are missing then, yes is no, and what answers nothing does
/// nothing.
enum class Garbage {
    None,
    Nothing,     ///< 0, empty
    NotANumber,  ///< and texts that are none; of whole numbers the lowest
    Huge,        ///< infinite, the highest, a million of something
    Negative,    ///< also too many
    Frozen,      ///< what the operation answered when this began
};

template <class Number>
requires std::is_arithmetic_v<Number> Number Spoilt(Number, Garbage garbage) {
    using Limits = std::numeric_limits<Number>;
    constexpr bool isWhole = std::integral<Number>;
    return garbage == Garbage::Nothing      ? 0
           : garbage == Garbage::NotANumber ? (isWhole ? Limits::min() : Limits::quiet_NaN())
           : garbage == Garbage::Huge       ? (isWhole ? Limits::max() : Limits::infinity())
           : isWhole                        ? static_cast<Number>(-1)
                                            : Limits::lowest();
}
inline bool Spoilt(bool answer, Garbage) {
    return !answer;
}
inline std::string Spoilt(const std::string&, Garbage garbage) {
    constexpr std::size_t million = 1'000'000;
    return garbage == Garbage::Nothing      ? ""
           : garbage == Garbage::NotANumber ? "NaN\n\x01"
           : garbage == Garbage::Huge       ? std::string(million, '9')
                                            : "-1";
}
inline std::optional<std::string> Spoilt(const std::optional<std::string>&, Garbage garbage) {
    if (garbage == Garbage::Nothing) return std::nullopt;
    return Spoilt(std::string(), garbage);
}
template <class Element>
std::vector<Element> Spoilt(std::vector<Element> answer, Garbage garbage) {
    constexpr std::size_t million = 1'000'000;
    if (garbage == Garbage::Nothing || answer.empty()) return {};
    if constexpr (std::is_arithmetic_v<Element>) {
        for (auto& element : answer)
            element = Spoilt(element, garbage);
    }
    if (garbage == Garbage::Huge) answer.resize(million, answer.front());
    if (garbage == Garbage::Negative) answer.push_back(answer.front());
    return answer;
}
inline ports::AxisRange Spoilt(const ports::AxisRange& answer, Garbage garbage) {
    if (garbage == Garbage::Negative) return {answer.maximum + 1, answer.minimum};
    return {Spoilt(answer.minimum, garbage), Spoilt(answer.maximum, garbage)};
}
template <class Handle>
std::unique_ptr<Handle> Spoilt(std::unique_ptr<Handle>, Garbage) {
    return nullptr;
}
