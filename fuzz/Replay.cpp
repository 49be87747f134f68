// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Hands every file named on the command line, or in a folder named there, to the target: as it is, cut off at every
// place, and with single bytes damaged. Large files are cut and damaged at evenly spread places.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

#include "fuzz/Fuzz.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostPlaces = 500;

std::size_t Replay(const std::string& bytes) {
    fuzz::Try(bytes);
    std::size_t count = 1;
    const std::size_t step = std::max<std::size_t>(bytes.size() / mostPlaces, 1);
    for (std::size_t at = 0; at < bytes.size(); at += step, count += 2) {
        fuzz::Try(std::string_view(bytes).substr(0, at));
        std::string damaged = bytes;
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << at % 8));
        fuzz::Try(damaged);
    }
    return count;
}

}  // namespace

int main(int count, char** arguments) {
    std::vector<fs::path> files;
    for (int i = 1; i < count; ++i) {
        if (!fs::is_directory(arguments[i])) {
            files.emplace_back(arguments[i]);
            continue;
        }
        for (const auto& entry : fs::directory_iterator(arguments[i]))
            if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::size_t inputs = 0;
    for (const auto& path : files) {
        std::cerr << path.filename().string() << std::endl;
        std::ifstream file(path, std::ios::binary);
        inputs += Replay({std::istreambuf_iterator<char>(file), {}});
    }
    std::cerr << files.size() << " files, " << inputs << " inputs\n";
    return inputs > 0 ? 0 : 1;
}
