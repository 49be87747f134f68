// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace ports {

/// One instant, in the texts that the locale of the process gives it.
struct DateTimeTexts {
    std::string generalDate;  ///< short date, blank, long time: "5/13/2024 3:45:12 PM"
    std::string longTime;     ///< "3:45:12 PM"
    std::string weekdayName;  ///< "Monday"
    std::string monthName;    ///< "May"
    int dayOfMonth = 1;
    int year = 1970;
};

/// The time of day for logs, reports and names. Never throws; may be called from any thread.
class Clock {
  public:
    virtual ~Clock() = default;
    virtual DateTimeTexts Now() const = 0;
};

}  // namespace ports
