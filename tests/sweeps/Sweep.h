// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <string>
#include <utility>

/// The cases of one sweep, and what became of them. script/sweep runs all, in shards (VELTRA_SWEEP=1/2 is the first of
/// two); the ordinary tests run those that are marked as their sample.
class Sweep {
  public:
    explicit Sweep(std::string name) : name_(std::move(name)) {
        const char* shard = std::getenv("VELTRA_SWEEP");
        if (shard != nullptr) std::sscanf(shard, "%d/%d", &shard_, &shards_);
    }
    ~Sweep() {
        EXPECT_GT(cases_, 0);
        std::cout << name_ << ": " << cases_ << " cases\n";
        for (const auto& [what, count] : counts_)
            std::cout << "    " << count << " " << what << "\n";
    }
    Sweep(const Sweep&) = delete;
    Sweep& operator=(const Sweep&) = delete;

    bool IsWhole() const { return shards_ > 0; }
    /// Whether the next case is to be run here.
    bool Takes(bool isSample) {
        // Pairs stay together: often one of two neighbours is quick and the other is not.
        const bool takes = IsWhole() ? seen_ / 2 % shards_ == shard_ - 1 : isSample;
        ++seen_;
        if (takes) ++cases_;
        return takes;
    }
    void Count(const std::string& what) { ++counts_[what]; }
    int CountOf(const std::string& what) { return counts_[what]; }
    int Cases() const { return cases_; }

  private:
    std::string name_;
    int shard_ = 0;
    int shards_ = 0;
    int seen_ = 0;
    int cases_ = 0;
    std::map<std::string, int> counts_;
};
