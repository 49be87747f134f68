// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/support_files/ShortRun.h"

enum class Phase { Check, Initialisation, Run, FinalMethods };

/// One host call of the run in which nothing goes wrong.
struct CallPoint {
    std::string operation;
    int call = 0;  ///< of this operation, from 1
    Phase phase = Phase::Check;
    bool isSample = false;  ///< the first, middle or last one of its operation or of its stage
};

/// The run in which nothing goes wrong.
struct Reference {
    explicit Reference(std::int32_t modelCode = 27);

    std::vector<CallPoint> points;
    std::map<std::string, std::string> files;  ///< of the project, without log and report
    std::vector<std::string> log;              ///< the texts of its lines
    int acquisitions = 0;
    int looks = 0;  ///< at waiting events
    bool AnswersAValue(const std::string& operation) const { return valued.contains(operation); }
    bool AnswersAHandle(const std::string& operation) const { return handles.contains(operation); }
    std::set<std::string> valued;
    std::set<std::string> handles;
};

/// How the user is told of a fault.
enum class Telling {
    Box,       ///< one box, the log, and the run ends
    LogLine,   ///< the log, and the run goes on
    Warning,   ///< a warning and the log, after the run's end
    Silent,    ///< not at all, and nothing else changes
    Asked,     ///< not at all: the run ends as the user wants it to
    Whatever,  ///< what can be known of the promises holds all the same
};

struct Fault {
    std::string operation = {};  ///< that is hit first; empty where none is
    Telling telling = Telling::Whatever;
    std::vector<std::string> words = {};  ///< that the message holds: operation, object, cause
    Phase phase = Phase::Run;
    bool cannotLogOff = false;  ///< the host is gone, at least for that
    bool keepsFiles = true;     ///< what was acquired is what is acquired without the fault
};

/// How a failing call is told.
/// @param cause what the message says of the error
Fault FaultAt(const CallPoint& point, const std::string& cause, HostCalls::Times times, bool hostIsGone);

/// Guards a run against having no end. Fails the program.
void GuardAgainstHanging(ShortRun& run, const std::string& what);

/// What holds after any fault, at any moment.
void ExpectPromises(ShortRun& run, ShortRun::Outcome outcome, const Fault& fault, const Reference& reference);

/// Without further faults, the next run completes and keeps all promises too.
void ExpectNextRun(ShortRun& run, const Reference& reference);

/// "Completed", ...
std::string OutcomeText(ShortRun::Outcome outcome);
