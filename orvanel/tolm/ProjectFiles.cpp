// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/tolm/ProjectFiles.h"

#include <algorithm>
#include <array>

#include "orvanel/FileFailure.h"
#include "orvanel/HostErrorNumbers.h"
#include "ports/HostError.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Text.h"

namespace orvanel {

namespace {

constexpr const char* methodsFolder = "Acquisition Methods";

}  // namespace

void CheckFileName(std::int32_t number, const std::string& what, const std::string& name,
                   const std::string& extension) {
    if (!support::IsPortableName(name) || !support::IsFileOfKind(name, extension))
        throw ports::HostError(number, "\"" + support::Excerpt(name) + "\" is no name of a " + what +
                                           " file, expected is a file name without folder that ends in " + extension);
}

void CheckDataFileName(const std::string& name) {
    std::string plain = name;
    std::replace(plain.begin(), plain.end(), '\\', '/');
    const auto parts = support::Split(plain, '/');
    if (!std::all_of(parts.begin(), parts.end(), support::IsPortableName) || !support::IsFileOfKind(name, ".vesk"))
        throw ports::HostError(errorNumber::badDataFile,
                               "\"" + support::Excerpt(name) +
                                   "\" is no name of a data file, expected is a path within the project's data folder "
                                   "that ends in .vesk");
}

ProjectFiles::ProjectFiles(const std::string& path, const std::string& name, const support::Disk& disk)
    : parent_(support::NativePath(path)), disk_(disk) {
    if (parent_.empty() || !support::IsPortableName(name))
        throw ports::HostError(errorNumber::projectNotFound, "\"" + path + name + "\" is no path of a project");
    folder_ = support::JoinPath(parent_, name);
    if (!AsHostError(errorNumber::projectNotFound, [&] { return support::FolderExists(folder_, disk_); }))
        throw ports::HostError(errorNumber::projectNotFound, "There is no project folder " + folder_);
}

std::string ProjectFiles::FindMethod(const std::string& methodFileName) const {
    CheckFileName(errorNumber::methodNotFound, "method", methodFileName, ".xmt");
    const std::array<std::string, 3> folders = {support::JoinPath(folder_, methodsFolder),
                                                support::JoinPath(parent_, methodsFolder), folder_};
    for (const auto& folder : folders) {
        std::string path = support::JoinPath(folder, methodFileName);
        if (AsHostError(errorNumber::methodNotFound, [&] { return support::FileExists(path, disk_); })) return path;
    }
    throw ports::HostError(errorNumber::methodNotFound, "There is no method " + methodFileName + " in " + folders[0] +
                                                            ", " + folders[1] + " or " + folders[2]);
}

std::string ProjectFiles::DataFile(const std::string& dataFileName) const {
    CheckDataFileName(dataFileName);
    return AsHostError(errorNumber::badDataFile, [&] { return LocatedDataFile(dataFileName); });
}

std::string ProjectFiles::LocatedDataFile(const std::string& dataFileName) const {
    std::string data = support::JoinPath(folder_, "Data");
    if (!support::FolderExists(data, disk_)) data = support::JoinPath(parent_, "Data");
    std::string path = support::NativePath(support::JoinPath(data, dataFileName));
    if (!support::FolderExists(support::FolderOf(path), disk_))
        throw ports::HostError(errorNumber::badDataFile,
                               "The folder of data file " + path + " does not exist, create it first");
    if (!support::IsWithin(support::FolderOf(path), data, disk_))
        throw ports::HostError(errorNumber::badDataFile,
                               "The folder of data file " + path +
                                   " lies behind a link that leads out of the project's data, "
                                   "replace that by a folder");
    return path;
}

std::string ProjectFiles::BatchFile(const std::string& batchFileName) const {
    CheckFileName(errorNumber::badBatch, "batch", batchFileName, ".xbt");
    const std::string folder = support::JoinPath(folder_, "Batch");
    AsHostError(errorNumber::batchNotSaved, [&] { support::CreateFolders(folder, disk_); });
    return support::JoinPath(folder, batchFileName);
}

}  // namespace orvanel
