// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>

#include "scans/clsScan1_ER.h"
#include "scans/clsScan2_Q1MI.h"
#include "tests/support_files/ScanBench.h"

namespace {

using namespace veltra;
using ports::enumVeltraScanType;
using ports::MessageIcon;
using Graphs = std::vector<std::vector<double>>;

TEST(clsScan1_ER, TheParentIsTheHighestPeakWithinOneDa) {
    const std::string nothing = "No peaks found within 608.3 - 610.3 Da mass range of ER spectrum.";
    struct Case {
        const char* name;
        std::vector<FakePeak> peaks;
        double mass;  // 0: none
    };
    for (const auto& c :
         {Case{"two in the window", {{608, 99, 9}, {608.4, 20, 9}, {609.9, 30, 9}, {611, 99, 9}}, 609.9},
          Case{"none in it", {{608.2, 99, 9}, {610.4, 99, 9}}, 0}, Case{"empty", {}, 0},
          Case{"without intensity", {{609.3, 0, 0}}, 0}}) {
        SCOPED_TRACE(c.name);
        ScanBench bench;
        bench.fake.data.chromatograms["TIC"] = {{0.1, 0.2}, {1, 1}};
        bench.fake.data.spectra["time"] = {{600, 601}, {1, 2}, c.peaks};
        const auto peak = clsScan1_ER(bench.run).Scan(609.3, bench.paths);
        EXPECT_EQ(peak ? peak->CentroidMass : 0, c.mass);
        EXPECT_EQ(bench.run.AbortRequested, c.mass == 0);
        if (c.mass == 0) bench.ExpectReported({{nothing, MessageIcon::None}}, {nothing});
        EXPECT_EQ(bench.Graphs(enumVeltraScanType::ER), (Graphs{{600, 601}}));
    }
}

TEST(clsScan2_Q1MI, TheOptimumIsTheApexOfTheChromatogramSmoothedTwiceAndEachIdHasItsOwnGraph) {
    const std::vector<std::pair<std::string, enumVeltraScanType>> slots{{"DP", enumVeltraScanType::Q1MI_DP},
                                                                        {"EP", enumVeltraScanType::Q1MI_EP},
                                                                        {"REOPTDP", enumVeltraScanType::Q1MI_REOPTDP},
                                                                        {"CEP", enumVeltraScanType::Q1MI_CEP}};
    for (const std::string id : {"DP", "EP", "REOPTDP", "CEP", "XYZ"}) {
        SCOPED_TRACE(id);
        ScanBench bench;
        bench.fake.data.chromatograms["TIC"] = {{10, 15, 20}, {1, 3, 2}};
        EXPECT_EQ(clsScan2_Q1MI(bench.run).Scan(609.281, 100, id, 10, 20, 5, bench.paths), 15);
        EXPECT_THAT(bench.calls.Only({"ExploreLoadTIC", "ExploreSmooth", "ExploreSortPoints"}),
                    testing::ElementsAre("ExploreLoadTIC(1, 0, 0)", "ExploreSmooth()", "ExploreSmooth()",
                                         "ExploreSortPoints(false, false)", "ExploreSortPoints(true, true)"));
        for (const auto& [slotId, slot] : slots)
            EXPECT_EQ(bench.Graphs(slot), (slotId == id ? Graphs{{10, 15, 20}} : Graphs{})) << slotId;
    }
}

TEST(clsScan2_Q1MI, NoSignalStopsTheRunWithTheCallersId) {
    for (const std::string id : {"DP", "REOPTDP"}) {
        for (const auto& points : {FakeData::Chromatogram{}, FakeData::Chromatogram{{10, 15}, {0, 0}}}) {
            ScanBench bench;
            bench.fake.data.chromatograms["TIC"] = points;
            EXPECT_EQ(clsScan2_Q1MI(bench.run).Scan(609.281, 100, id, 10, 20, 5, bench.paths), 0);
            EXPECT_TRUE(bench.run.AbortRequested);
            const std::string text = "No chromatogram data points found, could not optimize " + id + ".";
            bench.ExpectReported({{text, MessageIcon::None}}, {text});
        }
    }
}

}  // namespace
