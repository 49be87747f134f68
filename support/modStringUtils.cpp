#include "support/modStringUtils.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <exception>

namespace support {

bool IsNumericText(const std::string& strText) {
    return strText.find_first_not_of("0123456789.") == std::string::npos &&
           std::count(strText.begin(), strText.end(), '.') <= 1;
}

std::string FormatOneDecimal(float sglNumber) {
    if (!std::isfinite(sglNumber)) return "N/A";
    constexpr int decimals = 1;
    std::array<char, 64> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), sglNumber, std::chars_format::fixed, decimals);
    const std::string result(text.data(), end.ptr);
    return result == "-0.0" ? "0.0" : result;
}

void FillListFromHost(ListControl& list, int firstArgument, int secondArgument,
                      const std::function<std::vector<std::string>(int, int)>& askHost) {
    try {
        const auto texts = askHost(firstArgument, secondArgument);
        for (std::size_t i = 0; i < texts.size(); ++i)
            list.InsertItem(static_cast<int>(i), texts[i]);
        if (!texts.empty()) list.SelectItem(0);
    } catch (const std::exception&) {
        // A host that cannot tell leaves the list as it is.
    }
}

}  // namespace support
