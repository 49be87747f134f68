// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/clsInfo_Scans.h"

#include <gtest/gtest.h>

#include "model/clsItem_TopPeak.h"
#include "tests/support_files/FixedDataObjects.h"
#include "tests/support_files/RecordedGraphControl.h"

namespace {

using ports::AxisRange;
using ports::enumVeltraScanType;
using veltra::clsInfo_Scans;
using veltra::clsItem_FilePaths;

clsItem_FilePaths Files(const std::string& stage) {
    return {"last " + stage, stage + ".xbt", stage + ".xmt", stage + ".vesk"};
}
std::string Joined(const clsItem_FilePaths& paths) {
    return paths.LastMethodFilePath + "|" + paths.BatchFileName + "|" + paths.MethodFilePath + "|" + paths.VeskFilePath;
}
const std::string noFiles = "|||";

/// A store with data and files of every stage; each data object's x range tells the stage.
class Scans : public testing::Test {
  protected:
    Scans() {
        scans.Scan1_ER_SpecData(spectra[0]);
        scans.Scan2_Q1MI_DP_ChromData(chromatograms[0]);
        scans.Scan2_Q1MI_EP_ChromData(chromatograms[1]);
        scans.Scan2_Q1MI_REOPTDP_ChromData(chromatograms[2]);
        scans.Scan2_Q1MI_CEP_ChromData(chromatograms[3]);
        scans.Scan3_EPI_SpecData(spectra[1]);
        scans.ER_FilePaths(Files("ER"));
        scans.Q1MI_DP_FilePaths(Files("DP"));
        scans.Q1MI_EP_FilePaths(Files("EP"));
        scans.Q1MI_REOPTDP_FilePaths(Files("REOPTDP"));
        scans.Q1MI_CEP_FilePaths(Files("CEP"));
        scans.EPI_FilePaths(Files("EPI"));
        scans.MRM_FilePaths(Files("MRM"));
        for (int i = 2; i < 4; ++i)
            scans.Scan5_MS3_AddOneSpecData(spectra[static_cast<std::size_t>(i)]);
        for (const char* stage : {"MS3 1", "MS3 2"})
            scans.MS3_FilePathsAddOne(Files(stage));
    }

    template <class Kind>
    static std::vector<std::shared_ptr<Kind>> Make(int count, double firstX) {
        std::vector<std::shared_ptr<Kind>> made;
        made.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            made.push_back(std::make_shared<Kind>(AxisRange{firstX + i, 500}, AxisRange{i - 1.0, 100.0 + i}));
        return made;
    }

    std::vector<std::shared_ptr<FixedSpectrum>> spectra = Make<FixedSpectrum>(4, 10);
    std::vector<std::shared_ptr<FixedChromatogram>> chromatograms = Make<FixedChromatogram>(7, 20);
    clsInfo_Scans scans;
};

TEST_F(Scans, EachStageShowsItsOwnDataAndFiles) {
    struct Case {
        enumVeltraScanType scanType;
        std::int16_t ms3Index;
        const ports::DataObject* data;
        std::string files;
    };
    using enum enumVeltraScanType;
    const Case cases[] = {
        {ER, 0, spectra[0].get(), Joined(Files("ER"))},
        {Q1MI_DP, 1, chromatograms[0].get(), Joined(Files("DP"))},
        {Q1MI_EP, -1, chromatograms[1].get(), Joined(Files("EP"))},
        {Q1MI_REOPTDP, 9, chromatograms[2].get(), Joined(Files("REOPTDP"))},
        {Q1MI_CEP, 0, chromatograms[3].get(), Joined(Files("CEP"))},
        {EPI, 0, spectra[1].get(), Joined(Files("EPI"))},
        {MRM, 0, nullptr, Joined(Files("MRM"))},
        {MS3, 1, spectra[2].get(), Joined(Files("MS3 1"))},
        {MS3, 2, spectra[3].get(), Joined(Files("MS3 2"))},
        {MS3, 3, nullptr, noFiles},
        {MS3, 0, nullptr, noFiles},
        {MS3, -1, nullptr, noFiles},
        {FinalMethods, 1, nullptr, noFiles},
        {RunFinished, 1, nullptr, noFiles},
        {static_cast<enumVeltraScanType>(-1), 1, nullptr, noFiles},
    };
    for (const auto& [scanType, ms3Index, data, files] : cases) {
        RecordedGraphControl graph(2);
        graph.panes[1] = spectra[0].get();
        EXPECT_EQ(Joined(scans.GetGraphData(scanType, graph, ms3Index)), files);
        EXPECT_EQ(graph.panes, (std::vector<const ports::DataObject*>{data, nullptr})) << files;
        EXPECT_EQ(graph.xAxis, data == nullptr ? (AxisRange{0, 10}) : data->GetXAxisRange()) << files;
        EXPECT_EQ(graph.yAxis, data == nullptr ? (AxisRange{0, 10}) : data->GetYValueRange()) << files;
        EXPECT_EQ(graph.calls.back(), "Redraw");
    }
}

TEST_F(Scans, TheOverlayHasAPaneATransitionAndTheLargestYMaximum) {
    chromatograms[5]->yRange.maximum = 7000;
    scans.Scan4_MRM_ChromData({chromatograms[0]});
    scans.Scan4_MRM_ChromData({chromatograms[4], chromatograms[5], chromatograms[6]});
    for (const int panes : {0, 1, 3, 5}) {
        RecordedGraphControl graph(panes);
        EXPECT_EQ(Joined(scans.GetGraphData(enumVeltraScanType::MRM, graph, 0)), Joined(Files("MRM")));
        std::vector<const ports::DataObject*> shown{chromatograms[4].get(), chromatograms[5].get(),
                                                    chromatograms[6].get()};
        if (panes == 5) shown.resize(5);
        EXPECT_EQ(graph.panes, shown);
        EXPECT_EQ(graph.xAxis, (AxisRange{24, 500}));
        EXPECT_EQ(graph.yAxis, (AxisRange{3, 7000}));
    }
}

TEST_F(Scans, PanesAreClearedBeforeDataAreShown) {
    RecordedGraphControl graph(0);
    scans.GetGraphData(enumVeltraScanType::ER, graph, 0);
    EXPECT_EQ(graph.calls, (std::vector<std::string>{"AddPane", "Clear 1", "Data 1", "X", "Y", "Redraw"}));
    graph.AddPane();
    graph.calls.clear();
    scans.GetGraphData(enumVeltraScanType::EPI, graph, 0);
    EXPECT_EQ(graph.calls, (std::vector<std::string>{"Clear 1", "Clear 2", "Data 1", "X", "Y", "Redraw"}));
}

TEST_F(Scans, AFailingGraphControlReturnsTheFilesFoundSoFar) {
    for (const auto& [call, files] : {std::pair{"AddPane", noFiles},
                                      {"Clear 1", noFiles},
                                      {"Data 1", noFiles},
                                      {"X", Joined(Files("ER"))},
                                      {"Redraw", Joined(Files("ER"))}}) {
        RecordedGraphControl graph(0);
        graph.failAt = call;
        EXPECT_EQ(Joined(scans.GetGraphData(enumVeltraScanType::ER, graph, 0)), files) << call;
    }
}

TEST_F(Scans, FilesAreCopiedAndDataAreShared) {
    clsItem_FilePaths files = Files("one");
    scans.ER_FilePaths(files);
    scans.MS3_FilePathsAddOne(files);
    files = Files("two");
    spectra[0]->xRange = {1, 2};
    RecordedGraphControl graph(1);
    EXPECT_EQ(Joined(scans.GetGraphData(enumVeltraScanType::ER, graph, 0)), Joined(Files("one")));
    EXPECT_EQ(graph.xAxis, (AxisRange{1, 2}));
    EXPECT_EQ(scans.Scan5_MS3_GetFilePathsCount(), 3);
    scans.Scan5_MS3_AddOneSpecData(spectra[0]);
    EXPECT_EQ(Joined(scans.GetGraphData(enumVeltraScanType::MS3, graph, 3)), Joined(Files("one")));
}

TEST(Records, ThirdPrecursorsAreUsableUntilTheContraryIsKnown) {
    EXPECT_TRUE(veltra::clsItem_TopPeak().MS3PercentBelowThreshold);
    EXPECT_NE(veltra::clsItem_TopPeak().SecondPrecursor, veltra::clsItem_TopPeak().SecondPrecursor);
}

}  // namespace
