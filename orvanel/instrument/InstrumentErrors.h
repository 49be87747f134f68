// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

namespace orvanel {

/// Error numbers of the simulated instrument and its files (docs/formats.md lists them for users).
enum InstrumentError : std::int32_t {
    elementFileFaulty = 6101,
    unknownElement = 6102,
    modelFileFaulty = 6111,
    compoundFileFaulty = 6121,
    methodNotPossible = 6131,
    spectrumFileFaulty = 6141,
};

}  // namespace orvanel
