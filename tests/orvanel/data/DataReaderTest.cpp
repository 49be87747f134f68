// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/data/DataReader.h"

#include <gmock/gmock.h>
#include <zlib.h>

#include <cmath>
#include <fstream>
#include <map>
#include <numeric>
#include <sstream>

#include "orvanel/data/DataFile.h"
#include "orvanel/data/ExperimentIndex.h"
#include "orvanel/data/Gzip.h"
#include "orvanel/data/MzmlAdapter.h"
#include "orvanel/data/MzmlArrays.h"
#include "orvanel/data/MzmlGuard.h"
#include "ports/HostError.h"
#include "support/Files.h"
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

class DataReader : public testing::Test {
  protected:
    const TempFolder folder;
    const std::string path = folder.File("A.vesk");
};
class DataFileCache : public DataReader {};

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
            orvanel::ReadableArrays(mzml, pointLimit);
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
        check("<cvParam accession='MS:1000574'/><cvParam accession='MS:1002312'/><a accession='X:C12_3'/>"));
    const std::pair<std::string, std::string> refused[] = {
        {"<b c d='e'>", "\"<b c d='e'>\" is no sound tag, so this is not sound XML"},
        {group + reference,
         "\"<referenceableParamGroupRef ref='g'/>\" stands in a group of parameters; groups that "
         "refer to groups are not mzML"},
        {group + "</a></referenceableParamGroup>" + group + reference + "</referenceableParamGroup>", ""},
        {std::string("<a\0/>", 5), ""},
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
        const auto content = orvanel::ReadMzml(text, {1000, 0, {}});
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

/// Kinds whose values are about twice the tolerances apart, in spectra whose values scatter by less than half of them.
TEST_F(DataReader, SortsManyKindsOfSpectraIntoTheirExperiments) {
    TestRandom random(1);
    orvanel::ExperimentIndex index;
    std::map<std::vector<int>, std::size_t> numbers;
    const auto near = [&](double value, double step, int place, double scatter) {
        return value + step * place + scatter * (random.Uniform() - 0.5);
    };
    for (int i = 0; i < 5000; ++i) {
        std::vector<int> places;
        const auto place = [&](int count) {
            places.push_back(static_cast<int>(count * random.Uniform()));
            return places.back();
        };
        orvanel::ExperimentKind kind;
        kind.msLevel = 2 + place(2);
        kind.profile = place(2) == 1;
        kind.lowMz = near(0, 1.1, place(3), 0.4);
        kind.highMz = near(100, 1.1, place(3), 0.4);
        kind.isolations = {{near(609.28, 0.11, place(9), 0.04)}};
        auto& last = kind.msLevel == 3 ? kind.isolations.emplace_back() : kind.isolations.back();
        const int more = kind.msLevel == 3 ? 1 + place(2) : place(2);
        for (int k = 0; k < more; ++k)
            last.push_back(near(700 + k, 0.11, place(3), 0.04));
        const auto expected = numbers.try_emplace(places, numbers.size()).first->second;
        ASSERT_EQ(index.Count(kind), expected) << i;
    }
    EXPECT_EQ(index.Experiments().size(), numbers.size());
    EXPECT_GT(numbers.size(), 1000u);
}

/// @param precursors each its m/z, or "spectrum it was taken from:m/z"
std::string SpectrumOf(int level, const std::string& precursors, const std::string& lowMz) {
    auto text =
        ForeignSpectrum("scan=1", level, "centroid",
                        "<scanWindowList count=\"1\"><scanWindow>" + Term("1000501", "scan window lower limit", lowMz) +
                            Term("1000500", "scan window upper limit", "500") + "</scanWindow></scanWindowList>",
                        "");
    std::string list;
    for (const auto& precursor : support::Split(precursors, ' ')) {
        const auto colon = precursor.find(':');
        const bool taken = colon != std::string::npos;
        list += "<precursor" + (taken ? " spectrumRef=\"" + precursor.substr(0, colon) + "\"" : "") +
                "><isolationWindow>" +
                Term("1000827", "isolation window target m/z", precursor.substr(taken ? colon + 1 : 0)) +
                "</isolationWindow></precursor>";
    }
    return text.insert(text.find("</scanList>") + 11, "<precursorList count=\"2\">" + list + "</precursorList>");
}

std::string FileOf(const std::string& spectra) {
    return "<mzML><run><spectrumList count=\"4\">" + spectra + "</spectrumList></run></mzML>";
}

TEST_F(DataReader, TellsExperimentsApartByPrecursorsAndScanWindow) {
    // The isolation that comes last stands first, as it usually does.
    const auto content = orvanel::ReadMzml(FileOf(SpectrumOf(3, "191 343", "50") + SpectrumOf(3, "191 343", "100") +
                                                  SpectrumOf(3, "169 343", "50") + SpectrumOf(3, "191 343", "50.3")),
                                           {1000, 0, {}});
    ASSERT_EQ(content.experiments.size(), 3u);
    EXPECT_EQ(content.experiments[0].spectra, 2u);
    EXPECT_THAT(content.kind.isolations, ElementsAre(ElementsAre(343), ElementsAre(191)));
    EXPECT_THAT(content.experiments[2].kind.isolations, ElementsAre(ElementsAre(343), ElementsAre(169)));
}

TEST_F(DataReader, TellsPrecursorsOfOneIsolationFromChains) {
    using Isolations = std::vector<std::vector<double>>;
    struct Case {
        int level;
        const char* precursors;
        Isolations isolations;
    };
    for (const auto& [level, precursors, isolations] :
         {Case{2, "500 400 600 300 700", {{300, 400, 500, 600, 700}}}, Case{2, "s1:500 s2:400", {{400, 500}}},
          Case{3, "s2:200 s1:600", {{600}, {200}}}, Case{3, "s2:200 s2:190 s1:600", {{600}, {190, 200}}},
          Case{3, "s1:200 s1:190", {{190, 200}}}, Case{3, "200 190 600", {{600}, {190, 200}}},
          Case{3, "s2:200 600", {{600}, {200}}}, Case{4, "100 200 600", {{600}, {200}, {100}}}})
        EXPECT_EQ(orvanel::ReadMzml(FileOf(SpectrumOf(level, precursors, "50")), {1000, 0, {}}).kind.isolations,
                  isolations)
            << precursors;
}

std::string Without(std::string text, const std::string& part) {
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part))
        text.erase(at, part.size());
    return text;
}

TEST_F(DataReader, TellsProfilesByTheirPointsWhereNoTermDoes) {
    auto data = SampleScan(4);
    for (auto& cycle : data.cycles) {
        cycle.mz.clear();
        cycle.intensity.clear();
    }
    const auto add = [&](std::size_t cycle, double mz, double intensity) {
        data.cycles[cycle].mz.push_back(mz);
        data.cycles[cycle].intensity.push_back(intensity);
    };
    for (int k = 0; k < 200; ++k) {
        for (const std::size_t cycle : {0U, 1U})
            add(cycle, 100 + 0.06 * k, 1000 * std::exp(-0.5 * std::pow(std::remainder(0.06 * k, 2.0) / 0.2, 2)));
        add(2, 100 + k + 0.01 * (k % 7), 1000 + k);  // a line near every mass
    }
    for (int k = 0; k < 5; ++k)
        add(3, 100 + 0.06 * k, 500);  // too few to tell
    const std::string term = "<cvParam cvRef=\"MS\" accession=\"MS:1000128\" name=\"profile spectrum\" value=\"\"/>";
    const auto text = Without(orvanel::WriteMzml(data), term);
    ASSERT_LT(text.size(), orvanel::WriteMzml(data).size());
    const auto experiments = orvanel::ReadMzml(text, {1000, 0, {}}).experiments;
    ASSERT_EQ(experiments.size(), 2u);
    EXPECT_TRUE(experiments[0].kind.profile);
    EXPECT_EQ(experiments[0].spectra, 3u);
    EXPECT_FALSE(experiments[1].kind.profile);

    data.cycles.erase(data.cycles.begin(), data.cycles.begin() + 3);
    auto few = Without(orvanel::WriteMzml(data), term);
    EXPECT_FALSE(orvanel::ReadMzml(few, {1000, 0, {}}).kind.profile);
    few.insert(few.find("<fileContent>") + 13, term);
    EXPECT_TRUE(orvanel::ReadMzml(few, {1000, 0, {}}).kind.profile);
}

TEST_F(DataReader, LeavesOutArraysThatItDoesNotNeed) {
    const auto written = orvanel::WriteMzml(SampleRamp(12, "DP", 10, 5, 2));
    const auto array = [](const std::string& terms, const std::string& values = "YQBiAA==") {
        return "<binaryDataArray arrayLength=\"9999\" encodedLength=\"8\">" + terms + "<binary>" + values +
               "</binary></binaryDataArray>";
    };
    const std::string ascii = Term("1001479", "null-terminated ASCII string") + Term("1000576", "no compression");
    const std::string numpress = Term("1000523", "64-bit float") + Term("1002312", "MS-Numpress");
    const std::string named = Term("1000786", "non-standard data array", "note");
    const auto with = [&](const std::string& arrays) {
        auto text = written;
        for (auto at = text.find("</binaryDataArrayList>"); at != std::string::npos;
             at = text.find("</binaryDataArrayList>", at + arrays.size() + 1))
            text.insert(at, arrays);
        return orvanel::ReadMzml(text, {1000, 0, {}});
    };
    const auto plain = with("");
    const auto content = with(array(ascii + named) + array(numpress + Term("1000517", "signal to noise array")) +
                              array(ascii + Term("1000786", "non-standard data array", "DP"), "?") +
                              "<binaryDataArray encodedLength=\"0\"/>");
    ASSERT_EQ(content.spectra.size(), 2u);
    EXPECT_EQ(content.spectra[1].intensity, plain.spectra[1].intensity);
    EXPECT_EQ(content.total->rampValues, plain.total->rampValues);
    try {
        with(array(numpress + Term("1000515", "intensity array")));
        ADD_FAILURE();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(),
                     "spectrum 1: an array is compressed by MS-Numpress linear prediction, which is not "
                     "read; write the file with zlib compression, or with none");
    }
}

/// One gzip member.
std::string Packed(const std::string& text) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string input = text;
    std::string packed(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

TEST_F(DataReader, ReadsGzipWhateverTheName) {
    const auto text = orvanel::WriteMzml(SampleScan(3));
    const auto packed = Packed(text.substr(0, 1000)) + Packed("") + Packed(text.substr(1000));
    for (const auto& whole : {Packed(text), packed, packed + std::string(512, '\0')}) {
        support::WriteWholeFile(path, whole);
        EXPECT_EQ(orvanel::ReadDataFile(path).spectra.size(), 3u);
    }
    const std::string refused = "The data file \"" + path + "\" cannot be read: ";
    for (std::size_t length = 2; length < packed.size(); length += 97) {
        support::WriteWholeFile(path, packed.substr(0, length));
        EXPECT_THAT(FailureOf(path), testing::StartsWith(refused)) << length;
    }
    support::WriteWholeFile(path, Packed(text).substr(0, 900));
    EXPECT_EQ(FailureOf(path), refused + "it is cut off, the end of its gzip compression is missing");
    auto damaged = Packed(text);
    damaged[damaged.size() - 6] ^= 1;  // of the checksum
    for (const auto& bad : {damaged, Packed(text) + "more"}) {
        support::WriteWholeFile(path, bad);
        EXPECT_EQ(FailureOf(path), refused + "its gzip compression is damaged behind " + std::to_string(text.size()) +
                                       " unpacked bytes");
    }
    const std::string zeros(5000, '\0');
    EXPECT_EQ(orvanel::Gunzip(Packed(zeros) + Packed("a"), 5001), zeros + "a");
    EXPECT_EQ(orvanel::Gunzip(Packed(zeros) + Packed("a"), 5000), std::nullopt);
}

/// All that was read, as a text.
std::string Told(const DataFileContent& content) {
    std::ostringstream text;
    text << content.id << ' ' << content.rampParameter << ' ' << content.firstCycle << ' ' << content.lastCycle;
    for (const auto& [kind, spectra] : content.experiments)
        text << "\nexperiment " << kind.msLevel << kind.profile << kind.lowMz << ' ' << kind.isolations.size() << ' '
             << spectra;
    for (const auto& spectrum : content.spectra)
        text << '\n'
             << spectrum.id << ' ' << spectrum.cycle << ' ' << spectrum.timeMinutes << ' '
             << spectrum.rampValue.value_or(-1) << ' ' << testing::PrintToString(spectrum.mz)
             << testing::PrintToString(spectrum.intensity);
    if (content.total) text << '\n' << testing::PrintToString(content.total->intensity);
    return text.str();
}

/// The third array of the file is damaged, so that only what does not read it can tell about the others.
TEST_F(DataReader, ReadsOneCycleByTheIndexOnlyWhereThatLeadsToTheSpectra) {
    const auto sound = orvanel::WriteMzml(SampleRamp(11, "CE", 10, 5, 4));
    const std::string values = "<binary>";
    auto damaged = sound;
    damaged.replace(damaged.find(values, damaged.find("id=\"scan=3\"")) + values.size(), 4, "?!?!");
    const auto told = [&](const std::string& text, int cycle) {
        support::WriteWholeFile(path, text);
        return Told(orvanel::ReadCycle(path, 0, cycle));
    };
    const auto ofWhole = [&](int cycle) { return Told(orvanel::ReadMzml(sound, {1000, 0, cycle})); };
    for (const int cycle : {0, 1, 2, 4, 5})
        EXPECT_EQ(told(damaged, cycle), ofWhole(cycle)) << cycle;
    EXPECT_EQ(Told(orvanel::ReadExperiments(path)), ofWhole(0));
    EXPECT_THAT(orvanel::bench::ErrorOf([&] { told(damaged, 3); }), HasSubstr("cannot be read: spectrum 3: "));
    EXPECT_THROW(orvanel::ReadCycle(path, 1, 1), ports::HostError);

    const auto place = [&](const std::string& part) { return sound.find(part); };
    const auto offset = [&](int scan) {
        return std::to_string(place("<spectrum index=\"" + std::to_string(scan - 1)));
    };
    const auto begin = [](const std::string& number) { return '>' + number + "</"; };
    const std::string entry = "<offset idRef=\"scan=2\"" + begin(offset(2)) + "offset>";
    const std::string listOffset = begin(std::to_string(place("<indexList ")));
    for (const auto& [old, replacement] :
         {std::pair<std::string, std::string>{begin(offset(2)), begin(offset(2) + "0")},
          {begin(offset(2)), begin(offset(3))},
          {begin(offset(2)), begin(std::to_string(std::stoi(offset(2)) + 1))},
          {begin(offset(1)), begin("0")},
          {begin(offset(4)), begin("18446744073709551615")},
          {begin(offset(4)), begin("-1")},
          {begin(offset(4)), begin(std::to_string(place("<chromatogram ")))},
          {entry, ""},
          {entry, entry + entry},
          {entry, "<offset>"},
          {"idRef=\"scan=2\"", "idRef=\"scan=3\""},
          {"<index name=\"spectrum\">", "<index name=\"spectra\">"},
          {"</index>", "</index><"},
          {listOffset, begin("0")},
          {listOffset, begin("99999999999999999999")},
          {"<indexListOffset>", "<indexListOffsets>"}}) {
        auto wrong = damaged;
        ASSERT_NE(wrong.rfind(old), std::string::npos) << old;
        wrong.replace(wrong.rfind(old), old.size(), replacement);
        EXPECT_THAT(orvanel::bench::ErrorOf([&] { told(wrong, 1); }), HasSubstr("cannot be read: spectrum 3: "))
            << old << " -> " << replacement;
        wrong = sound;
        wrong.replace(wrong.rfind(old), old.size(), replacement);
        EXPECT_EQ(told(wrong, 2), ofWhole(2)) << old << " -> " << replacement;
    }
    // A document that has changed since it was indexed, but not in its length.
    for (const auto& [old, replacement] :
         {std::pair<std::string, std::string>{"<spectrumList count=\"4\"", "<spectrumList count=\"5\""},
          {"<spectrum index=\"1\"", "<spectrum index=\"7\""},
          {"<spectrum index=\"1\" id=\"scan=2\"", "<spectrum index=\"1\" id=\"scan=9\""},
          {"</binaryDataArrayList>\n        </spectrum>\n        <spectrum index=\"2\"",
           "</binaryDataArrayList></spectrum><a>\n     </a>\n    <spectrum index=\"2\""},
          {"MS:1000128\" name=\"profile spectrum", "MS:1000796\" name=\"profile spectrum"}}) {
        auto changed = damaged;
        ASSERT_NE(changed.find(old, place("<spectrumList")), std::string::npos) << old;
        changed.replace(changed.find(old, place("<spectrumList")), old.size(), replacement);
        ASSERT_EQ(changed.size(), damaged.size()) << old;
        EXPECT_THAT(orvanel::bench::ErrorOf([&] { told(changed, 1); }), HasSubstr("cannot be read: spectrum 3: "))
            << old << " -> " << replacement;
    }
    // Neither the index nor the list counts the last spectrum.
    auto uncounted = damaged;
    const std::string last = "<offset idRef=\"scan=4\"" + begin(offset(4)) + "offset>";
    uncounted.erase(uncounted.rfind(last), last.size());
    uncounted[uncounted.find("<spectrumList count=\"4") + 21] = '3';
    EXPECT_THAT(orvanel::bench::ErrorOf([&] { told(uncounted, 1); }), HasSubstr("cannot be read: spectrum 3: "));
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
