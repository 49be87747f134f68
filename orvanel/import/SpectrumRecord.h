// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

namespace orvanel {

/// What a record states, as it stands there. Line 0: it states nothing.
struct StatedText {
    std::string text;
    int line = 0;

    bool IsGiven() const { return line > 0; }
};

struct RecordPeak {
    double mz = 0;
    double intensity = 0;
};

/// One spectrum of a library, before it is judged.
struct SpectrumRecord {
    std::string path;
    int line = 0;  ///< where it begins
    StatedText accession, license, authors, copyright, title, name, formula, adduct, ionMode, msType, precursorMz,
        collisionEnergy, instrumentType, fragmentationMode;
    std::vector<RecordPeak> peaks;  ///< by rising m/z
    int mzDecimals = 0;             ///< the most decimals that one of its m/z is written with
};

/// "FILE, line N: TEXT" as an error. @throws ports::HostError
[[noreturn]] void FailImport(const std::string& path, int line, const std::string& text);

}  // namespace orvanel
