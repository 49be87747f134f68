#pragma once

#include <string>

#include "orvanel/OrvanelHost.h"
#include "tests/support_files/TempFolder.h"

/// A fresh project of a shipped compound in a temporary folder.
struct NewProject {
    explicit NewProject(const std::string& compound, std::int32_t modelCode = 27)
        : facts(orvanel::CreateProject({folder.Path(), compound, compound, VELTRA_APP_LOCATION, modelCode})) {}

    TempFolder folder;
    orvanel::ProjectFacts facts;
};
