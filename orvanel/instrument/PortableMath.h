// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace orvanel {

/// Elementary functions of basic arithmetic alone: libraries differ in the last places of theirs, and the same seed has
/// to give the same data on every machine. Relative error below 1e-14.

double Exp(double x);
/// @param x above 0
double Log(double x);
/// @param base above 0
double Pow(double base, double exponent);
double Erf(double x);
/// 1 / (1 + e^-x)
double Sigmoid(double x);

}  // namespace orvanel
