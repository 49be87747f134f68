// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

namespace ports {

/// A table of named single-precision instrument parameters, such as a mass range's compound parameters ("DP", "EP",
/// "CEP", "CE", "CES", "AF2", in volts; "AF2" on the model's own scale) or an experiment's source/gas parameters.
///
/// Indexes count from 0 in the table's order and stay valid while the table is not reset. A handle stays usable as long
/// as the method it came from is open; it owns nothing of the method. Not thread-safe.
class ParameterTable {
  public:
    virtual ~ParameterTable() = default;

    virtual int HostGetParameterCount() const = 0;

    /// @return the index of the parameter with exactly this id, or -1 when the table has none
    virtual int HostFindParameter(const std::string& id) const = 0;

    /// @throws HostError when the index is not one of the table's
    virtual std::string HostGetParameterId(int index) const = 0;
    /// @throws HostError when the index is not one of the table's
    virtual float HostGetParameterValue(int index) const = 0;
    /// @throws HostError when the index is not one of the table's or the instrument cannot take the value
    virtual void HostSetParameterValue(int index, float value) = 0;
};

}  // namespace ports
