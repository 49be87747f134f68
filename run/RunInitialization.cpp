// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/RunInitialization.h"

#include <chrono>
#include <thread>

#include "host/clsAcquire.h"
#include "host/clsTolmBatch.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Text.h"
#include "support/modFileUtils.h"
#include "support/modGlobals.h"

namespace veltra {
namespace {

/// The "Data" folder in a folder, ending in a separator.
std::string DataFolderIn(const std::string& folder) {
    return support::JoinPath(folder, "Data") + support::PathSeparator();
}

/// Parent project, backslash, sub-project: how the host names a sub-project, not a path.
std::string SubProjectName(const std::string& projectsRoot, const std::string& projectName) {
    return support::GetFolderNameAtDepth(projectsRoot, 1) + "\\" + projectName;
}

}  // namespace

bool RunInitialization::Run() {
    runState_.results = std::make_unique<clsInfo_Results>();
    runState_.scans = std::make_unique<clsInfo_Scans>();
    runState_.batch.reset();
    runState_.projectInUse.reset();
    bool ready = false;
    if (FailureOf([&] { ready = Prepare(); })) Warn(failureMessage_);
    if (!ready) {
        runState_.results.reset();
        runState_.scans.reset();
        runState_.batch.reset();
        runState_.projectInUse.reset();
    }
    return ready;
}

bool RunInitialization::Prepare() {
    if (!AttachToHost() || !ReadStarterMethod() || !LocateDataFolder() || !HoldProject() || !LogOn() || !TestBatch() ||
        !CreateOutputFolder())
        return false;
    StartLog();
    return true;
}

bool RunInitialization::Warn(const std::string& text) {
    runState_.messageBoxes.Show(text, ports::MessageIcon::Warning);
    return false;
}

bool RunInitialization::WarnOf(HostWrapper& wrapper) {
    Warn(wrapper.ErrorDescription());
    wrapper.ResetError();
    return false;
}

bool RunInitialization::AttachToHost() {
    failureMessage_ = "You must start Orvanel before running the optimization";
    runState_.hostApplication = runState_.host.AttachToRunningApplication();
    if (!runState_.hostApplication) return Warn(failureMessage_);
    // Without the model nobody knows whether EP and CEP can be optimised, nor on which scale AF2 is.
    if (runState_.InstrumentModelCode == 0) return Warn("The instrument model cannot be read from Orvanel");
    return true;
}

bool RunInitialization::ReadStarterMethod() {
    failureMessage_ = "Error opening starter acquisition method file";
    clsAcquire acquire(runState_);
    acquire.Step1_Load(runState_.settings.StarterMethodFilePath);
    failureMessage_ = "Error getting initial compound parameter values";
    acquire.UpdateInitialCompoundParams();
    return acquire.ErrorOccurred() ? WarnOf(acquire) : true;
}

bool RunInitialization::LocateDataFolder() {
    failureMessage_ = "Unable to locate Data folder";
    const std::string& starter = runState_.settings.StarterMethodFilePath;
    projectsRoot_ = support::GetPathToNthBackslash(starter, true, 2);
    projectName_ = support::GetFolderNameAtDepth(starter, 2);

    // Without a projects folder in the path there is nothing to look in, not the current folder either.
    const bool hasProjectsRoot = !projectsRoot_.empty();
    const std::string inProject = DataFolderIn(projectsRoot_ + projectName_);
    const std::string besideProject = DataFolderIn(projectsRoot_);
    if (hasProjectsRoot && support::FolderExists(inProject, runState_.disk)) {
        dataFolder_ = inProject;
    } else if (hasProjectsRoot && support::FolderExists(besideProject, runState_.disk)) {
        // The starter method lies in a sub-project, one level deeper.
        dataFolder_ = besideProject;
        runState_.settings.OrvanelProjectName = SubProjectName(projectsRoot_, projectName_);
    } else {
        AskForDataFolder();
    }
    runState_.display.UpdateGraphLabelsAndButtons(false, "", false, "");
    return dataFolder_.empty() ? Warn(failureMessage_) : true;
}

void RunInitialization::AskForDataFolder() {
    const auto choice = runState_.folderChooser.ChooseFolder(projectsRoot_ + projectName_ + support::PathSeparator());
    if (choice.WasCancelled || choice.ReturnPath.empty() ||
        !support::FolderExists(DataFolderIn(choice.ReturnPath), runState_.disk))
        return;
    dataFolder_ = DataFolderIn(choice.ReturnPath);
    projectsRoot_ = support::GetPathToNthBackslash(dataFolder_, true, 2);
    projectName_ = support::GetFolderNameAtDepth(dataFolder_, 2);
    runState_.settings.OrvanelProjectName = SubProjectName(projectsRoot_, projectName_);
}

bool RunInitialization::LogOn() {
    failureMessage_ = "Error logging onto Orvanel service using Tolm";
    runState_.batch = std::make_unique<clsTolmBatch>(runState_.host);
    runState_.batch->Step1_TolmLogon(projectsRoot_, projectName_);
    return true;  // a failed logon leaves the object failed, which the test batch finds
}

bool RunInitialization::TestBatch() {
    failureMessage_ = "Error during test creation of Tolm batch object";
    auto& batch = *runState_.batch;
    batch.Step2_CreateNewTolmBatch("InitializeTestBatch.xbt", "InitializeTestMethod.xmt", "InitializeTestVesk.vesk");
    batch.Step3c_ClearTolmBatch();
    return batch.ErrorOccurred() ? WarnOf(batch) : true;
}

bool RunInitialization::HoldProject() {
    failureMessage_ = "The project cannot be locked";
    try {
        constexpr int outputFolders = 2;
        const std::string project = projectsRoot_ + projectName_;
        runState_.projectInUse = support::HoldFolder(project, "Veltra");
        support::RemoveLeftoversIn(project, outputFolders, runState_.disk);
        return true;
    } catch (const support::FileError& error) {
        return Warn(error.what());
    }
}

bool RunInitialization::CreateOutputFolder() {
    failureMessage_ = "Error creating subdirectory for output files";
    auto& path = runState_.results->VeskOutputFilePath;
    const std::string start = dataFolder_ + runState_.settings.CompoundName + " Veltra" + support::PathSeparator();
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    for (;;) {
        const std::string now = runState_.clock.Now().generalDate;
        path = support::MakeOutputFolder(start, now, runState_.disk);
        if (!path.empty()) return true;
        const bool isTaken = support::FolderExists(support::OutputFolderPath(start, now), runState_.disk);
        if (!isTaken || std::chrono::steady_clock::now() >= end) return Warn(failureMessage_);
        LetTimePass();
    }
}

/// A virtual clock moves by the host's pauses alone, and other programs by real time alone.
void RunInitialization::LetTimePass() {
    constexpr std::int32_t pauseMs = 20;
    runState_.host.CreatePause()->HostSleep(pauseMs);
    std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs));
}

void RunInitialization::StartLog() {
    auto& results = *runState_.results;
    results.LogFilePath = support::JoinPath(results.VeskOutputFilePath, "Log.txt");
    // The append ends the line once more, so that an empty line follows the heading.
    runState_.AppendToLogFile(std::string("Log File: Quantitative Optimization for MS3") + support::crLf);
}

}  // namespace veltra
