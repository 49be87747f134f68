// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/registry/RegistryFile.h"

#include <chrono>
#include <exception>

#include "support/IniDocument.h"
#include "support/Platform.h"

namespace orvanel {

namespace {

struct KeyAndName {
    std::string_view key;
    std::string_view name;
};

std::optional<KeyAndName> SplitPath(std::string_view path) {
    const auto separator = path.rfind('\\');
    if (separator == std::string_view::npos) return std::nullopt;
    return KeyAndName{path.substr(0, separator), path.substr(separator + 1)};
}

}  // namespace

std::optional<std::string> RegistryFile::Read(std::string_view valuePath) const {
    const auto split = SplitPath(valuePath);
    if (!split) return std::nullopt;
    try {
        const auto text = support::ReadIniText(path_, disk_);
        return support::IniDocument::Parse(text.value_or("")).Value(split->key, split->name);
    } catch (const support::FileError&) {
        return std::nullopt;
    }
}

bool RegistryFile::Write(std::string_view valuePath, const std::string& value,
                         support::Durability durability) const noexcept {
    // The queue writes here while it acquires.
    constexpr std::chrono::milliseconds patience{200};
    try {
        const auto split = SplitPath(valuePath);
        if (!split) return false;
        const auto lock = support::LockForSaving(path_, patience);
        const std::string text = support::ReadIniText(path_, disk_).value_or("");
        const std::string changed = support::WithIniValue(text, split->key, split->name, value);
        if (changed != text) support::WriteWholeFile(path_, changed, disk_, durability);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace orvanel
