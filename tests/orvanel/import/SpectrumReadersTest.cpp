// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/import/SpectrumReaders.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/orvanel/import/ImportBench.h"

namespace orvanel {
namespace {

const char* const msp =
    "Name: Testane\r\nPrecursorMZ: 151.0754\r\nPrecursor_type: [M+H]+\r\nIon_mode: P\r\nCollision_energy: 10\r\n"
    "Formula: C9H10O2\r\nDB#: T1\r\nNum Peaks: 3\r\n133.0648 20 \"H2O; lost\"; 105.0699 1;\r\n151.0754\t79\r\n\r\n"
    "NAME: Testane 2\r\nPRECURSORTYPE: [M+H]+\r\nNum peaks: 0\r\n";

std::vector<SpectrumRecord> Read(const TempFolder& folder, const std::string& content) {
    support::WriteWholeFile(folder.File("s.txt"), content);
    return ReadSpectrumFile(folder.File("s.txt"));
}

TEST(SpectrumReaders, ReadARecordOfMassBank) {
    const TempFolder folder;
    const auto records = Read(folder, bench::Text(bench::Series()[0]) + bench::Text(bench::Series()[1]));
    ASSERT_EQ(records.size(), 2u);
    const SpectrumRecord& second = records[1];
    EXPECT_EQ(second.line, 20);
    EXPECT_EQ(second.accession.text, "TEST-0001");
    EXPECT_EQ(second.collisionEnergy.text, "20 V");
    EXPECT_EQ(second.collisionEnergy.line, 29);
    EXPECT_EQ(second.adduct.text, "[M+H]+");
    EXPECT_EQ(second.mzDecimals, 4);
    ASSERT_EQ(second.peaks.size(), 3u);  // not the annotation
    EXPECT_EQ(second.peaks[1].mz, 133.0646);
    EXPECT_EQ(second.peaks[1].intensity, 540);
}

TEST(SpectrumReaders, ReadSpectraOfMsp) {
    const TempFolder folder;
    const auto spectra = Read(folder, msp);
    ASSERT_EQ(spectra.size(), 2u);
    EXPECT_EQ(spectra[0].precursorMz.line, 2);
    EXPECT_EQ(spectra[0].ionMode.text, "P");
    EXPECT_EQ(spectra[0].accession.text, "T1");
    ASSERT_EQ(spectra[0].peaks.size(), 3u);
    EXPECT_EQ(spectra[0].peaks[0].mz, 105.0699);
    EXPECT_EQ(spectra[0].peaks[2].intensity, 79);
    EXPECT_EQ(spectra[1].line, 12);
    EXPECT_EQ(spectra[1].adduct.text, "[M+H]+");
}

TEST(SpectrumReaders, TakeLatin1ByteOrderMarksAndOldLineEnds) {
    const TempFolder folder;
    std::string text = bench::Text(bench::Series()[0]);
    text.replace(text.find("A. Tester"), 9, "Bj\xF6rn");
    std::replace(text.begin(), text.end(), '\n', '\r');
    EXPECT_EQ(Read(folder, text)[0].authors.text, "Bj\xC3\xB6rn");
    text.replace(text.find("Bj\xF6rn"), 5, "Bj\xC3\xB6rn");
    const auto marked = Read(folder, "\xEF\xBB\xBF" + text);
    EXPECT_EQ(marked[0].authors.text, "Bj\xC3\xB6rn");
    EXPECT_EQ(marked[0].peaks.size(), 2u);
}

TEST(SpectrumReaders, FindTheFilesOfAFolder) {
    const TempFolder folder;
    for (const char* name : {"b.MSP", "a.txt", "c.ini"})
        support::WriteWholeFile(folder.File(name), "");
    EXPECT_EQ(SpectrumFiles({"one.dat", folder.Path()}),
              (std::vector<std::string>{"one.dat", folder.File("a.txt"), folder.File("b.MSP")}));
    std::filesystem::create_directory(folder.File("empty"));
    EXPECT_EQ(bench::ErrorOf([&] { SpectrumFiles({folder.File("empty")}); }),
              folder.File("empty") + ": the folder holds no .txt and no .msp file");
    EXPECT_EQ(bench::ErrorOf([&] { SpectrumFiles(std::vector<std::string>(1001, "x.txt")); }),
              "x.txt: is one file too many, at most 1000 are read");
}

TEST(SpectrumReaders, RefuseDamagedFilesByLine) {
    const std::string record = bench::Text(bench::Series()[0]);
    struct Case {
        std::string text;
        const char *old, *replacement, *message;
    };
    const Case cases[] = {
        {record, "//\n", "", ", line 18: the record does not end with \"//\"; it is cut off"},
        {record, "PK$NUM_PEAK: 2", "PK$NUM_PEAK: 3",
         ", line 15: the spectrum announces 3 peaks and has 2; it is cut off or was edited"},
        {record, "PK$NUM_PEAK: 2", "PK$NUM_PEAK: 99999999",
         ", line 15: \"99999999\" is no number of peaks from 0 to 50000"},
        {record, "PK$NUM_PEAK: 2\n", "", ", line 18: the record ends without PK$NUM_PEAK; it is damaged"},
        {record, "133.0651 50", "133.0651 nan",
         ", line 17: \"nan\" is no intensity, which is a number from 0 to 1E+30"},
        {record, "133.0651 50", "1e999 50", ", line 17: \"1e999\" is no m/z, which is a number from 1 to 100000"},
        {record, "133.0651 50 999", "133.0651", ", line 17: a peak needs m/z and intensity, not \"133.0651\""},
        {record, "LICENSE: CC BY", "LICENSE CC BY", ", line 4: \"LICENSE CC BY\" is no line of a MassBank record"},
        {record, "//\n", record.c_str(), ", line 19: a new record begins before \"//\" has ended the one above"},
        {record, "ACCESSION: TEST-0001\n", "", ", line 1: is neither a MassBank record, which begins with"},
        {msp, "Num Peaks: 3", "Num Peaks: 4", ", line 8: the spectrum announces 4 peaks and has 3"},
        {msp, "Num peaks: 0\r\n", "", ", line 12: the spectrum has no line \"Num Peaks:\"; it is cut off"},
        {msp, "151.0754\t79", "Formula: C2", ", line 10: \"Formula: C2\" stands among the peaks"},
        {msp, "105.0699 1;", "105.0699;", ", line 9: a peak needs m/z and intensity, not \"105.0699\""},
        {"x", "x", "", ": is empty"},
        {"x", "x", "\xFF\xFEN", ": is written in UTF-16; save it as UTF-8"},
    };
    const TempFolder folder;
    for (const Case& faulty : cases) {
        std::string text = faulty.text;
        text.replace(text.find(faulty.old), std::string(faulty.old).size(), faulty.replacement);
        const std::string expected = folder.File("s.txt") + faulty.message;
        EXPECT_EQ(bench::ErrorOf([&] { Read(folder, text); }).substr(0, expected.size()), expected);
    }
    const std::string zero = record.substr(0, 30) + '\0' + record.substr(30);
    EXPECT_NE(bench::ErrorOf([&] { Read(folder, zero); }).find(", line 2: holds a byte 0"), std::string::npos);
}

}  // namespace
}  // namespace orvanel
