// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ports/Clock.h"

/// A clock that stands still; its texts are set by the test.
class FixedClock : public ports::Clock {
  public:
    ports::DateTimeTexts Now() const override { return texts; }

    ports::DateTimeTexts texts{"5/13/2024 3:45:12 PM", "3:45:12 PM", "Monday", "May", 13, 2024};
};
