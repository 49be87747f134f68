// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "support/Files.h"
#include "tests/sweeps/DiskCase.h"

/// Runs on real disks that are full or read-only. They are mounted, which needs root: permission bits do not stop root,
/// and the cases fail where mounting is not permitted, since they would prove nothing.

namespace {

using Outcome = ShortRun::Outcome;

class Mounted {
  public:
    Mounted(std::string folder, const std::string& options, unsigned long flags = 0) : folder_(std::move(folder)) {
        if (::mount("tmpfs", folder_.c_str(), "tmpfs", flags, options.c_str()) != 0)
            throw std::runtime_error("cannot mount a disk on " + folder_ + " (" + std::strerror(errno) +
                                     "): run this as root, on a system that lets root mount");
    }
    ~Mounted() { ::umount2(folder_.c_str(), MNT_DETACH); }
    Mounted(const Mounted&) = delete;
    Mounted& operator=(const Mounted&) = delete;

  private:
    std::string folder_;
};

std::shared_ptr<const NewProject> Project() {
    auto project = ShortRun::CreateProjectWithSettings();
    std::filesystem::create_directory(project->folder.File("Projects/caffeine/Batch"));
    return project;
}

TEST(MountedDisks, FillUp) {
    const Undisturbed undisturbed;
    int aborted = 0;
    for (const int sizeKb : {4, 8, 16, 32, 64, 128, 256, 512})
        for (const char* folder : {"Data", "Acquisition Methods", "Batch"}) {
            SCOPED_TRACE(std::to_string(sizeKb) + " KiB in " + folder);
            const auto project = Project();
            const std::string path = project->folder.File(std::string("Projects/caffeine/") + folder);
            const std::string starter = support::ReadWholeFile(project->facts.starterMethodPath);
            {
                const Mounted disk(path, "size=" + std::to_string(sizeKb) + "k");
                const bool holdsStarter = folder == std::string("Acquisition Methods");
                if (holdsStarter) support::WriteWholeFile(project->facts.starterMethodPath, starter);
                const FaultyDisk observed;
                const DiskOutcome outcome =
                    ExpectDiskPromises(undisturbed, project, observed, MayLose::WhatTheDiskRefuses);
                EXPECT_EQ(outcome != Outcome::Completed, !observed.Failed().empty());
                aborted += outcome == Outcome::Aborted ? 1 : 0;
            }
            ExpectOrdinaryRun(undisturbed, project);
        }
    EXPECT_GE(aborted, 10) << "the disks were to be too small";
    std::cout << "full disks: 24 cases, " << aborted << " of them too small\n";
}

TEST(MountedDisks, AreReadOnly) {
    const Undisturbed undisturbed;
    struct Case {
        const char* folder;
        Outcome outcome;
    };
    for (const auto& [folder, outcome] : {Case{"Data", Outcome::InitializationFailed}, {"Batch", Outcome::Aborted}}) {
        SCOPED_TRACE(folder);
        const auto project = Project();
        {
            const Mounted disk(project->folder.File(std::string("Projects/caffeine/") + folder), "", MS_RDONLY);
            const FaultyDisk observed;
            EXPECT_EQ(ExpectDiskPromises(undisturbed, project, observed, MayLose::WhatTheDiskRefuses), outcome);
            EXPECT_FALSE(observed.Failed().empty());
        }
        ExpectOrdinaryRun(undisturbed, project);
    }
    std::cout << "read-only disks: 2 cases\n";
}

}  // namespace
