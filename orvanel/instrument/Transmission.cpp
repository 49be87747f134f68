// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Transmission.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "orvanel/instrument/PortableMath.h"
#include "orvanel/instrument/Simulator.h"

namespace orvanel {
namespace {

double Gaussian(double distance, double sigma) {
    return Exp(-0.5 * (distance / sigma) * (distance / sigma));
}

}  // namespace

double DpTransmission(const Compound& compound, double dp) {
    return Sigmoid((dp - compound.dpLow) / compound.dpWidth) * Sigmoid((compound.dpHigh - dp) / compound.dpWidth);
}

double InSourceShare(const Compound& compound, double dp) {
    return Sigmoid((dp - compound.dpLow) / compound.dpWidth) * Sigmoid((dp - compound.dpHigh) / compound.dpWidth);
}

double EpTransmission(const InstrumentModel& model, double ep) {
    return Gaussian(ep - model.epOptimum, model.epWidth);
}

double CepTransmission(const InstrumentModel& model, double cep, double mz) {
    if (!model.hasCep) return 1;
    const double distance = cep - (model.cepOffset + model.cepSlope * mz);
    const double sigma = model.cepWidthOffset + model.cepWidthSlope * mz;
    return Gaussian(distance, distance < 0 ? sigma * model.cepLowSideFactor : sigma);
}

double WindowShare(double distanceDa, double widthDa, double sigmaDa) {
    const double scale = std::numbers::sqrt2 * sigmaDa;
    return 0.5 * (Erf((distanceDa + widthDa / 2) / scale) - Erf((distanceDa - widthDa / 2) / scale));
}

double QuadrupoleTransmission(const InstrumentModel& model, const Q1Window& window, double distanceDa) {
    const double share = WindowShare(distanceDa, window.widthDa, window.sigmaDa);
    const double floor = std::fabs(distanceDa) <= model.q1FloorReachDa ? window.floor : 0;
    return window.transmission * std::max(share, floor);
}

double RelativeTransmission(const InstrumentModel& model, const Compound& compound, double dp, double ep, double cep) {
    const double best = DpTransmission(compound, (compound.dpLow + compound.dpHigh) / 2);
    return DpTransmission(compound, std::fabs(dp)) / best * EpTransmission(model, std::fabs(ep)) *
           CepTransmission(model, std::fabs(cep), compound.Root().mz);
}

}  // namespace orvanel
