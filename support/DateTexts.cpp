#include "support/DateTexts.h"

#include <cstdlib>

#include "support/Platform.h"

namespace support {

DateFormat DateFormatOfProcess() {
    DateFormat format;
    for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* value = std::getenv(name);
        if (value == nullptr || *value == '\0') continue;
        if (LocaleDatePatterns(value, format.shortDate, format.longTime)) format.localeName = value;
        return format;
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
