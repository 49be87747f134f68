// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvanel/import/SpectrumRecord.h"
#include "support/Disk.h"

namespace orvanel {

/// What a reader takes at most; more is a damaged or a foreign file.
inline constexpr std::size_t maximumSpectra = 1000;
inline constexpr std::size_t maximumPeaks = 50000;

/// The lines of a text file in UTF-8, without their ends (LF, CR LF or CR). Bytes that are not UTF-8 are read as
/// Latin-1, a byte order mark is dropped.
/// @throws ports::HostError above 32 MiB, on UTF-16, and on bytes that no text has
std::vector<std::string> ReadTextLines(const std::string& path, const support::Disk& disk);

/// Reads the whole number of peaks that a record announces. @throws ports::HostError
std::size_t ReadPeakCount(const std::string& path, int line, const std::string& text);

/// Adds a peak of two number texts to the record, in any order of m/z.
/// @throws ports::HostError when one is no number, not finite or out of its range
void AddPeak(SpectrumRecord& record, int line, const std::string& mz, const std::string& intensity);

/// Compares what was read with what was announced, and sorts. @throws ports::HostError
void FinishPeaks(SpectrumRecord& record, int line, std::size_t announced);

/// The parts of a text between blanks and tabs.
std::vector<std::string> Words(const std::string& text);

}  // namespace orvanel
