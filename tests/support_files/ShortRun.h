// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "run/InstrumentCheck.h"
#include "tests/support_files/WholeRun.h"

/// The shortest run that has everything: every stage, two 2nd precursors with MS3, a final method and the optimal one,
/// on a host that makes no noise. Time also goes by while events are processed, so that an acquisition takes but a few
/// polls.
class ShortRun : public WholeRun {
  public:
    using Outcome = veltra::StartButton::Outcome;
    struct Setup {
        std::int32_t modelCode = 27;
        double delayS = 0;  ///< by which every acquisition starts late
        const ports::Clock* runClock = nullptr;
        const support::Disk& disk = support::SystemDisk();
        std::shared_ptr<const NewProject> project = nullptr;  ///< a new one when there is none
    };
    static std::shared_ptr<const NewProject> CreateProject(std::int32_t modelCode = 27) {
        return std::make_shared<const NewProject>("caffeine", modelCode);
    }

    /// With the settings of a short run in its Veltra.ini.
    static std::shared_ptr<const NewProject> CreateProjectWithSettings() {
        auto project = CreateProject();
        EXPECT_EQ(SettingsOf(*project, {.adjust = Shorten}).WriteGlobalSettings(), "");
        return project;
    }

    ShortRun() : ShortRun(Setup()) {}
    explicit ShortRun(const Setup& setup)
        : WholeRun({.configure =
                        [&](auto& quiet) {
                            quiet.noiseLevel = 0;
                            quiet.faults.equilibrationDelayS = setup.delayS;
                        },
                    .adjust = Shorten,
                    .disk = setup.disk,
                    .runClock = setup.runClock},
                   setup.project ? setup.project : CreateProject(setup.modelCode)) {
        calls.Forget();
        Witness();
        display.onPump = [this] {
            clock.Sleep(msPerLook);
            if (onPump) onPump();
        };
    }

    /// From the run's disk, as a program does it before anything else. @throws what the settings throw
    void ReadSettings() {
        settings = veltra::clsInfo_Settings(project.folder.File("Veltra.ini"), run.disk);
        EXPECT_EQ(settings.ReadGlobalSettings(), std::vector<std::string>());
    }
    /// From the instrument check on, as a program does it.
    Outcome Start() {
        if (!veltra::CheckInstrument(run)) return Outcome::InstrumentRefused;
        return startButton.Click();
    }

    static constexpr double usualMsPerLook = 1000;
    double msPerLook = usualMsPerLook;  ///< by which the clock goes on while events are processed
    std::function<void()> onPump;       ///< what the user does meanwhile

    /// The files of every acquisition that has been waited for, by their full paths, as they were then.
    std::map<std::string, std::string> finished;
    /// Batches that were submitted although the user had been told of a failure.
    int submittedAfterFailure = 0;
    /// What was logged when the first call failed or answered garbage; all of it when none has.
    std::vector<std::string> LinesBeforeFault() const;
    /// Everything is about to start again.
    void ForgetWhatWasSeen() {
        finished.clear();
        submittedAfterFailure = 0;
        linesBeforeFault_.reset();
    }

  private:
    void Witness();
    void RememberFilesOf(const std::string& acquisition);
    std::optional<std::size_t> linesBeforeFault_;

    static void Shorten(veltra::clsInfo_Settings& shortened) {
        shortened.Advanced_ERScanRate = shortened.Advanced_EPIScanRate = shortened.Advanced_MS3ScanRate = "10000";
        shortened.Advanced_ERCycles = 1;
        shortened.Advanced_EPICycles = 1;
        shortened.Advanced_EPINum2ndPrec = 2;
        shortened.Advanced_EPIMassStart = shortened.Advanced_MS3MassStart = 60;
        shortened.Advanced_EPIMassEnd = shortened.Advanced_MS3MassEnd = 150;
        shortened.Advanced_Q1MIDPRampStep = 20;
        shortened.Advanced_Q1MIDwellTime = 10;
        shortened.Advanced_MRMDwellTime = 10;
    }
};
