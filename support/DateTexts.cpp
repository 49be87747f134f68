#include "support/DateTexts.h"

#include "support/Platform.h"

namespace support {

DateFormat DateFormatOfProcess() {
    DateFormat format;
    const std::string name = ProcessLocaleName();
    if (!name.empty() && LocaleDatePatterns(name, format.shortDate, format.longTime)) format.localeName = name;
    return format;
}

std::string FormatDateText(const DateFormat& format, const std::string& pattern, const std::tm& time) {
    return FormatTime(format.localeName, pattern, time);
}

std::string GeneralDateText(const DateFormat& format, const std::tm& time) {
    return FormatDateText(format, format.shortDate, time) + " " + FormatDateText(format, format.longTime, time);
}

}  // namespace support
