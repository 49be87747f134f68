// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "model/clsItem_FilePaths.h"
#include "ports/DataExploration.h"
#include "ports/GraphControl.h"
#include "ports/RunDisplay.h"

namespace veltra {

using SpecDataReference = std::shared_ptr<ports::SpectrumData>;
using ChromDataReference = std::shared_ptr<ports::ChromatogramData>;

/// The graph data and file paths of every finished stage of one run. Data objects are held by reference, file paths by
/// value.
class clsInfo_Scans {
  public:
    void Scan1_ER_SpecData(SpecDataReference objER_GraphData);
    void Scan2_Q1MI_DP_ChromData(ChromDataReference objQ1MI_DP_GraphData);
    void Scan2_Q1MI_EP_ChromData(ChromDataReference objQ1MI_EP_GraphData);
    void Scan2_Q1MI_REOPTDP_ChromData(ChromDataReference objQ1MI_REOPTDP_GraphData);
    void Scan2_Q1MI_CEP_ChromData(ChromDataReference objQ1MI_CEP_GraphData);
    void Scan3_EPI_SpecData(SpecDataReference objEPI_GraphData);
    /// One chromatogram a 2nd precursor; replaces the whole collection.
    void Scan4_MRM_ChromData(std::vector<ChromDataReference> colMRM_GraphData);
    void Scan5_MS3_AddOneSpecData(SpecDataReference objSpecData);
    std::int16_t Scan5_MS3_GetFilePathsCount() const;

    void ER_FilePaths(const clsItem_FilePaths& objER_FilePaths);
    void Q1MI_DP_FilePaths(const clsItem_FilePaths& objQ1MI_DP_FilePaths);
    void Q1MI_EP_FilePaths(const clsItem_FilePaths& objQ1MI_EP_FilePaths);
    void Q1MI_REOPTDP_FilePaths(const clsItem_FilePaths& objQ1MI_REOPTDP_FilePaths);
    void Q1MI_CEP_FilePaths(const clsItem_FilePaths& objQ1MI_CEP_FilePaths);
    void EPI_FilePaths(const clsItem_FilePaths& objEPI_FilePaths);
    void MRM_FilePaths(const clsItem_FilePaths& objMRM_FilePaths);
    void MS3_FilePathsAddOne(const clsItem_FilePaths& objFilePathsItem);

    /// Shows one stage's data in the graph control.
    /// @param intMS3Index counted from 1 in acquisition order; used for the MS3 stage only
    /// @return the stage's file paths; all empty when nothing is shown
    clsItem_FilePaths GetGraphData(ports::enumVeltraScanType scanType, ports::GraphControl& graphControl,
                                   std::int16_t intMS3Index) const;

  private:
    /// What the graph control shows of one stage, and the files it came from.
    struct StageGraph {
        std::vector<const ports::DataObject*> dataSets;
        const clsItem_FilePaths* filePaths = nullptr;
    };
    StageGraph GraphOf(ports::enumVeltraScanType scanType, std::int16_t intMS3Index) const;

    static constexpr std::size_t singleStages = 6;  // ER to EPI: one data set each
    std::array<std::shared_ptr<ports::DataObject>, singleStages> graphData_;
    std::vector<ChromDataReference> mrmGraphData_;
    std::vector<SpecDataReference> ms3GraphData_;
    std::array<clsItem_FilePaths, singleStages + 1> filePaths_;  // ER to MRM
    std::vector<clsItem_FilePaths> ms3FilePaths_;
};

}  // namespace veltra
