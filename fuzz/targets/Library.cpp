// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <cmath>

#include "fuzz/Fuzz.h"
#include "orvanel/import/CompoundImport.h"
#include "orvanel/import/SpectrumReaders.h"
#include "orvanel/instrument/Compound.h"

/// Spectra that are read are whole, and a compound that is made from them is one that the instrument takes.
void fuzz::Try(std::string_view input) {
    const std::string path = FileWith("spectra.txt", input);
    const auto records = ReadOrRefuse(path, [&] { return orvanel::ReadSpectrumFile(path); });
    if (!records) return;
    for (const auto& record : *records) {
        Require(record.path == path && record.line >= 1, "a record knows where it stands");
        const auto rising = [](const auto& a, const auto& b) { return a.mz < b.mz; };
        Require(std::is_sorted(record.peaks.begin(), record.peaks.end(), rising), "peaks rise in m/z");
        for (const auto& peak : record.peaks)
            Require(peak.mz >= 1 && peak.intensity >= 0 && std::isfinite(peak.intensity), "a peak is one");
    }
    const auto made = ReadOrRefuse(path, [&]() -> std::optional<orvanel::MeasuredIon> {
        return orvanel::JudgeRecords(*records, std::nullopt, Elements());
    });
    if (!made) return;
    const auto text = ReadOrRefuse(path, [&] {
        return orvanel::CompoundFileText(**made,
                                         orvanel::FitBreakdown(**made, orvanel::BinSpectra(**made), Elements()));
    });
    if (!text) return;
    const std::string compound = FileWith("compound.ini", *text);
    ReadOrRefuse(compound, [&] { return orvanel::LoadCompound(compound, Elements()); });
}
