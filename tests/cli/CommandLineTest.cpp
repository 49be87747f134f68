// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "cli/CleanText.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/modFileUtils.h"
#include "tests/cli/CommandBench.h"
#include "tests/support_files/TempFolder.h"

namespace {

const std::string banner =
    "Simulated instrument: nothing here was measured (spraying caffeine [M+H]+ at m/z 195.088)\n";

/// A project of caffeine, and what its files are to be changed to.
struct Project {
    Project() {
        made = RunProgram({"--new-project", folder.Path(), "--compound", "caffeine"});
        support::WriteIniString(settings, "Advanced Settings", "EPINum2ndPrec", "2");
    }
    Ended Start(const Terminal& terminal = {}) const { return RunProgram({"--settings", settings}, terminal); }

    TempFolder folder;
    std::string settings = folder.File("Veltra.ini");
    std::string host = folder.File("Orvanel.ini");
    Ended made;
};

TEST(CommandLine, RefusesWrongUsage) {
    using Arguments = std::vector<std::string>;
    const TempFolder folder;
    for (const auto& [arguments, message] :
         {std::pair{Arguments{"--nonsense"}, "The following argument was not expected: --nonsense\n"},
          {{"--new-project", folder.Path()}, "--new-project requires --compound\n"},
          {{"--compound", "caffeine"}, "--compound requires --new-project\n"},
          {{"--charge", "x", "--formula", "C"}, "--charge: x is not a number from -32767 to 32767\n"},
          {{"--explore", "f", "--mz", "nan"}, "--mz: nan is not a number from 0.001 to 1000000\n"},
          {{"--explore", "f", "--mz", "-5"}, "--mz: -5 is not a number from 0.001 to 1000000\n"},
          {{"--explore", "f", "--cycle", "0"}, "--cycle: 0 is not a number from 1 to 32767\n"},
          {{"--import-compound", "x", "--from", "y", "--energy-scale", "nan"},
           "--energy-scale: nan is not a number from 0.05 to 20\n"},
          {{"--new-project", "x", "--compound", "y", "--model", "-3"}, "--model: -3 is not a number from 1 to 9999\n"},
          {{"--explore", "f", "--list-experiments", "--top", "3"}, "--top excludes --list-experiments\n"},
          {{"--host", "/no/such/Orvanel.ini"}, "--host: File does not exist: /no/such/Orvanel.ini\n"},
          {{"--settings", "/no/such/Veltra.ini"}, "--settings: File does not exist: /no/such/Veltra.ini\n"}}) {
        const Ended ended = RunProgram(arguments);
        EXPECT_EQ(ended.status, cli::wrongUsage);
        EXPECT_EQ(ended.err, message + std::string("Run with --help for more information.\n"));
        EXPECT_EQ(ended.out, "");
    }
}

TEST(CommandLine, HelpsAndTellsItsVersion) {
    const Ended help = RunProgram({"--help"});
    EXPECT_EQ(help.status, cli::completed);
    for (const char* text :
         {"--settings FILE", "--host FILE", "--new-project DIR", "--list-compounds", "Exit status: 0"})
        EXPECT_NE(help.out.find(text), std::string::npos) << text;
    const Ended version = RunProgram({"--version"});
    EXPECT_EQ(version.status, cli::completed);
    EXPECT_EQ(version.out, "veltra-run 0.1.0\n");
}

const std::string outputLost =
    "veltra-run: the output could not be written in full: its disk is full, or nothing reads it\n";

TEST(CommandLine, LostOutputIsNoSuccess) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--help"}, {"--version"}, {"--list-compounds"}, {"--formula", "C"}, {"--check-compound", "caffeine"}}) {
        const Ended ended = RunProgram(arguments, {.outputIsLost = true});
        EXPECT_EQ(ended.status, cli::notAllWritten) << arguments[0];
        EXPECT_EQ(ended.err, outputLost);
    }
    EXPECT_EQ(RunProgram({"--formula", "C6 H6"}, {.outputIsLost = true}).status, cli::wrongUsage);
    const Project project;
    const Ended run = project.Start({.outputIsLost = true});
    EXPECT_EQ(run.status, cli::notAllWritten);
    EXPECT_EQ(run.err, banner + "Veltra: Optimization completed successfully!\n" + outputLost);
}

/// Characters are whole however they arrive, and nothing moves the cursor or changes colours.
TEST(CommandLine, CleansWhatComesFromOutside) {
    std::stringbuf target;
    {
        cli::CleanBuffer buffer(target);
        std::ostream out(&buffer);
        for (const char c : std::string("\tm\xC2\xB5\n\033[31m\r\xC2\x9B\x9B\xF0\x9F\x98\x80\xE5\x85"))
            out << c << std::flush;
    }
    const std::string bad = "\xEF\xBF\xBD";
    EXPECT_EQ(target.str(), "\tm\xC2\xB5\n" + bad + "[31m" + bad + bad + bad + "\xF0\x9F\x98\x80" + bad + bad);
    EXPECT_EQ(RunProgram({"\033[31m"}).err,
              "The following argument was not expected: " + bad + "[31m\nRun with --help for more information.\n");
}

TEST(CommandLine, ComputesTheMzOfAFormula) {
    EXPECT_EQ(RunProgram({"--formula", "C", "--charge", "0"}).out, "12\n");
    EXPECT_EQ(RunProgram({"--formula", "C", "--charge", "2"}).out, "7.0072825\n");
    EXPECT_EQ(RunProgram({"--formula", "C", "--charge", "-1"}).out, "10.9927175\n");
    EXPECT_EQ(RunProgram({"--formula", "C33H40N2O9", "--charge", "1"}).out.substr(0, 8), "609.2806");
    const Ended refused = RunProgram({"--formula", "C6 H6"});
    EXPECT_EQ(refused.status, cli::wrongUsage);
    EXPECT_EQ(refused.err, "Veltra: Invalid <space> character found in formula\n");
    EXPECT_EQ(refused.out, "");
}

TEST(CommandLine, ListsCompounds) {
    const Ended ended = RunProgram({"--list-compounds"});
    EXPECT_EQ(ended.status, cli::completed);
    EXPECT_EQ(ended.out.substr(0, ended.out.find('\n')), "caffeine          195.088   [M+H]+     Caffeine");
}

TEST(NewProject, IsReadyToRunAndNeverOverwritten) {
    const Project project;
    EXPECT_EQ(project.made.status, cli::completed);
    EXPECT_EQ(project.made.err, "");
    EXPECT_EQ(support::ReadIniString(project.host, "Orvanel", "ClockFactor"), "0");

    const Ended again = RunProgram({"--new-project", project.folder.Path(), "--compound", "caffeine"});
    EXPECT_EQ(again.status, cli::wrongUsage);
    EXPECT_EQ(again.err, "veltra-run: " + project.settings + " is there already: choose another folder or remove it\n");
}

/// Two files of one ion that disagree on all that is to be found out make the same project. The first one, whose ion
/// breaks into nothing that is seen, can be run all the same.
TEST(NewProject, KnowsOfACompoundOnlyItsIon) {
    const TempFolder folder;
    const auto compound = [](const std::string& voltages, const std::string& fragments) {
        return "[Compound]\nTitle=X\nIonFormula=C9H11O2\nAdduct=[M+H]+\nPolarity=positive\nPrecursor=P\n" + voltages +
               "[Node P]\nMz=151.0754\nE50=14\nWidth=1.5\n" + fragments;
    };
    const std::string files[] = {compound("DpLow=0\nDpHigh=85\n", ""),
                                 compound("DpLow=90\nDpHigh=290\nIntensity=5e6\n",
                                          "To F=1, 0\n[Node F]\nMz=133.0648\nE50=22\nWidth=2\n[Truth]\nF=90, 0.9\n")};
    std::vector<std::string> made;
    for (const auto& file : files) {
        const TempFolder target;
        support::WriteWholeFile(folder.File("x.ini"), file);
        EXPECT_EQ(RunProgram({"--new-project", target.Path(), "--compound", folder.File("x.ini")}).err, "");
        auto settings = support::ReadWholeFile(target.File("Veltra.ini"));
        settings.erase(settings.find(target.Path()), target.Path().size());
        made.push_back(settings + support::ReadWholeFile(target.File("Projects/x/Acquisition Methods/Start.xmt")));
        if (made.size() > 1) continue;
        EXPECT_EQ(support::ReadIniString(target.File("Veltra.ini"), "Advanced Settings", "EPIMassEnd"), "171");
        EXPECT_EQ(RunProgram({"--settings", target.File("Veltra.ini")}).status, cli::abortedOrFailed);
    }
    EXPECT_EQ(made[0], made[1]);
}

/// What cannot be completed leaves nothing behind.
TEST(NewProject, IsTakenBackWhereItCannotBeCompleted) {
    const TempFolder folder;
    const std::string oddPath = folder.File("line\nSeed=2");
    const std::string file = "/caffeine.ini";
    const std::string oddName = folder.File("a:b.ini");
    const std::string quotes = folder.File("'a'.ini");
    support::CreateFolders(oddPath);
    for (const std::string& copy : {oddPath + file, oddName, quotes})
        support::WriteWholeFile(copy, support::ReadWholeFile(VELTRA_APP_LOCATION "/compounds" + file));
    const std::string notKept =
        "\" cannot be kept in an INI file, choose one in UTF-8 without line ends, blanks or quotes at its ends";
    const std::string excerpt = folder.File("line?Seed=2");
    struct Case {
        std::string below;
        std::string compound;
        std::string inTheWay;  ///< a folder where a file is to be written
        std::string reason;
        int status;
    };
    for (const auto& [below, compound, inTheWay, reason, status] :
         {Case{"x", "unobtainium", "", "There is no compound \"unobtainium\"", cli::wrongUsage},
          Case{"x\ny", "caffeine", "", notKept, cli::wrongUsage},
          Case{"x\xE4", "caffeine", "", notKept, cli::wrongUsage},
          Case{"x", oddPath + file, "", "The path \"" + excerpt + file + notKept, cli::wrongUsage},
          Case{"x", oddName, "", "The compound's name \"a:b\" cannot hold \":\", rename its file", cli::wrongUsage},
          Case{"x", quotes, "", "Cannot store CompoundName='a' in ", cli::abortedOrFailed},
          Case{"x/y", "caffeine", "Orvanel.ini", "/x/y/Orvanel.ini: Is a directory", cli::wrongUsage},
          Case{"x/y", "caffeine", "Veltra.ini", "/x/y/Veltra.ini: it is a folder", cli::abortedOrFailed}}) {
        const TempFolder target;
        const std::string project = target.File(below);
        const std::string obstacle = inTheWay.empty() ? "" : support::JoinPath(project, inTheWay);
        if (!obstacle.empty()) support::CreateFolders(obstacle);
        const Ended ended = RunProgram({"--new-project", project, "--compound", compound, "--project-name", "p"});
        EXPECT_EQ(ended.status, status) << reason;
        EXPECT_NE(ended.err.find(reason), std::string::npos) << ended.err;
        std::vector<std::string> left;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(target.Path()))
            left.push_back(entry.path().string());
        if (obstacle.empty())
            EXPECT_EQ(left.size(), 0U) << reason;
        else
            EXPECT_EQ(left, (std::vector<std::string>{target.File("x"), project, obstacle})) << reason;
    }
}

TEST(RunOptimization, PrintsLogReportAndWhereTheFilesAre) {
    const Project project;
    const Ended ended = project.Start();
    EXPECT_EQ(ended.status, cli::completed);
    EXPECT_EQ(ended.err, banner + "Veltra: Optimization completed successfully!\n");
    EXPECT_EQ(ended.out.substr(0, 30), "Initializing, please wait...\n[");
    EXPECT_NE(ended.out.find("]   Optimized CEs for 2nd precursors:\n"), std::string::npos);
    const std::string mark = "\nOutput folder: ";
    const std::string folder = ended.out.substr(ended.out.rfind(mark) + mark.size());
    EXPECT_TRUE(support::FileExists(folder.substr(0, folder.size() - 1) + "Results.txt")) << folder;
    std::string report = support::ReadWholeFile(folder.substr(0, folder.size() - 1) + "Results.txt");
    std::erase(report, '\r');
    EXPECT_NE(ended.out.find("\n" + report + "\n\nOutput folder: "), std::string::npos);
}

/// The report is told where its file cannot be written.
TEST(RunOptimization, TellsWhatCouldNotBeWritten) {
    for (const std::string name : {"Results.txt", "Log.txt"}) {
        SCOPED_TRACE(name);
        const Project project;
        std::string inTheWay;
        const Ended ended = project.Start({.onFlush = [&](const std::string& text) {
            if (text.find("--> MRM") == std::string::npos) return;
            const std::string data = project.folder.File("Projects/caffeine/Data");
            inTheWay = support::JoinPath(support::JoinPath(data, support::SubFolders(data).at(0)), name);
            support::RemoveFileIfThere(inTheWay);
            support::CreateFolders(inTheWay);
        }});
        EXPECT_EQ(ended.status, cli::notAllWritten);
        EXPECT_EQ(ended.err, banner +
                                 "Veltra: Optimization completed successfully!\n"
                                 "Veltra: The run has ended, but not everything could be written:\n" +
                                 (name == "Log.txt" ? "The last lines are missing in " + inTheWay
                                                    : "Cannot write " + inTheWay + ": Is a directory") +
                                 "\n");
        EXPECT_NE(ended.out.find("\nQuantitative Optimization for MS3\n"), std::string::npos);
    }
}

TEST(RunOptimization, DoesNotStartWithoutWhatItNeeds) {
    const std::string notRunning = "Veltra: You must start Orvanel before running the optimization\n";
    for (const auto& [section, key, value, message] :
         {std::tuple{"Veltra", "ExpectedMZ", "14",
                     banner + "Veltra: m/z must be greater than or equal to 15, please update the Settings\n"},
          {"Orvanel", "Running", "0", notRunning},
          {"Orvanel", "ModelCode", "99", banner + "Veltra: This script only works on Linear Ion Trap instruments\n"}}) {
        SCOPED_TRACE(key);
        const Project project;
        support::WriteIniString(project.folder.File(std::string(section) + ".ini"), section, key, value);
        const Ended ended = project.Start();
        EXPECT_EQ(ended.status, cli::notStarted);
        EXPECT_NE(ended.err.find(message), std::string::npos) << ended.err;
    }
    const Project project;
    support::RemoveFileIfThere(project.host);
    const Ended withoutHost = project.Start();
    EXPECT_EQ(withoutHost.status, cli::notStarted);
    EXPECT_NE(withoutHost.err.find(notRunning), std::string::npos) << withoutHost.err;
    EXPECT_EQ(withoutHost.out,
              "Initializing, please wait...\nInitialization unsuccessful!\n\n* Select [Settings] button to modify the "
              "current settings\n* Select [Advanced] button in Settings to modify the advanced settings\n");

    support::WriteWholeFile(project.host, "[Orvanel]\r\nClockFactor=fast\r\n");
    const Ended damaged = project.Start();
    EXPECT_EQ(damaged.status, cli::notStarted);
    EXPECT_EQ(damaged.err.find("veltra-run: " + project.host), 0U) << damaged.err;
}

/// A second program on the same files changes nothing for the first.
TEST(RunOptimization, IsRefusedWhileAnotherOneUsesTheFiles) {
    const Project project;
    const std::string otherSettings = project.folder.File("Other.ini");
    support::WriteWholeFile(otherSettings, support::ReadWholeFile(project.settings));
    Ended sameSettings;
    Ended sameHost;
    const Ended first = project.Start({.onFlush = [&](const std::string& text) {
        if (text.find("--> EPI") == std::string::npos) return;
        sameSettings = project.Start();
        sameHost = RunProgram({"--settings", otherSettings, "--host", project.host});
        EXPECT_EQ(RunProgram({"--formula", "C8H10N4O2"}).status, cli::completed);
    }});
    EXPECT_EQ(first.status, cli::completed);
    const std::string process = " (process " + std::to_string(support::ProcessNumber()) + "), end that one first\n";
    EXPECT_EQ(sameSettings.status, cli::notStarted);
    EXPECT_EQ(sameSettings.err, "veltra-run: " + project.settings + " is in use by another Veltra" + process);
    EXPECT_EQ(sameHost.status, cli::notStarted);
    EXPECT_EQ(sameHost.err, "veltra-run: " + project.host + " is in use by another Orvanel" + process);
}

std::function<void(const std::string& text)> RaiseAtEpi(std::vector<int> signals) {
    return [signals = std::move(signals)](const std::string& text) {
        if (text.find("--> EPI") == std::string::npos) return;
        for (const int signal : signals)
            std::raise(signal);
    };
}

/// The run ends in order, with its report.
TEST(RunOptimization, AbortsInOrderOnSignals) {
    // Whoever starts the tests may have it ignored.
    std::signal(SIGHUP, SIG_DFL);
    for (const auto& signals : std::vector<std::vector<int>>{{SIGINT}, {SIGTERM, SIGTERM}, {SIGHUP, SIGHUP}}) {
        const Project project;
        const Ended ended = project.Start({.onFlush = RaiseAtEpi(signals)});
        EXPECT_EQ(ended.status, cli::abortedOrFailed);
        EXPECT_EQ(ended.err, banner + "Veltra: Are you sure you want to abort the optimization? Yes\n" +
                                 "Veltra: Ending the run in order, Ctrl-C ends it at once and without its report\n" +
                                 "Veltra: Optimization was aborted!\n");
        EXPECT_NE(ended.out.find("]   Optimization aborted!\n"), std::string::npos);
        EXPECT_NE(ended.out.find("\nOptimization was aborted!\n"), std::string::npos);
        EXPECT_EQ(ended.out.find("--> MRM"), std::string::npos);
    }
}

TEST(RunOptimizationDeathTest, EndsAtOnceOnASecondCtrlC) {
    const Project project;
    EXPECT_EXIT(project.Start({.onFlush = RaiseAtEpi({SIGTERM, SIGINT})}),
                testing::ExitedWithCode(cli::abortedOrFailed),
                "Veltra: Ended at once. The run's report is not written, its log has no end");
}

TEST(RunOptimization, ShowsProgressOnATerminalOnly) {
    const Project project;
    const Ended ended = project.Start({.isTerminal = true});
    EXPECT_EQ(ended.status, cli::completed);
    EXPECT_NE(ended.err.find("\r\033[KExpected batch time: "), std::string::npos);
    EXPECT_NE(ended.err.find("(2 of 2) Expected batch time: "), std::string::npos);
    EXPECT_NE(ended.err.find("[##############################] 100 %"), std::string::npos);
    EXPECT_EQ(ended.out.find('\033'), std::string::npos);
}

TEST(RunOptimization, AsksForADataFolderThatItCannotFind) {
    const Project project;
    const std::string projects = project.folder.File("Projects/caffeine");
    support::CreateFolders(projects + "/Sub/Data");
    std::filesystem::remove(projects + "/Data");
    const Ended ended = project.Start({.isTerminal = true, .typed = "9\n"});
    EXPECT_EQ(ended.status, cli::notStarted);
    EXPECT_NE(ended.err.find("Please select location of Data folder:\n" + projects + "/\n"), std::string::npos);
    EXPECT_NE(ended.err.find("Veltra: Unable to locate Data folder\n"), std::string::npos);
}

}  // namespace
