// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "model/clsItem_TopPeak.h"
#include "scans/ScanStage.h"

namespace veltra {

/// One MRM acquisition with a transition to each 2nd precursor and CE ramped: finds each transition's best CE.
class clsScan4_MRM : private ScanStage {
  public:
    explicit clsScan4_MRM(RunState& runState) : ScanStage(runState) {}

    /// Writes OptimizedCE and CEWasOptimized of every record.
    /// @param dblQ1Mass 1st precursor, Da
    /// @param pColTopPeaksInfo its order is that of the transitions
    void Scan(double dblQ1Mass, TopPeakCollection& pColTopPeaksInfo, const std::string& strParamId, float sglStart,
              float sglStop, float sglStep, const clsItem_FilePaths& pObjFilePathsItem);

  private:
    void ExploreVesk(const std::string& strVeskFilePath, TopPeakCollection& topPeaks);

    double q1Mass_ = 0;
};

}  // namespace veltra
