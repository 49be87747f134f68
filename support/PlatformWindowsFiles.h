// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <string>

namespace support {

/// In English and the same as elsewhere where the system's number has a portable meaning.
std::string WindowsErrorText(DWORD error);

}  // namespace support

#endif
