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

/// Rewrites "d.ddde+xx" as plain decimals where the exponent is from -4 to 14, and else as "d.dddE+xx".
std::string FromScientific(std::string_view scientific) {
    const std::size_t exponentAt = scientific.find('e');
    std::string sign;
    std::string digits;
    for (const char c : scientific.substr(0, exponentAt)) {
        if (c == '-') sign = "-";
        if (c >= '0' && c <= '9') digits += c;
    }
    int exponent = 0;
    const char* exponentText = scientific.data() + exponentAt + 1;
    if (*exponentText == '+') ++exponentText;
    std::from_chars(exponentText, scientific.data() + scientific.size(), exponent);

    while (digits.size() > 1 && digits.back() == '0')
        digits.pop_back();
    if (digits == "0") return "0";
    const int count = static_cast<int>(digits.size());
    if (exponent < -4 || exponent >= 15) {
        const std::string exponentDigits = std::to_string(std::abs(exponent));
        return sign + digits.substr(0, 1) + (count > 1 ? "." + digits.substr(1) : "") + (exponent < 0 ? "E-" : "E+") +
               (exponentDigits.size() < 2 ? "0" : "") + exponentDigits;
    }
    if (exponent < 0) return sign + "0." + std::string(static_cast<std::size_t>(-exponent) - 1, '0') + digits;
    if (count <= exponent + 1) return sign + digits + std::string(static_cast<std::size_t>(exponent + 1 - count), '0');
    const auto whole = static_cast<std::size_t>(exponent + 1);
    return sign + digits.substr(0, whole) + "." + digits.substr(whole);
}

template <class Number>
std::string TextWithDigits(Number value, int significantDigits) {
    if (!std::isfinite(value)) return NonFiniteText(static_cast<double>(value));
    std::array<char, 40> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific,
                                   significantDigits - 1);
    return FromScientific({text.data(), static_cast<std::size_t>(end.ptr - text.data())});
}

template <class Number>
std::string ShortestText(Number value) {
    if (!std::isfinite(value)) return NonFiniteText(static_cast<double>(value));
    std::array<char, 40> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific);
    return FromScientific({text.data(), static_cast<std::size_t>(end.ptr - text.data())});
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
    constexpr int decimals = 2;
    std::array<char, 40> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::scientific, decimals);
    return ToUpper({text.data(), static_cast<std::size_t>(end.ptr - text.data())});
}

double RoundHalfEven(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double scaled = value * scale;
    if (!std::isfinite(scaled) || std::abs(scaled) >= 9007199254740992.0) return value;
    const double rounded = std::nearbyint(scaled) / scale;
    return rounded == 0 ? 0.0 : rounded;
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
