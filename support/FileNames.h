// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <string_view>

namespace support {

/// Why a name cannot be that of a file or folder on every system, such as: cannot hold "<"; empty when it can. A name
/// that can holds no separator of either kind, so that it cannot lead out of its folder.
std::string FileNameProblem(std::string_view name);
inline bool IsPortableName(std::string_view name) {
    return FileNameProblem(name).empty();
}

/// Whether a path's last part is a name of this kind, such as ".ini": it ends so, without regard to case, and does not
/// consist of that alone.
bool IsFileOfKind(std::string_view path, std::string_view extension);
/// The path without the extension at its end; whole when it is no file of that kind.
std::string WithoutExtension(std::string_view path, std::string_view extension);

/// The message about a compound name, which goes into names of files and folders; empty when it can.
std::string CompoundNameProblem(std::string_view name);

}  // namespace support
