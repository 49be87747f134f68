#include "orvanel/data/DataFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "orvanel/data/DataReader.h"
#include "ports/HostError.h"
#include "support/Files.h"
#include "tests/orvanel/data/SampleData.h"
#include "tests/support_files/TempFolder.h"

namespace {

using orvanel::DataFileContent;
using testing::ElementsAre;
using testing::HasSubstr;

std::string FailureOf(const std::string& path) {
    try {
        orvanel::ReadDataFile(path);
    } catch (const ports::HostError& error) {
        return error.what();
    }
    return "";
}

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST(DataFile, SpectraComeBackAsWritten) {
    const TempFolder folder;
    const auto path = folder.File("Sample.vesk");
    struct Case {
        int scanType;
        int msLevel;
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

TEST(DataFile, TracesComeBackWithTheirAppliedVoltage) {
    const TempFolder folder;
    for (const int scanType : {1, 4}) {
        const auto path = folder.File("Sample.vesk");
        const auto data = SampleTraces(scanType, 5);
        orvanel::WriteDataFile(path, data);
        const auto content = orvanel::ReadDataFile(path);
        EXPECT_TRUE(content.spectra.empty());
        ASSERT_EQ(content.traces.size(), 3u);
        for (std::size_t m = 0; m < 3; ++m) {
            EXPECT_EQ(content.traces[m].q1, data.traces[m].q1);
            EXPECT_EQ(content.traces[m].q3, data.traces[m].q3);
            EXPECT_THAT(content.traces[m].rampValues, ElementsAre(10, 12, 14, 16, 18));
            EXPECT_EQ(content.traces[m].intensity, data.traces[m].intensity);
        }
    }
}

TEST(DataFile, SaysThatItIsSimulatedAndHoldsNothingOfTheMachine) {
    const TempFolder folder;
    const auto data = SampleScan(2);
    orvanel::WriteDataFile(folder.File("A.vesk"), data);
    orvanel::WriteDataFile(folder.File("B.vesk"), data);
    const auto text = support::ReadWholeFile(folder.File("A.vesk"));
    EXPECT_EQ(text, support::ReadWholeFile(folder.File("B.vesk")));
    for (const char* part : {"simulated data: nothing here was measured", "18446744073709551615", "reserpine, caffeine",
                             "name=\"model code\" value=\"27\"", "name=\"applied DP\" value=\"45.5\"",
                             "name=\"applied CE\" value=\"0.35\"", "startTimeStamp=\"2026-01-02T03:04:05Z\""})
        EXPECT_THAT(text, HasSubstr(part));
    EXPECT_EQ(text.find(folder.Path()), std::string::npos);
}

TEST(DataFile, RefusesDataThatContradictThemselvesAndFoldersThatAreNotThere) {
    const TempFolder folder;
    auto unequal = SampleScan(2);
    unequal.cycles[1].intensity.pop_back();
    EXPECT_THROW(orvanel::WriteDataFile(folder.File("A.vesk"), unequal), ports::HostError);
    auto shortTrace = SampleTraces(4, 3);
    shortTrace.traces[2].intensity.pop_back();
    EXPECT_THROW(orvanel::WriteDataFile(folder.File("A.vesk"), shortTrace), ports::HostError);
    EXPECT_THROW(orvanel::WriteDataFile(folder.File("none/A.vesk"), SampleScan(1)), ports::HostError);
    EXPECT_TRUE(support::FilesIn(folder.Path()).empty());
}

TEST(DataReader, SaysWhatIsWrongWithAFile) {
    const TempFolder folder;
    const auto path = folder.File("A.vesk");
    EXPECT_EQ(FailureOf(path), "The data file \"" + path + "\" does not exist");
    struct Case {
        const char* content;
        const char* reason;
    };
    for (const Case& bad : {Case{"", "it is empty"}, Case{"hello", "it is not an mzML file"},
                            Case{"<mzML><run>", "it is cut off, its end is missing"}}) {
        support::WriteWholeFile(path, bad.content);
        EXPECT_EQ(FailureOf(path), "The data file \"" + path + "\" cannot be read: " + bad.reason);
    }
}

TEST(DataReader, ReadsEveryCutOrDamagedFileOrRefusesIt) {
    const TempFolder folder;
    orvanel::WriteDataFile(folder.File("Whole.vesk"), SampleRamp(13, "AF2", 0, 0.5F, 1));
    const auto whole = support::ReadWholeFile(folder.File("Whole.vesk"));
    const auto end = whole.find("</mzML>") + 7;
    const auto path = folder.File("Cut.vesk");
    for (std::size_t length = 0; length<whole.size(); length += length + 40> end ? 1 : 37) {
        std::ofstream(path, std::ios::binary) << whole.substr(0, length);
        EXPECT_EQ(FailureOf(path).empty(), length >= end) << length;
    }
    // A byte overwritten anywhere gives an error or data; a wrong index alone is no harm.
    for (std::size_t at = 0; at < whole.size(); at += 31) {
        auto damaged = whole;
        damaged[at] = damaged[at] == '<' ? 'x' : '<';
        std::ofstream(path, std::ios::binary) << damaged;
        const auto failure = FailureOf(path);
        if (at > end) {
            EXPECT_EQ(failure, "") << at;
        }
    }
}

std::string ForeignSpectrum(const std::string& id, int level, const std::string& kind, const std::string& time,
                            const std::string& arrays) {
    const auto term = [](const char* accession, const std::string& name, const std::string& value) {
        return "<cvParam cvRef=\"MS\" accession=\"MS:" + std::string(accession) + "\" name=\"" + name + "\" value=\"" +
               value + "\"/>";
    };
    return "<spectrum index=\"0\" id=\"" + id + "\" defaultArrayLength=\"2\">" +
           term("1000511", "ms level", std::to_string(level)) +
           (kind == "profile" ? term("1000128", "profile spectrum", "") : term("1000127", "centroid spectrum", "")) +
           "<scanList count=\"1\"><scan>" + time + "</scan></scanList>" + arrays + "</spectrum>";
}

TEST(DataReader, TakesTheExperimentOfTheFirstSpectrumFromAForeignFile) {
    // Two points (100, 200), 64 bit; intensities (1, 3), 32 bit; m/z written in falling order in the second set.
    const auto arrays = [](const char* mz) {
        return "<binaryDataArrayList count=\"2\"><binaryDataArray encodedLength=\"24\"><cvParam cvRef=\"MS\" "
               "accession=\"MS:1000523\" name=\"64-bit float\" value=\"\"/><cvParam cvRef=\"MS\" "
               "accession=\"MS:1000576\" name=\"no compression\" value=\"\"/><cvParam cvRef=\"MS\" "
               "accession=\"MS:1000514\" name=\"m/z array\" value=\"\"/><binary>" +
               std::string(mz) +
               "</binary></binaryDataArray><binaryDataArray encodedLength=\"12\"><cvParam cvRef=\"MS\" "
               "accession=\"MS:1000521\" name=\"32-bit float\" value=\"\"/><cvParam cvRef=\"MS\" "
               "accession=\"MS:1000576\" name=\"no compression\" value=\"\"/><cvParam cvRef=\"MS\" "
               "accession=\"MS:1000515\" name=\"intensity array\" value=\"\"/><binary>AACAPwAAQEA=</binary>"
               "</binaryDataArray></binaryDataArrayList>";
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
    const TempFolder folder;
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

    auto lengths = text;
    lengths.replace(lengths.find("AACAPwAAQEA="), 12, "AACAPw==");
    support::WriteWholeFile(folder.File("G.mzML"), lengths);
    EXPECT_NE(FailureOf(folder.File("G.mzML")), "");
    auto notFinite = text;
    notFinite.replace(notFinite.find("AACAPwAAQEA="), 12, "AADAfwAAQEA=");
    support::WriteWholeFile(folder.File("G.mzML"), notFinite);
    EXPECT_THAT(FailureOf(folder.File("G.mzML")),
                HasSubstr("spectrum 1: the intensity array holds a value that is no finite number"));
}

TEST(DataReader, TellsExperimentsApartByPrecursorsAndScanWindow) {
    const auto spectrum = [](const std::string& precursors, const std::string& lowMz) {
        const auto term = [](const char* accession, const char* name, const std::string& value) {
            return "<cvParam cvRef=\"MS\" accession=\"MS:" + std::string(accession) + "\" name=\"" + name +
                   "\" value=\"" + value + "\"/>";
        };
        auto text = ForeignSpectrum(
            "scan=1", 3, "centroid",
            "<scanWindowList count=\"1\"><scanWindow>" + term("1000501", "scan window lower limit", lowMz) +
                term("1000500", "scan window upper limit", "500") + "</scanWindow></scanWindowList>",
            "");
        std::string list;
        for (std::size_t at = 0; at < precursors.size(); at += 4)
            list += "<precursor><isolationWindow>" +
                    term("1000827", "isolation window target m/z", precursors.substr(at, 4)) +
                    "</isolationWindow></precursor>";
        text.insert(text.find("</scanList>") + 11, "<precursorList count=\"2\">" + list + "</precursorList>");
        return text;
    };
    const TempFolder folder;
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

TEST(DataFileCache, ReadsAFileOnceUntilItChanges) {
    const TempFolder folder;
    const auto path = folder.File("A.vesk");
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
