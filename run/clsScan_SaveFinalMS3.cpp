#include "run/clsScan_SaveFinalMS3.h"

#include "scans/MethodSteps.h"
#include "support/Files.h"
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

void clsScan_SaveFinalMS3::Build(clsAcquire& acquire, const FinalMethod& method, bool& isSaved) {
    constexpr std::int16_t oneScan = 1;
    constexpr bool dynamicFillTime = false;
    const auto& settings = runState_.settings;
    const ScanRate scanRate = GetScanRate(runState_, ScanTypeCode::MS3, settings.Advanced_MS3ScanRate);

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

bool clsScan_SaveFinalMS3::Generate(const FinalMethod& method) {
    runState_.display.MessageUpdate("Creating final acquisition methods...");
    clsAcquire acquire(runState_);
    bool isSaved = false;
    const auto failure = FailureOf([&] { Build(acquire, method, isSaved); });
    // The excitation time is set without error handling; on a failed object the first failure is what counts.
    if (failure && !acquire.ErrorOccurred()) {
        acquire.ErrorOccurred(true);
        acquire.ErrorDescription("Error during creation of the final method" + *failure);
    }
    if (acquire.ErrorOccurred()) {
        // What was saved before its range was optimised must not be taken for a final method.
        if (isSaved) support::RemoveFileIfThere(method.newPath, runState_.disk);
        runState_.WriteLogLine(acquire.ErrorDescription());
        runState_.WriteLogLine("Unable to create " + support::GetFolderNameAtDepth(method.newPath, 0));
        acquire.ResetError();
        return false;
    }
    runState_.display.MessageUpdate("Final acquisition methods created.");
    return true;
}

}  // namespace veltra
