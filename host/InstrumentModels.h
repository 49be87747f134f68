// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

namespace veltra {

/// Scan types as the host numbers them.
enum class ScanTypeCode : std::int16_t { Q1MI = 1, MRM = 4, EPI = 11, ER = 12, MS3 = 13 };

/// EP and CEP cannot be optimised on these models.
bool SupportsEPAndCEP(std::int32_t instrumentModelCode);
/// These models take AF2 on a scale of 0 to 0.4 and get a fixed excitation time.
bool IsDasmyrSeries(std::int32_t instrumentModelCode);
/// These models refuse a method made in another operating mode than the present one.
bool ChecksOperatingMode(std::int32_t instrumentModelCode);

}  // namespace veltra
