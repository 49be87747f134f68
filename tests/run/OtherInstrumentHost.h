// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "tests/support_files/FakeHost.h"

/// A host whose instrument is no linear ion trap.
class OtherInstrumentHost : public FakeHost {
    class Helper : public fake::InstrumentHelper {
        using InstrumentHelper::InstrumentHelper;
        bool IsLinearIonTrap(std::int32_t) override { return false; }
    };

  public:
    std::unique_ptr<ports::InstrumentHelper> CreateInstrumentHelper() override {
        return std::make_unique<Helper>(modelCode, stepSizes);
    }
};
