// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "orvanel/import/MeasuredIon.h"

namespace orvanel {

/// One nominal mass in the spectra of an ion.
struct FragmentBin {
    double mz = 0;               ///< where most of its ions lie
    std::vector<double> shares;  ///< of all ions, one a spectrum of the MeasuredIon
};

/// The spectra in unit masses, each divided by the sum of its ions.
struct BinnedSpectra {
    std::vector<FragmentBin> bins;       ///< the precursor's first, then by falling share
    bool unitMasses = false;             ///< the m/z are good to some tenths of a dalton only
    std::vector<double> abovePrecursor;  ///< share of what lies above the precursor, which is left out, a spectrum
};

/// Puts peaks into bins of one dalton, the strongest peak first: rounding would cut ions whose mass lies near a half.
/// Profile spectra become peaks before.
/// @throws ports::HostError when all ions of a spectrum lie above the precursor
BinnedSpectra BinSpectra(const MeasuredIon& ion);

}  // namespace orvanel
