// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ports/ElementTable.h"
#include "ports/HostError.h"

/// A fuzz target defines Try, which hands arbitrary bytes to a reader and says with Require what must hold whatever
/// they are. The same targets are replayed over seeds and kept cases as ordinary tests.
namespace fuzz {

void Try(std::string_view input);

/// Ends the process at once, so that the input is kept, when something does not hold that must.
void Require(bool holds, const std::string& what);

/// The path of a file in a folder of the process's own.
std::string PathOf(const std::string& name);
/// That file with the bytes in it.
std::string FileWith(const std::string& name, std::string_view bytes);
std::string BytesOf(const std::string& path);

/// Requires of a refusal what whoever reads it needs: which file it is, in a text that can be shown.
void RequireRefusal(const std::string& text, const std::string& path);

/// What the reading gives, or nothing where it was refused as it may be: with ports::HostError.
template <class Read>
auto ReadOrRefuse(const std::string& path, Read read) -> std::optional<decltype(read())> {
    try {
        return read();
    } catch (const ports::HostError& error) {
        RequireRefusal(error.what(), path);
        return std::nullopt;
    }
}

/// The element table that ships.
ports::ElementTable& Elements();
/// A file or folder of those that ship.
std::string Shipped(const std::string& name);

}  // namespace fuzz
