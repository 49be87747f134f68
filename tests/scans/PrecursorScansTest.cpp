#include <gmock/gmock.h>

#include "scans/clsScan1_ER.h"
#include "scans/clsScan2_Q1MI.h"
#include "tests/support_files/ScanBench.h"

namespace {

using namespace veltra;
using ports::enumVeltraScanType;
using ports::MessageIcon;
using Graphs = std::vector<std::vector<double>>;

TEST(clsScan1_ER, TheMethodCoversThirtyDaAroundTheExpectedMass) {
    struct Case {
        const char* scanRate;
        double rate, stepDa;
    };
    for (const auto& c : {Case{"1000", 1000, 0.06}, Case{"4000 Da/s", 4000, 0.12}}) {
        ScanBench bench;
        bench.settings.Advanced_ERScanRate = c.scanRate;
        bench.settings.Advanced_ERCycles = 7;
        bench.fake.data.spectra["time"].peaks = {{609.3, 5, 5}};
        bench.fake.data.chromatograms["TIC"] = {{1}, {1}};
        EXPECT_NE(clsScan1_ER(bench.run).Scan(609.3, bench.paths), nullptr);
        EXPECT_EQ(bench.calls.Only({"GetStepSizeForScanRate"}).front(),
                  std::string("GetStepSizeForScanRate(27, 12, \"") + c.scanRate + "\")");
        const FakeMethod& method = bench.Method();
        EXPECT_EQ(bench.MethodFacts(), "12 3 3 0 0 " + support::GeneralText(c.rate) + " 7");
        EXPECT_FALSE(method.ramp);
        ASSERT_EQ(method.ranges.size(), 1U);
        EXPECT_DOUBLE_EQ(method.ranges[0].start, 594.3);
        EXPECT_DOUBLE_EQ(method.ranges[0].stop, 624.3);
        EXPECT_EQ(method.ranges[0].step, c.stepDa);
        EXPECT_DOUBLE_EQ(method.ranges[0].dwellTimeMs, c.stepDa / c.rate * 1000);
    }
}

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

TEST(clsScan2_Q1MI, TheMethodHoldsOneMassAndTheRamp) {
    struct Case {
        std::string id, rampedId;
        int polarity;
        FakeMethod::Ramp ramp;
    };
    for (const auto& c : {Case{"DP", "DP", 0, {"DP", 20, 150, 2}}, Case{"EP", "EP", 0, {"EP", 20, 150, 2}},
                          Case{"REOPTDP", "DP", 0, {"DP", 20, 150, 2}}, Case{"CEP", "CEP", 1, {"CEP", -150, -20, 2}}}) {
        SCOPED_TRACE(c.id);
        ScanBench bench;
        bench.settings.Polarity = c.polarity;
        bench.fake.data.chromatograms["TIC"] = {{20, 22}, {1, 2}};
        EXPECT_EQ(clsScan2_Q1MI(bench.run).Scan(609.281, 100, c.id, 20, 150, 2, bench.paths), 22);
        const FakeMethod& method = bench.Method();
        EXPECT_EQ(bench.MethodFacts(), "1 3 2 0 0 0 66");
        EXPECT_EQ(method.ramp, c.ramp);
        ASSERT_EQ(method.ranges.size(), 1U);
        const auto& range = method.ranges[0];
        EXPECT_EQ(std::vector<double>({range.start, range.stop, range.step, range.dwellTimeMs}),
                  std::vector<double>({609.281, 609.281, 0, 100}));
        EXPECT_EQ(bench.calls.CountOf("HostSetScanRate") + bench.calls.CountOf("CreateInstrumentHelper"), 0);
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
