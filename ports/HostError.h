// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace ports {

/// A host operation that failed. Every operation of every host port reports failure by throwing this and nothing else.
class HostError : public std::runtime_error {
  public:
    /// @param number the host's error number, shown to the user as it is
    /// @param text one sentence without a full stop at its end: what is wrong, where, and what to do
    HostError(std::int32_t number, const std::string& text) : std::runtime_error(text), number_(number) {}

    std::int32_t Number() const { return number_; }

  private:
    std::int32_t number_;
};

}  // namespace ports
