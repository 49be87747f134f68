// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support_files/FaultyDisk.h"
#include "tests/support_files/ShortRun.h"

/// What goes wrong with the disk in one run.
struct DiskCase {
    DiskFault fault;
    std::size_t operation;  ///< from 1
    FaultyDisk::Times times = FaultyDisk::Times::Once;
};

/// Content of the files by their paths below the project's folder, with "<DIR>" for that folder wherever it stands.
using FileContents = std::map<std::string, std::string>;

/// A short run that nothing disturbs: what every other one is compared with.
struct Undisturbed {
    Undisturbed();
    std::string Log() const;
    std::string Report() const;
    /// Every operation with each of the faults that can happen to it, once and from then on; deaths apart.
    std::vector<DiskCase> Cases() const;

    /// Whether no earlier case has left these files, names of temporary files apart: what starts alike ends alike, so
    /// that one later run for all of them is enough.
    bool IsNewState(const FileContents& left);

    /// What must be there when all operations before this one were done: the log's length, and the files of finished
    /// acquisitions.
    void ExpectKept(const FileContents& left, std::size_t operation) const;

    FileContents files;
    std::map<std::size_t, std::size_t> logLengths;          ///< by the number of operations done
    std::map<std::size_t, std::set<std::string>> finished;  ///< the files' paths, likewise
    std::set<std::size_t> states;                           ///< hashes of what the cases have left
    std::vector<DiskOperation> operations;
    int pauses = 0;
};

enum class MayLose { Nothing, WhatTheDiskRefuses };

/// How a program ends; nothing when it said that it cannot start.
using DiskOutcome = std::optional<ShortRun::Outcome>;

/// Starts a program in the project, with its settings in a file, and compares what is left with what is promised.
DiskOutcome ExpectDiskPromises(const Undisturbed& undisturbed, const std::shared_ptr<const NewProject>& project,
                               const FaultyDisk& disk, MayLose mayLose);

/// Runs with the fault in a new project, and then, from a new state, without faults in the same folders.
DiskOutcome ExpectDiskPromises(Undisturbed& undisturbed, const DiskCase& diskCase);

/// Lets a process die in its run, looks at what it has left, and runs again in the same folders.
void ExpectNothingLostByDeath(Undisturbed& undisturbed, std::size_t operation);

/// Runs in the project as it is and expects an ordinary end that leaves whole files only.
void ExpectOrdinaryRun(const Undisturbed& undisturbed, const std::shared_ptr<const NewProject>& project);

FileContents FilesOf(const NewProject& project);
