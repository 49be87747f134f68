// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/DateTexts.h"

#include <algorithm>
#include <string_view>

#include "support/Platform.h"

namespace support {

std::string WithSeconds(const std::string& longTime) {
    std::size_t behindMinutes = std::string::npos;
    char separator = ':';
    for (std::size_t at = longTime.find('%'); at != std::string::npos; at = longTime.find('%', at)) {
        const std::size_t conversion = std::min(longTime.find_first_not_of("EO-_0^#", at + 1), longTime.size() - 1);
        const char kind = longTime[conversion];
        if (std::string_view("STrsXc").find(kind) != std::string_view::npos) return longTime;
        if (kind == 'M' || kind == 'R') {
            behindMinutes = conversion + 1;
            if (kind == 'M' && at > 0 && longTime[at - 1] == '.') separator = '.';
        }
        at = conversion + 1;
    }
    if (behindMinutes == std::string::npos) return longTime + " %H:%M:%S";
    return std::string(longTime).insert(behindMinutes, std::string(1, separator) + "%S");
}

DateFormat DateFormatOfProcess() {
    DateFormat format;
    const std::string name = ProcessLocaleName();
    if (!name.empty() && LocaleDatePatterns(name, format.shortDate, format.longTime)) {
        format.localeName = name;
        format.longTime = WithSeconds(format.longTime);
    }
    return format;
}

std::string FormatDateText(const DateFormat& format, const std::string& pattern, const std::tm& time) {
    return FormatTime(format.localeName, pattern, time);
}

std::string GeneralDateText(const DateFormat& format, const std::tm& time) {
    return FormatDateText(format, format.shortDate, time) + " " + FormatDateText(format, format.longTime, time);
}

}  // namespace support
