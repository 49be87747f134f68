// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Paths.h"

#include <algorithm>
#include <filesystem>

#include "support/Platform.h"

namespace support {

char PathSeparator() {
    return platformPathSeparator;
}

std::string JoinPath(std::string_view folder, std::string_view name) {
    while (!name.empty() && IsPathSeparator(name.front()))
        name.remove_prefix(1);
    std::string path(folder);
    if (!path.empty() && !IsPathSeparator(path.back())) path += PathSeparator();
    return path.append(name);
}

std::string AbsolutePath(const std::string& path) {
    const std::string native = NativePath(path);
    const auto absolute =
        std::filesystem::absolute(std::u8string(native.begin(), native.end())).lexically_normal().u8string();
    std::string text(absolute.begin(), absolute.end());
    while (text.size() > 1 && IsPathSeparator(text.back()))
        text.pop_back();
    return text;
}

std::string FileNameOf(std::string_view path) {
    const auto at = path.find_last_of("\\/");
    return std::string(at == std::string_view::npos ? path : path.substr(at + 1));
}

std::string FolderOf(std::string_view path) {
    const auto at = path.find_last_of("\\/");
    return at == std::string_view::npos ? std::string() : std::string(path.substr(0, at + 1));
}

std::string NativePath(std::string_view path) {
    std::string native(path);
    std::replace_if(native.begin(), native.end(), IsPathSeparator, PathSeparator());
    return native;
}

}  // namespace support
