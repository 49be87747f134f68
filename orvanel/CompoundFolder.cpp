// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/CompoundFolder.h"

#include "orvanel/FileFailure.h"
#include "orvanel/HostErrorNumbers.h"
#include "ports/HostError.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {

std::string ElementTablePath(const std::string& appLocation) {
    return support::JoinPath(support::JoinPath(appLocation, "bin"), "QvElements.ini");
}

std::string ModelsFolder(const std::string& appLocation) {
    return support::JoinPath(appLocation, "models");
}

std::string CompoundsFolder(const std::string& appLocation) {
    return support::JoinPath(appLocation, "compounds");
}

namespace {

/// The names of the files in the folder, sorted.
std::vector<std::string> CompoundFiles(const std::string& appLocation, const support::Disk& disk) {
    auto files = AsHostError(errorNumber::badConfiguration,
                             [&] { return support::FilesIn(CompoundsFolder(appLocation), disk); });
    std::erase_if(files, [](const std::string& file) { return !support::IsFileOfKind(file, compoundFileExtension); });
    return files;
}

}  // namespace

std::vector<std::string> CompoundNames(const std::string& appLocation, const support::Disk& disk) {
    std::vector<std::string> names = CompoundFiles(appLocation, disk);
    for (auto& name : names)
        name = support::WithoutExtension(name, compoundFileExtension);
    return names;
}

std::string FindCompoundFile(const std::string& appLocation, const std::string& compound, const support::Disk& disk) {
    if (compound.find_first_of("\\/") != std::string::npos) return compound;
    std::string known;
    for (const auto& file : CompoundFiles(appLocation, disk)) {
        const std::string name = support::WithoutExtension(file, compoundFileExtension);
        if (support::EqualIgnoringCase(name, compound)) return support::JoinPath(CompoundsFolder(appLocation), file);
        known += (known.empty() ? "" : ", ") + name;
    }
    throw ports::HostError(errorNumber::badConfiguration, "There is no compound \"" + compound + "\" in " +
                                                              CompoundsFolder(appLocation) +
                                                              ", it has: " + (known.empty() ? "none" : known));
}

}  // namespace orvanel
