// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>
#include <vector>

namespace support {

/// True when every character is one of "0123456789." and "." occurs at most once; the empty text counts as numeric.
bool IsNumericText(const std::string& strText);
/// One decimal, rounded half to even; "N/A" for what is no finite number.
std::string FormatOneDecimal(float sglNumber);

/// The list part of a list control.
class ListControl {
  public:
    virtual ~ListControl() = default;
    virtual void InsertItem(int index, const std::string& text) = 0;
    virtual void SelectItem(int index) = 0;
};

/// Adds the texts that the host gives for the two arguments, from index 0, and selects the first. A host that fails
/// leaves the list as it is.
void FillListFromHost(ListControl& list, int firstArgument, int secondArgument,
                      const std::function<std::vector<std::string>(int, int)>& askHost);

}  // namespace support
