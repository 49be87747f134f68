// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <string_view>

#include "orvanel/FileFailure.h"
#include "orvanel/import/RecordText.h"
#include "orvanel/import/SpectrumReaders.h"
#include "orvanel/instrument/InstrumentErrors.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {
namespace {

bool IsSpectrumFile(const std::string& name) {
    return support::IsFileOfKind(name, ".txt") || support::IsFileOfKind(name, ".msp");
}

}  // namespace

std::vector<SpectrumRecord> ReadSpectrumFile(const std::string& path, const support::Disk& disk) {
    const auto lines = ReadTextLines(path, disk);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string_view line = support::Trim(lines[i]);
        if (line.empty()) continue;
        if (line.starts_with("ACCESSION:")) return ReadMassBankRecords(path, lines);
        const auto colon = line.find(':');
        if (colon != std::string_view::npos && support::EqualIgnoringCase(support::Trim(line.substr(0, colon)), "Name"))
            return ReadMspSpectra(path, lines);
        FailImport(path, static_cast<int>(i + 1),
                   "is neither a MassBank record, which begins with \"ACCESSION:\", nor an MSP file, which begins with "
                   "\"Name:\"");
    }
    FailImport(path, 0, "is empty");
}

std::vector<std::string> SpectrumFiles(const std::vector<std::string>& filesAndFolders, const support::Disk& disk) {
    std::vector<std::string> files;
    for (const std::string& path : filesAndFolders) {
        if (!AsHostError(spectrumFileFaulty, [&] { return support::FolderExists(path, disk); })) {
            files.push_back(path);
            continue;
        }
        const std::size_t before = files.size();
        for (const std::string& name : AsHostError(spectrumFileFaulty, [&] { return support::FilesIn(path, disk); }))
            if (IsSpectrumFile(name)) files.push_back(support::JoinPath(path, name));
        if (files.size() == before) FailImport(path, 0, "the folder holds no .txt and no .msp file");
    }
    if (files.size() > maximumSpectra)
        FailImport(files[maximumSpectra], 0,
                   "is one file too many, at most " + std::to_string(maximumSpectra) + " are read");
    return files;
}

}  // namespace orvanel
