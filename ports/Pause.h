// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

namespace ports {

/// The host's sleep. Blocks the calling thread for the given time on the host's clock, which may be faster than real
/// time or virtual. Throws HostError when the time is negative.
class Pause {
  public:
    virtual ~Pause() = default;
    virtual void HostSleep(std::int32_t milliseconds) = 0;
};

}  // namespace ports
