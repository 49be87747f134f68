// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace ports {

enum class MessageIcon { None, Warning, Critical };

/// Modal messages with the title "Veltra". Called on the user-interface thread; never throws.
class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;

    /// An OK-only box; returns when the user has closed it.
    virtual void Show(const std::string& strText, MessageIcon icon) = 0;
    /// A Yes/No question.
    /// @return true for Yes
    virtual bool AskYesNo(const std::string& strQuestion) = 0;
};

}  // namespace ports
