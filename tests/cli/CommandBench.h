// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "cli/Commands.h"

/// Collects text and tells what has come in at every flush.
class FlushedBuffer : public std::stringbuf {
  public:
    std::function<void(const std::string& text)> onFlush;

    bool fails = false;

  protected:
    int_type overflow(int_type character) override {
        return fails ? traits_type::eof() : std::stringbuf::overflow(character);
    }
    std::streamsize xsputn(const char* text, std::streamsize size) override {
        return fails ? 0 : std::stringbuf::xsputn(text, size);
    }
    int sync() override {
        const std::string all = str();
        if (onFlush) onFlush(all.substr(told_));
        told_ = all.size();
        return std::stringbuf::sync();
    }

  private:
    std::size_t told_ = 0;
};

struct Ended {
    int status = -1;
    std::string out;
    std::string err;
};

struct Terminal {
    bool isTerminal = false;
    bool outputIsLost = false;
    std::string typed = {};
    std::function<void(const std::string& text)> onFlush = {};
};

inline Ended RunProgram(const std::vector<std::string>& arguments, const Terminal& terminal = {}) {
    std::vector<const char*> argv{"veltra-run"};
    for (const auto& argument : arguments)
        argv.push_back(argument.c_str());
    FlushedBuffer outBuffer;
    outBuffer.onFlush = terminal.onFlush;
    outBuffer.fails = terminal.outputIsLost;
    std::ostream out(&outBuffer);
    std::ostringstream err;
    std::istringstream in(terminal.typed);
    Ended ended;
    ended.status = cli::RunCommandLine(static_cast<int>(argv.size()), argv.data(),
                                       {out, err, in, terminal.isTerminal, terminal.isTerminal});
    ended.out = outBuffer.str();
    ended.err = err.str();
    return ended;
}
