// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/explore/Maxima.h"
#include "orvanel/explore/PeakForm.h"
#include "orvanel/explore/PeakWidths.h"
#include "orvanel/explore/ProfilePoints.h"

namespace orvanel {

/// What a spectrum's own peaks look like.
struct FormEstimate {
    PeakForm form;
    PeakWidths widths;
    double smallestSum = 0;  ///< what hardly any maximum adds up to less than, cps; 0 where the maxima do not tell
};

/// Reads form and width from the strongest maxima that stand apart; where there is none, the usual ones.
/// @param smooth the spectrum, smoothed with a Gaussian of sigmaPoints everywhere
/// @param maxima of the smoothed spectrum
FormEstimate EstimateForm(const ProfilePoints& points, const std::vector<double>& smooth,
                          const std::vector<Maximum>& maxima, double sigmaPoints);

}  // namespace orvanel
