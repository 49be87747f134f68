// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>

#include "ports/HostError.h"
#include "support/Files.h"

namespace orvanel {

/// What the file operations answer. @throws ports::HostError of that number where the disk fails
template <class Operations>
auto AsHostError(std::int32_t number, Operations operations) {
    try {
        return operations();
    } catch (const support::FileError& error) {
        throw ports::HostError(number, error.what());
    }
}

}  // namespace orvanel
