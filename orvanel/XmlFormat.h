// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>

namespace orvanel {

/// One kind of XML document of the host.
struct XmlFormat {
    std::string what;  ///< for people, such as "an acquisition method"
    std::string rootElement;
    int version = 1;
    std::int32_t unreadableNumber = 0;  ///< host error number when the file cannot be read
    std::int32_t damagedNumber = 0;     ///< host error number when its content is not of this format
    std::int32_t notSavedNumber = 0;    ///< host error number when it cannot be written
};

}  // namespace orvanel
