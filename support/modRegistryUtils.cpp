// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/modRegistryUtils.h"

#include "support/NumberText.h"
#include "support/Paths.h"

namespace support {
namespace {

const std::string machineKey = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Dravik\\Orvanel\\";
const std::string lastFilesKey = "HKEY_CURRENT_USER\\Software\\Dravik\\Orvanel\\Orvanel\\LastFiles\\";

std::string Read(const RegistryReader& regRead, const std::string& path) {
    try {
        return regRead(path).value_or("");
    } catch (...) {
        return {};  // a value that cannot be read counts as missing, whatever the reason
    }
}

}  // namespace

std::string GetHostDataLocation(const RegistryReader& regRead) {
    const std::string location = Read(regRead, machineKey + "Install\\DataLocation");
    return location.empty() ? location : JoinPath(location, "Projects") + PathSeparator();
}

std::string GetLastUsedProjectPath(const RegistryReader& regRead) {
    std::string path = GetHostDataLocation(regRead);
    if (path.empty()) return path;
    const std::string project = Read(regRead, lastFilesKey + "Project");
    if (project.empty()) return path;
    path += project + PathSeparator();
    const std::string subProject = Read(regRead, lastFilesKey + "SubProject");
    if (!subProject.empty()) path += subProject + PathSeparator();
    return path;
}

std::string GetElementTablePath(const RegistryReader& regRead) {
    const std::string location = Read(regRead, machineKey + "Install\\AppLocation");
    return location.empty() ? location : JoinPath(JoinPath(location, "bin"), "QvElements.ini");
}

std::int16_t GetQueueSampleStatus(const RegistryReader& regRead) {
    return ParseInt16(Read(regRead, machineKey + "QueueSvr\\Current Sample Status")).value_or(0);
}

}  // namespace support
