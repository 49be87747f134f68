// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/PlatformListing.h"

#include <system_error>

#include "support/Platform.h"

namespace support {
namespace {

namespace fs = std::filesystem;

std::string Utf8(const fs::path& path) {
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

/// In the same words on every system where they have them in common.
[[noreturn]] void Fail(const std::error_code& error) {
    throw DiskError(SystemErrorText(error.default_error_condition().value()));
}

PathKind KindOf(const fs::directory_entry& entry) {
    std::error_code error;
    const fs::file_status status = entry.status(error);
    // Such an entry is a link that leads nowhere, or where its reader may not go.
    const bool isLost = error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
                        error == std::errc::too_many_symbolic_link_levels || error == std::errc::permission_denied;
    if (error && !isLost) Fail(error);
    if (fs::is_regular_file(status)) return PathKind::File;
    return fs::is_directory(status) ? PathKind::Folder : PathKind::Other;
}

}  // namespace

fs::path SystemPath(const std::string& path) {
    return fs::path(std::u8string(path.begin(), path.end()));
}

std::vector<FolderEntry> ListFolder(const std::string& path) {
    std::error_code error;
    std::vector<FolderEntry> entries;
    for (fs::directory_iterator at(SystemPath(path.empty() ? "." : path), error), end; !error && at != end;
         at.increment(error))
        entries.push_back({Utf8(at->path().filename()), KindOf(*at)});
    if (error) Fail(error);
    return entries;
}

std::string FollowLinks(const std::string& path) {
    constexpr int mostLinks = 40;
    std::error_code error;
    fs::path at = fs::absolute(SystemPath(path), error);
    for (int links = 0; !error && links < mostLinks; ++links) {
        const fs::path real = fs::canonical(at, error);
        if (!error) return Utf8(real);
        if (error != std::errc::no_such_file_or_directory) Fail(error);
        if (!fs::is_symlink(fs::symlink_status(at, error))) {
            const fs::path folder = fs::canonical(at.parent_path(), error);
            if (error) Fail(error);
            return Utf8(folder / at.filename());
        }
        at = at.parent_path() / fs::read_symlink(at, error);
    }
    Fail(error ? error : std::make_error_code(std::errc::too_many_symbolic_link_levels));
}

}  // namespace support
