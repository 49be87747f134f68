// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <string>

#include "orvanel/OrvanelHost.h"
#include "tests/support_files/TempFolder.h"

/// A fresh project of a compound in a temporary folder.
struct NewProject {
    /// @param compound the name of a shipped one or the path of a compound file, after which the project is named
    explicit NewProject(const std::string& compound, std::int32_t modelCode = 27)
        : name(std::filesystem::path(compound).stem().string()),
          facts(orvanel::CreateProject({folder.Path(), name, compound, VELTRA_APP_LOCATION, modelCode})) {}

    std::string name;
    TempFolder folder;
    orvanel::ProjectFacts facts;
};
