// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>

#include "model/clsItem_Peak.h"
#include "scans/ScanStage.h"

namespace veltra {

/// Enhanced Resolution scan of 30 Da around the expected m/z: finds the actual 1st precursor within 1 Da of it.
class clsScan1_ER : private ScanStage {
  public:
    static constexpr double halfWindowDa = 15.0;      ///< how far the scan reaches on either side of the expected m/z
    static constexpr double parentToleranceDa = 1.0;  ///< how far from the expected m/z the parent may be

    explicit clsScan1_ER(RunState& runState) : ScanStage(runState) {}

    /// @return the parent peak; nothing when the stage failed, was stopped or found none
    std::shared_ptr<clsItem_Peak> Scan(double dblExpectedMZ, const clsItem_FilePaths& pObjFilePathsItem);
    /// Evaluates an ER data file that exists already, around the m/z of the last Scan.
    std::shared_ptr<clsItem_Peak> ExploreGeneratedVesk(const std::string& strVeskFilePath);

  private:
    void BuildMethod(clsAcquire& acquire, const ScanRate& scanRate, const clsItem_FilePaths& filePaths);

    double expectedMz_ = 0;
};

}  // namespace veltra
