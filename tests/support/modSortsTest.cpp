// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/modSorts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

struct Peak {
    double CentroidIntensity;
    double CentroidMass;
    char name;
};
using Peaks = std::vector<std::shared_ptr<Peak>>;

Peaks SomePeaks() {
    Peaks peaks;
    for (const Peak& peak :
         {Peak{5, 300, 'a'}, {1, 100, 'b'}, {5, 200, 'c'}, {9, 100, 'd'}, {5, 300, 'e'}, {1, 400, 'f'}})
        peaks.push_back(std::make_shared<Peak>(peak));
    return peaks;
}

TEST(modSorts, SortsAscendingWithTiesByTheOtherPropertyDescending) {
    struct Case {
        int low, high;
        const char *key, *order;
    };
    const Case cases[] = {
        {1, 6, "Centroid Intensity", "fbaecd"}, {1, 6, "CentroidMass", "dbcaef"},
        {2, 5, "Centroid Intensity", "abecdf"}, {2, 4, "CentroidMass", "adbcef"},
        {1, 6, "CentroidIntensity", "abcdef"},  {1, 6, "", "abcdef"},
        {3, 3, "CentroidMass", "abcdef"},       {5, 2, "CentroidMass", "abcdef"},
        {0, 6, "CentroidMass", "abcdef"},       {1, 7, "CentroidMass", "abcdef"},
    };
    for (const auto& [low, high, key, order] : cases) {
        const Peaks before = SomePeaks();
        Peaks after = before;
        support::QuickSortPeaks<Peak>(low, high, key, after);
        std::string names;
        for (const auto& peak : after) {
            names += peak->name;
            EXPECT_EQ(peak, before[static_cast<std::size_t>(peak->name - 'a')]) << "a record was copied";
        }
        EXPECT_EQ(names, order) << low << " to " << high << " by " << key;
    }
}

TEST(modSorts, SortedInputIsNotSlowAndEqualRecordsKeepTheirOrder) {
    Peaks peaks;
    for (int i = 0; i < 200'000; ++i)
        peaks.push_back(std::make_shared<Peak>(Peak{std::floor(i / 2.0), std::floor(i / 2.0), i % 2 == 0 ? 'a' : 'b'}));
    const Peaks sorted = peaks;
    support::QuickSortPeaks<Peak>(1, 200'000, "CentroidMass", peaks);
    EXPECT_TRUE(peaks == sorted);
    std::reverse(peaks.begin(), peaks.end());
    support::QuickSortPeaks<Peak>(1, 200'000, "Centroid Intensity", peaks);
    EXPECT_EQ(peaks[0], sorted[1]);
    EXPECT_EQ(peaks[199'999], sorted[199'998]);
}

}  // namespace
