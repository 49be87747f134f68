// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/clsInfo_Scans.h"

#include <algorithm>
#include <utility>

namespace veltra {
namespace {

using ports::enumVeltraScanType;

constexpr std::size_t Slot(enumVeltraScanType scanType) {
    return static_cast<std::size_t>(scanType);
}

}  // namespace

void clsInfo_Scans::Scan1_ER_SpecData(SpecDataReference objER_GraphData) {
    graphData_[Slot(enumVeltraScanType::ER)] = std::move(objER_GraphData);
}
void clsInfo_Scans::Scan2_Q1MI_DP_ChromData(ChromDataReference objQ1MI_DP_GraphData) {
    graphData_[Slot(enumVeltraScanType::Q1MI_DP)] = std::move(objQ1MI_DP_GraphData);
}
void clsInfo_Scans::Scan2_Q1MI_EP_ChromData(ChromDataReference objQ1MI_EP_GraphData) {
    graphData_[Slot(enumVeltraScanType::Q1MI_EP)] = std::move(objQ1MI_EP_GraphData);
}
void clsInfo_Scans::Scan2_Q1MI_REOPTDP_ChromData(ChromDataReference objQ1MI_REOPTDP_GraphData) {
    graphData_[Slot(enumVeltraScanType::Q1MI_REOPTDP)] = std::move(objQ1MI_REOPTDP_GraphData);
}
void clsInfo_Scans::Scan2_Q1MI_CEP_ChromData(ChromDataReference objQ1MI_CEP_GraphData) {
    graphData_[Slot(enumVeltraScanType::Q1MI_CEP)] = std::move(objQ1MI_CEP_GraphData);
}
void clsInfo_Scans::Scan3_EPI_SpecData(SpecDataReference objEPI_GraphData) {
    graphData_[Slot(enumVeltraScanType::EPI)] = std::move(objEPI_GraphData);
}
void clsInfo_Scans::Scan4_MRM_ChromData(std::vector<ChromDataReference> colMRM_GraphData) {
    mrmGraphData_ = std::move(colMRM_GraphData);
}
void clsInfo_Scans::Scan5_MS3_AddOneSpecData(SpecDataReference objSpecData) {
    ms3GraphData_.push_back(std::move(objSpecData));
}
std::int16_t clsInfo_Scans::Scan5_MS3_GetFilePathsCount() const {
    return static_cast<std::int16_t>(ms3FilePaths_.size());
}

void clsInfo_Scans::ER_FilePaths(const clsItem_FilePaths& objER_FilePaths) {
    filePaths_[Slot(enumVeltraScanType::ER)] = objER_FilePaths;
}
void clsInfo_Scans::Q1MI_DP_FilePaths(const clsItem_FilePaths& objQ1MI_DP_FilePaths) {
    filePaths_[Slot(enumVeltraScanType::Q1MI_DP)] = objQ1MI_DP_FilePaths;
}
void clsInfo_Scans::Q1MI_EP_FilePaths(const clsItem_FilePaths& objQ1MI_EP_FilePaths) {
    filePaths_[Slot(enumVeltraScanType::Q1MI_EP)] = objQ1MI_EP_FilePaths;
}
void clsInfo_Scans::Q1MI_REOPTDP_FilePaths(const clsItem_FilePaths& objQ1MI_REOPTDP_FilePaths) {
    filePaths_[Slot(enumVeltraScanType::Q1MI_REOPTDP)] = objQ1MI_REOPTDP_FilePaths;
}
void clsInfo_Scans::Q1MI_CEP_FilePaths(const clsItem_FilePaths& objQ1MI_CEP_FilePaths) {
    filePaths_[Slot(enumVeltraScanType::Q1MI_CEP)] = objQ1MI_CEP_FilePaths;
}
void clsInfo_Scans::EPI_FilePaths(const clsItem_FilePaths& objEPI_FilePaths) {
    filePaths_[Slot(enumVeltraScanType::EPI)] = objEPI_FilePaths;
}
void clsInfo_Scans::MRM_FilePaths(const clsItem_FilePaths& objMRM_FilePaths) {
    filePaths_[Slot(enumVeltraScanType::MRM)] = objMRM_FilePaths;
}
void clsInfo_Scans::MS3_FilePathsAddOne(const clsItem_FilePaths& objFilePathsItem) {
    ms3FilePaths_.push_back(objFilePathsItem);
}

clsInfo_Scans::StageGraph clsInfo_Scans::GraphOf(enumVeltraScanType scanType, std::int16_t intMS3Index) const {
    StageGraph graph;
    if (scanType == enumVeltraScanType::MS3) {
        if (intMS3Index < 1 || static_cast<std::size_t>(intMS3Index) > ms3GraphData_.size()) return graph;
        const auto position = static_cast<std::size_t>(intMS3Index - 1);
        graph.dataSets.push_back(ms3GraphData_[position].get());
        if (position < ms3FilePaths_.size()) graph.filePaths = &ms3FilePaths_[position];
    } else if (scanType == enumVeltraScanType::MRM) {
        for (const auto& chromatogram : mrmGraphData_)
            graph.dataSets.push_back(chromatogram.get());
        graph.filePaths = &filePaths_[Slot(scanType)];
    } else if (Slot(scanType) < singleStages) {
        graph.dataSets.push_back(graphData_[Slot(scanType)].get());
        graph.filePaths = &filePaths_[Slot(scanType)];
    }
    return graph;
}

clsItem_FilePaths clsInfo_Scans::GetGraphData(enumVeltraScanType scanType, ports::GraphControl& graphControl,
                                              std::int16_t intMS3Index) const {
    clsItem_FilePaths result;
    ports::AxisRange xRange{0, 10};
    ports::AxisRange yRange{0, 10};
    try {
        if (graphControl.GetPaneCount() == 0) graphControl.AddPane();
        for (int pane = 1; pane <= graphControl.GetPaneCount(); ++pane)
            graphControl.ClearPaneData(pane);

        const StageGraph graph = GraphOf(scanType, intMS3Index);
        int pane = 0;
        for (const ports::DataObject* data : graph.dataSets) {
            ++pane;
            if (data == nullptr) continue;
            if (graphControl.GetPaneCount() < pane) graphControl.AddPane();
            graphControl.SetPaneData(pane, *data);
            if (pane == 1) {
                xRange = data->GetXAxisRange();
                yRange = data->GetYValueRange();
            } else {
                yRange.maximum = std::max(yRange.maximum, data->GetYValueRange().maximum);
            }
        }
        if (graph.filePaths != nullptr) result = *graph.filePaths;
        graphControl.SetXAxisLimits(xRange);
        graphControl.SetYAxisLimits(yRange);
        graphControl.Redraw();
    } catch (...) {
        // A graph that cannot be shown must not disturb the run; the files found so far are still good.
    }
    return result;
}

}  // namespace veltra
