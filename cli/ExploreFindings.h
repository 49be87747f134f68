// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/Commands.h"
#include "orvanel/data/DataReader.h"
#include "ports/DataExploration.h"

namespace cli {

/// The apex of one stored chromatogram, found as the MRM stage finds it.
struct TraceApex {
    const orvanel::StoredTrace* trace = nullptr;
    std::optional<double> x;  ///< minutes, or the ramped value; nothing where no point is above 0
    double intensity = 0;     ///< after smoothing
};

/// What a data file shows.
struct ExploreFindings {
    orvanel::DataFileContent content;
    std::vector<const orvanel::StoredSpectrum*> used;  ///< the spectra whose mean the peaks are those of
    std::unique_ptr<ports::PeakList> peaks;            ///< nothing where there are no spectra
    std::vector<int> shown;                            ///< numbers of peaks, the most intense first
    std::optional<double> wantedMz;                    ///< the expected m/z that the parent was looked for at
    int parent = 0;                                    ///< its number, 0 when it was not found
    std::vector<double> excluded;                      ///< m/z whose surroundings are left out of what is shown
    double excludedToleranceDa = 0;
    bool precursorRemains = false;  ///< so much of it that a run takes no 3rd precursors
    std::vector<TraceApex> traces;
};

/// Evaluates a file as the stages of a run do.
/// @throws std::exception that names the file and the reason
ExploreFindings Explore(const ExploreOptions& options);

void PrintFindings(const ExploreFindings& findings, const ExploreOptions& options, std::ostream& out);
void PrintFindingsAsJson(const ExploreFindings& findings, const ExploreOptions& options, std::ostream& out);

}  // namespace cli
