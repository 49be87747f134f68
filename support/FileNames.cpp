// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/FileNames.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "support/Paths.h"
#include "support/Text.h"

namespace support {
namespace {

constexpr std::size_t longestNameBytes = 255;
constexpr std::string_view foreignToNames = "<>:\"|?*\\/";

/// The device that a name stands for on Windows, in capitals and whatever its extension; empty when it is none.
/// Ports are numbered by the superscripts of Latin-1 too (learn.microsoft.com, "Naming Files, Paths, and Namespaces").
std::string DeviceOf(std::string_view name) {
    static constexpr std::array<std::string_view, 6> devices = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    static constexpr std::array<std::string_view, 3> superscripts = {"\xC2\xB9", "\xC2\xB2", "\xC2\xB3"};
    std::string stem = ToUpper(Trim(name.substr(0, name.find('.'))));
    if (std::find(devices.begin(), devices.end(), stem) != devices.end()) return stem;
    if (!stem.starts_with("COM") && !stem.starts_with("LPT")) return {};
    const std::string_view number = std::string_view(stem).substr(3);
    const bool isDigit = number.size() == 1 && number[0] >= '1' && number[0] <= '9';
    const bool isPort = isDigit || std::find(superscripts.begin(), superscripts.end(), number) != superscripts.end();
    return isPort ? stem : std::string();
}

std::string Hexadecimal(unsigned char c) {
    std::array<char, 5> text{};
    std::snprintf(text.data(), text.size(), "0x%02X", c);
    return text.data();
}

}  // namespace

std::string FileNameProblem(std::string_view name) {
    if (name.empty()) return "cannot be empty";
    if (name.size() > longestNameBytes) return "cannot have more than " + std::to_string(longestNameBytes) + " bytes";
    if (!IsUtf8(name)) return "cannot hold bytes that are not UTF-8";
    for (const char c : name) {
        if (static_cast<unsigned char>(c) < 0x20)
            return "cannot hold the control character " + Hexadecimal(static_cast<unsigned char>(c));
        if (foreignToNames.find(c) != std::string_view::npos)
            return "cannot hold " + (c == '"' ? std::string("'\"'") : std::string("\"") + c + "\"");
    }
    if (name.front() == ' ') return "cannot begin with a blank";
    if (name.back() == ' ') return "cannot end with a blank";
    if (name.back() == '.') return "cannot end with a dot";
    const std::string device = DeviceOf(name);
    return device.empty() ? "" : "cannot be that of the device " + device;
}

bool IsFileOfKind(std::string_view path, std::string_view extension) {
    const std::string name = FileNameOf(path);
    return name.size() > extension.size() && EndsWithIgnoringCase(name, extension);
}

std::string WithoutExtension(std::string_view path, std::string_view extension) {
    if (IsFileOfKind(path, extension)) path.remove_suffix(extension.size());
    return std::string(path);
}

std::string CompoundNameProblem(std::string_view name) {
    const std::string problem = FileNameProblem(name);
    return problem.empty() ? "" : "Compound name " + problem + ", please update the Settings.";
}

}  // namespace support
