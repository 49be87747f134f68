// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/ExitStatus.h"
#include "cli/Terminal.h"

namespace cli {

/// The folder with the shipped host's models, compounds and element table, found from the program's own folder.
std::string DefaultAppLocation();

/// One run, exactly as the Start button performs it.
/// @param settingsPath the settings file; empty for the one beside the program
/// @param hostPath the host's Orvanel.ini; empty for the one beside the settings file
ExitStatus RunOptimization(const std::string& settingsPath, const std::string& hostPath,
                           const TerminalStreams& streams);

struct NewProjectOptions {
    std::string folder;
    std::string compound;
    std::string name;  ///< of the project; the compound's where empty
    std::int32_t modelCode = 27;
};
/// Makes a project with settings that suit the compound.
ExitStatus MakeNewProject(const NewProjectOptions& options, const TerminalStreams& streams);

ExitStatus ListCompounds(const TerminalStreams& streams);

struct ImportOptions {
    std::string name;               ///< of the compound
    std::vector<std::string> from;  ///< files and folders with spectra
    std::string toFolder;           ///< empty: the current folder
    std::optional<double> energyScale;
};
/// Makes a compound file from library spectra and prints what was used, what was not, and how well the curves agree.
ExitStatus ImportCompound(const ImportOptions& options, const TerminalStreams& streams);

/// Says what is wrong with a compound file, or draws it.
ExitStatus CheckCompound(const std::string& path, const TerminalStreams& streams);

/// Prints the m/z of a neutral formula with a charge.
ExitStatus PrintMzOfFormula(const std::string& formula, std::int16_t charge, const TerminalStreams& streams);

struct ExploreOptions {
    std::string path;
    int experiment = 1;  ///< from 1
    std::optional<int> cycle;
    std::optional<double> mz;  ///< Da
    std::optional<int> top;
    bool listsExperiments = false;
    bool json = false;
};
/// Prints the peaks of a data file and what the stages of a run would find in it.
ExitStatus ExploreFile(const ExploreOptions& options, const TerminalStreams& streams);

/// Reads the command line and runs what it asks for.
ExitStatus RunCommandLine(int argc, const char* const* argv, const TerminalStreams& streams);

}  // namespace cli
