// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/Maxima.h"

#include <algorithm>
#include <utility>

namespace orvanel {
namespace {

/// For each maximum of a stretch the lowest point on the way to the next higher one, in one sweep to each side with a
/// stack of ever higher maxima.
/// @param valleys between neighbouring maxima
void FindSaddles(const std::vector<double>& values, const std::vector<double>& valleys, Maximum* maxima,
                 std::size_t count) {
    const auto sweep = [&](bool toRight) {
        std::vector<std::pair<std::size_t, double>> stack;  // maximum, lowest point between it and the current one
        for (std::size_t n = 0; n < count; ++n) {
            const std::size_t k = toRight ? count - 1 - n : n;
            double lowest = n == 0 ? 0 : valleys[toRight ? k : k - 1];
            while (!stack.empty() && values[maxima[stack.back().first].index] < values[maxima[k].index]) {
                lowest = std::min(lowest, stack.back().second);
                stack.pop_back();
            }
            if (!stack.empty()) maxima[k].saddle = std::max(maxima[k].saddle, lowest);
            stack.emplace_back(k, lowest);
        }
    };
    sweep(false);
    sweep(true);
}

}  // namespace

std::vector<Maximum> FindMaxima(const std::vector<double>& values, const std::vector<std::size_t>& stretchEnds) {
    std::vector<Maximum> found;
    std::size_t begin = 0;
    for (const std::size_t end : stretchEnds) {
        const std::size_t firstOfStretch = found.size();
        std::vector<double> valleys;
        double valley = 0;
        for (std::size_t i = begin; i < end; ++i) {
            valley = std::min(valley, values[i]);
            const double before = i > begin ? values[i - 1] : 0;
            const double behind = i + 1 < end ? values[i + 1] : 0;
            if (values[i] <= before || values[i] < behind) continue;
            if (found.size() > firstOfStretch) valleys.push_back(valley);
            found.push_back({i, 0});
            valley = values[i];
        }
        FindSaddles(values, valleys, found.data() + firstOfStretch, found.size() - firstOfStretch);
        begin = end;
    }
    return found;
}

}  // namespace orvanel
