// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>

#include "orvanel/clock/HostClock.h"
#include "orvanel/config/OrvanelConfig.h"
#include "ports/Host.h"
#include "support/Disk.h"

namespace orvanel {

/// What shows a document to the user, given its path; each returns whether a program for it was found. An empty one
/// finds none.
struct DocumentViewers {
    std::function<bool(const std::string& path)> open;      ///< in the desktop's program for files of its kind
    std::function<bool(const std::string& path)> viewText;  ///< as a text
};

/// The host application as we ship it, with its simulated instrument.
/// @param config a checked configuration; with Running=0 the host can be asked for registry values and models, but
/// there is no application to attach to and its queue, batch service and editing are refused
/// @param clock the one clock; must outlive the host
/// @param disk where methods, batches, data and the registry file are; must outlive the host and all its handles
/// @param viewers with the default no document is ever opened
/// @throws ports::HostError when models, compounds or the element table cannot be loaded, or another host that runs has
/// the same Orvanel.ini in use
std::unique_ptr<ports::Host> CreateOrvanelHost(const OrvanelConfig& config, HostClock& clock,
                                               const support::Disk& disk = support::SystemDisk(),
                                               DocumentViewers viewers = {});

/// A new project, ready to be optimised in.
struct NewProject {
    std::string folder;       ///< DIR: gets Orvanel.ini and Projects/NAME
    std::string projectName;  ///< NAME
    std::string compound;     ///< what is sprayed
    std::string appLocation;
    std::int32_t modelCode = 27;
};

/// What the caller needs to write the client program's own settings: of the compound only what is known before anything
/// is measured.
struct ProjectFacts {
    std::string starterMethodPath;
    std::string orvanelIniPath;
    double expectedMz = 0;
    int polarity = 0;
    std::vector<std::string> made;  ///< paths of the files and folders that were not there, in the order of making
};

/// Writes Orvanel.ini (ClockFactor=0), Projects/NAME/Acquisition Methods/Start.xmt and Projects/NAME/Data. The starter
/// method's voltages are sound but not the optimum. Where that fails, nothing is left.
/// @throws ports::HostError when the folder already holds such a project, the compound is unknown, a path is too long
/// or could not be read back from an INI file, or the disk fails
ProjectFacts CreateProject(const NewProject& project, const support::Disk& disk = support::SystemDisk());

/// Removes what was made, as far as nothing else is in the folders by now. Failures are ignored.
void TakeBack(const ProjectFacts& facts, const support::Disk& disk = support::SystemDisk()) noexcept;

/// Names and titles of the compounds that ship, sorted by name. @throws ports::HostError
struct CompoundSummary {
    std::string name;
    std::string title;
    double mz = 0;
    int polarity = 0;
    std::string adduct;
};
std::vector<CompoundSummary> ListCompounds(const std::string& appLocation);

}  // namespace orvanel
