// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/HostWrapper.h"
#include "model/clsInfo_Scans.h"
#include "model/clsItem_TopPeak.h"
#include "ports/DataExploration.h"
#include "ports/Host.h"

namespace veltra {

/// One acquired data file, explored: chromatograms and their optima, spectra and their peaks. Members of a failed
/// object do nothing.
class clsExplore : public HostWrapper {
  public:
    /// @param host must outlive the object
    explicit clsExplore(ports::Host& host);
    ~clsExplore();

    void Initialize(const std::string& strVeskFilePath);

    void Chrom_LoadTIC();
    void Chrom_LoadXIC(double dblMassStart, double dblMassStop);
    /// @param intIndex position in the experiment's list of masses or transitions, from 0
    void Chrom_LoadXICOverlay(std::int16_t intIndex);
    /// The x of the most intense point. Reorders the loaded chromatogram by intensity.
    double Chrom_GetOptimalValue(bool& pBlnOptimalFound);
    /// The x of the least intense point that still reaches the percentage of the maximum, on either side of it.
    /// Reorders the loaded chromatogram by intensity.
    double Chrom_GetPercentMaxIntensityValue(std::int16_t intPercentage, bool& pBlnMaxVoltageFound);
    void Chrom_SmoothGraph(std::int16_t intNumOfSmoothes);

    /// The spectrum of the whole file.
    void Spectrum_LoadSpectrum();
    /// @param intCycle from 1
    void Spectrum_LoadCycleDependentSpectrum(std::int16_t intCycle);
    /// @return the most intense peak within the tolerance (Da), stepped down to the monoisotopic one where the host's
    /// list and the areas say so; nothing when there is none
    std::shared_ptr<clsItem_Peak> Spectrum_GetHighestPeakInRange(double dblMass, double dblTolerance);
    /// The most intense monoisotopic peaks, most intense first.
    /// @param dblMassToExclude peaks closer to it than the tolerance are not taken; exactly -1 excludes none
    /// @param intPeakAreaPercentThreshold above -1: when the window around the excluded mass holds more than this
    /// percentage of the area, nothing is returned and pBlnPercentBelowThreshold is false
    PeakCollection Spectrum_GetTopPeaks(std::int16_t intNumOfPeaksToGet, double dblMassToExclude,
                                        double dblMassExclusionTolerance, std::int16_t intPeakAreaPercentThreshold,
                                        bool& pBlnPercentBelowThreshold);

    /// Copies for graphs, which keep what is loaded now. Nothing after a failure.
    ChromDataReference GetChromDataObject();
    SpecDataReference GetSpecDataObject();

  private:
    std::unique_ptr<ports::PeakList> LoadedPeakList() const;

    std::string dataFilePath_;
    std::unique_ptr<ports::DataExploration> exploration_;
    std::unique_ptr<ports::ChromatogramData> chromatogram_;
    std::unique_ptr<ports::SpectrumData> spectrum_;
};

}  // namespace veltra
