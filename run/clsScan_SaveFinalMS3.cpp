// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/clsScan_SaveFinalMS3.h"

#include "support/Files.h"
#include "support/Paths.h"
#include "support/modFileUtils.h"

namespace veltra {

bool clsScan_SaveFinalMS3::GenerateFinalMethod(double dblFirstPrecursor, double dblSecondPrecursor,
                                               const std::string& strTemplateMethodFilePath,
                                               const std::string& strNewMethodFilePath) {
    constexpr double lowestMass = 50.0;
    constexpr double aboveSecondPrecursor = 5.0;
    return Generate({dblFirstPrecursor, dblSecondPrecursor, lowestMass, dblSecondPrecursor + aboveSecondPrecursor,
                     strTemplateMethodFilePath, strNewMethodFilePath});
}

bool clsScan_SaveFinalMS3::GenerateFinalOptimalMethod(double dblFirstPrecursor, double dblSecondPrecursor,
                                                      double dblThirdPrecursor,
                                                      const std::string& strTemplateMethodFilePath,
                                                      const std::string& strNewMethodFilePath) {
    constexpr double halfWindow = 10.0;
    return Generate({dblFirstPrecursor, dblSecondPrecursor, dblThirdPrecursor - halfWindow,
                     dblThirdPrecursor + halfWindow, strTemplateMethodFilePath, strNewMethodFilePath});
}

void clsScan_SaveFinalMS3::Build(clsAcquire& acquire, const ScanRate& scanRate, const FinalMethod& method,
                                 bool& isSaved) {
    constexpr std::int16_t oneScan = 1;
    constexpr bool dynamicFillTime = false;
    const auto& settings = runState_.settings;
    acquire.Step1_Load(method.templatePath);
    acquire.Step2_InitializeMethod(static_cast<std::int16_t>(ScanTypeCode::MS3), oneScan);
    std::int32_t index = 0;
    acquire.Step3a_SetMassRange(method.massStart, method.massStop, scanRate.stepDa, index);
    acquire.Step3c_SetMS3Precursors(method.firstPrecursor, method.secondPrecursor);
    SetScanRateAndDwellTime(acquire, scanRate);
    SetCompoundParams(acquire, runState_, runState_.results->CE.Current);
    acquire.Step4f_SetFillTime(dynamicFillTime, settings.Advanced_MS3UseQ0Trapping, settings.Advanced_MS3FixedFillTime);
    acquire.Step5_SaveAsNewMethod(method.newPath);
    isSaved = !acquire.ErrorOccurred();
    // The range is optimised on the saved method.
    acquire.Step1_Load(method.newPath);
    acquire.OptimizeMassRange();
    acquire.SetExcitationTimeForDasmyrSeries();
    acquire.Step5_SaveAsNewMethod(method.newPath);
}

void clsScan_SaveFinalMS3::RemoveUnfinished(const std::string& path) {
    const auto failure = FailureOf([&] {
        if (support::FileExists(path, runState_.disk)) runState_.disk.Remove(support::NativePath(path));
    });
    if (failure)
        runState_.WriteLogLine("Unable to remove " + path + ", which is not finished, please delete it" + *failure);
}

bool clsScan_SaveFinalMS3::NotCreated(const FinalMethod& method, const std::string& description) {
    runState_.WriteLogLine(description);
    const std::string unable = "Unable to create " + support::GetFolderNameAtDepth(method.newPath, 0);
    runState_.WriteLogLine(unable);
    runState_.results->UnwrittenFiles.push_back(unable);
    return false;
}

bool clsScan_SaveFinalMS3::Generate(const FinalMethod& method) {
    const std::string unexpected = "Error during creation of the final method";
    runState_.display.MessageUpdate("Creating final acquisition methods...");
    ScanRate scanRate;
    if (const auto failure = FailureOf(
            [&] { scanRate = GetScanRate(runState_, ScanTypeCode::MS3, runState_.settings.Advanced_MS3ScanRate); }))
        return NotCreated(method, unexpected + *failure);

    clsAcquire acquire(runState_);
    bool isSaved = false;
    const auto failure = FailureOf([&] { Build(acquire, scanRate, method, isSaved); });
    if (failure || acquire.ErrorOccurred()) {
        // The excitation time is set without error handling; on a failed object the first failure is what counts.
        NotCreated(method, acquire.ErrorOccurred() ? acquire.ErrorDescription() : unexpected + *failure);
        if (isSaved) RemoveUnfinished(method.newPath);
        return false;
    }
    runState_.display.MessageUpdate("Final acquisition methods created.");
    return true;
}

}  // namespace veltra
