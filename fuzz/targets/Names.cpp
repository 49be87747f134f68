// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/Fuzz.h"
#include "orvanel/tolm/ProjectFiles.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/Text.h"

namespace {

namespace fs = std::filesystem;

fs::path Utf8Path(const std::string& path) {
    return fs::path(std::u8string(path.begin(), path.end()));
}

/// A file of that name can be made, and is the one in the folder.
void CheckFile(const std::string& folder, const std::string& name) {
    const auto path = Utf8Path(folder) / Utf8Path(name);
    std::ofstream(path).put('x');
    fuzz::Require(support::FilesIn(folder) == std::vector<std::string>{name}, "the file is in its folder");
    fs::remove(path);
}

}  // namespace

void fuzz::Try(std::string_view input) {
    const std::string name(input);
    const std::string message = support::CompoundNameProblem(name);
    Require(message.empty() == support::IsPortableName(name), "one rule holds for all names");
    Require(support::IsPlainText(message) && message.find('\n') == std::string::npos, "the message can be shown");
    const std::string folder = PathOf("names");
    fs::create_directories(folder);
    if (message.empty()) CheckFile(folder, name);

    const std::string data = PathOf("Projects/Study/Data");
    fs::create_directories(data);
    const orvanel::ProjectFiles project(PathOf("Projects/"), "Study", support::SystemDisk());
    try {
        const std::string path = project.DataFile(name);
        Require(Utf8Path(path).lexically_normal().string().starts_with(data), "data stay in the project");
        Require(fs::exists(Utf8Path(path).parent_path()), "the data file's folder is there");
    } catch (const ports::HostError& error) {
        Require(support::IsPlainText(error.what()), "the refusal can be shown");
    }
}
