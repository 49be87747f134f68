// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

namespace app {

/// The progress that the desktop shows on the window's entry in its task bar, where it can.
class TaskbarProgress {
  public:
    /// @param window the system's handle of the window
    /// @param percent 0 to 100
    /// @param isVisible false takes the progress away
    void Show(std::uintptr_t window, int percent, bool isVisible);

  private:
    int shownPercent_ = 0;
    bool isShown_ = false;
};

/// Each system has its own.
void ShowOnTaskbar(std::uintptr_t window, int percent, bool isVisible);

}  // namespace app
