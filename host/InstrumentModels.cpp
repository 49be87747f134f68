// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/InstrumentModels.h"

#include <algorithm>
#include <initializer_list>

namespace veltra {
namespace {

bool IsOneOf(std::int32_t code, std::initializer_list<std::int32_t> codes) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

}  // namespace

bool SupportsEPAndCEP(std::int32_t instrumentModelCode) {
    return !IsOneOf(instrumentModelCode, {14, 22, 24, 26, 29, 31, 33});
}

bool IsDasmyrSeries(std::int32_t instrumentModelCode) {
    return IsOneOf(instrumentModelCode, {22, 24, 26, 29, 31, 33});
}

bool ChecksOperatingMode(std::int32_t instrumentModelCode) {
    return IsOneOf(instrumentModelCode, {26, 29, 31});
}

}  // namespace veltra
