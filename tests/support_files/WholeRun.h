// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "orvanel/OrvanelHost.h"
#include "run/StartButton.h"
#include "tests/support_files/NewProject.h"
#include "tests/support_files/ObservedHost.h"
#include "tests/support_files/RecordedDisplay.h"
#include "tests/support_files/RecordedMessageBoxes.h"

/// A folder chooser that answers what it is told to.
class ScriptedFolderChooser : public ports::FolderChooser {
  public:
    Choice ChooseFolder(const std::string& strProjectPath) override {
        asked.push_back(strProjectPath);
        return answer;
    }
    Choice answer;
    std::vector<std::string> asked;
};

/// One whole optimisation on the shipped host, with a clock that starts at a fixed time (and is virtual unless
/// configured otherwise) and a fixed seed.
class WholeRun {
  public:
    struct Options {
        std::string compound = "reserpine";
        std::int32_t modelCode = 27;
        std::uint64_t seed = 1;
        bool asNewProject = false;  ///< with what a new project knows; else tuned to the compound
        std::function<void(orvanel::OrvanelConfig&)> configure = [](auto&) {};
        std::function<void(veltra::clsInfo_Settings&)> adjust = [](auto&) {};
        const support::Disk& disk = support::SystemDisk();
        const ports::Clock* runClock = nullptr;  ///< what the run takes its dates and times from, if not the host's
    };

    static veltra::clsInfo_Settings SettingsOf(const NewProject& project, const Options& options);

    explicit WholeRun(const Options& options);
    /// In a project that is there already.
    WholeRun(const Options& options, std::shared_ptr<const NewProject> in);

    veltra::StartButton::Outcome Start();

    /// The run's files without carriage returns, and with "<DIR>" for the temporary folder. @throws
    /// std::runtime_error when a line does not end in CR LF
    std::string LogText() const { return FileText("Log.txt"); }
    std::string ReportText() const { return FileText("Results.txt"); }
    /// The host's Data folder of the project.
    std::string DataFolder() const;
    /// With "<DIR>" for the temporary folder.
    std::string Anonymous(std::string text) const;

    std::shared_ptr<const NewProject> heldProject;
    const NewProject& project;
    orvanel::OrvanelConfig config;
    orvanel::HostClock clock;
    HostCalls calls;
    std::unique_ptr<ports::Host> orvanelHost;
    ObservedHost host;
    std::vector<std::string> opened;  ///< what the desktop was asked to open, "as text: " before what as a text
    bool desktopHasPrograms = true;
    RecordedDisplay display;
    RecordedMessageBoxes boxes;
    ScriptedFolderChooser chooser;
    veltra::clsInfo_Settings settings;
    veltra::RunState run;
    veltra::StartButton startButton;

  private:
    std::string FileText(const std::string& name) const;
    bool Open(const std::string& document);
};
