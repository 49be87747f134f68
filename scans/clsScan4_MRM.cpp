// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scans/clsScan4_MRM.h"

#include <utility>

#include "scans/MethodSteps.h"
#include "support/NumberText.h"

namespace veltra {

void clsScan4_MRM::Scan(double dblQ1Mass, TopPeakCollection& pColTopPeaksInfo, const std::string& strParamId,
                        float sglStart, float sglStop, float sglStep, const clsItem_FilePaths& pObjFilePathsItem) {
    q1Mass_ = dblQ1Mass;
    const bool acquired = Acquire(pObjFilePathsItem, [&](clsAcquire& acquire) {
        acquire.Step1_Load(pObjFilePathsItem.LastMethodFilePath);
        acquire.Step2_InitializeMethod(static_cast<std::int16_t>(ScanTypeCode::MRM), scansToSum);
        for (const auto& record : pColTopPeaksInfo) {
            // A transition goes in as Q1, 0, Q3: the host reads a mass range so in this scan type.
            std::int32_t index = 0;
            acquire.Step3a_SetMassRange(q1Mass_, 0, record->SecondPrecursor->CentroidMass, index);
        }
        acquire.Step4b_SetDwellTime(runState_.settings.Advanced_MRMDwellTime);
        SetCompoundParams(acquire, runState_, runState_.results->CE.Current);
        acquire.Step4d_SetRampingParamAndNumCycles(strParamId, sglStart, sglStop, sglStep);
        acquire.Step5_SaveAsNewMethod(pObjFilePathsItem.MethodFilePath);
    });
    if (acquired) ExploreVesk(pObjFilePathsItem.VeskFilePath, pColTopPeaksInfo);
}

void clsScan4_MRM::ExploreVesk(const std::string& strVeskFilePath, TopPeakCollection& topPeaks) {
    constexpr std::int16_t smoothes = 2;
    std::vector<ChromDataReference> chromatograms;
    Explore(strVeskFilePath, [&](clsExplore& explore) {
        const std::int16_t count = support::ToInt16(static_cast<double>(topPeaks.size()));
        for (std::int16_t i = 0; i < count && !explore.ErrorOccurred(); ++i) {
            bool optimumFound = false;
            explore.Chrom_LoadXICOverlay(i);
            explore.Chrom_SmoothGraph(smoothes);
            const double optimum = explore.Chrom_GetOptimalValue(optimumFound);
            auto& record = *topPeaks[static_cast<std::size_t>(i)];
            record.OptimizedCE = support::RoundHalfEven(optimum, 0);
            record.CEWasOptimized = optimumFound;
            if (auto graph = explore.GetChromDataObject()) chromatograms.push_back(std::move(graph));
        }
    });
    runState_.scans->Scan4_MRM_ChromData(std::move(chromatograms));
}

}  // namespace veltra
