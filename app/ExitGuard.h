// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <functional>

namespace app {

/// Does something when the process is ended from elsewhere while the application lives: when the display goes away, the
/// toolkit calls exit() from within its event processing, and nothing that is under way ever goes on.
class ExitGuard : public QObject {
  public:
    /// @param onExit called at most once, on the thread that ends the process; must not process events
    ExitGuard(QObject& application, std::function<void()> onExit);

  private:
    static void AtExit();

    std::function<void()> onExit_;
};

}  // namespace app
