// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/clsExplore.h"

#include <gmock/gmock.h>

#include "tests/host/StepTable.h"

namespace {

using testing::ElementsAre;
using veltra::clsExplore;
using Masses = std::vector<double>;
using Points = FakeData::Chromatogram;

const std::string dataFile = "/p/Data/Run/a.vesk";

/// An explored file; its own calls at creation are forgotten.
class ExploreBench {
  public:
    ExploreBench() {
        explore.Initialize(dataFile);
        calls.Forget();
    }
    ~ExploreBench() { EXPECT_EQ(explore.ErrorDescription(), expectedDescription); }

    FakeHost fake;
    HostCalls calls;
    ObservedHost host{fake, calls};
    clsExplore explore{host};
    std::string expectedDescription;
};

TEST(clsExplore, CreatesItsDataObjectsAtOnceAndTellsOfAFailureLater) {
    FakeHost fake;
    for (const std::string operation : {"CreateDataExploration", "CreateChromatogramData", "CreateSpectrumData"}) {
        HostCalls calls;
        ObservedHost host{fake, calls};
        clsExplore created(host);
        EXPECT_THAT(calls.texts,
                    ElementsAre("CreateDataExploration()", "CreateChromatogramData()", "CreateSpectrumData()"));
        calls.Fail(operation, RunBench::hostError);
        clsExplore explore(host);
        explore.Initialize(dataFile);
        EXPECT_EQ(explore.ErrorDescription(),
                  "Explore Data: Error during Explore Data initialization" + RunBench::errorSuffix);
        EXPECT_EQ(calls.CountOf("ExploreSetDataFile"), 0);
    }
}

TEST(clsExplore, TheChromatogramIsGivenItsFileFirst) {
    ExploreBench bench;
    bench.calls.Fail("ExploreSetDataFile", RunBench::hostError, 2);
    clsExplore explore(bench.host);
    explore.Initialize(dataFile);
    explore.ResetError();
    explore.Chrom_LoadTIC();
    EXPECT_EQ(explore.ErrorDescription(), "");
    explore.Spectrum_LoadCycleDependentSpectrum(1);
    EXPECT_TRUE(explore.ErrorOccurred()) << "it has no file";
}

TEST(clsExplore, TheOptimumIsTheXOfTheHighestPoint) {
    struct Case {
        Points points;
        double optimum;
        bool found;
    };
    const Case cases[] = {
        {{{}, {}}, 0, false},
        {{{10, 15}, {0, 0}}, 0, false},
        {{{10, 15}, {-1, -2}}, 0, false},
        {{{10, 15, 20, 25}, {3, 5, 9, 4}}, 20, true},
        {{{-150, -148, -146}, {7, 5, 3}}, -150, true},
        {{{10, 15, 20}, {4, 9, 9}}, 15, true},  // equal: the host's sort decides
        {{{10}, {1e-9}}, 10, true},
    };
    for (const auto& c : cases) {
        ExploreBench bench;
        bench.fake.data.chromatograms["TIC"] = c.points;
        bench.explore.Chrom_LoadTIC();
        bool found = !c.found;
        EXPECT_EQ(bench.explore.Chrom_GetOptimalValue(found), c.optimum);
        EXPECT_EQ(found, c.found);
    }
}

TEST(clsExplore, ThePercentageValueIsTheLeastIntensePointThatReachesIt) {
    struct Case {
        Points points;
        std::int16_t percentage;
        double value;
        bool found;
    };
    const Points ramp{{0, 0.1, 0.2, 0.3, 0.4}, {80, 100, 20, 5, 4.9}};
    const Case cases[] = {
        {{{}, {}}, 5, 0, false},
        {{{1, 2}, {0, 0}}, 5, 0, false},
        {{{1, 2}, {-4, -2}}, 5, 0, false},
        {ramp, 5, 0.3, true},  // exactly at the threshold
        {ramp, 6, 0.2, true},
        {ramp, 100, 0.1, true},
        {ramp, 101, 0, false},
        {ramp, 0, 0.4, true},
        {{{0, 1, 2}, {10, 100, 30}}, 5, 0, true},  // on the rising side
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.percentage);
        ExploreBench bench;
        bench.fake.data.chromatograms["XIC 1 2"] = c.points;
        bench.explore.Chrom_LoadXIC(1, 2);
        bool found = !c.found;
        EXPECT_EQ(bench.explore.Chrom_GetPercentMaxIntensityValue(c.percentage, found), c.value);
        EXPECT_EQ(found, c.found);
    }
}

TEST(clsExplore, TheSpectrumOfTheWholeFileLiesBetweenFirstAndLastPointTimesSixty) {
    struct Case {
        Masses minutes;
        std::vector<std::string> spectrumCalls;
    };
    for (const auto& c : {Case{{}, {}}, Case{{0.25}, {"ExploreLoadSpectrumByTime(1, 0, 0, 15, 15)"}},
                          Case{{0.05, 0.1, 1.2345}, {"ExploreLoadSpectrumByTime(1, 0, 0, 3, 74.07)"}},
                          Case{{-150, -20}, {"ExploreLoadSpectrumByTime(1, 0, 0, -9000, -1200)"}},
                          Case{{3, 0.5}, {"ExploreLoadSpectrumByTime(1, 0, 0, 180, 30)"}}}) {
        ExploreBench bench;
        bench.fake.data.chromatograms["TIC"] = {c.minutes, Masses(c.minutes.size(), 1.0)};
        bench.explore.Spectrum_LoadSpectrum();
        EXPECT_EQ(bench.calls.Operations().front(), "ExploreLoadTIC(1, 0, 0)");
        EXPECT_EQ(bench.calls.Only({"ExploreLoadSpectrumByTime"}), c.spectrumCalls);
    }
}

bool HasPeak(const std::vector<FakePeak>& peaks, double mz, double intensity) {
    return std::any_of(peaks.begin(), peaks.end(),
                       [&](const auto& peak) { return peak.mz == mz && peak.intensity == intensity; });
}

TEST(clsExplore, TheHighestPeakStepsDownToTheMonoisotopicOne) {
    struct Case {
        const char* name;
        double mass, tolerance;
        std::vector<FakePeak> peaks;
        double expectedMass;  // 0: nothing
    };
    const FakePeak low{608.78, 50, 90}, middle{609.28, 60, 95};
    const auto top = [](int charge, int marker) { return FakePeak{609.78, 100, 10, charge, marker}; };
    const Case cases[] = {
        {"no peaks", 609.3, 1, {}, 0},
        {"none in range", 609.3, 1, {{608.2, 9, 9}, {610.4, 9, 9}}, 0},
        {"limits are in range", 609.5, 1, {{608.5, 8, 9}, {610.5, 9, 9}}, 610.5},
        {"a monoisotopic peak stays", 609.3, 1, {low, middle, top(0, 1)}, 609.78},
        {"any marker but 0 stays", 609.3, 1, {low, middle, top(0, 2)}, 609.78},
        {"unknown charge counts as 2", 609.3, 1, {low, middle, top(0, 0)}, 609.28},
        {"charge 2", 609.3, 1, {low, middle, top(2, 0)}, 609.28},
        {"charge 1", 609.3, 1, {low, middle, top(1, 0)}, 608.78},
        {"charge 1, the lower one outside the window", 609.78, 0.5, {low, top(1, 0)}, 608.78},
        {"no peak near", 609.78, 0.4, {{608.8, 9, 90}, top(2, 0), {611, 9, 90}}, 609.78},
        {"the lower one is not monoisotopic", 609.3, 1, {{608.78, 50, 90, 1, 0}, top(1, 0)}, 609.78},
        {"area ratio exactly at the limit", 850, 1, {{849, 10, 9}, {850, 20, 5, 1, 0}}, 850},
        {"area ratio just above", 850, 1, {{849, 10, 9.001}, {850, 20, 5, 1, 0}}, 849},
        {"the limit takes the charge into account", 500, 1, {{499.5, 10, 7.5}, {500, 20, 5, 0, 0}}, 500},
        {"the same just above", 500, 1, {{499.5, 10, 7.501}, {500, 20, 5, 0, 0}}, 499.5},
        {"the limit goes by the given mass, not the peak's", 850, 2, {{850.5, 10, 9.0}, {851.5, 20, 5, 1, 0}}, 851.5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ExploreBench bench;
        bench.fake.data.spectra["cycle 1"].peaks = c.peaks;
        for (auto& peak : bench.fake.data.spectra["cycle 1"].peaks)
            peak.centroidShiftDa = 0.5;  // so far that a step down from there would find another peak
        bench.explore.Spectrum_LoadCycleDependentSpectrum(1);
        const auto peak = bench.explore.Spectrum_GetHighestPeakInRange(c.mass, c.tolerance);
        EXPECT_EQ(bench.calls.Only({"ExplorePeakList"}).front(), "ExplorePeakList(\"" + dataFile + "\", 1)");
        ASSERT_EQ(peak != nullptr, c.expectedMass != 0);
        if (!peak) continue;
        EXPECT_EQ(peak->CentroidMass, c.expectedMass + 0.5);
        EXPECT_TRUE(HasPeak(c.peaks, c.expectedMass, peak->CentroidIntensity));
    }
}

TEST(clsExplore, TopPeaksAreMonoisotopicOutsideTheWindowAndMostIntenseFirst) {
    struct Case {
        const char* name;
        std::int16_t wanted;
        double excluded, tolerance;
        std::int16_t threshold;
        std::vector<FakePeak> peaks;
        Masses masses;
        bool below;
    };
    // The parent at 300 and its window of 295 to 305: areas inside are 10, 20 and 30 of 200.
    const std::vector<FakePeak> spectrum{{295, 40, 10}, {300, 90, 20},        {305, 50, 30},
                                         {310, 10, 70}, {320, 95, 500, 1, 0}, {330, 50, 70}};
    const auto parentShare = [](double share) {
        return std::vector<FakePeak>{{200, 5, 100 - share}, {300, 50, share}};
    };
    const Case cases[] = {
        {"empty", 3, 300, 5, 10, {}, {}, true},
        {"only isotopes", 3, 300, 5, 10, {{300, 9, 9, 1, 0}, {310, 9, 9, 1, 2}}, {}, true},
        {"the picking window is open", 9, 300, 5, -1, spectrum, {305, 330, 295, 310}, true},
        {"-1 excludes none, even peaks near it", 9, -1, 500, -1, spectrum, {300, 305, 330, 295, 310}, true},
        {"almost -1 does exclude", 9, -1.5, 500, -1, spectrum, {}, true},
        {"as many as wanted; smaller mass first at a tie", 2, 300, 4, -1, spectrum, {305, 330}, true},
        {"none wanted", 0, 300, 5, -1, spectrum, {}, true},
        {"a negative number wanted", -2, 300, 5, -1, spectrum, {}, true},
        {"area window (low; high]: 50 of 200", 9, 300, 5, 25, spectrum, {305, 330, 295, 310}, true},
        {"the same one below", 9, 300, 5, 24, spectrum, {}, false},
        {"exactly at the threshold", 9, 300, 5, 10, parentShare(10), {200}, true},
        {"just above it", 9, 300, 5, 10, parentShare(10.01), {}, false},
        {"threshold 0", 9, 300, 5, 0, parentShare(0), {200}, true},
        {"threshold 0, some parent", 9, 300, 5, 0, parentShare(0.5), {}, false},
        {"-1 switches the test off", 9, 300, 5, -1, parentShare(90), {200}, true},
        {"no area at all", 9, 300, 5, 10, {{200, 5, 0}, {300, 50, 0}}, {200}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ExploreBench bench;
        bench.fake.data.spectra["cycle 1"].peaks = c.peaks;
        for (auto& peak : bench.fake.data.spectra["cycle 1"].peaks) {
            peak.centroidShiftDa = 64;  // the table's m/z are those of the centroids, which alone count
            peak.mz -= peak.centroidShiftDa;
        }
        bench.explore.Spectrum_LoadCycleDependentSpectrum(1);
        bool below = !c.below;
        const auto top = bench.explore.Spectrum_GetTopPeaks(c.wanted, c.excluded, c.tolerance, c.threshold, below);
        Masses masses;
        for (const auto& peak : top) {
            masses.push_back(peak->CentroidMass);
            EXPECT_TRUE(HasPeak(c.peaks, peak->CentroidMass, peak->CentroidIntensity));
        }
        EXPECT_EQ(masses, c.masses);
        EXPECT_EQ(below, c.below);
        EXPECT_EQ(bench.calls.Only({"ExplorePeakList"}).front(), "ExplorePeakList(\"" + dataFile + "\", 1)");
    }
}

TEST(clsExplore, CopiesKeepWhatWasLoadedAndAChromatogramsIsInOrderOfX) {
    ExploreBench bench;
    auto& data = bench.fake.data;
    data.chromatograms["TIC"] = {{3, 1, 2}, {30, 10, 20}};
    data.spectra["time"] = {{100, 101}, {7, 8}, {}};
    data.xAxisRange = {-5, 5};
    data.yValueRange = {0, 99};
    bench.explore.Spectrum_LoadSpectrum();
    const auto chromatogram = bench.explore.GetChromDataObject();
    const auto spectrum = bench.explore.GetSpecDataObject();

    data = FakeData();
    bench.explore.Chrom_LoadTIC();
    bench.explore.Spectrum_LoadCycleDependentSpectrum(9);
    EXPECT_EQ(chromatogram->GetXValues(), (Masses{1, 2, 3}));
    EXPECT_EQ(chromatogram->GetYValues(), (Masses{10, 20, 30}));
    EXPECT_EQ(spectrum->GetXValues(), (Masses{100, 101}));
    EXPECT_EQ(spectrum->GetYValues(), (Masses{7, 8}));
    for (const ports::DataObject* copy :
         {static_cast<ports::DataObject*>(chromatogram.get()), static_cast<ports::DataObject*>(spectrum.get())}) {
        EXPECT_EQ(copy->GetXAxisRange(), (ports::AxisRange{-5, 5}));
        EXPECT_EQ(copy->GetYValueRange(), (ports::AxisRange{0, 99}));
    }
}

/// A loaded spectrum of two peaks, the higher one an isotope, over two chromatogram points.
struct LoadedBench {
    LoadedBench() {
        fake.data.chromatograms["TIC"] = {{0.25, 2}, {3, 4}};
        fake.data.spectra["time"] = {{1, 2}, {3, 4}, {{609.3, 5, 5, 1, 0}, {700, 4, 5}}};
        explore.Initialize(dataFile);
        explore.Spectrum_LoadSpectrum();
    }
    FakeHost fake;
    HostCalls calls;
    ObservedHost host{fake, calls};
    clsExplore explore{host};
};

/// What failed gives nothing, and nothing else does so.
void ExpectNone(const clsExplore& explore, bool isNothing) {
    EXPECT_EQ(isNothing, explore.ErrorOccurred());
}

TEST(clsExplore, MembersMakeTheseCallsAndTellOfEveryFailure) {
    const std::string error = "Explore Data: Error ";
    const std::string copying =
        "GetXValues(); SetXValues(2 values); GetYValues(); SetYValues(2 values); GetXAxisRange(); SetXAxisRange(1..2); "
        "GetYValueRange(); SetYValueRange(3..4)";
    ExpectSteps<LoadedBench, clsExplore>(
        &LoadedBench::explore,
        {{[](auto& e) { e.Initialize("x"); }, "ExploreSetDataFile(\"x\"); ExploreSetDataFile(\"x\")",
          error + "during initialization using x"},
         {[](auto& e) { e.Chrom_LoadTIC(); }, "ExploreLoadTIC(1, 0, 0)", error + "loading TIC"},
         {[](auto& e) { e.Chrom_LoadXIC(1.5, 2); }, "ExploreLoadXIC(1, 0, 0, 1.5, 2)", error + "loading XIC"},
         {[](auto& e) { e.Chrom_LoadXICOverlay(4); }, "ExploreLoadXICOverlay(1, 0, 0, 4)",
          error + "loading XIC overlay"},
         {[](auto& e) { e.Chrom_SmoothGraph(2); }, "CreateSmoothingProcessor(); ExploreSmooth(); ExploreSmooth()",
          error + "during smoothing of graph"},
         {[](auto& e) { e.Chrom_SmoothGraph(-1); }, "CreateSmoothingProcessor()", error + "during smoothing of graph"},
         {[](auto& e) {
              bool found = true;
              const double x = e.Chrom_GetOptimalValue(found);
              EXPECT_EQ(x, e.ErrorOccurred() ? 0 : 2);
              EXPECT_EQ(found, !e.ErrorOccurred());
          },
          "", error + "getting optimal value"},
         {[](auto& e) {
              bool found = true;
              const double x = e.Chrom_GetPercentMaxIntensityValue(100, found);
              EXPECT_EQ(x, e.ErrorOccurred() ? 0 : 2);
              EXPECT_EQ(found, !e.ErrorOccurred());
          },
          "", error + "getting value at 100% of max intensity"},
         {[](auto& e) { e.Spectrum_LoadCycleDependentSpectrum(15); }, "ExploreLoadSpectrumByCycle(1, 15, 15)",
          error + "loading cycle dependent spectrum"},
         {[](auto& e) { ExpectNone(e, e.Spectrum_GetHighestPeakInRange(609.3, 1) == nullptr); }, "",
          error + "getting highest peak in range 608.3 Da to 610.3 Da"},
         {[](auto& e) {
              bool below = true;
              ExpectNone(e, e.Spectrum_GetTopPeaks(5, 609.3, 2.5, 99, below).empty());
              EXPECT_TRUE(below);
          },
          "", error + "during getting of 5 top peaks"},
         {[](auto& e) { ExpectNone(e, e.GetChromDataObject() == nullptr); },
          "CreateChromatogramData(); " + copying + "; ExploreSortPoints(true, true)",
          error + "during getting copy of chromatogram data object"},
         {[](auto& e) { ExpectNone(e, e.GetSpecDataObject() == nullptr); }, "CreateSpectrumData(); " + copying,
          error + "during getting copy of spectrum data object"}});
}

}  // namespace
