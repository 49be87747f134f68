// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

/// Overrides an operation that gives a handle of the kind by one that makes the fake of the same name.
#define VELTRA_FAKE_HANDLE(Kind, Name, Parameters, ...)     \
    std::unique_ptr<ports::Kind> Name Parameters override { \
        return std::make_unique<fake::Kind>(__VA_ARGS__);   \
    }
