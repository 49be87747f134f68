// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>

#include "model/clsItem_TopPeak.h"
#include "scans/MethodSteps.h"
#include "scans/ScanStage.h"

namespace veltra {

/// MS/MS/MS scan of one 2nd precursor with AF2 ramped: finds the AF2 that leaves 5 % of the 2nd precursor, and the most
/// intense 3rd precursors at it.
class clsScan5_MS3 : private ScanStage {
  public:
    // The precursor's own ions are summed from the centroid upwards, where no lighter neighbour reaches in.
    static constexpr double remainderWindowDa = 0.5;
    static constexpr std::int16_t remainingPercent = 5;  ///< of the precursor, at the AF2 that is chosen
    static constexpr std::int16_t smoothes = 2;
    static constexpr std::int16_t peaksWanted = 2;
    static constexpr double exclusionToleranceDa = 5.0;  ///< 3rd precursors are looked for further from the 2nd
    static constexpr std::int16_t parentAreaPercentLimit = 10;

    explicit clsScan5_MS3(RunState& runState) : ScanStage(runState) {}

    /// Writes the AF2 and MS3 fields of the record.
    /// @param dblFirstPrecursor Da
    /// @param sglStart must be 0: a cycle's number is computed from its AF2
    void Scan(double dblFirstPrecursor, clsItem_TopPeak& pObjTopPeakItem, const std::string& strParamId, float sglStart,
              float sglStop, float sglStep, const clsItem_FilePaths& pObjFilePathsItem);

  private:
    struct Findings {
        double af2 = 0;
        bool af2Found = false;
        bool percentBelowThreshold = false;
        PeakCollection thirdPrecursors;
    };
    void BuildMethod(clsAcquire& acquire, const ScanRate& scanRate, const ParameterRamp& ramp,
                     const clsItem_FilePaths& filePaths);
    Findings ExploreVesk(const std::string& strVeskFilePath);

    double firstPrecursor_ = 0;
    double secondPrecursor_ = 0;
    float rampStep_ = 0;
};

}  // namespace veltra
