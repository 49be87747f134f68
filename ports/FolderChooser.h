// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace ports {

/// Asks the user which sub-folder of a project is to be used. Modal; called on the user-interface thread.
class FolderChooser {
  public:
    virtual ~FolderChooser() = default;

    struct Choice {
        bool WasCancelled = true;
        std::string ReturnPath;  ///< project path followed by the chosen folder's name; empty when nothing was selected
    };

    /// @param strProjectPath the project's folder, ending in a separator
    virtual Choice ChooseFolder(const std::string& strProjectPath) = 0;
};

}  // namespace ports
