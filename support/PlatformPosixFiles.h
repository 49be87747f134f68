// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#ifndef _WIN32

#include <unistd.h>

namespace support {

/// Closes a file descriptor on every way out.
class Descriptor {
  public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool Valid() const { return descriptor_ >= 0; }
    int Get() const { return descriptor_; }
    bool Close() {
        if (descriptor_ < 0) return true;
        const int closing = descriptor_;
        descriptor_ = -1;
        return ::close(closing) == 0;
    }

  private:
    int descriptor_;
};

}  // namespace support

#endif
