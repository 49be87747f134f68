// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace support {

/// The default text of a number: at most 15 significant digits for a double and 7 for a float, no trailing zeros, no
/// exponent from 1E-4 up to 1E+15. Always a "." as decimal separator. "NaN", "Infinity", "-Infinity" where it is none.
std::string GeneralText(double value);
std::string GeneralText(float value);
std::string GeneralText(std::int64_t value);
inline std::string GeneralText(int value) {
    return GeneralText(static_cast<std::int64_t>(value));
}

/// The shortest text that reads back as the same value, in the form of GeneralText.
std::string RoundTripText(double value);
std::string RoundTripText(float value);

/// Two decimals, rounded as by RoundHalfEven, sign, at least two exponent digits: "1.23E+05". Always a "." as decimal
/// separator.
std::string ScientificText(double value);

/// A value rounded to so many decimals: its shortest text that reads back as the same value is rounded, half to even.
double RoundHalfEven(double value, int decimals);
double RoundHalfEven(float value, int decimals);
/// The same with all these decimals written, never with an exponent: "10.0".
std::string FixedText(double value, int decimals);
std::string FixedText(float value, int decimals);
/// RoundHalfEven to 3 decimals in GeneralText: how an m/z is written in logs, names and reports.
std::string MzText(double mz);

/// Conversions to whole numbers, half to even.
/// @throws RunTimeError 6 "Overflow" when the result does not fit or the value is not finite
std::int16_t ToInt16(double value);
std::int32_t ToInt32(double value);

/// The numeric conversion of settings: blanks around are skipped, one sign, digits with at most one ".", an exponent.
/// @return nothing when the whole text is not such a number or does not fit; never NaN or infinite
std::optional<double> ParseDouble(std::string_view text);
std::optional<float> ParseSingle(std::string_view text);
/// As ParseDouble, then rounded half to even.
std::optional<std::int16_t> ParseInt16(std::string_view text);
std::optional<std::int32_t> ParseInt32(std::string_view text);

/// The number at the start of a text: leading blanks are skipped, the conversion stops at the first character that
/// cannot continue a number. 0 when there is none or it does not fit.
double LeadingNumber(std::string_view text);

}  // namespace support
