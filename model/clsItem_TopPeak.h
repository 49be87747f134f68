// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model/clsItem_Peak.h"

namespace veltra {

/// Peaks in an order that means something; records are shared by reference. In texts they are numbered from 1.
using PeakCollection = std::vector<std::shared_ptr<clsItem_Peak>>;

/// One 2nd precursor (a fragment of the 1st precursor) and what the MRM and MS3 stages find for it.
struct clsItem_TopPeak {
    std::shared_ptr<clsItem_Peak> SecondPrecursor = std::make_shared<clsItem_Peak>();
    double OptimizedCE = 0;  ///< V
    bool CEWasOptimized = false;
    double OptimizedAF2 = 0;  ///< on the model's scale
    bool AF2WasOptimized = false;
    PeakCollection MS3PeaksCollection;
    /// The 2nd precursor's remaining share of the MS3 spectrum is below the required percentage. True from the start,
    /// so that a record that never reached the MS3 stage does not count as failing that test.
    bool MS3PercentBelowThreshold = true;
    std::string FinalMS3Method;  ///< full path, or a text that says which method could not be created
};

/// The 2nd precursors of a run, in stage order; numbered from 1 in texts.
using TopPeakCollection = std::vector<std::shared_ptr<clsItem_TopPeak>>;

}  // namespace veltra
