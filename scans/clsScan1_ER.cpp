// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scans/clsScan1_ER.h"

#include "support/NumberText.h"

namespace veltra {

std::shared_ptr<clsItem_Peak> clsScan1_ER::Scan(double dblExpectedMZ, const clsItem_FilePaths& pObjFilePathsItem) {
    expectedMz_ = dblExpectedMZ;
    const auto build = [&](clsAcquire& acquire, const ScanRate& scanRate) {
        BuildMethod(acquire, scanRate, pObjFilePathsItem);
    };
    if (!AcquireTrapScan(pObjFilePathsItem, ScanTypeCode::ER, runState_.settings.Advanced_ERScanRate, build))
        return nullptr;
    return ExploreGeneratedVesk(pObjFilePathsItem.VeskFilePath);
}

void clsScan1_ER::BuildMethod(clsAcquire& acquire, const ScanRate& scanRate, const clsItem_FilePaths& filePaths) {
    constexpr float transferCE = 10.0F;
    acquire.Step1_Load(filePaths.LastMethodFilePath);
    acquire.Step2_InitializeMethod(static_cast<std::int16_t>(ScanTypeCode::ER), scansToSum);
    std::int32_t index = 0;
    acquire.Step3a_SetMassRange(expectedMz_ - halfWindowDa, expectedMz_ + halfWindowDa, scanRate.stepDa, index);
    SetScanRateAndDwellTime(acquire, scanRate);
    SetCompoundParams(acquire, runState_, transferCE);
    acquire.Step4g_SetNumOfCycles(runState_.settings.Advanced_ERCycles);
    acquire.Step5_SaveAsNewMethod(filePaths.MethodFilePath);
}

std::shared_ptr<clsItem_Peak> clsScan1_ER::ExploreGeneratedVesk(const std::string& strVeskFilePath) {
    std::shared_ptr<clsItem_Peak> peak;
    const bool explored = Explore(strVeskFilePath, [&](clsExplore& explore) {
        explore.Spectrum_LoadSpectrum();
        peak = explore.Spectrum_GetHighestPeakInRange(expectedMz_, parentToleranceDa);
        if (runState_.scans) runState_.scans->Scan1_ER_SpecData(explore.GetSpecDataObject());
    });
    if (!explored) return nullptr;
    if (peak && !(peak->CentroidIntensity > 0)) peak = nullptr;  // no signal is no parent
    if (!peak)
        StopWithoutFinding("No peaks found within " + support::GeneralText(expectedMz_ - parentToleranceDa) + " - " +
                           support::GeneralText(expectedMz_ + parentToleranceDa) + " Da mass range of ER spectrum.");
    return peak;
}

}  // namespace veltra
