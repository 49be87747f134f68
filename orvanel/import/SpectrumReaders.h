// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "orvanel/import/SpectrumRecord.h"
#include "support/Disk.h"

namespace orvanel {

/// Records in the text format of MassBank ("ACCESSION: ..." to "//"), usually one a file.
/// @throws ports::HostError naming file and line
std::vector<SpectrumRecord> ReadMassBankRecords(const std::string& path, const std::vector<std::string>& lines);

/// Spectra in the text format of the NIST programs ("Name: ..." to the last of "Num Peaks: ...").
/// @throws ports::HostError naming file and line
std::vector<SpectrumRecord> ReadMspSpectra(const std::string& path, const std::vector<std::string>& lines);

/// All spectra of a file of either format, told apart by the first line that is not blank.
/// @throws ports::HostError naming file and line
std::vector<SpectrumRecord> ReadSpectrumFile(const std::string& path,
                                             const support::Disk& disk = support::SystemDisk());

/// The files to read: those named, and of each folder its .txt and .msp files, sorted by name.
/// @throws ports::HostError when there is none or too many
std::vector<std::string> SpectrumFiles(const std::vector<std::string>& filesAndFolders,
                                       const support::Disk& disk = support::SystemDisk());

}  // namespace orvanel
