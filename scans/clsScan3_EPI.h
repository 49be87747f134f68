// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "model/clsItem_TopPeak.h"
#include "scans/ScanStage.h"

namespace veltra {

/// Enhanced Product Ion scan of the 1st precursor with a spread of collision energies: picks the most intense fragments
/// as 2nd precursors.
class clsScan3_EPI : private ScanStage {
  public:
    static constexpr double exclusionToleranceDa = 2.5;  ///< fragments are looked for further from the 1st precursor

    explicit clsScan3_EPI(RunState& runState) : ScanStage(runState) {}

    /// @param dblMass 1st precursor, Da
    /// @param sglCE, sglCES V
    /// @return one record a 2nd precursor, most intense first; nothing when the stage failed or was stopped before the
    /// data were explored, empty when it failed afterwards
    std::optional<TopPeakCollection> Scan(double dblMass, float sglCE, float sglCES,
                                          const clsItem_FilePaths& pObjFilePathsItem);
    /// Evaluates an EPI data file that exists already, for the 1st precursor of the last Scan.
    TopPeakCollection ExploreGeneratedVesk(const std::string& strVeskFilePath);
    /// One record a peak, in their order. Each holds the peak itself, not a copy.
    static TopPeakCollection RecordsOf(const PeakCollection& peaks);

  private:
    void BuildMethod(clsAcquire& acquire, const ScanRate& scanRate, float ce, float ces,
                     const clsItem_FilePaths& filePaths);

    double firstPrecursor_ = 0;
};

}  // namespace veltra
