// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/Disk.h"

namespace orvanel {

/// What the spectra of one experiment share.
struct ExperimentKind {
    int msLevel = 0;   ///< from 1; 0 when there are no spectra
    int polarity = 0;  ///< 0 positive, 1 negative
    bool profile = true;
    /// The m/z in Da that each isolation took, as far as the file tells, the last isolation last. Several of one
    /// isolation ascend.
    std::vector<std::vector<double>> isolations;
    double lowMz = 0;  ///< scan window in Da; 0 to 0 where the file does not tell
    double highMz = 0;
};

/// One of the experiments that a file holds.
struct ExperimentSummary {
    ExperimentKind kind;
    std::size_t spectra = 0;
};

/// One spectrum of the explored experiment.
struct StoredSpectrum {
    std::string id;  ///< as the file names it, UTF-8 where the file keeps to its encoding
    int cycle = 1;
    double timeMinutes = 0;
    std::optional<double> rampValue;
    std::vector<double> mz;         ///< ascending, Da
    std::vector<double> intensity;  ///< not negative, one for each mz
};

/// A chromatogram as it is stored.
struct StoredTrace {
    std::string id;
    std::string kind;  ///< of other than mass chromatograms: the vocabulary's name, empty where the file has none
    double q1 = 0;     ///< m/z in Da, 0 for a total ion chromatogram
    double q3 = 0;     ///< m/z in Da, 0 for a single mass
    std::vector<double> timeMinutes;
    std::vector<double> rampValues;  ///< empty, or one for each time
    std::vector<double> intensity;   ///< one for each time

    const std::vector<double>& X() const { return rampValues.empty() ? timeMinutes : rampValues; }
};

/// One experiment of a data file, ready to be explored.
struct DataFileContent {
    std::string id;                              ///< what the document calls itself
    std::vector<ExperimentSummary> experiments;  ///< all that the file holds, in the order of their first spectra
    ExperimentKind kind;
    std::string rampParameter;  ///< id such as "CE", empty where nothing was ramped
    int firstCycle = 0;         ///< of the experiment, also where only one cycle is read
    int lastCycle = 0;
    std::vector<StoredSpectrum> spectra;  ///< in order of the cycles
    std::size_t otherSpectra = 0;         ///< number of those that are no mass spectra
    std::vector<StoredTrace> traces;      ///< in the order of the experiment's mass list
    std::optional<StoredTrace> total;     ///< the stored total ion chromatogram
    std::vector<StoredTrace> others;      ///< what is not of masses, such as ultraviolet absorption

    /// What a chromatogram shows on its x axis for this spectrum.
    double X(const StoredSpectrum& spectrum) const { return spectrum.rampValue.value_or(spectrum.timeMinutes); }
};

/// Reads a ".vesk" file or any other mzML file, indexed or not, also one packed by gzip, whatever its name.
///
/// Mass spectra belong to one experiment when they share MS level, polarity, representation (profile or centroid),
/// precursors (within 0.05 Da of its first spectrum's) and scan window (within 0.5 Da). Their cycle is the stored cycle
/// number, else their ordinal from 1. A spectrum without a scan start time gets that of the one before it. Those that
/// do not state their representation have what the points of their MS level look like (docs/formats.md). Of the
/// chromatograms, those with a precursor m/z are traces.
/// @param path full path, UTF-8
/// @param experiment the one whose spectra are read, counted from 0 in the order of their first spectra
/// @throws ports::HostError when there is no such file, it is (or unpacks to) more than 1 GiB or holds more than 40
/// million points, it is not a whole and sound mzML file, or it holds no such experiment
DataFileContent ReadDataFile(const std::string& path, std::size_t experiment = 0,
                             const support::Disk& disk = support::SystemDisk());

/// The same with the spectra of one cycle only (none where there is no such cycle). Where the file has an index that
/// leads to its spectra, the points of the others are not read, so that faults in them are not seen.
DataFileContent ReadCycle(const std::string& path, std::size_t experiment, int cycle,
                          const support::Disk& disk = support::SystemDisk());

/// The same without any spectra: which experiments and chromatograms the file holds.
DataFileContent ReadExperiments(const std::string& path, const support::Disk& disk = support::SystemDisk());

/// The files that were read last, so that several handles on one file read it once. A file is read again when its size,
/// its time of change or the file itself differs. One thread only.
class DataFileCache {
  public:
    /// @param disk must outlive the cache
    /// @param check asked before every opening, and may refuse the file; none when empty
    explicit DataFileCache(const support::Disk& disk = support::SystemDisk(),
                           std::function<void(const std::string& path)> check = {})
        : disk_(disk), check_(std::move(check)) {}

    /// @throws ports::HostError as ReadDataFile
    std::shared_ptr<const DataFileContent> Open(const std::string& path);

  private:
    struct Entry {
        std::string path;
        support::PathStatus status;
        std::shared_ptr<const DataFileContent> content;
    };
    const support::Disk& disk_;
    std::function<void(const std::string& path)> check_;
    std::vector<Entry> entries_;  ///< the one used last is the first
};

}  // namespace orvanel
