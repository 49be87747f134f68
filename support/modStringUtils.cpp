// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/modStringUtils.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "support/NumberText.h"

namespace support {

bool IsNumericText(const std::string& strText) {
    return strText.find_first_not_of("0123456789.") == std::string::npos &&
           std::count(strText.begin(), strText.end(), '.') <= 1;
}

std::string FormatOneDecimal(float sglNumber) {
    if (!std::isfinite(sglNumber)) return "N/A";
    return FixedText(sglNumber, 1);
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
