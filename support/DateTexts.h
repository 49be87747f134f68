// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <ctime>
#include <string>

namespace support {

/// How a locale writes dates and times. The patterns are in the locale's own encoding.
struct DateFormat {
    std::string shortDate = "%-m/%-d/%Y";   ///< strftime pattern
    std::string longTime = "%-I:%M:%S %p";  ///< strftime pattern
    std::string localeName = "C";           ///< whose names of weekdays and months
};

/// The pattern of a long time with seconds, which some locales leave out: they tell runs apart.
std::string WithSeconds(const std::string& longTime);

/// The format of the process's locale (the user's regional settings on Windows, elsewhere LC_ALL, LC_TIME or LANG, in
/// this order), with seconds in any case; "M/D/YYYY h:mm:ss AM/PM" where none is set or the system does not know it.
DateFormat DateFormatOfProcess();

/// @param pattern a strftime pattern; "%-" before a letter drops a leading zero
std::string FormatDateText(const DateFormat& format, const std::string& pattern, const std::tm& time);
/// Short date, blank, long time.
std::string GeneralDateText(const DateFormat& format, const std::tm& time);

}  // namespace support
