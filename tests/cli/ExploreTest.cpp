// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gmock/gmock.h>

#include <cmath>

#include "cli/JsonWriter.h"
#include "orvanel/data/DataFile.h"
#include "support/Files.h"
#include "tests/cli/CommandBench.h"
#include "tests/orvanel/data/SampleData.h"
#include "tests/support_files/TempFolder.h"

namespace {

using testing::HasSubstr;

Ended Explore(const std::string& path, const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"--explore", path};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunProgram(arguments);
}

/// Gaussian peaks of m/z and height, on points 0.05 Da apart.
void SetPeaks(orvanel::CycleRecord& cycle, const std::vector<std::pair<double, double>>& peaks) {
    cycle.mz.clear();
    cycle.intensity.clear();
    for (const auto& [mz, height] : peaks)
        for (int k = -8; k <= 8; ++k) {
            cycle.mz.push_back(mz + 0.05 * k);
            cycle.intensity.push_back(std::round(height * std::exp(-0.5 * std::pow(k / 2.0, 2))));
        }
}

class ExploreTest : public testing::Test {
  protected:
    std::string Write(const orvanel::AcquiredData& data) {
        std::string path = folder_.File("\xC3\x84ther.vesk");
        orvanel::WriteDataFile(path, data);
        return path;
    }
    TempFolder folder_;
};

TEST_F(ExploreTest, FindsTheParentAsErDoesAndListsThePeaks) {
    auto data = SampleScan(2);
    data.experiment.polarity = 1;
    SetPeaks(data.cycles[0], {{500.1, 9000}, {501.1, 2700}, {504.2, 20000}});
    SetPeaks(data.cycles[1], {{500.1, 9000}, {501.1, 2700}, {504.2, 20000}});
    const std::string path = Write(data);
    EXPECT_EQ(Explore(path, {"--mz", "500.9"}).out,
              "File:        " + path +
                  "\n"
                  "Document:    Start.xmt\n"
                  "Experiment:  1 of 1: MS1, negative, profile, 99 to 101 Da\n"
                  "Spectra:     mean of 2, cycles 1 to 2, 0.0333 to 0.0667 min\n"
                  "Parent:      500.1, looked for at 500.9 Da\n"
                  "Peaks:       3, shown 3\n\n"
                  "        m/z   intensity        area      S/N  charge\n"
                  "   504.2000    1.82E+04    5.02E+03        -       -  monoisotopic\n"
                  "   500.1000    8.20E+03    2.26E+03        -       1  monoisotopic\n"
                  "   501.1000    2.46E+03    6.77E+02        -       1  isotope\n");
    const Ended json = Explore(path, {"--mz", "510", "--cycle", "2", "--top", "1", "--json"});
    EXPECT_EQ(json.status, cli::completed);
    EXPECT_THAT(json.out, HasSubstr("{\"file\": \"" + path + "\", \"document\": \"Start.xmt\", "));
    EXPECT_THAT(json.out, HasSubstr("\"spectra\": [{\"cycle\": 2, \"id\": \"scan=2\", "));
    EXPECT_THAT(json.out, HasSubstr("\"parent\": null, \"precursorRemains\": false, \"peakCount\": 3, "
                                    "\"peaks\": [{\"mz\": 504.2"));
    EXPECT_THAT(json.out, HasSubstr("\"charge\": 0, \"monoisotopic\": true}], \"chromatograms\": "));
}

TEST_F(ExploreTest, TakesFragmentsOfAnMs3RampWhereLittleOfThePrecursorIsLeft) {
    auto data = SampleRamp(13, "AF2", 0, 5, 11);
    for (auto& cycle : data.cycles) {
        const double left = cycle.cycle < 8 ? 20000 : 400;
        SetPeaks(cycle, {{152.07, 20000.0 * cycle.cycle}, {180.1, 9000}, {397.21, left}, {400.1, 9000}});
    }
    const std::string path = Write(data);
    const Ended found = Explore(path, {"--top", "2"});
    EXPECT_THAT(found.out, HasSubstr("MS3 of 609.28 > 397.21, positive, profile"));
    EXPECT_THAT(found.out, HasSubstr("Spectra:     cycle 9, scan=9, at 0.3 min, AF2 40\nLeft out:    5 Da around "
                                     "397.21\nPeaks:       4, shown 2\n"));
    EXPECT_THAT(found.out, HasSubstr("\n   152.0700 "));
    EXPECT_THAT(found.out, HasSubstr("\n   180.1000 "));
    EXPECT_THAT(Explore(path, {"--top", "2", "--cycle", "1"}).out, HasSubstr("too much of the precursor is left"));
}

std::string Term(const std::string& number, const std::string& value) {
    return "<cvParam cvRef=\"MS\" accession=\"MS:" + number + "\" name=\"\" value=\"" + value + "\"/>";
}

/// @param base64 of four 64-bit numbers
std::string Array(const std::string& kind, const std::string& base64) {
    return "<binaryDataArray encodedLength=\"44\">" + Term("1000523", "") + Term("1000576", "") + Term(kind, "") +
           "<binary>" + base64 + "</binary></binaryDataArray>";
}

constexpr const char* masses = "AAAAAAAAaUAAAAAAAABpQAAAAAAAAGlAAAAAAADAckA=";       // 200, 200, 200, 300
constexpr const char* intensities = "AAAAAAAgjEAAAAAAAEB/QAAAAAAAIIxAAAAAAADAgkA=";  // 900, 500, 900, 600

std::string FileWith(int msLevel, const std::string& precursors) {
    return "<mzML><run id=\"r\"><spectrumList count=\"1\"><spectrum index=\"0\" id=\"scan=1\" "
           "defaultArrayLength=\"4\">" +
           Term("1000127", "") + Term("1000511", std::to_string(msLevel)) + precursors +
           "<binaryDataArrayList count=\"2\">" + Array("1000514", masses) + Array("1000515", intensities) +
           "</binaryDataArrayList></spectrum></spectrumList></run></mzML>";
}

/// Two of three lines at m/z 200 are the strongest.
TEST_F(ExploreTest, ShowsTheLineItPickedWhereSeveralShareAnMz) {
    const std::string path = folder_.File("lines.mzML");
    support::WriteWholeFile(path, FileWith(1, ""));
    std::string peaks;
    for (const char* intensity :
         {"200.0000    9.00E+02", "200.0000    9.00E+02", "300.0000    6.00E+02", "200.0000    5.00E+02"})
        peaks += "   " + std::string(intensity) + "    " + std::string(intensity).substr(12) +
                 "        -       -  monoisotopic\n";
    EXPECT_THAT(Explore(path, {"--top", "4"}).out, testing::EndsWith("charge\n" + peaks));
}

TEST_F(ExploreTest, LeavesOutAllPrecursorsOfOneIsolation) {
    const std::string path = folder_.File("several.mzML");
    std::string precursors;
    for (const char* const mz : {"300.5", "198", "900"})
        precursors += "<precursor><isolationWindow>" + Term("1000827", mz) + "</isolationWindow></precursor>";
    support::WriteWholeFile(path, FileWith(2, "<precursorList count=\"3\">" + precursors + "</precursorList>"));
    const std::string out = Explore(path, {"--top", "4"}).out;
    EXPECT_THAT(out, HasSubstr("1 of 1: MS2 of 198+300.5+900, positive, centroid\n"));
    EXPECT_THAT(out, HasSubstr("Left out:    2.5 Da around 198 and 300.5 and 900\nPeaks:       4, shown 0\n"));
    EXPECT_THAT(
        Explore(path, {"--top", "4", "--json"}).out,
        testing::AllOf(HasSubstr("\"precursors\": [198, 300.5, 900], \"isolations\": [[198, 300.5, 900]], "),
                       HasSubstr("\"excluded\": {\"mz\": 900, \"toleranceDa\": 2.5, \"others\": [198, 300.5]}, "),
                       HasSubstr("\"peaks\": []")));
    EXPECT_THAT(Explore(path, {"--top", "4", "--mz", "900"}).out,
                HasSubstr("2.5 Da around 900\nPeaks:       4, shown 4\n"));
}

TEST_F(ExploreTest, ShowsChromatogramsThatAreNotOfMasses) {
    const std::string path = folder_.File("uv.mzML");
    const auto chromatogram = [](const std::string& id, const std::string& kind, const std::string& valueArray) {
        return "<chromatogram index=\"0\" id=\"" + id + "\" defaultArrayLength=\"4\">" + Term(kind, "") +
               "<binaryDataArrayList count=\"2\">" + Array("1000595", masses) + Array(valueArray, intensities) +
               "</binaryDataArrayList></chromatogram>";
    };
    support::WriteWholeFile(
        path, "<mzML><run id=\"r\"><chromatogramList count=\"3\">" + chromatogram("UV 254", "1000811", "1000515") +
                  chromatogram("pump", "1000626", "1000821") + chromatogram("broken", "1000811", "1000517") +
                  "</chromatogramList></run></mzML>");
    const std::string kind = "electromagnetic radiation chromatogram";
    const std::string cells = "          -          -       4        200        300        200    9.00E+02  ";
    EXPECT_THAT(Explore(path, {}).out,
                HasSubstr("\nChromatograms: 3\n\n         Q1         Q3  points       from         to       apex   "
                          "intensity  id (x in minutes)\n" +
                          cells + "UV 254 (" + kind + ")\n" + cells +
                          "pump (chromatogram type)\n"
                          "          -          -       0          -          -          -           -  broken (" +
                          kind + ")\n"));
    EXPECT_THAT(Explore(path, {"--list-experiments"}).out, HasSubstr("\nChromatogram: UV 254 (" + kind + ")\n"));
    EXPECT_THAT(Explore(path, {"--json"}).out,
                HasSubstr("{\"id\": \"UV 254\", \"kind\": \"" + kind + "\", \"q1\": 0, "));
}

TEST_F(ExploreTest, ListsTransitionsWithTheirApexAndExperiments) {
    auto data = SampleTraces(4, 5);
    data.traces[1].intensity = {0, 40, 400, 40, 0};
    data.traces[2].intensity.assign(5, 0);
    const std::string path = Write(data);
    EXPECT_THAT(Explore(path, {}).out, HasSubstr("     609.28      201.5       5         10         18         14    "
                                                 "1.70E+02  "));
    EXPECT_THAT(Explore(path, {"--json"}).out, HasSubstr("\"q3\": 202.5, \"points\": 5, \"apex\": null}]}"));
    EXPECT_THAT(Explore(Write(SampleScan(1)), {"--list-experiments"}).out,
                HasSubstr("\nExperiment 1: MS1, positive, profile, 99 to 101 Da, 1 spectrum\n"));
}

TEST_F(ExploreTest, RefusesWithFileAndReason) {
    const std::string path = Write(SampleScan(3));
    const std::string text = folder_.File("a.txt");
    const std::string empty = folder_.File("e.mzML");
    const std::string traces = folder_.File("traces.vesk");
    orvanel::WriteDataFile(traces, SampleTraces(4, 5));
    const std::string noSpectra = "holds no mass spectra; --experiment, --cycle, --mz and --top ask for some";
    support::WriteWholeFile(text, "hello");
    support::WriteWholeFile(empty, "<mzML><run></run></mzML>");
    const std::string ultraviolet = folder_.File("uv.mzML");
    support::WriteWholeFile(ultraviolet,
                            "<mzML><run><spectrumList count=\"1\"><spectrum index=\"0\" id=\"a\" "
                            "defaultArrayLength=\"0\">" +
                                Term("1000804", "") + "</spectrum></spectrumList></run></mzML>");
    struct Case {
        std::string file;
        std::vector<std::string> options;
        std::string reason;
    };
    for (const auto& [file, options, reason] :
         {Case{folder_.File("no"), {}, "does not exist"}, Case{text, {}, "cannot be read: it is not an mzML file"},
          Case{empty, {}, "holds neither mass spectra nor chromatograms"},
          Case{ultraviolet, {}, "holds neither mass spectra nor chromatograms, but 1 spectrum of another kind"},
          Case{traces, {"--mz", "5"}, noSpectra}, Case{traces, {"--top", "5"}, noSpectra},
          Case{traces, {"--cycle", "1"}, noSpectra},
          Case{path, {"--experiment", "2"}, "cannot be read: it holds 1 experiments; there is no experiment 2"},
          Case{path, {"--cycle", "4"}, "holds cycles 1 to 3 of this experiment; there is no cycle 4"}}) {
        auto withJson = options;
        withJson.push_back("--json");
        const Ended refused = Explore(file, withJson);
        EXPECT_EQ(refused.status, cli::abortedOrFailed);
        EXPECT_EQ(refused.out, "");
        EXPECT_EQ(refused.err, "veltra-run: The data file \"" + file + "\" " + reason + "\n");
    }
}

TEST(JsonWriter, EscapesAndKeepsToUtf8) {
    std::ostringstream out;
    cli::JsonWriter json(out);
    json.Open('{').Key("a\"\\").Text("\xE5\x85\xAD \xF0\x9F\x98\x80\n\xFF\xE5\x85z\xED\xA0\x80\xC0\x80\x1B\xC2\x9B");
    json.Key("b").Open('[').Number(1e20).Number(std::nan("")).Truth(false).Close(']').Close('}');
    const std::string bad = "\xEF\xBF\xBD";
    EXPECT_EQ(out.str(), "{\"a\\\"\\\\\": \"\xE5\x85\xAD \xF0\x9F\x98\x80" + bad + bad + bad + bad + "z" + bad + bad +
                             bad + bad + bad + bad + bad + "\", \"b\": [1E+20, null, false]}");
}

}  // namespace
