// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support_files/WholeRun.h"

#include <chrono>
#include <stdexcept>

#include "cli/ProjectSettings.h"
#include "run/InstrumentCheck.h"
#include "support/Files.h"
#include "support/modFileUtils.h"
#include "tests/support_files/TunedProject.h"

namespace {

/// 2024-05-13 15:45:12 UTC
const std::chrono::system_clock::time_point startTime{std::chrono::seconds{1715615112}};

orvanel::OrvanelConfig ConfigOf(const NewProject& project, const WholeRun::Options& options) {
    auto config = orvanel::ReadOrvanelConfig(project.facts.orvanelIniPath, VELTRA_APP_LOCATION, options.disk);
    config.seed = options.seed;
    options.configure(config);
    return config;
}

std::shared_ptr<const NewProject> ProjectOf(const WholeRun::Options& options) {
    auto project = std::make_shared<const NewProject>(options.compound, options.modelCode);
    if (!options.asNewProject) TuneStarterMethod(*project, options.modelCode);
    return project;
}

}  // namespace

veltra::clsInfo_Settings WholeRun::SettingsOf(const NewProject& project, const Options& options) {
    veltra::clsInfo_Settings settings(project.folder.File("Veltra.ini"), options.disk);
    cli::SuitToCompound(settings, project.name, project.facts);
    if (!options.asNewProject) TuneSettings(project, settings);
    settings.OrvanelProjectName = project.name;
    options.adjust(settings);
    return settings;
}

WholeRun::WholeRun(const Options& options) : WholeRun(options, ProjectOf(options)) {}

WholeRun::WholeRun(const Options& options, std::shared_ptr<const NewProject> in)
    : heldProject(std::move(in)),
      project(*heldProject),
      config(ConfigOf(project, options)),
      clock(config.clockFactor, startTime, {}, true),
      orvanelHost(orvanel::CreateOrvanelHost(config, clock, options.disk,
                                             {[this](const auto& path) { return Open(path); },
                                              [this](const auto& path) { return Open("as text: " + path); }})),
      host(*orvanelHost, calls),
      settings(SettingsOf(project, options)),
      run({host, display, boxes, chooser, options.runClock != nullptr ? *options.runClock : clock, options.disk},
          settings),
      startButton(run) {
    veltra::CheckInstrument(run);
}

veltra::StartButton::Outcome WholeRun::Start() {
    return startButton.Click();
}

bool WholeRun::Open(const std::string& document) {
    opened.push_back(Anonymous(document));
    return desktopHasPrograms;
}

std::string WholeRun::DataFolder() const {
    return support::GetPathToNthBackslash(settings.StarterMethodFilePath, true, 1) + "Data";
}

std::string WholeRun::Anonymous(std::string text) const {
    for (auto at = text.find(project.folder.Path()); at != std::string::npos; at = text.find(project.folder.Path(), at))
        text.replace(at, project.folder.Path().size(), "<DIR>");
    return text;
}

std::string WholeRun::FileText(const std::string& name) const {
    const std::string text = support::ReadWholeFile(run.results->VeskOutputFilePath + name);
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r'))
            throw std::runtime_error(name + ": the line before byte " + std::to_string(i) + " does not end in CR LF");
        if (text[i] != '\r') plain += text[i];
    }
    return Anonymous(plain);
}
