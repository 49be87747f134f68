// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "scans/MethodSteps.h"
#include "scans/ScanStage.h"

namespace veltra {

/// Q1 Multiple Ion scan of the 1st precursor with one voltage ramped: finds the voltage at which the smoothed total ion
/// chromatogram is highest.
class clsScan2_Q1MI : private ScanStage {
  public:
    explicit clsScan2_Q1MI(RunState& runState) : ScanStage(runState) {}

    /// @param dblQ1Mass Da
    /// @param dblDwellTime ms
    /// @param strParamId "DP", "EP", "REOPTDP" (DP again, with a graph of its own) or "CEP"
    /// @return the optimal voltage, signed as applied; meaningless when AbortRequested is set
    double Scan(double dblQ1Mass, double dblDwellTime, const std::string& strParamId, float sglStart, float sglStop,
                float sglStep, const clsItem_FilePaths& pObjFilePathsItem);

  private:
    void BuildMethod(clsAcquire& acquire, const ParameterRamp& ramp, const clsItem_FilePaths& filePaths);
    double ExploreVesk(const std::string& strVeskFilePath, const std::string& strParamId);
    void StoreGraph(const std::string& strParamId, ChromDataReference graph);

    double q1Mass_ = 0;
    double dwellTimeMs_ = 0;
};

}  // namespace veltra
