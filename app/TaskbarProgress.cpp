// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/TaskbarProgress.h"

namespace app {

void TaskbarProgress::Show(std::uintptr_t window, int percent, bool isVisible) {
    if (isVisible == isShown_ && (percent == shownPercent_ || !isVisible)) return;
    isShown_ = isVisible;
    shownPercent_ = percent;
    ShowOnTaskbar(window, percent, isVisible);
}

}  // namespace app
