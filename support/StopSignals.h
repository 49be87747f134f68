// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

namespace support {

/// Ctrl-C, a terminal that closes and a request to terminate, taken as requests to end in order while one of these
/// lives. Repeated requests are taken too, but for a Ctrl-C behind another request: that one ends the process at once,
/// with status 1. Only one may live at a time.
class StopSignals {
  public:
    /// @param leftUndone what the user is told when the process ends at once; must outlive the object
    explicit StopSignals(const char* leftUndone);

    /// @return true once for every time that at least one signal has come in since the last call
    bool TakeRequest();

  private:
    std::shared_ptr<void> handlers_;
};

}  // namespace support
