// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>

#include "support/Disk.h"

namespace orvanel {

/// @param what for the error text, such as "batch"
/// @param extension with its dot
/// @throws ports::HostError when the name is not portable or ends otherwise
void CheckFileName(std::int32_t number, const std::string& what, const std::string& name, const std::string& extension);

/// A relative path whose every part is a portable name and whose last ends in ".vesk".
/// @throws ports::HostError
void CheckDataFileName(const std::string& name);

/// Where things lie in a project.
class ProjectFiles {
  public:
    /// @param path the folder that holds the project
    /// @param name the project's folder name
    /// @throws ports::HostError when there is no such project
    /// @param disk must outlive this
    ProjectFiles(const std::string& path, const std::string& name, const support::Disk& disk);

    const std::string& Folder() const { return folder_; }

    /// In the project's "Acquisition Methods", the parent project's, then the project's folder itself.
    /// @throws ports::HostError when none has it
    std::string FindMethod(const std::string& methodFileName) const;
    /// In the project's "Data" where there is one, else in the parent project's.
    /// @throws ports::HostError when the folder that the file goes to is not there, or a link leads from it out of the
    /// data
    std::string DataFile(const std::string& dataFileName) const;
    /// The file's path in the project's "Batch" folder, which is created. @throws ports::HostError
    std::string BatchFile(const std::string& batchFileName) const;

  private:
    /// @throws ports::HostError, support::FileError
    std::string LocatedDataFile(const std::string& dataFileName) const;

    std::string parent_;
    std::string folder_;
    const support::Disk& disk_;
};

}  // namespace orvanel
