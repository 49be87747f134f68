// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "support/RunTimeError.h"
#include "support/Text.h"

namespace support {
namespace {

std::string NonFiniteText(double value) {
    if (std::isnan(value)) return "NaN";
    return value < 0 ? "-Infinity" : "Infinity";
}

/// A finite number in decimal: "d.ddd" times ten to the exponent, without its point; "0" and exponent 0 for zero.
struct Decimal {
    bool negative = false;
    std::string digits;  ///< without zeros at either end
    int exponent = 0;
};

/// The shortest decimal that reads back as the value. All rounding starts from it: what is rounded is the number as
/// people see it, not its binary neighbour, which for 514.2275 lies below the tie.
template <class Number>
Decimal ShortestDecimal(Number value) {
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
    const std::string_view text{buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data())};
    const std::size_t exponentAt = text.find('e');

    Decimal decimal;
    decimal.negative = text.front() == '-';
    for (const char c : text.substr(0, exponentAt))
        if (IsDigit(c)) decimal.digits += c;
    const std::size_t signLength = text[exponentAt + 1] == '+' ? 1 : 0;
    std::from_chars(text.data() + exponentAt + 1 + signLength, text.data() + text.size(), decimal.exponent);
    return decimal;
}

/// Keeps so many digits, rounding half to even; 0 and fewer may be asked for.
Decimal Rounded(Decimal decimal, int kept) {
    std::string& digits = decimal.digits;
    if (kept >= static_cast<int>(digits.size())) return decimal;
    if (kept < 0) return {decimal.negative, "0", 0};

    const auto cut = static_cast<std::size_t>(kept);
    const bool tie = digits[cut] == '5' && cut + 1 == digits.size();
    const bool odd = cut > 0 && (digits[cut - 1] - '0') % 2 == 1;
    const bool up = tie ? odd : digits[cut] >= '5';
    digits.resize(cut);
    if (up) {
        while (!digits.empty() && digits.back() == '9')
            digits.pop_back();
        if (digits.empty()) return {decimal.negative, "1", decimal.exponent + 1};
        ++digits.back();
    }
    while (!digits.empty() && digits.back() == '0')
        digits.pop_back();
    if (digits.empty()) return {decimal.negative, "0", 0};
    return decimal;
}

/// Rounded to so many places behind the point.
template <class Number>
Decimal RoundedToPlaces(Number value, int decimals) {
    const Decimal decimal = ShortestDecimal(value);
    return Rounded(decimal, decimal.exponent + 1 + decimals);
}

std::string ExponentText(int exponent) {
    const std::string digits = std::to_string(std::abs(exponent));
    return (exponent < 0 ? "E-" : "E+") + std::string(digits.size() < 2 ? "0" : "") + digits;
}

/// All digits, with a point where one belongs; no exponent.
std::string PlainText(const Decimal& decimal) {
    const std::string sign = decimal.negative ? "-" : "";
    const int count = static_cast<int>(decimal.digits.size());
    if (decimal.exponent < 0)
        return sign + "0." + std::string(static_cast<std::size_t>(-decimal.exponent) - 1, '0') + decimal.digits;
    const auto whole = static_cast<std::size_t>(decimal.exponent) + 1;
    if (count <= decimal.exponent + 1) return sign + PadRight(decimal.digits, whole, '0');
    return sign + decimal.digits.substr(0, whole) + "." + decimal.digits.substr(whole);
}

/// Plain decimals where the exponent is from -4 to 14, and else "d.dddE+xx".
std::string TextOf(const Decimal& decimal) {
    if (decimal.digits == "0") return "0";
    if (decimal.exponent >= -4 && decimal.exponent < 15) return PlainText(decimal);
    return (decimal.negative ? "-" : "") + decimal.digits.substr(0, 1) +
           (decimal.digits.size() > 1 ? "." + decimal.digits.substr(1) : "") + ExponentText(decimal.exponent);
}

template <class Number>
std::string TextWithDigits(Number value, int significantDigits) {
    if (!std::isfinite(value)) return NonFiniteText(static_cast<double>(value));
    return TextOf(Rounded(ShortestDecimal(value), significantDigits));
}

template <class Number>
std::string ShortestText(Number value) {
    if (!std::isfinite(value)) return NonFiniteText(static_cast<double>(value));
    return TextOf(ShortestDecimal(value));
}

template <class Number>
double RoundedNumber(Number value, int decimals) {
    if (!std::isfinite(value)) return static_cast<double>(value);
    const std::string text = TextOf(RoundedToPlaces(value, decimals));
    double rounded = 0;
    std::from_chars(text.data(), text.data() + text.size(), rounded);
    return rounded;
}

template <class Number>
std::string TextWithPlaces(Number value, int decimals) {
    if (!std::isfinite(value)) return NonFiniteText(static_cast<double>(value));
    Decimal decimal = RoundedToPlaces(value, decimals);
    if (decimal.digits == "0") decimal.negative = false;
    std::string text = PlainText(decimal);
    if (decimals <= 0) return text;
    const std::size_t point = std::min(text.find('.'), text.size());
    if (point == text.size()) text += '.';
    return PadRight(text, point + 1 + static_cast<std::size_t>(decimals), '0');
}

/// The length of the number that the text starts with, its sign included; 0 when there is none.
std::size_t NumberLength(std::string_view text) {
    std::size_t at = 0;
    if (at < text.size() && (text[at] == '+' || text[at] == '-')) ++at;
    std::size_t digits = 0;
    bool point = false;
    for (; at < text.size() && (IsDigit(text[at]) || (text[at] == '.' && !point)); ++at) {
        if (text[at] == '.')
            point = true;
        else
            ++digits;
    }
    if (digits == 0) return 0;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        std::size_t exponent = at + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-')) ++exponent;
        const std::size_t firstDigit = exponent;
        while (exponent < text.size() && IsDigit(text[exponent]))
            ++exponent;
        if (exponent > firstDigit) at = exponent;
    }
    return at;
}

/// The decimal exponent of a number's first digit that is not 0, such as -3 for "0.0012"; 0 when all are 0.
long DecimalExponent(std::string_view number) {
    const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, exponentAt);
    const std::size_t first = mantissa.find_first_of("123456789");
    if (first == std::string_view::npos) return 0;
    const auto point = static_cast<long>(std::min(mantissa.find('.'), mantissa.size()));
    const auto place = point - static_cast<long>(first);
    long exponent = place > 0 ? place - 1 : place;

    std::string_view digits = number.substr(std::min(exponentAt + 1, number.size()));
    if (!digits.empty() && digits.front() == '+') digits.remove_prefix(1);
    constexpr long beyondEveryText = 1'000'000'000;
    long written = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), written);
    if (result.ec == std::errc::result_out_of_range)
        written = digits.front() == '-' ? -beyondEveryText : beyondEveryText;
    exponent += std::clamp(written, -beyondEveryText, beyondEveryText);
    return exponent;
}

template <class Number>
std::optional<Number> Convert(std::string_view number) {
    if (!number.empty() && number.front() == '+') number.remove_prefix(1);
    Number value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        // Too small counts as 0; too large does not convert.
        if (DecimalExponent(number) < 0) return Number{0};
        return std::nullopt;
    }
    if (result.ec != std::errc{} || !std::isfinite(value)) return std::nullopt;
    return value;
}

template <class Number>
std::optional<Number> ParseWhole(std::string_view text) {
    text = Trim(text);
    if (text.empty() || NumberLength(text) != text.size()) return std::nullopt;
    return Convert<Number>(text);
}

template <class Integer>
Integer ToInteger(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= std::numeric_limits<Integer>::min() && rounded <= std::numeric_limits<Integer>::max()))
        throw RunTimeError::Overflow();
    return static_cast<Integer>(rounded);
}

template <class Integer>
std::optional<Integer> ParseInteger(std::string_view text) {
    const auto value = ParseDouble(text);
    if (!value) return std::nullopt;
    try {
        return ToInteger<Integer>(*value);
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

}  // namespace

std::string GeneralText(double value) {
    return TextWithDigits(value, 15);
}
std::string GeneralText(float value) {
    return TextWithDigits(value, 7);
}
std::string GeneralText(std::int64_t value) {
    return std::to_string(value);
}
std::string RoundTripText(double value) {
    return ShortestText(value);
}
std::string RoundTripText(float value) {
    return ShortestText(value);
}

std::string ScientificText(double value) {
    if (!std::isfinite(value)) return NonFiniteText(value);
    constexpr int significantDigits = 3;
    const Decimal decimal = Rounded(ShortestDecimal(value), significantDigits);
    const std::string digits = PadRight(decimal.digits, significantDigits, '0');
    return (decimal.negative ? "-" : "") + digits.substr(0, 1) + "." + digits.substr(1) +
           ExponentText(decimal.exponent);
}

double RoundHalfEven(double value, int decimals) {
    return RoundedNumber(value, decimals);
}
double RoundHalfEven(float value, int decimals) {
    return RoundedNumber(value, decimals);
}
std::string FixedText(double value, int decimals) {
    return TextWithPlaces(value, decimals);
}
std::string FixedText(float value, int decimals) {
    return TextWithPlaces(value, decimals);
}

std::string MzText(double mz) {
    return GeneralText(RoundHalfEven(mz, 3));
}

std::int16_t ToInt16(double value) {
    return ToInteger<std::int16_t>(value);
}
std::int32_t ToInt32(double value) {
    return ToInteger<std::int32_t>(value);
}

std::optional<double> ParseDouble(std::string_view text) {
    return ParseWhole<double>(text);
}
std::optional<float> ParseSingle(std::string_view text) {
    return ParseWhole<float>(text);
}
std::optional<std::int16_t> ParseInt16(std::string_view text) {
    return ParseInteger<std::int16_t>(text);
}
std::optional<std::int32_t> ParseInt32(std::string_view text) {
    return ParseInteger<std::int32_t>(text);
}

double LeadingNumber(std::string_view text) {
    text = Trim(text);
    return Convert<double>(text.substr(0, NumberLength(text))).value_or(0.0);
}

}  // namespace support
