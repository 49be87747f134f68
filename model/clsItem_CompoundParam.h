// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace veltra {

/// One compound-dependent instrument parameter.
struct clsItem_CompoundParam {
    float Current = 0;  ///< the value to use from now on: the starter method's, then each optimum found
    float Initial = 0;  ///< the starter method's value
};

}  // namespace veltra
