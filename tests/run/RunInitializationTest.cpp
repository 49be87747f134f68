// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/RunInitialization.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "run/clsMain.h"
#include "support/Platform.h"
#include "tests/run/ProjectBench.h"

namespace {

using ports::MessageIcon;
using Texts = std::vector<std::string>;
using Choice = ports::FolderChooser::Choice;

bool Initialize(ProjectBench& bench) {
    return veltra::clsMain(bench.state).Initialize();
}

const std::string noData = "Unable to locate Data folder";
const std::string noOutputFolder = "Error creating subdirectory for output files";

/// What makes an initialisation fail, and what the user is told.
struct Failure {
    std::string name;
    std::string told;
    std::function<void(ProjectBench&)> arrange;
};

std::function<void(ProjectBench&)> Failing(const std::string& operation) {
    return [operation](ProjectBench& bench) { bench.calls.Fail(operation, RunBench::hostError); };
}
void RemoveData(ProjectBench& bench) {
    std::filesystem::remove(bench.Path("Study1/Data"));
}

const std::vector<Failure> failures{
    {"no application", "You must start Orvanel before running the optimization",
     [](auto& bench) { bench.fake.applicationIsRunning = false; }},
    {"unknown instrument model", "The instrument model cannot be read from Orvanel",
     [](auto& bench) { bench.state.InstrumentModelCode = 0; }},
    {"no starter method", "Acquire: Error loading STARTER.  Invalid acquisition method.",
     [](auto& bench) { bench.fake.store.methods.clear(); }},
    {"parameters not read", "Acquire: Error during updating of initial compound parameters" + RunBench::errorSuffix,
     Failing("HostGetParameterCount")},
    {"no Data folder", noData, RemoveData},
    {"Data is a file", noData,
     [](auto& bench) {
         RemoveData(bench);
         support::WriteWholeFile(bench.Path("Study1/Data"), "no folder");
     }},
    {"choosing fails", noData,
     [](auto& bench) {
         RemoveData(bench);
         bench.folderChooser.choose = []() -> Choice { throw std::runtime_error("no window"); };
     }},
    {"no batch service", "Tolm Batch: Error during Tolm initialization" + RunBench::errorSuffix,
     Failing("TolmCreateService")},
    {"no test batch", "Tolm Batch: Error during creation of new Tolm Batch" + RunBench::errorSuffix,
     Failing("TolmNewBatch")},
    {"output folder is a file", noOutputFolder,
     [](auto& bench) {
         support::WriteWholeFile(bench.Path("Study1/Data/C Veltra (5-13-2024, 3h45m12 PM)"), "no folder");
     }},
    {"compound with a separator", noOutputFolder, [](auto& bench) { bench.settings.CompoundName = "no such/C"; }},
};

TEST(RunInitialization, TellsWhatFailedAndLeavesNothingBehind) {
    for (const auto& failure : failures) {
        SCOPED_TRACE(failure.name);
        ProjectBench bench;
        bench.CreateFolder("Study1/Data");
        failure.arrange(bench);
        bool succeeded = true;
        EXPECT_NO_THROW(succeeded = Initialize(bench));
        EXPECT_FALSE(succeeded);
        std::string told = failure.told;
        if (const auto at = told.find("STARTER"); at != std::string::npos)
            told.replace(at, 7, bench.settings.StarterMethodFilePath);
        bench.ExpectReported({{told, MessageIcon::Warning}}, {});
        EXPECT_EQ(bench.state.results, nullptr);
        EXPECT_EQ(bench.state.scans, nullptr);
        EXPECT_EQ(bench.state.batch, nullptr);
        EXPECT_EQ(bench.settings.OrvanelProjectName, "as before");
        EXPECT_FALSE(bench.state.AbortRequested);
    }
}

TEST(RunInitialization, EveryTryStartsAfresh) {
    ProjectBench bench;
    bench.CreateFolder("Study1/Data");
    ASSERT_TRUE(Initialize(bench));
    bench.state.results->OptimalMS3PeakIndex = 4;
    bench.state.scans->MS3_FilePathsAddOne({});
    bench.calls.Fail("TolmLogon", RunBench::hostError);
    ASSERT_FALSE(Initialize(bench));
    bench.ExpectReported({{"Tolm Batch: Error during Tolm logon" + RunBench::errorSuffix, MessageIcon::Warning}}, {});
    EXPECT_EQ(bench.calls.CountOf("~TolmService"), 2);
    ASSERT_TRUE(Initialize(bench));
    EXPECT_EQ(bench.state.results->OptimalMS3PeakIndex, 0);
    EXPECT_EQ(bench.state.scans->Scan5_MS3_GetFilePathsCount(), 0);
    EXPECT_FALSE(bench.state.batch->ErrorOccurred());
}

TEST(RunInitialization, ProvesThatABatchCanBeCreated) {
    ProjectBench bench;
    bench.CreateFolder("Study1/Data");
    ASSERT_TRUE(Initialize(bench));
    EXPECT_EQ(
        bench.calls.Only({"TolmSelectProject", "TolmSetBatchName", "TolmSetBatchProject", "TolmSubmitBatch",
                          "TolmSetSetAcquisitionMethod", "TolmSetSampleDataFile", "~TolmBatch"}),
        (Texts{"TolmSelectProject(\"session1\", \"" + bench.Path("") + "\", \"Study1\")",
               "TolmSetBatchName(\"InitializeTestBatch.xbt\")", "TolmSetBatchProject(\"" + bench.Path("Study1") + "\")",
               "TolmSetSetAcquisitionMethod(3, \"InitializeTestMethod.xmt\")",
               "TolmSetSampleDataFile(3, 7, \"InitializeTestVesk.vesk\")", "~TolmBatch"}));
}

/// Folders and paths are below the Projects folder.
TEST(RunInitialization, LooksForTheDataFolderInThisOrder) {
    struct Case {
        const char* name;
        Texts folders;
        const char* chosen;      ///< nothing selected when it is empty, cancelled when there is none
        const char* dataFolder;  ///< none: not found
        std::string projectsRoot, project, projectName;
    };
    const std::string asBefore = "as before";
    const Case cases[] = {
        {"in the project", {"Study1/Data"}, nullptr, "Study1/Data/", "", "Study1", asBefore},
        {"both", {"Study1/Data", "Data"}, nullptr, "Study1/Data/", "", "Study1", asBefore},
        {"sub-project", {"Data"}, nullptr, "Data/", "", "Study1", "Projects\\Study1"},
        {"chosen", {"Study1/Sub/Data"}, "Study1/Sub", "Study1/Sub/Data/", "Study1/", "Sub", "Study1\\Sub"},
        {"cancelled", {"Study1/Sub/Data"}, nullptr, nullptr, "", "", asBefore},
        {"nothing selected", {"Study1/Sub/Data"}, "", nullptr, "", "", asBefore},
        {"no Data in it", {"Study1/Sub"}, "Study1/Sub", nullptr, "", "", asBefore},
    };
    for (const auto& [name, folders, chosen, dataFolder, projectsRoot, project, projectName] : cases) {
        SCOPED_TRACE(name);
        ProjectBench bench;
        for (const auto& folder : folders)
            bench.CreateFolder(folder);
        bench.folderChooser.choose = [&bench, path = chosen] {
            if (path == nullptr) return Choice{true, bench.Path("Study1/Sub")};
            return Choice{false, *path == '\0' ? "" : bench.Path(path)};
        };
        EXPECT_EQ(Initialize(bench), dataFolder != nullptr);
        if (dataFolder == nullptr) bench.ExpectReported({{noData, MessageIcon::Warning}}, {});
        const bool isAsked = chosen != nullptr || dataFolder == nullptr;
        EXPECT_EQ(bench.folderChooser.asked, isAsked ? Texts{bench.Path("Study1/")} : Texts());
        EXPECT_EQ(bench.settings.OrvanelProjectName, projectName);
        EXPECT_EQ(bench.display.calls, Texts{"UpdateGraphLabelsAndButtons(0, , 0, )"});
        if (dataFolder == nullptr) continue;
        EXPECT_EQ(bench.state.results->VeskOutputFilePath,
                  bench.Path(dataFolder) + "C Veltra (5-13-2024, 3h45m12 PM)/");
        const std::string selected = "\"" + bench.Path(projectsRoot) + "\", \"" + project + "\"";
        EXPECT_EQ(bench.calls.Only({"TolmSelectProject"}), Texts{"TolmSelectProject(\"session1\", " + selected + ")"});
    }
}

/// A Data folder in the current folder is not taken for the project's.
TEST(RunInitialization, AStarterPathWithoutAProjectNeedsAChoice) {
    const auto currentFolder = std::filesystem::current_path();
    for (const std::string chosen : {"", "Study1"}) {
        SCOPED_TRACE(chosen);
        ProjectBench bench;
        bench.CreateFolder("Study1/Data");
        bench.settings.StarterMethodFilePath = RunBench::starterPath;
        bench.folderChooser.choose = [&] { return Choice{false, chosen.empty() ? "" : bench.Path(chosen)}; };
        std::filesystem::current_path(bench.Path("Study1"));
        EXPECT_EQ(Initialize(bench), !chosen.empty());
        std::filesystem::current_path(currentFolder);
        EXPECT_EQ(bench.folderChooser.asked, Texts{"/"});
        if (chosen.empty()) bench.ExpectReported({{noData, MessageIcon::Warning}}, {});
        EXPECT_EQ(bench.settings.OrvanelProjectName, chosen.empty() ? "as before" : "Projects\\Study1");
    }
}

TEST(RunInitialization, OutputFolderTellsDateAndTime) {
    ProjectBench bench;
    bench.CreateFolder("Study1/Data");
    bench.clock.texts.generalDate = "2024/05/13 15:45:12";
    ASSERT_TRUE(Initialize(bench));
    const std::string output = bench.Path("Study1/Data/C Veltra (2024-05-13, 15h45m12)/");
    EXPECT_EQ(bench.state.results->VeskOutputFilePath, output);
    EXPECT_TRUE(std::filesystem::is_directory(output));
    EXPECT_EQ(bench.state.results->LogFilePath, output + "Log.txt");
}

TEST(RunInitialization, EveryRunHasItsFolderAndLogWhateverTheSecond) {
    const std::string heading = "Log File: Quantitative Optimization for MS3\r\n\r\n";
    ProjectBench bench;
    bench.CreateFolder("Study1/Data");
    ASSERT_TRUE(Initialize(bench));
    EXPECT_EQ(support::ReadWholeFile(bench.OutputFolder() + "Log.txt"), heading);
    bench.state.WriteLogLine("line");
    bench.ExpectReported({}, {"line"});
    ASSERT_TRUE(Initialize(bench));
    EXPECT_EQ(support::ReadWholeFile(bench.OutputFolder() + "Log.txt"), heading + "[5/13/2024 3:45:12 PM]  line\r\n");
    EXPECT_EQ(bench.state.results->VeskOutputFilePath, bench.Path("Study1/Data/C Veltra (5-13-2024, 3h45m13 PM)/"));
    EXPECT_EQ(support::ReadWholeFile(bench.state.results->LogFilePath), heading);
}

TEST(RunInitialization, OnlyOneProgramRunsInAProject) {
    ProjectBench bench;
    bench.CreateFolder("Study1/Data");
    std::filesystem::create_directory_symlink("Study1", bench.Path("Link"));
    auto other = support::HoldFolder(bench.Path("Link"), "Veltra");
    ASSERT_FALSE(Initialize(bench));
    bench.ExpectReported({{bench.Path("Study1") + " is in use by another Veltra (process " +
                               std::to_string(support::ProcessNumber()) + "), end that one first",
                           MessageIcon::Warning}},
                         {});
    other.reset();
    ASSERT_TRUE(Initialize(bench));
    EXPECT_THROW(support::HoldFolder(bench.Path("Link"), "Veltra"), support::FileError);
}

}  // namespace
