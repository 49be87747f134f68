// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/InstrumentModel.h"

namespace orvanel {

/// Shares of ions that pass the optics. Voltages are absolute values in V; design values and their forms are the
/// model's.

/// sigma((V - V1) / w) * (1 - sigma((V - V2) / w)), largest at (V1 + V2) / 2.
double DpTransmission(const Compound& compound, double dp);
/// sigma((V - V1) / w) * sigma((V - V2) / w): what DpTransmission loses because it falls apart in the source.
double InSourceShare(const Compound& compound, double dp);
/// exp(-((EP - EP0) / width)^2 / 2)
double EpTransmission(const InstrumentModel& model, double ep);
/// exp(-((CEP - C0) / sc)^2 / 2) with C0 and sc growing with m/z, sc smaller below C0. 1 on models without CEP.
double CepTransmission(const InstrumentModel& model, double cep, double mz);

/// The share that passes a mass window of soft edges, (erf((d + W/2) / (sqrt2 s)) - erf((d - W/2) / (sqrt2 s))) / 2.
/// @param distanceDa d, from the window's centre
double WindowShare(double distanceDa, double widthDa, double sigmaDa);

/// WindowShare with the window's floor and relative transmission, as a quadrupole isolates.
double QuadrupoleTransmission(const InstrumentModel& model, const Q1Window& window, double distanceDa);

}  // namespace orvanel
