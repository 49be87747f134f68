// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/DataFile.h"

#include <gmock/gmock.h>

#include "orvanel/data/DataReader.h"
#include "orvanel/data/MzmlAdapter.h"
#include "ports/HostError.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "tests/orvanel/data/SampleData.h"
#include "tests/orvanel/instrument/InstrumentBench.h"
#include "tests/support_files/TempFolder.h"

namespace {

using orvanel::DataFileContent;
using testing::ElementsAre;
using testing::HasSubstr;

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

class DataFile : public testing::Test {
  protected:
    const TempFolder folder;
    const std::string path = folder.File("A.vesk");
};

TEST_F(DataFile, SpectraComeBackAsWritten) {
    struct Case {
        int scanType, msLevel;
        std::size_t precursors;
    };
    for (const Case& expected : {Case{12, 1, 0}, Case{11, 2, 1}, Case{13, 3, 2}}) {
        auto data = SampleRamp(expected.scanType, "AF2", 0, 0.5F, 4);
        data.experiment.polarity = 1;
        data.cycles[1].mz.clear();
        data.cycles[1].intensity.clear();
        data.cycles[2].mz[1] = 99.712345678901234;
        data.cycles[2].intensity[1] = 1.0 / 3;
        orvanel::WriteDataFile(path, data);
        const DataFileContent content = orvanel::ReadDataFile(path);

        EXPECT_EQ(content.kind.msLevel, expected.msLevel);
        EXPECT_TRUE(content.kind.profile);
        EXPECT_EQ(content.kind.polarity, 1);
        EXPECT_EQ(content.experiments.size(), 1U);
        const std::vector<std::vector<double>> isolations = {{609.28}, {397.21}};
        EXPECT_EQ(content.kind.isolations, std::vector(isolations.begin(), isolations.begin() + expected.msLevel - 1));
        EXPECT_EQ(content.kind.highMz, 101);
        EXPECT_EQ(content.rampParameter, "AF2");
        ASSERT_EQ(content.spectra.size(), data.cycles.size());
        for (std::size_t i = 0; i < data.cycles.size(); ++i) {
            const auto& written = data.cycles[i];
            EXPECT_EQ(content.spectra[i].cycle, written.cycle);
            EXPECT_EQ(content.spectra[i].timeMinutes, written.timeMinutes);
            EXPECT_EQ(content.spectra[i].rampValue, written.rampValue);
            EXPECT_EQ(content.spectra[i].mz, written.mz);
            ASSERT_EQ(content.spectra[i].intensity.size(), written.intensity.size());
            for (std::size_t k = 0; k < written.intensity.size(); ++k)
                EXPECT_EQ(content.spectra[i].intensity[k], double{static_cast<float>(written.intensity[k])});
        }
        const auto text = support::ReadWholeFile(path);
        EXPECT_EQ(CountOf(text, "<precursor>"), expected.precursors * data.cycles.size());
        EXPECT_EQ(CountOf(text, "value=\"397.21\""), expected.scanType == 13 ? 2 * data.cycles.size() : 0u);
        ASSERT_TRUE(content.total);
        EXPECT_THAT(content.total->rampValues, ElementsAre(0, 0.5, 1, 1.5));
    }
}

TEST_F(DataFile, TracesComeBackWithTheirMasses) {
    for (const int scanType : {1, 4}) {
        const auto data = SampleTraces(scanType, 5);
        orvanel::WriteDataFile(path, data);
        const auto content = orvanel::ReadDataFile(path);
        EXPECT_TRUE(content.spectra.empty());
        ASSERT_EQ(content.traces.size(), 3u);
        for (std::size_t m = 0; m < 3; ++m) {
            EXPECT_EQ(content.traces[m].q1, data.traces[m].q1);
            EXPECT_EQ(content.traces[m].q3, data.traces[m].q3);
        }
    }
}

/// Values of the terms or parameters of that name, in the order of the text.
std::vector<std::string> ValuesOf(const std::string& text, const std::string& name) {
    std::vector<std::string> values;
    const std::string before = "name=\"" + name + "\" value=\"";
    for (auto at = text.find(before); at != std::string::npos; at = text.find(before, at)) {
        at += before.size();
        values.push_back(text.substr(at, text.find('"', at) - at));
    }
    return values;
}

TEST_F(DataFile, StatesWhatWasAppliedInEachMassRangeAndHowFarARampWent) {
    auto traces = SampleTraces(4, 5);
    traces.ramp->stop = 100;
    for (auto& cycle : traces.cycles)
        cycle.applied[1][0].value = 50.5F;
    auto text = orvanel::WriteMzml(traces);
    EXPECT_THAT(ValuesOf(text, "applied DP"), ElementsAre("45.5", "50.5", "45.5"));
    EXPECT_THAT(ValuesOf(text, "collision energy ramp start"), ElementsAre("10", "10", "10"));
    EXPECT_THAT(ValuesOf(text, "collision energy ramp end"), ElementsAre("18", "18", "18"));
    EXPECT_THAT(ValuesOf(text, "ramp stop"), ElementsAre("18"));

    auto scan = SampleRamp(11, "EP", 10, 0, 1);
    scan.experiment.massRanges.push_back({200, 201, 0.25, 0.25, {}});
    scan.cycles[0].applied.push_back(scan.cycles[0].applied[0]);
    EXPECT_THAT(ValuesOf(orvanel::WriteMzml(scan), "collision energy"), ElementsAre("0.35"));
    scan.cycles[0].applied[1][2].value = 30;
    text = orvanel::WriteMzml(scan);
    EXPECT_THAT(ValuesOf(text, "collision energy"), ElementsAre());
    EXPECT_THAT(ValuesOf(text, "applied DP"), ElementsAre("45.5"));
    EXPECT_THAT(ValuesOf(text.substr(text.find("<scanWindow>")), "applied CE"), ElementsAre("0.35", "30"));
}

/// Half of the ions pass at the edge of a window.
TEST_F(DataFile, StatesTheWindowsThatTheInstrumentIsolatedBy) {
    using orvanel::ExperimentRecord;
    using orvanel::ScanType;
    struct Case {
        ScanType type;
        int q1Resolution;
        std::size_t window;  ///< of those that the file states, in its order
        void (*move)(ExperimentRecord& experiment, double byDa);
        double mz;  ///< of the ion in a spectrum
    };
    const auto first = [](ExperimentRecord& experiment, double byDa) { experiment.firstPrecursor += byDa; };
    const auto second = [](ExperimentRecord& experiment, double byDa) { experiment.secondPrecursor += byDa; };
    const auto q1 = [](ExperimentRecord& experiment, double byDa) { experiment.massRanges[0].start += byDa; };
    const auto q3 = [](ExperimentRecord& experiment, double byDa) { experiment.massRanges[0].step += byDa; };
    const std::vector<Case> cases = {{ScanType::EnhancedProductIon, 0, 0, first, 609.2807},
                                     {ScanType::EnhancedProductIon, 3, 0, first, 609.2807},
                                     {ScanType::Ms3, 1, 0, first, 397.2122},
                                     {ScanType::Ms3, 1, 1, second, 397.2122},
                                     {ScanType::Q1MultipleIon, 2, 0, q1, 0},
                                     {ScanType::MultipleReaction, 1, 0, q1, 0},
                                     {ScanType::MultipleReaction, 2, 1, q3, 0}};
    const auto elements = orvanel::bench::Elements();
    const auto compound = orvanel::bench::Shipped("reserpine");
    auto model = orvanel::bench::LinearTrap();
    model.deadTimeNs = 0;
    for (const double factor : {1.0, 1.2}) {
        for (auto& window : model.q1Windows)
            window.widthDa *= factor;
        model.trapIsolationWidthDa *= factor;
        for (const Case& example : cases) {
            const bool trap = example.mz > 0;
            auto method = orvanel::bench::Method(example.type, compound,
                                                 trap ? orvanel::MassRangeRecord{390, 620, 0.03, 0.03, {}}
                                                      : orvanel::MassRangeRecord{609.2807, 609.2807, 397.2122, 50, {}},
                                                 20);
            auto& experiment = orvanel::bench::Experiment(method);
            experiment.q1Resolution = example.q1Resolution;
            experiment.secondPrecursor = 397.2122;
            experiment.scanRate = 250;
            experiment.dynamicFillTime = false;
            experiment.fixedFillTimeMs = 0.1;
            const auto acquire = [&] {
                return orvanel::Acquire(method, model, {{compound, 1}}, *elements, orvanel::bench::Silent());
            };
            const auto signal = [&](const orvanel::AcquiredData& data) {
                return trap ? orvanel::bench::Area(data.cycles[0], example.mz - 0.3, example.mz + 0.3)
                            : data.traces[0].intensity[0];
            };
            const auto centred = acquire();
            const auto text = orvanel::WriteMzml(centred);
            const auto stated = ValuesOf(text, "isolation window lower offset").at(example.window);
            EXPECT_EQ(ValuesOf(text, "isolation window upper offset").at(example.window), stated);
            example.move(experiment, -*support::ParseDouble(stated));
            EXPECT_NEAR(signal(acquire()) / signal(centred), 0.5, 0.02)
                << "scan type " << experiment.scanType << ", window " << example.window << ": " << stated;
        }
    }
}

TEST_F(DataFile, SaysThatItIsSimulatedAndHoldsNothingOfTheMachine) {
    const auto data = SampleScan(2);
    orvanel::WriteDataFile(path, data);
    orvanel::WriteDataFile(folder.File("B.vesk"), data);
    const auto text = support::ReadWholeFile(path);
    EXPECT_EQ(text, support::ReadWholeFile(folder.File("B.vesk")));
    for (const char* part : {"simulated data: nothing here was measured", "18446744073709551615", "reserpine, caffeine",
                             "name=\"model code\" value=\"27\"", "name=\"applied DP\" value=\"45.5\"",
                             "name=\"applied CE\" value=\"0.35\"", "startTimeStamp=\"2026-01-02T03:04:05Z\""})
        EXPECT_THAT(text, HasSubstr(part));
    EXPECT_EQ(text.find(folder.Path()), std::string::npos);
}

TEST_F(DataFile, RefusesDataThatContradictThemselvesAndFoldersThatAreNotThere) {
    auto unequal = SampleScan(2);
    unequal.cycles[1].intensity.pop_back();
    EXPECT_THROW(orvanel::WriteDataFile(path, unequal), ports::HostError);
    auto shortTrace = SampleTraces(4, 3);
    shortTrace.traces[2].intensity.pop_back();
    EXPECT_THROW(orvanel::WriteDataFile(path, shortTrace), ports::HostError);
    EXPECT_THROW(orvanel::WriteDataFile(folder.File("none/A.vesk"), SampleScan(1)), ports::HostError);
    EXPECT_TRUE(support::FilesIn(folder.Path()).empty());
}

}  // namespace
