// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <iosfwd>
#include <string_view>

namespace cli {

/// Writes one JSON value (RFC 8259) as it is told it, in one line. Texts are cleaned.
class JsonWriter {
  public:
    explicit JsonWriter(std::ostream& out) : out_(out) {}

    /// @param bracket '{' or '['
    JsonWriter& Open(char bracket);
    JsonWriter& Close(char bracket);
    JsonWriter& Key(std::string_view name);
    JsonWriter& Text(std::string_view text);
    /// What is no finite number becomes null.
    JsonWriter& Number(double value);
    JsonWriter& Truth(bool value);
    JsonWriter& Null();

  private:
    std::ostream& Next();

    std::ostream& out_;
    bool needsComma_ = false;
};

}  // namespace cli
