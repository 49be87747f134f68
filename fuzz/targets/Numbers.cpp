// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <cmath>
#include <cstdlib>
#include <string>

#include "fuzz/Fuzz.h"
#include "support/NumberText.h"
#include "support/Text.h"

/// What is read as a number is the one that the C library reads, is never infinite, and is read again from every text
/// that is written of it.
void fuzz::Try(std::string_view input) {
    const std::string text(input);
    const auto number = support::ParseDouble(text);
    Require(std::isfinite(support::LeadingNumber(text)), "a leading number is finite");
    if (const auto single = support::ParseSingle(text))
        Require(support::ParseSingle(support::RoundTripText(*single)) == single, "a single is read as it was written");
    if (const auto whole = support::ParseInt32(text)) Require(number.has_value(), "a whole number is a number");
    if (!number) return;
    Require(std::isfinite(*number), "a number is finite");
    Require(support::ParseDouble(support::RoundTripText(*number)) == number, "a number is read as it was written");
    const double byLibrary = std::strtod(std::string(support::Trim(text)).c_str(), nullptr);
    Require(*number == byLibrary || std::fabs(byLibrary) < 1e-300, "both ways to read a number agree");
    const auto general = support::ParseDouble(support::GeneralText(*number));
    Require(general.has_value() || std::fabs(*number) > 1e308, "the general text is a number");
    Require(!general || std::fabs(*general - *number) <= 1e-14 * std::fabs(*number) || std::fabs(*number) < 1e-290,
            "the general text is right to 15 digits");
}
