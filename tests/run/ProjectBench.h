// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "support/Files.h"
#include "tests/run/StageBench.h"
#include "tests/support_files/TempFolder.h"

/// Answers with a path below the temporary folder, or fails.
class ScriptedChooser : public ports::FolderChooser {
  public:
    Choice ChooseFolder(const std::string& strProjectPath) override {
        asked.push_back(strProjectPath);
        return choose();
    }
    std::function<Choice()> choose = [] { return Choice{}; };
    std::vector<std::string> asked;
};

/// Projects/Study1/Acquisition Methods/Start.xmt in a temporary folder, and a run state that nothing has prepared. The
/// host keeps the method in memory; the folders are real. A second passes while a run waits for its folder's name.
class ProjectBench : public RunBench {
  public:
    ProjectBench() {
        settings.StarterMethodFilePath = Path("Study1/Acquisition Methods/Start.xmt");
        settings.OrvanelProjectName = "as before";
        settings.CompoundName = "C";
        settings.ExpectedMZ = 609.3;
        fake.store.methods[settings.StarterMethodFilePath] = FakeMethod();
        state.InstrumentModelCode = fake.modelCode;
        calls.beforeCall = [this, before = calls.beforeCall](const std::string& text) {
            if (before) before(text);
            if (text == "HostSleep(20)") clock.texts.generalDate = "5/13/2024 3:45:13 PM";
        };
    }

    /// @param below a path below the Projects folder
    std::string Path(const std::string& below) const { return folder.File("Projects/" + below); }
    void CreateFolder(const std::string& below) const { std::filesystem::create_directories(Path(below)); }
    std::string OutputFolder() const { return Path("Study1/Data/C Veltra (5-13-2024, 3h45m12 PM)/"); }
    /// The log's lines as the display got them, without time.
    std::vector<std::string> TakeLog() {
        std::vector<std::string> lines;
        for (const auto& line : display.log)
            lines.push_back(line.substr(line.find("]") + 4));
        display.log.clear();
        return lines;
    }

    TempFolder folder;
    ScriptedChooser folderChooser;
    PlantedSample sample{*this};
    veltra::RunState state{{host, display, boxes, folderChooser, clock}, settings};
};
