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

void ExpectNothingLeft(const ProjectBench& bench) {
    EXPECT_EQ(bench.state.results, nullptr);
    EXPECT_EQ(bench.state.scans, nullptr);
    EXPECT_EQ(bench.state.batch, nullptr);
}

const std::string noData = "Unable to locate Data folder";
const std::string logon = "Tolm Batch: Error during Tolm logon" + RunBench::errorSuffix;
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
FakeMethod& Starter(ProjectBench& bench) {
    return bench.fake.store.methods.at(bench.settings.StarterMethodFilePath);
}

const std::vector<Failure> failures{
    {"no application", "You must start Orvanel before running the optimization",
     [](auto& bench) { bench.fake.applicationIsRunning = false; }},
    {"attaching fails", "You must start Orvanel before running the optimization",
     Failing("AttachToRunningApplication")},
    {"unknown instrument model", "The instrument model cannot be read from Orvanel",
     [](auto& bench) { bench.state.InstrumentModelCode = 0; }},
    {"no starter method", "Acquire: Error loading STARTER.  Invalid acquisition method.",
     [](auto& bench) { bench.fake.store.methods.clear(); }},
    {"no mass spec method",
     "Acquire: The method doesn't contain a mass spec method.  Method or hardware configuration invalid.",
     [](auto& bench) { Starter(bench).devicesAreMassSpec = {false}; }},
    {"parameters not read", "Acquire: Error during updating of initial compound parameters" + RunBench::errorSuffix,
     Failing("HostGetParameterCount")},
    {"parameters fail unexpectedly",
     "Acquire: Error during updating of initial compound parameters (Error 51: what is this).",
     [](auto& bench) { bench.calls.Fail("HostGetParameterId", std::logic_error("what is this")); }},
    {"no Data folder", noData, [](auto& bench) { std::filesystem::remove(bench.Path("Study1/Data")); }},
    {"Data is a file", noData,
     [](auto& bench) {
         std::filesystem::remove(bench.Path("Study1/Data"));
         support::WriteWholeFile(bench.Path("Study1/Data"), "no folder");
     }},
    {"choosing fails", noData,
     [](auto& bench) {
         std::filesystem::remove(bench.Path("Study1/Data"));
         bench.folderChooser.choose = []() -> Choice { throw std::runtime_error("no window"); };
     }},
    {"no batch service", "Tolm Batch: Error during Tolm initialization" + RunBench::errorSuffix,
     Failing("TolmCreateService")},
    {"logon", logon, Failing("TolmLogon")},
    {"project not selected", logon, Failing("TolmSelectProject")},
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
        ExpectNothingLeft(bench);
        EXPECT_EQ(bench.settings.OrvanelProjectName, "as before");
        EXPECT_FALSE(bench.state.AbortRequested);
    }
}

TEST(RunInitialization, EveryTryStartsAfresh) {
    for (const bool failsBetween : {false, true}) {
        SCOPED_TRACE(failsBetween);
        ProjectBench bench;
        bench.CreateFolder("Study1/Data");
        ASSERT_TRUE(Initialize(bench));
        bench.state.results->OptimalMS3PeakIndex = 4;
        bench.state.scans->MS3_FilePathsAddOne({});
        if (failsBetween) {
            bench.calls.Fail("TolmLogon", RunBench::hostError);
            ASSERT_FALSE(Initialize(bench));
            bench.ExpectReported({{logon, MessageIcon::Warning}}, {});
            ExpectNothingLeft(bench);
            EXPECT_EQ(bench.calls.CountOf("~TolmService"), 2);
        }
        ASSERT_TRUE(Initialize(bench));
        EXPECT_EQ(bench.state.results->OptimalMS3PeakIndex, 0);
        EXPECT_EQ(bench.state.scans->Scan5_MS3_GetFilePathsCount(), 0);
        EXPECT_FALSE(bench.state.batch->ErrorOccurred());
    }
}

TEST(RunInitialization, ReadsTheStarterMethodAndShowsTheSettings) {
    for (const std::int32_t polarity : {0, 1}) {
        ProjectBench bench;
        bench.CreateFolder("Study1/Data");
        bench.settings.Polarity = polarity;
        ASSERT_TRUE(Initialize(bench));
        const float sign = polarity == 1 ? -1 : 1;
        const auto& results = *bench.state.results;
        EXPECT_EQ(results.DP.Initial, sign * 50);
        EXPECT_EQ(results.CEP.Current, sign * 15.5F);
        EXPECT_EQ(results.AF2.Current, 0.125F);
        EXPECT_EQ(bench.display.calls, Texts{"UpdateGraphLabelsAndButtons(0, , 0, )"});
        EXPECT_EQ(bench.calls.CountOf("HostSaveMethodAs"), 0);
    }
}

TEST(RunInitialization, ProvesThatABatchCanBeCreated) {
    ProjectBench bench;
    bench.CreateFolder("Study1/Data");
    bench.JoinDisplayWithHostCalls();
    ASSERT_TRUE(Initialize(bench));
    const Texts all = bench.calls.texts;
    const Texts conversation(std::find(all.begin(), all.end(), "TolmCreateService()"), all.end());
    const std::string user = support::CurrentUserName().empty() ? "Unknown" : support::CurrentUserName();
    EXPECT_EQ(
        conversation,
        (Texts{"TolmCreateService()", "TolmInitialize()", "TolmLogon(\"\", \"\", \"\", \"\", \"Veltra\")",
               "TolmSelectProject(\"session1\", \"" + bench.Path("") + "\", \"Study1\")", "TolmNewBatch(\"session1\")",
               "TolmSetBatchName(\"InitializeTestBatch.xbt\")", "TolmSetBatchUser(\"" + user + "\")",
               "TolmSetBatchText(\"\")", "TolmSetBatchProject(\"" + bench.Path("Study1") + "\")",
               "TolmAddSet(\"SET1\")", "TolmSetSetAcquisitionMethod(3, \"InitializeTestMethod.xmt\")",
               "TolmSetSetProcessingMethod(3, \"none\")", "TolmAddSample(3)",
               "TolmSetSampleDataFile(3, 7, \"InitializeTestVesk.vesk\")",
               "TolmSetSampleField(3, 7, SampleName, \"N/A\")", "TolmSetSampleField(3, 7, SampleId, \"N/A\")",
               "TolmSetSampleField(3, 7, RackPosition, \"0\")", "~TolmBatch"}));
}

/// Folders and paths are below the Projects folder.
TEST(RunInitialization, LooksForTheDataFolderInThisOrder) {
    struct Case {
        const char* name;
        Texts folders;
        bool cancelled;
        const char* chosen;
        bool asked;
        const char* dataFolder;  ///< none: not found
        std::string projectsRoot, project, projectName;
    };
    const std::string asBefore = "as before";
    for (const auto& [name, folders, cancelled, chosen, asked, dataFolder, projectsRoot, project, projectName] :
         {Case{"in the project", {"Study1/Data"}, true, "", false, "Study1/Data/", "", "Study1", asBefore},
          {"both", {"Study1/Data", "Data"}, true, "", false, "Study1/Data/", "", "Study1", asBefore},
          {"sub-project", {"Data"}, true, "", false, "Data/", "", "Study1", "Projects\\Study1"},
          {"chosen",
           {"Study1/Sub/Data"},
           false,
           "Study1/Sub",
           true,
           "Study1/Sub/Data/",
           "Study1/",
           "Sub",
           "Study1\\Sub"},
          {"cancelled", {"Study1/Sub/Data"}, true, "Study1/Sub", true, nullptr, "", "", asBefore},
          {"nothing selected", {"Study1/Sub/Data"}, false, "", true, nullptr, "", "", asBefore},
          {"no Data in it", {"Study1/Sub"}, false, "Study1/Sub", true, nullptr, "", "", asBefore}}) {
        SCOPED_TRACE(name);
        ProjectBench bench;
        for (const auto& folder : folders)
            bench.CreateFolder(folder);
        bench.folderChooser.choose = [&, wasCancelled = cancelled, path = std::string(chosen)] {
            return Choice{wasCancelled, path.empty() ? "" : bench.Path(path)};
        };
        EXPECT_EQ(Initialize(bench), dataFolder != nullptr);
        if (dataFolder == nullptr) bench.ExpectReported({{noData, MessageIcon::Warning}}, {});
        EXPECT_EQ(bench.folderChooser.asked, asked ? Texts{bench.Path("Study1/")} : Texts());
        EXPECT_EQ(bench.settings.OrvanelProjectName, projectName);
        EXPECT_EQ(bench.display.calls, Texts{"UpdateGraphLabelsAndButtons(0, , 0, )"});
        if (dataFolder == nullptr) continue;
        EXPECT_EQ(bench.state.results->VeskOutputFilePath,
                  bench.Path(dataFolder) + "C Veltra (5-13-2024, 3h45m12 PM)/");
        EXPECT_EQ(
            bench.calls.Only({"TolmSelectProject"}),
            (Texts{"TolmSelectProject(\"session1\", \"" + bench.Path(projectsRoot) + "\", \"" + project + "\")"}));
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
    for (const auto& [generalDate, tag] : {std::pair{"5/13/2024 3:45:12 PM", "5-13-2024, 3h45m12 PM"},
                                           {"12/1/2024 12:05:09 AM", "12-1-2024, 12h05m09 AM"},
                                           {"2024-05-13 15:45:12", "2024-05-13, 15h45m12"},
                                           {"2024/05/13 15:45:12", "2024-05-13, 15h45m12"}}) {
        SCOPED_TRACE(generalDate);
        ProjectBench bench;
        bench.CreateFolder("Study1/Data");
        bench.clock.texts.generalDate = generalDate;
        ASSERT_TRUE(Initialize(bench));
        const std::string output = bench.Path("Study1/Data/C Veltra (" + std::string(tag) + ")/");
        EXPECT_EQ(bench.state.results->VeskOutputFilePath, output);
        EXPECT_TRUE(std::filesystem::is_directory(output));
        EXPECT_EQ(bench.state.results->LogFilePath, output + "Log.txt");
    }
}

/// A second run of the same second shares the folder and adds to its log.
TEST(RunInitialization, LogStartsWithAHeadingAndAnEmptyLine) {
    const std::string heading = "Log File: Quantitative Optimization for MS3\r\n\r\n";
    ProjectBench bench;
    bench.CreateFolder("Study1/Data");
    ASSERT_TRUE(Initialize(bench));
    EXPECT_EQ(support::ReadWholeFile(bench.OutputFolder() + "Log.txt"), heading);
    bench.state.WriteLogLine("line");
    bench.ExpectReported({}, {"line"});
    ASSERT_TRUE(Initialize(bench));
    EXPECT_EQ(support::ReadWholeFile(bench.OutputFolder() + "Log.txt"),
              heading + "[5/13/2024 3:45:12 PM]  line\r\n" + heading);
}

}  // namespace
