// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <pwiz/data/msdata/MSData.hpp>
#include <string>
#include <vector>

namespace orvanel {

// What the adapter reads values of the mzML library's parameters and arrays by. Everything throws std::runtime_error
// that begins with where the value stands.

double NumberOf(const std::string& text, const std::string& where);
/// @return nothing where there is no such term, or one without a value
std::optional<double> TermNumber(const pwiz::data::ParamContainer& container, pwiz::cv::CVID term,
                                 const std::string& where);

struct Range {
    double lowest;
    double highest;
};

/// What no instrument leaves; values beyond it would overflow in sums or keep the peak finder busy without end.
inline constexpr Range mzRange = {0, 1e6};
inline constexpr Range intensityRange = {-1e30, 1e30};
inline constexpr Range xRange = {-1e9, 1e9};  ///< times in minutes, ramped values

void RequireWithin(const Range& range, double value, const std::string& where);

/// Copies an array, checked to be finite and of no absurd magnitude.
std::vector<double> ValuesOf(const pwiz::msdata::BinaryDataArrayPtr& array, const Range& range,
                             const std::string& where);

/// How many of a unit of time are a minute. No unit is taken for minutes.
double UnitsPerMinute(pwiz::cv::CVID unit, const std::string& where);

/// The m/z that were isolated together: the target of the isolation window, else all selected ions.
std::vector<double> PrecursorMz(const pwiz::msdata::Precursor& precursor, const std::string& where);

}  // namespace orvanel
