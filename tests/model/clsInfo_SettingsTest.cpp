#include "model/clsInfo_Settings.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <limits>
#include <thread>
#include <vector>

#include "model/SettingsKeys.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/Text.h"
#include "tests/support_files/RecordedMessageBoxes.h"
#include "tests/support_files/TempFolder.h"

namespace {

using support::JoinLines;
using veltra::clsInfo_Settings;

/// The keys of the file in their order, what the defaults are written as, another valid text, and one that does not
/// convert (none for texts and booleans).
struct FileLine {
    const char* key;
    const char* standard;
    const char* other;
    const char* wrong;
};
const std::vector<FileLine> basicLines{
    {"MethodFilePath", "", "D:\\Projects\\Caffeine\\Acquisition Methods\\start.xmt", nullptr},
    {"CompoundName", "", "Caffeine", nullptr},
    {"ExpectedMZ", "0", "195.0876", "195,0876"},
    {"Q1Resolution", "1", "2", "40000"},
    {"Polarity", "0", "1", "negative"},
};
const std::vector<FileLine> advancedLines{
    {"ERScanRate", "1000", "250", nullptr},
    {"ERCycles", "20", "40000", "3000000000"},
    {"Q1MIDPRampStart", "0", "20.5", "20V"},
    {"Q1MIDPRampStop", "100", "150", "1e39"},
    {"Q1MIDPRampStep", "5", "0.1", "0x1"},
    {"Q1MIDwellTime", "100", "0.1", "inf"},
    {"EPIScanRate", "1000", "4000", nullptr},
    {"EPINum2ndPrec", "5", "3", "32768"},
    {"EPICycles", "3", "7", "x"},
    {"EPIMassStart", "225", "50.25", "x"},
    {"EPIMassEnd", "1000", "900", "x"},
    {"EPI_CE", "40", "35", "x"},
    {"EPI_CES", "15", "10", "x"},
    {"MRMDwellTime", "50", "75", "x"},
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
        settings.ReadGlobalSettings();
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
        for (std::size_t i = 0; i < veltra::SettingsKeys().size(); ++i) {
            const auto& line = i < basicLines.size() ? basicLines[i] : advancedLines[i - basicLines.size()];
            EXPECT_EQ(veltra::SettingsKeys()[i].write(settings), i < bad ? line.other : line.standard)
                << line.key << " with a wrong " << broken.key;
        }
    }
}

TEST_F(Settings, EmptyOrMissingKeysKeepTheirValueButPathAndName) {
    support::WriteWholeFile(path, FileText([](const auto&, std::size_t) { return ""; }));
    for (int round = 0; round < 2; ++round) {
        clsInfo_Settings settings = Valid();
        settings.OrvanelProjectName = "Caffeine";
        clsInfo_Settings read(path);
        read.StarterMethodFilePath = settings.StarterMethodFilePath;
        read.CompoundName = settings.CompoundName;
        read.OrvanelProjectName = settings.OrvanelProjectName;
        read.ExpectedMZ = settings.ExpectedMZ;
        read.ReadGlobalSettings();
        EXPECT_EQ(read.StarterMethodFilePath + read.CompoundName + read.OrvanelProjectName, "");
        EXPECT_EQ(read.ExpectedMZ, settings.ExpectedMZ);
        EXPECT_EQ(read.Advanced_ERScanRate, "1000");
        EXPECT_TRUE(read.Advanced_MS3UseQ0Trapping);
        support::WriteWholeFile(path, "");
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

TEST_F(Settings, AwkwardNumbersSurviveTheFile) {
    clsInfo_Settings settings(path);
    settings.ExpectedMZ = 0.1 + 0.2;
    settings.Advanced_Q1MIDwellTime = 1e-5;
    settings.Advanced_MRMDwellTime = 1e15;
    settings.Advanced_MS3FixedFillTime = 35 * 0.01;
    settings.Advanced_ERCycles = std::numeric_limits<std::int32_t>::min();
    settings.Advanced_EPINum2ndPrec = std::numeric_limits<std::int16_t>::max();
    settings.Advanced_EPIMassStart = 16777216;
    settings.Advanced_EPIMassEnd = 100.1f;
    settings.Advanced_EPI_CE = -1e-5f;
    settings.Advanced_EPI_CES = std::numeric_limits<float>::max();
    settings.WriteGlobalSettings();
    clsInfo_Settings read(path);
    read.ReadGlobalSettings();
    EXPECT_EQ(read.ExpectedMZ, settings.ExpectedMZ);
    EXPECT_EQ(read.Advanced_Q1MIDwellTime, settings.Advanced_Q1MIDwellTime);
    EXPECT_EQ(read.Advanced_MRMDwellTime, settings.Advanced_MRMDwellTime);
    EXPECT_EQ(read.Advanced_MS3FixedFillTime, settings.Advanced_MS3FixedFillTime);
    EXPECT_EQ(read.Advanced_ERCycles, settings.Advanced_ERCycles);
    EXPECT_EQ(read.Advanced_EPINum2ndPrec, settings.Advanced_EPINum2ndPrec);
    EXPECT_EQ(read.Advanced_EPIMassStart, settings.Advanced_EPIMassStart);
    EXPECT_EQ(read.Advanced_EPIMassEnd, settings.Advanced_EPIMassEnd);
    EXPECT_EQ(read.Advanced_EPI_CE, settings.Advanced_EPI_CE);
    EXPECT_EQ(read.Advanced_EPI_CES, settings.Advanced_EPI_CES);
}

TEST_F(Settings, ForeignLinesStayAndAFailingWriteIsIgnored) {
    const std::string foreign = "; mine\r\n[Other]\r\nkey=1\r\n[veltra]\r\ncompoundname=old ; name\r\n";
    support::WriteWholeFile(path, foreign);
    clsInfo_Settings settings(path);
    settings.CompoundName = "new\nname";
    settings.WriteGlobalSettings();
    const std::string start = foreign + "MethodFilePath=\r\nExpectedMZ=0\r\n";
    EXPECT_EQ(support::ReadWholeFile(path).substr(0, start.size()), start) << "a line end inside a value is refused";

    clsInfo_Settings(folder.File("missing/Veltra.ini")).WriteGlobalSettings();
    EXPECT_EQ(support::SubFolders(folder.Path()), std::vector<std::string>{});
}

TEST_F(Settings, ASaveWaitsForTheOtherWriter) {
    auto lock = support::LockForSaving(path);
    ASSERT_NE(lock, nullptr);
    std::thread writer([this] { clsInfo_Settings(path).WriteGlobalSettings(); });
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

/// Each row breaks one more thing, from the last check backwards, so that every message also shows which check is
/// earlier.
TEST_F(Settings, ChecksRunInOrderAndTheFirstMessageIsShown) {
    struct Case {
        std::function<void(clsInfo_Settings&)> spoil;
        const char* message;
    };
    const Case cases[] = {
        {[](auto& s) { s.Advanced_EPINum2ndPrec = 0; },
         "The entered EPI number of 2nd precursors to use is out of range (1 to 10)."},
        {[](auto& s) { s.Advanced_Q1MIDPRampStep = 100.5f; },
         "The entered DP ramp step value is out of range (0.001 to 100)."},
        {[](auto& s) { s.Advanced_Q1MIDPRampStop = s.Advanced_Q1MIDPRampStart; },
         "The entered DP ramp start and stop values are equal, ramp is not valid."},
        {[](auto& s) { s.Advanced_Q1MIDPRampStop = 200.1f; },
         "The entered DP ramp stop value is out of range (0 to 200)."},
        {[](auto& s) { s.Advanced_Q1MIDPRampStart = -0.1f; },
         "The entered DP ramp start value is out of range (0 to 200)."},
        {[](auto& s) { s.ExpectedMZ = 14.999; }, "m/z must be greater than or equal to 15, please update the Settings"},
        {[](auto& s) { s.ExpectedMZ = 1700.001; }, "m/z  cannot exceed 1700 Da, please update the Settings"},
        {[](auto& s) { s.CompoundName = std::string(32, 'x'); },
         "Compound name exceeds limit by 1 characters, please update the Settings."},
        {[](auto& s) { s.CompoundName = ""; }, "Please enter a compound name in the Settings"},
        {[](auto& s) { s.StarterMethodFilePath = ""; },
         "Please select a starter acquisition method file in the Settings"},
    };
    auto settings = Valid();
    RecordedMessageBoxes boxes;
    EXPECT_TRUE(settings.AreSettingsValid(boxes));
    EXPECT_TRUE(boxes.shown.empty());
    for (const auto& [spoil, message] : cases) {
        spoil(settings);
        boxes.shown.clear();
        EXPECT_FALSE(settings.AreSettingsValid(boxes));
        EXPECT_EQ(boxes.shown, (std::vector<RecordedMessageBoxes::Box>{{message, ports::MessageIcon::None}}));
    }
}

TEST_F(Settings, LimitsThemselvesPass) {
    struct Case {
        std::function<void(clsInfo_Settings&)> set;
        const char* message;  ///< null when the settings are valid
    };
    const auto ramp = [](float start, float stop, float step) {
        return [=](clsInfo_Settings& s) {
            s.Advanced_Q1MIDPRampStart = start;
            s.Advanced_Q1MIDPRampStop = stop;
            s.Advanced_Q1MIDPRampStep = step;
        };
    };
    const Case cases[] = {
        {[](auto& s) { s.ExpectedMZ = 15; }, nullptr},
        {[](auto& s) { s.ExpectedMZ = 1700; }, nullptr},
        {[](auto& s) { s.ExpectedMZ = 0; }, "m/z must be greater than or equal to 15, please update the Settings"},
        {[](auto& s) { s.ExpectedMZ = std::numeric_limits<double>::quiet_NaN(); },
         "m/z must be greater than or equal to 15, please update the Settings"},
        {[](auto& s) { s.CompoundName = std::string(31, 'x'); }, nullptr},
        {[](auto& s) { s.Advanced_EPINum2ndPrec = 1; }, nullptr},
        {[](auto& s) { s.Advanced_EPINum2ndPrec = 10; }, nullptr},
        {[](auto& s) { s.Advanced_EPINum2ndPrec = 11; },
         "The entered EPI number of 2nd precursors to use is out of range (1 to 10)."},
        {ramp(0, 200, 200), nullptr},
        {ramp(0, 100, 0.001f), nullptr},
        {ramp(0, 100, 0.0009f), "The entered DP ramp step value is out of range (0.001 to 100)."},
        {ramp(0, 100, -5), "The entered DP ramp step value is out of range (0.001 to 100)."},
        {ramp(100, 0, -5), nullptr},
        {ramp(100, 0, -100), nullptr},
        {ramp(100, 0, -0.001f), nullptr},
        {ramp(100, 0, 5), "The entered DP ramp step value is out of range (-100 to -0.001)."},
        {ramp(0.1f, 33.4327f, 50), "The entered DP ramp step value is out of range (0.001 to 33.333)."},
    };
    for (const auto& [set, message] : cases) {
        auto settings = Valid();
        set(settings);
        RecordedMessageBoxes boxes;
        EXPECT_EQ(settings.AreSettingsValid(boxes), message == nullptr);
        std::vector<RecordedMessageBoxes::Box> expected;
        if (message != nullptr) expected.push_back({message, ports::MessageIcon::None});
        EXPECT_EQ(boxes.shown, expected);
    }
}

TEST_F(Settings, DefaultFileLiesBesideTheProgram) {
    EXPECT_EQ(clsInfo_Settings::DefaultIniPath(), support::ProgramFolder() + support::PathSeparator() + "Veltra.ini");
}

}  // namespace
