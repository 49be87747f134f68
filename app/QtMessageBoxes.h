// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ports/MessageBoxes.h"

class QWidget;

namespace app {

/// The window that a dialog belongs over: the active one, else the main window; null when none is open.
QWidget* DialogParent();

/// Modal boxes with the title "Veltra" and texts that can be selected.
class QtMessageBoxes : public ports::MessageBoxes {
  public:
    void Show(const std::string& strText, ports::MessageIcon icon) override;
    bool AskYesNo(const std::string& strQuestion) override;
    /// The display is gone: from now on messages go to the error stream, and every answer is No.
    void LeaveDisplay() { hasDisplay_ = false; }

  private:
    bool hasDisplay_ = true;
};

}  // namespace app
