// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace support {

/// A run-time error of our own with the number and text that users know it by, such as 6 "Overflow".
class RunTimeError : public std::runtime_error {
  public:
    RunTimeError(std::int32_t number, const std::string& text) : std::runtime_error(text), number_(number) {}

    std::int32_t Number() const { return number_; }

    static RunTimeError Overflow() { return {6, "Overflow"}; }
    static RunTimeError TypeMismatch() { return {13, "Type mismatch"}; }
    static RunTimeError ObjectNotSet() { return {91, "Object variable or With block variable not set"}; }

  private:
    std::int32_t number_;
};

}  // namespace support
