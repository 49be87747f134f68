// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <streambuf>
#include <string>
#include <string_view>

namespace cli {

/// A text in one line, without what a terminal or a reader of UTF-8 would trip over: control characters and bytes that
/// are not UTF-8 become the replacement character U+FFFD.
std::string CleanText(std::string_view text);

/// Passes text on to another buffer, cleaned like CleanText; only tabs and line feeds stay. Names from files and the
/// command line can then send no escape sequence to the terminal.
class CleanBuffer : public std::streambuf {
  public:
    /// @param target must outlive the buffer
    explicit CleanBuffer(std::streambuf& target) : target_(target) {}
    ~CleanBuffer() override;

  protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;

  private:
    bool Put(std::string_view text);

    std::streambuf& target_;
    std::string begun_;  ///< the bytes so far of a character whose others are still to come
};

}  // namespace cli
