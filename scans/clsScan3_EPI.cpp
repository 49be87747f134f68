// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scans/clsScan3_EPI.h"

#include <utility>

namespace veltra {

std::optional<TopPeakCollection> clsScan3_EPI::Scan(double dblMass, float sglCE, float sglCES,
                                                    const clsItem_FilePaths& pObjFilePathsItem) {
    firstPrecursor_ = dblMass;
    const auto build = [&](clsAcquire& acquire, const ScanRate& scanRate) {
        BuildMethod(acquire, scanRate, sglCE, sglCES, pObjFilePathsItem);
    };
    if (!AcquireTrapScan(pObjFilePathsItem, ScanTypeCode::EPI, runState_.settings.Advanced_EPIScanRate, build))
        return std::nullopt;
    return ExploreGeneratedVesk(pObjFilePathsItem.VeskFilePath);
}

void clsScan3_EPI::BuildMethod(clsAcquire& acquire, const ScanRate& scanRate, float ce, float ces,
                               const clsItem_FilePaths& filePaths) {
    const auto& settings = runState_.settings;
    acquire.Step1_Load(filePaths.LastMethodFilePath);
    acquire.Step2_InitializeMethod(static_cast<std::int16_t>(ScanTypeCode::EPI), scansToSum);
    std::int32_t index = 0;
    acquire.Step3a_SetMassRange(static_cast<double>(settings.Advanced_EPIMassStart),
                                static_cast<double>(settings.Advanced_EPIMassEnd), scanRate.stepDa, index);
    acquire.Step3b_SetEPIProductOf(firstPrecursor_);
    SetScanRateAndDwellTime(acquire, scanRate);
    acquire.Step4c_SetCompoundParam("CE", ce);
    acquire.Step4c_SetCompoundParam("CES", ces);
    SetPrecursorParams(acquire, runState_);
    acquire.Step4c_SetCompoundParam("AF2", runState_.results->AF2.Current);
    acquire.Step5_SaveAsNewMethod(filePaths.MethodFilePath);
    // The range is optimised on the saved method.
    acquire.Step1_Load(filePaths.MethodFilePath);
    acquire.OptimizeMassRange();
    acquire.Step4g_SetNumOfCycles(settings.Advanced_EPICycles);
    acquire.Step5_SaveAsNewMethod(filePaths.MethodFilePath);
}

TopPeakCollection clsScan3_EPI::ExploreGeneratedVesk(const std::string& strVeskFilePath) {
    constexpr std::int16_t noPercentageTest = -1;
    PeakCollection peaks;
    const bool explored = Explore(strVeskFilePath, [&](clsExplore& explore) {
        bool percentBelowThreshold = true;
        explore.Spectrum_LoadSpectrum();
        peaks = explore.Spectrum_GetTopPeaks(runState_.settings.Advanced_EPINum2ndPrec, firstPrecursor_,
                                             exclusionToleranceDa, noPercentageTest, percentBelowThreshold);
        if (runState_.scans) runState_.scans->Scan3_EPI_SpecData(explore.GetSpecDataObject());
    });
    if (!explored) return {};
    if (peaks.empty()) StopWithoutFinding("No EPI spectrum peaks found.");
    return RecordsOf(peaks);
}

TopPeakCollection clsScan3_EPI::RecordsOf(const PeakCollection& peaks) {
    TopPeakCollection records;
    for (const auto& peak : peaks) {
        auto record = std::make_shared<clsItem_TopPeak>();
        record->SecondPrecursor = peak;
        records.push_back(std::move(record));
    }
    return records;
}

}  // namespace veltra
