// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz/Fuzz.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "orvanel/CompoundFolder.h"
#include "orvanel/elements/ElementTableFile.h"
#include "support/Paths.h"
#include "support/Text.h"
#include "tests/support_files/TempFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Try({reinterpret_cast<const char*>(data), size});
    return 0;
}

namespace fuzz {

void Require(bool holds, const std::string& what) {
    if (holds) return;
    std::fprintf(stderr, "This does not hold: %s\n", what.c_str());
    std::abort();
}

std::string PathOf(const std::string& name) {
    static const TempFolder folder;
    return folder.File(name);
}

std::string FileWith(const std::string& name, std::string_view bytes) {
    const std::string path = PathOf(name);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    Require(file.good(), "the input can be written to " + path);
    return path;
}

std::string BytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void RequireRefusal(const std::string& text, const std::string& path) {
    constexpr std::size_t longest = 4000;
    Require(text.find(path) != std::string::npos, "the refusal names the file: " + text);
    Require(text.size() <= longest, "the refusal is short: " + text);
    Require(support::IsPlainText(text) && text.find_first_of("\r\n") == std::string::npos,
            "the refusal is one line that can be shown: " + text);
}

ports::ElementTable& Elements() {
    static const auto table = orvanel::OpenElementTableFile(orvanel::ElementTablePath(VELTRA_APP_LOCATION));
    return *table;
}

std::string Shipped(const std::string& name) {
    return support::JoinPath(VELTRA_APP_LOCATION, name);
}

}  // namespace fuzz
