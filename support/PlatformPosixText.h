// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace support {

/// The text in UTF-8. What is no character of its encoding, or all that is not ASCII where the system does not know the
/// encoding, becomes "?".
/// @param codeset the encoding, as nl_langinfo names it
std::string Utf8From(std::string text, const std::string& codeset);

}  // namespace support
