// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <pwiz/data/msdata/MSData.hpp>
#include <string>

#include "orvanel/data/DataReader.h"

namespace orvanel {

bool IsMassSpectrum(const pwiz::msdata::Spectrum& spectrum);

/// Whether the container says that spectra are profiles, or centroids; nothing where it says neither or both.
std::optional<bool> StatedProfile(const pwiz::data::ParamContainer& container);

/// What the spectrum's header says; without a word on the representation it counts as centroid.
/// @throws std::runtime_error that begins with where
ExperimentKind KindOf(const pwiz::msdata::Spectrum& spectrum, const std::string& where);

}  // namespace orvanel
