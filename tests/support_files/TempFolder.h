// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>

/// A fresh folder for one test, removed with all it holds.
class TempFolder {
  public:
    TempFolder() {
        constexpr int attempts = 100;
        std::random_device random;
        for (int attempt = 0; attempt < attempts; ++attempt) {
            const auto path = std::filesystem::temp_directory_path() / ("veltra-test-" + std::to_string(random()));
            if (!std::filesystem::create_directory(path)) continue;
            path_ = path.string();
            return;
        }
        throw std::runtime_error("no temporary folder");
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string File(const std::string& name) const {
        return path_ + static_cast<char>(std::filesystem::path::preferred_separator) + name;
    }

  private:
    std::string path_;
};
