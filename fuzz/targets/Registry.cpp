// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz/Fuzz.h"
#include "orvanel/registry/RegistryFile.h"
#include "tests/support_files/FaultyDisk.h"

/// Whatever the file holds, a value that was written is read, and the one beside it stays.
void fuzz::Try(std::string_view input) {
    namespace path = orvanel::registryPath;
    const orvanel::RegistryFile registry(FileWith("Orvanel.registry.ini", input));
    const auto before = registry.Read(path::dataLocation);
    if (!registry.Write(path::lastProject, "Study 1")) {
        while (input.starts_with("\xEF\xBB\xBF"))
            input.remove_prefix(3);
        const bool isText =
            input.find('\0') == input.npos && !input.starts_with("\xFF\xFE") && !input.starts_with("\xFE\xFF");
        Require(!isText && !before, "a value can be written to any text");
        return;
    }
    Require(registry.Read(path::lastProject) == "Study 1", "a value that was written is read");
    Require(registry.Read(path::dataLocation) == before, "the other values stay");
    Require(!registry.Write(path::lastProject, "two\nlines"), "what would break the file is not written");
    Require(!registry.Read("Project") && !registry.Write("Project", "x"), "a value has a key");
    Require(!orvanel::RegistryFile(PathOf("")).Read(path::lastProject), "a folder holds no values");

    FaultyDisk disk;
    disk.Fail(DiskFault::InputOutput, 1, FaultyDisk::Times::FromThenOn);
    const orvanel::RegistryFile unreadable(PathOf("Orvanel.registry.ini"), disk);
    Require(!unreadable.Read(path::lastProject) && !unreadable.Write(path::lastProject, "Study 2"),
            "a file that cannot be read holds nothing and is not written");
    Require(registry.Read(path::lastProject) == "Study 1", "and stays as it was");
}
