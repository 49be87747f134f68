#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvanel {

/// One spectrum of the explored experiment.
struct StoredSpectrum {
    int cycle = 1;
    double timeMinutes = 0;
    std::optional<double> rampValue;
    std::vector<double> mz;         ///< ascending, Da
    std::vector<double> intensity;  ///< not negative, one for each mz
};

/// A chromatogram as it is stored.
struct StoredTrace {
    double q1 = 0;  ///< m/z in Da, 0 for a total ion chromatogram
    double q3 = 0;  ///< m/z in Da, 0 for a single mass
    std::vector<double> timeMinutes;
    std::vector<double> rampValues;  ///< empty, or one for each time
    std::vector<double> intensity;   ///< one for each time

    const std::vector<double>& X() const { return rampValues.empty() ? timeMinutes : rampValues; }
};

/// The one experiment of a data file that can be explored.
struct DataFileContent {
    std::string rampParameter;  ///< id such as "CE", empty where nothing was ramped
    int msLevel = 0;            ///< 0 when there are no spectra
    bool profile = true;
    int polarity = 0;                     ///< 0 positive, 1 negative
    std::vector<StoredSpectrum> spectra;  ///< in order of the cycles
    std::vector<StoredTrace> traces;      ///< in the order of the experiment's mass list
    std::optional<StoredTrace> total;     ///< the stored total ion chromatogram

    /// What a chromatogram shows on its x axis for this spectrum.
    double X(const StoredSpectrum& spectrum) const { return spectrum.rampValue.value_or(spectrum.timeMinutes); }
};

/// Reads a ".vesk" file or any other mzML file, indexed or not.
///
/// Of the spectra, those belong to the experiment that share MS level, polarity and representation (profile or
/// centroid) with the file's first mass spectrum. Their cycle is the stored cycle number, else their ordinal from 1. A
/// spectrum without a scan start time gets that of the one before it. Of the chromatograms, those with a precursor m/z
/// are traces.
/// @param path full path, UTF-8
/// @throws ports::HostError when there is no such file, it is larger than 1 GiB or holds more than 40 million points,
/// or it is not a whole and sound mzML file
DataFileContent ReadDataFile(const std::string& path);

/// The files that were read last, so that several handles on one file read it once. A file is read again when its size
/// or its time of change differs. One thread only.
class DataFileCache {
  public:
    /// @throws ports::HostError as ReadDataFile
    std::shared_ptr<const DataFileContent> Open(const std::string& path);

  private:
    struct Entry {
        std::string path;
        std::uintmax_t size = 0;
        std::filesystem::file_time_type changed;
        std::shared_ptr<const DataFileContent> content;
    };
    std::vector<Entry> entries_;  ///< the one used last is the first
};

}  // namespace orvanel
