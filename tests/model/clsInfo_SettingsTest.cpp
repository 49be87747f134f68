// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/clsInfo_Settings.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "model/SettingsKeys.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/Text.h"
#include "tests/support_files/FaultyDisk.h"
#include "tests/support_files/RecordedMessageBoxes.h"
#include "tests/support_files/TempFolder.h"

namespace {

using support::JoinLines;
using veltra::clsInfo_Settings;

/// The keys of the file in their order, what the defaults are written as, another valid text, and one that does not
/// convert (none for texts and booleans). The valid numbers are those that a careless conversion would change.
struct FileLine {
    const char* key;
    const char* standard;
    const char* other;
    const char* wrong;
};
const std::vector<FileLine> basicLines{
    {"MethodFilePath", "", "D:\\Projects\\Caffeine\\Acquisition Methods\\start.xmt", nullptr},
    {"CompoundName", "", "Caffeine", nullptr},
    {"ExpectedMZ", "0", "0.30000000000000004", "195,0876"},
    {"Q1Resolution", "1", "2", "40000"},
    {"Polarity", "0", "1", "negative"},
};
const std::vector<FileLine> advancedLines{
    {"ERScanRate", "1000", "250", nullptr},
    {"ERCycles", "20", "-2147483648", "3000000000"},
    {"Q1MIDPRampStart", "0", "20.5", "20V"},
    {"Q1MIDPRampStop", "100", "150", "1e39"},
    {"Q1MIDPRampStep", "5", "0.1", "0x1"},
    {"Q1MIDwellTime", "100", "1E-05", "inf"},
    {"EPIScanRate", "1000", "4000", nullptr},
    {"EPINum2ndPrec", "5", "32767", "32768"},
    {"EPICycles", "3", "7", "x"},
    {"EPIMassStart", "225", "16777216", "x"},
    {"EPIMassEnd", "1000", "100.1", "x"},
    {"EPI_CE", "40", "-1E-05", "x"},
    {"EPI_CES", "15", "10", "x"},
    {"MRMDwellTime", "50", "1E+15", "x"},
    {"MS3ScanRate", "1000", "10000", nullptr},
    {"MS3FixedFillTime", "20", "150", "x"},
    {"MS3MassStart", "100", "80", "x"},
    {"MS3MassEnd", "1000", "500", "x"},
    {"MS3UseQ0Trapping", "True", "False", nullptr},
    {"MS3SaveAllFinalMethods", "True", "False", nullptr},
};

/// A whole settings file: one text a key, given its position.
std::string FileText(const std::function<std::string(const FileLine&, std::size_t)>& text) {
    std::string file = "[Veltra]\r\n";
    std::size_t position = 0;
    for (const auto& line : basicLines)
        file += std::string(line.key) + "=" + text(line, position++) + "\r\n";
    file += "[Advanced Settings]\r\n";
    for (const auto& line : advancedLines)
        file += std::string(line.key) + "=" + text(line, position++) + "\r\n";
    return file;
}

class Settings : public testing::Test {
  protected:
    clsInfo_Settings ReadFrom(const std::string& text) const {
        support::WriteWholeFile(path, text);
        clsInfo_Settings settings(path);
        ignored = settings.ReadGlobalSettings();
        return settings;
    }

    static clsInfo_Settings Valid() {
        clsInfo_Settings settings("");
        settings.StarterMethodFilePath = "D:\\Projects\\Caffeine\\Acquisition Methods\\start.xmt";
        settings.CompoundName = "Caffeine";
        settings.ExpectedMZ = 195.0876;
        return settings;
    }

    const TempFolder folder;
    const std::string path = folder.File("Veltra.ini");
    mutable std::vector<std::string> ignored;  ///< what the last reading said
};

TEST_F(Settings, DefaultsAreWrittenWhole) {
    clsInfo_Settings settings(path);
    settings.ReadGlobalSettings();
    EXPECT_EQ(settings.OrvanelProjectName, "");
    settings.OrvanelProjectName = "never stored";
    settings.WriteGlobalSettings();
    EXPECT_EQ(support::ReadWholeFile(path), FileText([](const auto& line, std::size_t) { return line.standard; }));
}

TEST_F(Settings, EveryKeyIsReadAndWrittenUnderItsOwnName) {
    const std::string file = FileText([](const auto& line, std::size_t) { return line.other; });
    const auto settings = ReadFrom(file);
    support::RemoveFileIfThere(path);
    settings.WriteGlobalSettings();
    EXPECT_EQ(support::ReadWholeFile(path), file);
    EXPECT_EQ(settings.OrvanelProjectName, "Caffeine");
    EXPECT_EQ(settings.Advanced_Q1MIDPRampStep, 0.1f);
    EXPECT_EQ(settings.Advanced_EPI_CES, 10);
}

TEST_F(Settings, ATextThatDoesNotConvertEndsTheReadingThere) {
    for (std::size_t bad = 0; bad < basicLines.size() + advancedLines.size(); ++bad) {
        const auto& broken = bad < basicLines.size() ? basicLines[bad] : advancedLines[bad - basicLines.size()];
        if (broken.wrong == nullptr) continue;
        const auto settings = ReadFrom(FileText(
            [&](const auto& line, std::size_t position) { return position == bad ? line.wrong : line.other; }));
        std::vector<std::string> told{path + ": " + broken.key + "=" + broken.wrong +
                                      " is ignored, it is no such value; " + broken.standard + " is used instead"};
        for (std::size_t i = 0; i < veltra::SettingsKeys().size(); ++i) {
            const auto& line = i < basicLines.size() ? basicLines[i] : advancedLines[i - basicLines.size()];
            if (i > bad)
                told.push_back(path + ": " + line.key + "=" + line.other + " is ignored after the wrong " + broken.key +
                               "; " + line.standard + " is used instead");
            EXPECT_EQ(veltra::SettingsKeys()[i].write(settings), i < bad ? line.other : line.standard)
                << line.key << " with a wrong " << broken.key;
        }
        EXPECT_EQ(ignored, told);
    }
}

TEST_F(Settings, EmptyOrMissingKeysKeepTheirValueButPathAndName) {
    for (const auto& text : {FileText([](const auto&, std::size_t) { return ""; }), std::string()}) {
        support::WriteWholeFile(path, text);
        clsInfo_Settings read(path);
        read.StarterMethodFilePath = read.CompoundName = read.OrvanelProjectName = "Caffeine";
        read.ExpectedMZ = 195.0876;
        read.ReadGlobalSettings();
        EXPECT_EQ(read.StarterMethodFilePath + read.CompoundName + read.OrvanelProjectName, "");
        EXPECT_EQ(read.ExpectedMZ, 195.0876);
        EXPECT_EQ(read.Advanced_ERScanRate, "1000");
        EXPECT_TRUE(read.Advanced_MS3UseQ0Trapping);
    }
}

TEST_F(Settings, AFileThatCannotBeReadIsToldAndStaysAsItIs) {
    const auto refuses = [&](const support::Disk& disk, const std::string& reason) {
        clsInfo_Settings settings(path, disk);
        settings.CompoundName = "Caffeine";
        try {
            settings.ReadGlobalSettings();
            ADD_FAILURE() << reason;
        } catch (const support::FileError& error) {
            EXPECT_EQ(error.what(), "Cannot read " + path + ": " + reason);
        }
        const std::string before = support::ReadWholeFile(path);
        settings.WriteGlobalSettings();
        EXPECT_TRUE(support::ReadWholeFile(path) == before) << reason;
    };
    for (const auto& text : {std::string("\xFF\xFE[\0V\0", 6), std::string("[\0V\0", 4)}) {
        support::WriteWholeFile(path, text);
        refuses(support::SystemDisk(), "it is UTF-16 or no text, save it as UTF-8");
    }
    support::WriteWholeFile(path, std::string((1 << 20) + 1, ' '));
    refuses(support::SystemDisk(), "it has 1048577 bytes, more than the 1048576 allowed");
    support::WriteWholeFile(path, "[Veltra]\r\nCompoundName=Codeine\r\n");
    std::size_t operations = 0;
    FaultyDisk sound;
    clsInfo_Settings(path, sound).ReadGlobalSettings();
    while (++operations <= sound.Operations().size()) {
        if (sound.Operations()[operations - 1].call == DiskCall::List) break;
        FaultyDisk disk;
        disk.Fail(DiskFault::InputOutput, operations, FaultyDisk::Times::FromThenOn);
        refuses(disk, "Input/output error");
    }
}

TEST_F(Settings, BooleansAndProjectNames) {
    for (const auto& [text, value] :
         {std::pair{"true", true}, {"TRUE", true}, {"tRuE", true}, {"1", false}, {"yes", false}})
        EXPECT_EQ(ReadFrom(std::string("[Advanced Settings]\nMS3UseQ0Trapping=") + text).Advanced_MS3UseQ0Trapping,
                  value)
            << text;
    for (const auto& [method, project] :
         {std::pair{"D:\\Projects\\Caffeine\\Acquisition Methods\\start.xmt", "Caffeine"},
          {"/p/Study 1/Acquisition Methods/start.xmt", "Study 1"},
          {"D:\\Caffeine\\start.xmt", ""},
          {"start.xmt", ""}})
        EXPECT_EQ(ReadFrom(std::string("[Veltra]\nMethodFilePath=") + method).OrvanelProjectName, project);
}

TEST_F(Settings, ForeignLinesStayAndAFailingWriteIsIgnored) {
    const std::string foreign = "; mine\r\n[Other]\r\nkey=1\r\n[veltra]\r\ncompoundname=old ; name\r\n";
    support::WriteWholeFile(path, foreign);
    clsInfo_Settings settings(path);
    settings.CompoundName = "new\nname";
    settings.WriteGlobalSettings();
    const std::string start = foreign + "MethodFilePath=\r\nExpectedMZ=0\r\n";
    EXPECT_EQ(support::ReadWholeFile(path).substr(0, start.size()), start) << "a line end inside a value is refused";

    const std::string orphan = support::JoinPath(folder.File("missing"), "Veltra.ini");
    EXPECT_EQ(clsInfo_Settings(orphan).WriteGlobalSettings(), "Cannot write " + orphan + ": No such file or directory");
    EXPECT_EQ(support::SubFolders(folder.Path()), std::vector<std::string>{});
}

TEST_F(Settings, ASaveWaitsForTheOtherWriter) {
    auto lock = support::LockForSaving(path);
    ASSERT_NE(lock, nullptr);
    try {
        support::LockForSaving(path, std::chrono::milliseconds(20));
        ADD_FAILURE() << "two have the lock";
    } catch (const support::FileError& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("Cannot write " + path + ": another program"))
            << error.what();
    }
    std::thread writer([this] { EXPECT_EQ(clsInfo_Settings(path).WriteGlobalSettings(), ""); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(support::FileExists(path));
    lock.reset();
    writer.join();
    EXPECT_TRUE(support::FileExists(path));
    EXPECT_EQ(support::FilesIn(folder.Path()), std::vector<std::string>{"Veltra.ini"});
}

TEST_F(Settings, TextColumns) {
    auto settings = Valid();
    EXPECT_EQ(settings.GetSettingsHeadingColumn(),
              JoinLines({"Current Settings:", "      Orvanel Project", "      Method", "      Compound Name",
                         "      Q1 Resolution", "      Expected m/z", "      Polarity", "",
                         "Advanced Settings:", "      ER Scan Rate", "      Q1MI DP Ramp", "      EPI Scan Rate",
                         "      EPI # 2nd Prec", "      MS3 Scan Rate", "      Final Methods"}));
    settings.OrvanelProjectName = "Study1";
    EXPECT_EQ(settings.GetCurrentGlobalSettingsString(),
              JoinLines({"", "Study1", "start.xmt", "Caffeine", "Unit", "195.0876 Da", "Positive", "", "", "1000 Da/s",
                         "0V to 100V with 5V step", "1000 Da/s", "5", "1000 Da/s", "Save all final methods"}));

    settings.StarterMethodFilePath = "/p/Study1/Acquisition Methods/other.xmt";
    settings.ExpectedMZ = 511.3 - 1;
    settings.Polarity = 1;
    settings.Q1Resolution = 3;
    settings.Advanced_ERScanRate = "250";
    settings.Advanced_Q1MIDPRampStart = 20.1f;
    settings.Advanced_Q1MIDPRampStop = 0.5f;
    settings.Advanced_Q1MIDPRampStep = -0.1f;
    settings.Advanced_EPIScanRate = "4000";
    settings.Advanced_EPINum2ndPrec = 10;
    settings.Advanced_MS3ScanRate = "10000";
    settings.Advanced_MS3SaveAllFinalMethods = false;
    EXPECT_EQ(
        settings.GetCurrentGlobalSettingsString(),
        JoinLines({"", "Study1", "other.xmt", "Caffeine", "Open", "510.3 Da", "Negative", "", "", "250 Da/s",
                   "20.1V to 0.5V with -0.1V step", "4000 Da/s", "10", "10000 Da/s", "Save optimal method only"}));

    settings.Polarity = 2;
    settings.Q1Resolution = 4;
    EXPECT_EQ(support::Split(settings.GetCurrentGlobalSettingsString(), '\n').at(6), "\r");
    EXPECT_EQ(support::Split(settings.GetCurrentGlobalSettingsString(), '\n').at(4), "\r");
    for (const auto& [code, word] : {std::pair{0, "Low"}, {1, "Unit"}, {2, "High"}, {3, "Open"}, {-1, ""}}) {
        settings.Q1Resolution = code;
        EXPECT_EQ(settings.Q1ResolutionWord(), word);
    }
}

using Spoil = std::function<void(clsInfo_Settings&)>;

Spoil Mz(double mz) {
    return [mz](auto& settings) { settings.ExpectedMZ = mz; };
}
Spoil Name(std::size_t length) {
    return [length](auto& settings) { settings.CompoundName.assign(length, 'x'); };
}
Spoil Precursors(std::int16_t count) {
    return [count](auto& settings) { settings.Advanced_EPINum2ndPrec = count; };
}
Spoil Ramp(float start, float stop, float step) {
    return [start, stop, step](auto& settings) {
        settings.Advanced_Q1MIDPRampStart = start;
        settings.Advanced_Q1MIDPRampStop = stop;
        settings.Advanced_Q1MIDPRampStep = step;
    };
}

/// What is shown for the settings; nothing when they are valid.
std::string Complaint(const clsInfo_Settings& settings) {
    RecordedMessageBoxes boxes;
    const bool valid = settings.AreSettingsValid(boxes);
    EXPECT_EQ(valid, boxes.shown.empty());
    if (boxes.shown.empty()) return "";
    EXPECT_EQ(boxes.shown, (std::vector<RecordedMessageBoxes::Box>{{boxes.shown[0].text, ports::MessageIcon::None}}));
    return boxes.shown[0].text;
}

const std::string mzTooLow = "m/z must be greater than or equal to 15, please update the Settings";
const std::string wrongCount = "The entered EPI number of 2nd precursors to use is out of range (1 to 10).";
const std::string wrongStep = "The entered DP ramp step value is out of range ";

/// Each row breaks one more thing, from the last check backwards, so that every message also shows which check is
/// earlier.
TEST_F(Settings, ChecksRunInOrderAndTheFirstMessageIsShown) {
    const std::pair<Spoil, std::string> cases[] = {
        {[](auto& settings) { settings.CompoundName = "a/b"; },
         "Compound name cannot hold \"/\", please update the Settings."},
        {Precursors(0), wrongCount},
        {Ramp(0, 100, 100.5f), wrongStep + "(0.001 to 100)."},
        {Ramp(50, 50, 100.5f), "The entered DP ramp start and stop values are equal, ramp is not valid."},
        {Ramp(0, 200.1f, 0), "The entered DP ramp stop value is out of range (0 to 200)."},
        {Ramp(-0.1f, 200.1f, 0), "The entered DP ramp start value is out of range (0 to 200)."},
        {Mz(14.999), mzTooLow},
        {Mz(1700.001), "m/z  cannot exceed 1700 Da, please update the Settings"},
        {Name(32), "Compound name exceeds limit by 1 characters, please update the Settings."},
        {Name(0), "Please enter a compound name in the Settings"},
        {[](auto& settings) { settings.StarterMethodFilePath = ""; },
         "Please select a starter acquisition method file in the Settings"},
    };
    auto settings = Valid();
    EXPECT_EQ(Complaint(settings), "");
    for (const auto& [spoil, message] : cases) {
        spoil(settings);
        EXPECT_EQ(Complaint(settings), message);
    }
}

TEST_F(Settings, LimitsThemselvesPass) {
    const std::pair<Spoil, std::string> cases[] = {
        {Mz(15), ""},
        {Mz(1700), ""},
        {Mz(0), mzTooLow},
        {Mz(std::numeric_limits<double>::quiet_NaN()), mzTooLow},
        {Name(31), ""},
        {Precursors(1), ""},
        {Precursors(10), ""},
        {Precursors(11), wrongCount},
        {Ramp(0, 200, 200), ""},
        {Ramp(0, 100, 0.001f), ""},
        {Ramp(0, 100, 0.0009f), wrongStep + "(0.001 to 100)."},
        {Ramp(0, 100, -5), wrongStep + "(0.001 to 100)."},
        {Ramp(100, 0, -5), ""},
        {Ramp(100, 0, -100), ""},
        {Ramp(100, 0, -0.001f), ""},
        {Ramp(100, 0, 5), wrongStep + "(-100 to -0.001)."},
        {Ramp(0.1f, 33.4327f, 50), wrongStep + "(0.001 to 33.333)."},
    };
    for (const auto& [set, message] : cases) {
        auto settings = Valid();
        set(settings);
        EXPECT_EQ(Complaint(settings), message);
    }
}

TEST_F(Settings, DefaultFileLiesBesideTheProgram) {
    EXPECT_EQ(clsInfo_Settings::DefaultIniPath(), support::ProgramFolder() + support::PathSeparator() + "Veltra.ini");
}

}  // namespace
