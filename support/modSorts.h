// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace support {

/// Sorts the records from position low to position high (counted from 1) ascending by "CentroidMass" or
/// "Centroid Intensity" (with its blank), ties by the other property descending; any other key leaves them as they are.
/// Identity is kept: the pointers move, not the records. Cost n log n whatever the order.
template <class Record>
void QuickSortPeaks(std::int32_t low, std::int32_t high, std::string_view strKey,
                    std::vector<std::shared_ptr<Record>>& peaks) {
    if (low < 1 || high > static_cast<std::int32_t>(peaks.size()) || low >= high) return;
    const auto first = peaks.begin() + (low - 1);
    const auto last = peaks.begin() + high;
    const auto sortBy = [&](auto key, auto tie) {
        std::stable_sort(first, last, [&](const auto& a, const auto& b) {
            if ((*a).*key != (*b).*key) return (*a).*key < (*b).*key;
            return (*a).*tie > (*b).*tie;
        });
    };
    if (strKey == "CentroidMass") sortBy(&Record::CentroidMass, &Record::CentroidIntensity);
    if (strKey == "Centroid Intensity") sortBy(&Record::CentroidIntensity, &Record::CentroidMass);
}

}  // namespace support
