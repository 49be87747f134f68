// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "support/Files.h"
#include "tests/orvanel/instrument/InstrumentBench.h"
#include "tests/support_files/TempFolder.h"

namespace orvanel::bench {

/// An invented record of an invented compound, C9H10O2 as [M+H]+, m/z 151.0754.
struct Record {
    std::string energy = "AC$MASS_SPECTROMETRY: COLLISION_ENERGY 10 V\n";
    std::vector<std::string> peaks;  ///< "m/z intensity"
    std::string formula = "C9H10O2";
    std::string adduct = "[M+H]+";
    std::string mode = "POSITIVE";
    std::string instrument = "LC-ESI-QTOF";
    std::string precursor = "MS$FOCUSED_ION: PRECURSOR_M/Z 151.0754\n";
    std::string msType = "MS2";
};

inline std::string Text(const Record& record) {
    std::string text =
        "ACCESSION: TEST-0001\nRECORD_TITLE: Testane; LC-ESI; MS2; CE 44 V\nAUTHORS: A. Tester\nLICENSE: CC BY\n"
        "CH$NAME: Testane\nCH$FORMULA: " +
        record.formula + "\nAC$INSTRUMENT_TYPE: " + record.instrument + "\nAC$MASS_SPECTROMETRY: MS_TYPE " +
        record.msType + "\nAC$MASS_SPECTROMETRY: ION_MODE " + record.mode + "\n" + record.energy + record.precursor +
        "MS$FOCUSED_ION: PRECURSOR_TYPE " + record.adduct +
        "\nPK$ANNOTATION: m/z formula\n  133.0648 C9H9O+\nPK$NUM_PEAK: " + std::to_string(record.peaks.size()) +
        "\nPK$PEAK: m/z int. rel.int.\n";
    for (const std::string& peak : record.peaks)
        text += "  " + peak + " 999\n";
    return text + "//\n";
}

inline Record At(const std::string& energy, const std::vector<std::string>& peaks) {
    Record record;
    record.energy = "AC$MASS_SPECTROMETRY: COLLISION_ENERGY " + energy + "\n";
    record.peaks = peaks;
    return record;
}

/// Four energies at which water and then carbon monoxide leave; one mass stays below 0.5 %.
inline std::vector<Record> Series() {
    return {At("10", {"133.0651 50", "151.0751 950"}), At("20 V", {"105.0702 60", "133.0646 540", "151.0757 400"}),
            At("30 eV", {"79.0545 4", "105.0697 396", "133.0650 600"}),
            At("40 V", {"79.0540 3", "105.0700 900", "133.0648 97"})};
}

/// Files rec0.txt, rec1.txt, ... of a folder.
inline void Write(const TempFolder& folder, const std::vector<Record>& records) {
    for (std::size_t i = 0; i < records.size(); ++i)
        support::WriteWholeFile(folder.File("rec" + std::to_string(i) + ".txt"), Text(records[i]));
}

}  // namespace orvanel::bench
