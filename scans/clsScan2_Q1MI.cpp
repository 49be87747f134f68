// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scans/clsScan2_Q1MI.h"

#include <utility>

namespace veltra {

double clsScan2_Q1MI::Scan(double dblQ1Mass, double dblDwellTime, const std::string& strParamId, float sglStart,
                           float sglStop, float sglStep, const clsItem_FilePaths& pObjFilePathsItem) {
    q1Mass_ = dblQ1Mass;
    dwellTimeMs_ = dblDwellTime;
    const ParameterRamp ramp{strParamId == "REOPTDP" ? "DP" : strParamId, sglStart, sglStop, sglStep};
    const auto build = [&](clsAcquire& acquire) { BuildMethod(acquire, ramp, pObjFilePathsItem); };
    if (!Acquire(pObjFilePathsItem, build)) return 0;
    return ExploreVesk(pObjFilePathsItem.VeskFilePath, strParamId);
}

void clsScan2_Q1MI::BuildMethod(clsAcquire& acquire, const ParameterRamp& ramp, const clsItem_FilePaths& filePaths) {
    acquire.Step1_Load(filePaths.LastMethodFilePath);
    acquire.Step2_InitializeMethod(static_cast<std::int16_t>(ScanTypeCode::Q1MI), scansToSum);
    std::int32_t index = 0;
    acquire.Step3a_SetMassRange(q1Mass_, q1Mass_, 0, index);
    acquire.Step4b_SetDwellTime(dwellTimeMs_);
    SetCompoundParams(acquire, runState_, runState_.results->CE.Current);
    acquire.Step4d_SetRampingParamAndNumCycles(ramp.id, ramp.start, ramp.stop, ramp.step);
    acquire.Step5_SaveAsNewMethod(filePaths.MethodFilePath);
}

double clsScan2_Q1MI::ExploreVesk(const std::string& strVeskFilePath, const std::string& strParamId) {
    constexpr std::int16_t smoothes = 2;
    double optimum = 0;
    bool optimumFound = false;
    const bool explored = Explore(strVeskFilePath, [&](clsExplore& explore) {
        explore.Chrom_LoadTIC();
        explore.Chrom_SmoothGraph(smoothes);
        optimum = explore.Chrom_GetOptimalValue(optimumFound);
        StoreGraph(strParamId, explore.GetChromDataObject());
    });
    if (explored && !optimumFound)
        StopWithoutFinding("No chromatogram data points found, could not optimize " + strParamId + ".");
    return optimum;
}

void clsScan2_Q1MI::StoreGraph(const std::string& strParamId, ChromDataReference graph) {
    auto& scans = *runState_.scans;
    if (strParamId == "DP")
        scans.Scan2_Q1MI_DP_ChromData(std::move(graph));
    else if (strParamId == "EP")
        scans.Scan2_Q1MI_EP_ChromData(std::move(graph));
    else if (strParamId == "REOPTDP")
        scans.Scan2_Q1MI_REOPTDP_ChromData(std::move(graph));
    else if (strParamId == "CEP")
        scans.Scan2_Q1MI_CEP_ChromData(std::move(graph));
}

}  // namespace veltra
