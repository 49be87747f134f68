// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/DataFile.h"

#include <gmock/gmock.h>

#include <fstream>
#include <numeric>

#include "orvanel/data/DataReader.h"
#include "orvanel/data/ExperimentIndex.h"
#include "orvanel/data/MzmlAdapter.h"
#include "orvanel/data/MzmlArrays.h"
#include "orvanel/data/MzmlGuard.h"
#include "ports/HostError.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Text.h"
#include "tests/orvanel/data/SampleData.h"
#include "tests/orvanel/explore/SyntheticSpectrum.h"
#include "tests/orvanel/instrument/InstrumentBench.h"
#include "tests/support_files/TempFolder.h"

namespace {

using orvanel::DataFileContent;
using testing::ElementsAre;
using testing::HasSubstr;

std::string FailureOf(const std::string& path) {
    return orvanel::bench::ErrorOf([&] { orvanel::ReadDataFile(path); });
}

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
class DataReader : public DataFile {};
class DataFileCache : public DataFile {};

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
        const std::vector<double> precursors = {609.28, 397.21};
        EXPECT_EQ(content.kind.precursors, std::vector(precursors.begin(), precursors.begin() + expected.msLevel - 1));
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

TEST_F(DataReader, SaysWhatIsWrongWithAFile) {
    EXPECT_EQ(FailureOf(path), "The data file \"" + path + "\" does not exist");
    struct Case {
        const char *content, *reason;
    };
    for (const Case& bad : {Case{"", "it is empty"}, Case{"hello", "it is not an mzML file"},
                            Case{"<mzML><run>", "it is cut off, its end is missing"}}) {
        support::WriteWholeFile(path, bad.content);
        EXPECT_EQ(FailureOf(path), "The data file \"" + path + "\" cannot be read: " + bad.reason);
    }
}

TEST_F(DataReader, RefusesEveryFileThatIsCutOff) {
    orvanel::WriteDataFile(folder.File("Whole.vesk"), SampleRamp(13, "AF2", 0, 0.5F, 1));
    const auto whole = support::ReadWholeFile(folder.File("Whole.vesk"));
    const auto end = whole.find("</mzML>") + 7;
    for (std::size_t length = 0; length<whole.size(); length += length + 40> end ? 1 : 37) {
        std::ofstream(path, std::ios::binary) << whole.substr(0, length);
        EXPECT_EQ(FailureOf(path) == "no error", length >= end) << length;
    }
}

std::string Term(const std::string& accession, const std::string& name, const std::string& value = "") {
    return "<cvParam cvRef=\"MS\" accession=\"MS:" + accession + "\" name=\"" + name + "\" value=\"" + value + "\"/>";
}

std::string ForeignSpectrum(const std::string& id, int level, const std::string& kind, const std::string& time,
                            const std::string& arrays) {
    return "<spectrum index=\"0\" id=\"" + id + "\" defaultArrayLength=\"2\">" +
           Term("1000511", "ms level", std::to_string(level)) +
           (kind == "profile" ? Term("1000128", "profile spectrum") : Term("1000127", "centroid spectrum")) +
           "<scanList count=\"1\"><scan>" + time + "</scan></scanList>" + arrays + "</spectrum>";
}

TEST_F(DataReader, CountsWhatCompressedArraysUnpackToBeforeTheyDo) {
    constexpr std::size_t points = 20000;
    auto data = SampleScan(3);
    for (auto& cycle : data.cycles) {
        cycle.mz.resize(points);
        cycle.intensity.assign(points, 1);
        std::iota(cycle.mz.begin(), cycle.mz.end(), 100);
    }
    orvanel::WriteDataFile(path, data);
    const auto text = support::ReadWholeFile(path);
    const auto check = [](const std::string& mzml, std::size_t pointLimit) -> std::string {
        try {
            orvanel::CheckPackedArrays(mzml, pointLimit);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "good";
    };
    // 60000 doubles and 60000 singles, and the few of the total, are 24 bytes for 30003 points.
    const char* const tooMany = "it holds more data points than can be explored";
    EXPECT_EQ(check(text, 30003), "good");
    EXPECT_EQ(check(text, 29999), tooMany);
    EXPECT_EQ(check(text, points - 1), tooMany);
    EXPECT_EQ(check("<spectrum defaultArrayLength=\"30004\">", 30003), tooMany);
    const auto with = [&](const std::string& old, const std::string& replacement) {
        auto damaged = text;
        for (auto at = damaged.find(old); at != std::string::npos; at = damaged.find(old, at + replacement.size()))
            damaged.replace(at, old.size(), replacement);
        return check(damaged, 30003);
    };
    EXPECT_EQ(with("defaultArrayLength=\"20000\"", "defaultArrayLength=\"8192\""),
              "spectrum 1: an array unpacks to more than the 8192 values that it should have");
    EXPECT_EQ(with("defaultArrayLength=\"3\"", "defaultArrayLength=\"-3\""),
              "chromatogram 1: defaultArrayLength is \"-3\", which is no number of points");
    EXPECT_EQ(with("</binary>", "<cvParam/></binary>"), "spectrum 1: an array holds something else than its values");
    EXPECT_EQ(with("<binary>", "<binary>=="), "spectrum 1: an array holds what is no base64 text");
}

TEST_F(DataReader, HandsTheLibraryPlainMarkupOnly) {
    for (const auto& [text, plain] :
         {std::pair("<a b='&#65;&#x3B1;&#39;'>&amp;&#38;&#60;</a>", "<a b='A\xCE\xB1&apos;'>&amp;&amp;&lt;</a>"),
          {"<a><!-- &#65; --><?b &#65;?><![CDATA[<&#65;>]]]]></a>", "<a>&lt;&amp;#65;&gt;]]</a>"},
          {"<a>&#128512;&#xE9;</a>", "<a>\xF0\x9F\x98\x80\xC3\xA9</a>"}})
        EXPECT_EQ(orvanel::PlainMarkup(text), plain);
}

TEST_F(DataReader, RefusesMarkupThatIsNotWellFormed) {
    const auto check = [](const std::string& text) { orvanel::CheckMarkup(text, 0, text.size()); };
    for (const char* good : {"", "a&amp;b&lt;&gt;&quot;&apos;&#65;&#x10FFFF;", "<!-- R&D <x -->&amp;",
                             "<![CDATA[ & > < ]]>", "<?x & ?>", "<a b='\"&lt;' \n c = \">\"/>x</a >"})
        EXPECT_NO_THROW(check(good)) << good;
    const std::string bad =
        "& | &# | &#x | &#x; | &#65 | &#65 ; | &#0; | &#4; | &#xD800; | &#xFFFF; | &#1114112; | &#99999999999; | &amp "
        "| &uuml; | &; | <!-- --> & | "
        "<a b='&'/> | < | <a | <> | <a b> | <a b=> | <a b=c> | <a b='c> | <a b='c'd='e'> | <a b='<'> | <!-- - | "
        "<!DOCTYPE a> | <?x | </> | <a/ >";
    for (const auto& text : support::Split(bad, '|'))
        EXPECT_THROW(check(std::string(support::Trim(text))), std::runtime_error) << text;
    const std::string group = "<referenceableParamGroup id='g'>";
    const std::string reference = "<referenceableParamGroupRef ref='g'/>";
    EXPECT_NO_THROW(check(group + "</referenceableParamGroup><referenceableParamGroup/>" + reference));
    EXPECT_NO_THROW(
        check("<cvParam accession='MS:1000574'/><cvParam accession='UO:1002312'/><a accession='X:C12_3'/>"));
    const std::pair<std::string, std::string> refused[] = {
        {"<b c d='e'>", "\"<b c d='e'>\" is no sound tag, so this is not sound XML"},
        {group + reference,
         "\"<referenceableParamGroupRef ref='g'/>\" stands in a group of parameters; groups that "
         "refer to groups are not mzML"},
        {group + "</a></referenceableParamGroup>" + group + reference + "</referenceableParamGroup>", ""},
        {std::string("<a\0/>", 5), ""},
        {"<cvParam accession='MS:1002312'/>",
         "\"<cvParam accession='MS:1002312'/>\" says that an array is compressed by MS-Numpress linear prediction, "
         "which is not read; write the file with zlib compression, or with none"},
        {"<cvParam accession='MS:01003090x'/>", ""},
        {"<cvParam accession='MS: 1000574'/>",
         "\"<cvParam accession='MS: 1000574'/>\" has the accession \"MS: 1000574\", which names no term"},
        {"<cvParam accession='UO:4295969608'/>", ""},
        {"<cvParam accession='MS:-1'/>", ""},
        {"<cvParam accession='MS:1002&#51;12'/>", ""}};
    for (const auto& [text, reason] : refused)
        try {
            check("<a>\n" + text);
            ADD_FAILURE() << text;
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), testing::StartsWith("line 2: " + reason));
        }
}

TEST_F(DataReader, TakesTheExperimentOfTheFirstSpectrumFromAForeignFile) {
    // Two points (100, 200), 64 bit; intensities (1, 3), 32 bit; m/z written in falling order in the second set.
    const auto array = [](int length, const std::string& terms, const std::string& binary) {
        return "<binaryDataArray encodedLength=\"" + std::to_string(length) + "\">" + terms +
               Term("1000576", "no compression") + "<binary>" + binary + "</binary></binaryDataArray>";
    };
    const auto arrays = [&](const char* mz) {
        return "<binaryDataArrayList count=\"2\">" +
               array(24, Term("1000523", "64-bit float") + Term("1000514", "m/z array"), mz) +
               array(12, Term("1000521", "32-bit float") + Term("1000515", "intensity array"), "AACAPwAAQEA=") +
               "</binaryDataArrayList>";
    };
    const char* rising = "AAAAAAAAWUAAAAAAAABpQA==";
    const char* falling = "AAAAAAAAaUAAAAAAAABZQA==";
    const char* seconds =
        "<cvParam cvRef=\"MS\" accession=\"MS:1000016\" name=\"scan start time\" value=\"90\" unitCvRef=\"UO\" "
        "unitAccession=\"UO:0000010\" unitName=\"second\"/>";
    const std::string text =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<mzML xmlns=\"http://psi.hupo.org/ms/mzml\" id=\"\xE5\x85\xAD\" "
        "version=\"1.1.0\"><run id=\"\xE5\x85\xAD mix\"><spectrumList count=\"4\">" +
        ForeignSpectrum("scan=1", 2, "centroid", seconds, arrays(rising)) +
        ForeignSpectrum("scan=2", 1, "centroid", seconds, arrays(rising)) +
        ForeignSpectrum("scan=3", 2, "profile", seconds, arrays(rising)) +
        ForeignSpectrum("scan=4", 2, "centroid", "", arrays(falling)) + "</spectrumList></run></mzML>";
    support::WriteWholeFile(folder.File("F.mzML"), text);
    const auto content = orvanel::ReadDataFile(folder.File("F.mzML"));
    EXPECT_EQ(content.id, "\xE5\x85\xAD");
    ASSERT_EQ(content.experiments.size(), 3u);
    EXPECT_EQ(content.experiments[0].spectra, 2u);
    const auto third = orvanel::ReadDataFile(folder.File("F.mzML"), 2);
    EXPECT_TRUE(third.kind.profile);
    ASSERT_EQ(third.spectra.size(), 1u);
    EXPECT_EQ(third.spectra[0].id, "scan=3");
    EXPECT_THROW(orvanel::ReadDataFile(folder.File("F.mzML"), 3), ports::HostError);
    EXPECT_EQ(content.kind.msLevel, 2);
    EXPECT_FALSE(content.kind.profile);
    ASSERT_EQ(content.spectra.size(), 2u);
    EXPECT_EQ(content.spectra[1].cycle, 2);
    EXPECT_EQ(content.spectra[0].timeMinutes, 1.5);
    EXPECT_EQ(content.spectra[1].timeMinutes, 1.5);
    EXPECT_FALSE(content.spectra[0].rampValue);
    EXPECT_THAT(content.spectra[0].intensity, ElementsAre(1, 3));
    EXPECT_THAT(content.spectra[1].mz, ElementsAre(100, 200));
    EXPECT_THAT(content.spectra[1].intensity, ElementsAre(3, 1));

    for (const auto& [old, replacement, reason] :
         {std::tuple{"AACAPwAAQEA=", "AACAPw==", ""},
          {"AACAPwAAQEA=", "AADAfwAAQEA=", "spectrum 1: the intensity array holds a value that is no finite number"},
          {rising, "AAAAAAAAWUAAAACAgIROQQ==",  // 100, 4000001
           "spectrum 1: the m/z array holds 4000001, allowed is 0 to 1000000"},
          {rising, "AAAAAAAA+L8AAAAAAABpQA==",  // -1.5, 200
           "spectrum 1: the m/z array holds -1.5, allowed is 0 to 1000000"}}) {
        auto damaged = text;
        damaged.replace(damaged.find(old), std::string(old).size(), replacement);
        support::WriteWholeFile(folder.File("G.mzML"), damaged);
        EXPECT_THAT(FailureOf(folder.File("G.mzML")), HasSubstr(reason));
        EXPECT_NE(FailureOf(folder.File("G.mzML")), "no error");
    }
}

TEST_F(DataReader, ReadsTimesInTheirUnit) {
    const auto data = SampleScan(2);
    orvanel::WriteDataFile(path, data);
    const auto written = support::ReadWholeFile(path);
    const std::string minute = "UO:0000031";
    for (const auto& [unit, perMinute] : {std::pair{minute, 1.0}, {"UO:0000010", 60.0}, {"UO:0000028", 60000.0}}) {
        auto text = written;
        for (auto at = text.find(minute); at != std::string::npos; at = text.find(minute, at + 1))
            text.replace(at, minute.size(), unit);
        const auto content = orvanel::ReadMzml(text, 1000, 0);
        EXPECT_EQ(content.spectra[1].timeMinutes, data.cycles[1].timeMinutes / perMinute) << unit;
        EXPECT_EQ(content.total->timeMinutes[1], data.cycles[1].timeMinutes / perMinute) << unit;
    }
    for (const auto& [place, reason] : {std::pair{written.find(minute), "spectrum 1: the scan start time"},
                                        {written.rfind(minute), "chromatogram 1: the time array"}}) {
        auto text = written;
        text.replace(place, minute.size(), "UO:0000032");  // hours
        support::WriteWholeFile(path, text);
        EXPECT_THAT(FailureOf(path),
                    HasSubstr(reason + std::string(" is in a unit other than minute, second and millisecond")));
    }
}

/// Against a search through all experiments, with values about the tolerances apart.
TEST_F(DataReader, SortsManyKindsOfSpectraAsASearchThroughAllExperimentsWould) {
    TestRandom random(1);
    const auto about = [&](double value, double step, int count) {
        return value + step * static_cast<int>(count * random.Uniform());
    };
    orvanel::ExperimentIndex index;
    std::vector<orvanel::ExperimentKind> firsts;
    for (int i = 0; i < 5000; ++i) {
        orvanel::ExperimentKind kind;
        kind.msLevel = 2 + i % 2;
        kind.profile = i % 3 == 0;
        kind.lowMz = about(0, 0.2, 6);
        kind.highMz = about(100, 0.25, 6);
        for (int k = 1; k < kind.msLevel; ++k)
            kind.precursors.push_back(about(609.28, 0.02, 300));
        const auto within = [](double tolerance) {
            return [tolerance](double a, double b) { return std::abs(a - b) <= tolerance; };
        };
        const auto found = std::find_if(firsts.begin(), firsts.end(), [&](const orvanel::ExperimentKind& first) {
            return first.msLevel == kind.msLevel && first.profile == kind.profile &&
                   within(0.5)(first.lowMz, kind.lowMz) && within(0.5)(first.highMz, kind.highMz) &&
                   std::equal(first.precursors.begin(), first.precursors.end(), kind.precursors.begin(), within(0.05));
        });
        ASSERT_EQ(index.Count(kind), static_cast<std::size_t>(found - firsts.begin())) << i;
        if (found == firsts.end()) firsts.push_back(kind);
    }
    EXPECT_EQ(index.Experiments().size(), firsts.size());
    EXPECT_GT(firsts.size(), 1000u);
}

TEST_F(DataReader, TellsExperimentsApartByPrecursorsAndScanWindow) {
    const auto spectrum = [](const std::string& precursors, const std::string& lowMz) {
        auto text = ForeignSpectrum(
            "scan=1", 3, "centroid",
            "<scanWindowList count=\"1\"><scanWindow>" + Term("1000501", "scan window lower limit", lowMz) +
                Term("1000500", "scan window upper limit", "500") + "</scanWindow></scanWindowList>",
            "");
        std::string list;
        for (std::size_t at = 0; at < precursors.size(); at += 4)
            list += "<precursor><isolationWindow>" +
                    Term("1000827", "isolation window target m/z", precursors.substr(at, 4)) +
                    "</isolationWindow></precursor>";
        text.insert(text.find("</scanList>") + 11, "<precursorList count=\"2\">" + list + "</precursorList>");
        return text;
    };
    // The isolation that comes last stands first, as it usually does.
    support::WriteWholeFile(folder.File("F.mzML"), "<mzML><run><spectrumList count=\"4\">" +
                                                       spectrum("191.343.", "50") + spectrum("191.343.", "100") +
                                                       spectrum("169.343.", "50") + spectrum("191.343.", "50.3") +
                                                       "</spectrumList></run></mzML>");
    const auto content = orvanel::ReadDataFile(folder.File("F.mzML"));
    ASSERT_EQ(content.experiments.size(), 3u);
    EXPECT_EQ(content.experiments[0].spectra, 2u);
    EXPECT_THAT(content.kind.precursors, ElementsAre(343, 191));
    EXPECT_THAT(content.experiments[2].kind.precursors, ElementsAre(343, 169));
}

TEST_F(DataFileCache, ReadsAFileOnceUntilItChanges) {
    orvanel::WriteDataFile(path, SampleScan(1));
    orvanel::DataFileCache cache;
    const auto first = cache.Open(path);
    EXPECT_EQ(cache.Open(path), first);
    orvanel::WriteDataFile(path, SampleScan(2));
    EXPECT_EQ(cache.Open(path)->spectra.size(), 2u);
    EXPECT_EQ(first->spectra.size(), 1u);
    support::RemoveFileIfThere(path);
    EXPECT_THROW(cache.Open(path), ports::HostError);
}

}  // namespace
