// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Noise.h"

#include <cmath>

#include "orvanel/instrument/PortableMath.h"

namespace orvanel {
namespace {

// Keep the streams of one seed apart.
constexpr std::uint64_t backgroundStream = 0xB6;
constexpr std::uint64_t calibrationStream = 0xCA;

}  // namespace

Spray::Spray(double relativeSd, double correlationS, Random& random)
    : sigma_(std::sqrt(Log(1 + relativeSd * relativeSd))), correlationS_(correlationS), state_(0), random_(random) {
    if (sigma_ > 0) state_ = random_.Normal();
}

double Spray::Advance(double stepS) {
    if (sigma_ == 0) return 1;
    const double memory = Exp(-stepS / correlationS_);
    state_ = memory * state_ + std::sqrt(1 - memory * memory) * random_.Normal();
    return Exp(sigma_ * state_ - 0.5 * sigma_ * sigma_);
}

ChemicalBackground::ChemicalBackground(const InstrumentModel& model, std::uint64_t seed, double level)
    : model_(model), seed_(seed), level_(level) {}

double ChemicalBackground::RateOf(std::int64_t multiple) const {
    if (level_ == 0 || model_.chemicalNoiseCps == 0) return 0;
    Random random{seed_, backgroundStream, static_cast<std::uint64_t>(multiple)};
    return level_ * model_.chemicalNoiseCps *
           Exp(model_.chemicalNoiseSpread * random.Normal() - MzOf(multiple) / model_.chemicalNoiseDecayDa);
}

double CalibrationErrorDa(const InstrumentModel& model, std::uint64_t seed, double instrumentTimeS, double level) {
    Random random{seed, calibrationStream};
    return level * (model.massOffsetSigmaDa * random.Normal() + model.massDriftDaPerHour * instrumentTimeS / 3600);
}

}  // namespace orvanel
