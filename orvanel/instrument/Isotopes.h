// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/instrument/Formula.h"

namespace orvanel {

/// Isotopologues of a composition, grouped by nominal mass. Element i lies firstShift + i nominal masses above the
/// monoisotopic ion (most abundant isotope of every element).
struct IsotopeEnvelope {
    int firstShift = 0;
    std::vector<double> share;     ///< of all ions; sums to 1 but for what is negligible
    std::vector<double> offsetDa;  ///< mean mass above the monoisotopic mass

    std::size_t Size() const { return share.size(); }
};

/// Convolves the elements' distributions.
/// @throws ports::HostError on an unknown element
IsotopeEnvelope EnvelopeOf(const Composition& composition, ports::ElementTable& elements);

/// How strongly each isotopologue of a fragment is populated, relative to the natural envelope F, when the
/// isotopologues of its parent are by `transmission` relative to theirs: the sum over k of T_k * C_(k-i), C the
/// complement's envelope (as in the coarse isotope pattern generator of OpenMS). Scaled so that the number of ions is
/// kept where rounding of a guessed composition would lose some.
std::vector<double> FragmentTransmission(const IsotopeEnvelope& parent, const std::vector<double>& transmission,
                                         const IsotopeEnvelope& fragment, const IsotopeEnvelope& complement);

/// The sum of share times transmission.
double TransmittedShare(const IsotopeEnvelope& envelope, const std::vector<double>& transmission);

}  // namespace orvanel
