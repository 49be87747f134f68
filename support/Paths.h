// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace support {

/// The system's own separator: "\" on Windows, "/" elsewhere.
char PathSeparator();
inline bool IsPathSeparator(char c) {
    return c == '\\' || c == '/';
}

/// The two joined by exactly one separator, the system's own where one has to be added.
std::string JoinPath(std::string_view folder, std::string_view name);
/// The path from the root of the file system, without "." and "..", in the system's own separators, without one at its
/// end. A relative path starts in the current folder.
std::string AbsolutePath(const std::string& path);
/// The text after the last separator of either kind.
std::string FileNameOf(std::string_view path);
/// Everything up to and including the last separator; empty when there is none.
std::string FolderOf(std::string_view path);
/// With every separator of either kind written as the system's own.
std::string NativePath(std::string_view path);

}  // namespace support
