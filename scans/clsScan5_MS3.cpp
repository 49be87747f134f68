// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scans/clsScan5_MS3.h"

#include "support/NumberText.h"

namespace veltra {

void clsScan5_MS3::Scan(double dblFirstPrecursor, clsItem_TopPeak& pObjTopPeakItem, const std::string& strParamId,
                        float sglStart, float sglStop, float sglStep, const clsItem_FilePaths& pObjFilePathsItem) {
    firstPrecursor_ = dblFirstPrecursor;
    secondPrecursor_ = pObjTopPeakItem.SecondPrecursor->CentroidMass;
    rampStep_ = sglStep;
    const ParameterRamp ramp{strParamId, sglStart, sglStop, sglStep};
    const auto build = [&](clsAcquire& acquire, const ScanRate& scanRate) {
        BuildMethod(acquire, scanRate, ramp, pObjFilePathsItem);
    };
    if (!AcquireTrapScan(pObjFilePathsItem, ScanTypeCode::MS3, runState_.settings.Advanced_MS3ScanRate, build)) return;

    const Findings findings = ExploreVesk(pObjFilePathsItem.VeskFilePath);
    pObjTopPeakItem.MS3PeaksCollection = findings.thirdPrecursors;
    pObjTopPeakItem.OptimizedAF2 = findings.af2;
    pObjTopPeakItem.AF2WasOptimized = findings.af2Found;
    pObjTopPeakItem.MS3PercentBelowThreshold = findings.percentBelowThreshold;
}

void clsScan5_MS3::BuildMethod(clsAcquire& acquire, const ScanRate& scanRate, const ParameterRamp& ramp,
                               const clsItem_FilePaths& filePaths) {
    const auto& settings = runState_.settings;
    constexpr bool dynamicFillTime = false;

    acquire.Step1_Load(filePaths.LastMethodFilePath);
    acquire.Step2_InitializeMethod(static_cast<std::int16_t>(ScanTypeCode::MS3), scansToSum);
    std::int32_t index = 0;
    acquire.Step3a_SetMassRange(static_cast<double>(settings.Advanced_MS3MassStart),
                                static_cast<double>(settings.Advanced_MS3MassEnd), scanRate.stepDa, index);
    acquire.Step3c_SetMS3Precursors(firstPrecursor_, secondPrecursor_);
    SetScanRateAndDwellTime(acquire, scanRate);
    SetCompoundParams(acquire, runState_, runState_.results->CE.Current);
    acquire.Step4d_SetRampingParamAndNumCycles(ramp.id, ramp.start, ramp.stop, ramp.step);
    acquire.Step4f_SetFillTime(dynamicFillTime, settings.Advanced_MS3UseQ0Trapping, settings.Advanced_MS3FixedFillTime);
    acquire.Step5_SaveAsNewMethod(filePaths.MethodFilePath);
    // The range is optimised on the saved method.
    acquire.Step1_Load(filePaths.MethodFilePath);
    acquire.OptimizeMassRange();
    acquire.Step5_SaveAsNewMethod(filePaths.MethodFilePath);
}

clsScan5_MS3::Findings clsScan5_MS3::ExploreVesk(const std::string& strVeskFilePath) {
    Findings findings;
    Explore(strVeskFilePath, [&](clsExplore& explore) {
        explore.Chrom_LoadXIC(secondPrecursor_, secondPrecursor_ + remainderWindowDa);
        explore.Chrom_SmoothGraph(smoothes);
        findings.af2 = explore.Chrom_GetPercentMaxIntensityValue(remainingPercent, findings.af2Found);
        if (findings.af2Found) {
            const double steps = findings.af2 / static_cast<double>(rampStep_);
            explore.Spectrum_LoadCycleDependentSpectrum(support::ToInt16(support::ToInt16(steps) + 1.0));
            findings.thirdPrecursors =
                explore.Spectrum_GetTopPeaks(peaksWanted, secondPrecursor_, exclusionToleranceDa,
                                             parentAreaPercentLimit, findings.percentBelowThreshold);
        } else {
            findings.percentBelowThreshold = true;
            explore.Spectrum_LoadSpectrum();
        }
        runState_.scans->Scan5_MS3_AddOneSpecData(explore.GetSpecDataObject());
    });
    return findings;
}

}  // namespace veltra
