// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz/Fuzz.h"
#include "orvanel/elements/ElementTableFile.h"
#include "support/IniDocument.h"

void fuzz::Try(std::string_view input) {
    const std::string path = FileWith("QvElements.ini", input);
    const auto table = ReadOrRefuse(path, [&] { return orvanel::OpenElementTableFile(path); });
    if (!table) return;
    const auto document = support::IniDocument::Parse(input);
    for (const auto& section : document.Sections()) {
        const auto isotopes = (*table)->GetIsotopes(section.name);
        Require(isotopes.size() == section.entries.size(), "every isotope of the file is there");
        int tallest = 0;
        for (const auto& isotope : isotopes) {
            Require(isotope.massDa > 0 && isotope.abundancePercent > 0, "an isotope has mass and abundance");
            if (isotope.abundancePercent == 100) ++tallest;
        }
        Require(tallest == 1, "one isotope is the most abundant");
    }
}
