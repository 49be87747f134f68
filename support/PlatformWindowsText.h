// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace support {

/// The system's wide texts are UTF-16, ours are UTF-8. What is malformed becomes the replacement character.
std::wstring Wide(std::string_view utf8);
std::string Utf8(std::wstring_view wide);

}  // namespace support
