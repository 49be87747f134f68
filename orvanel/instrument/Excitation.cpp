// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Excitation.h"

#include <cmath>

#include "orvanel/instrument/PortableMath.h"

namespace orvanel {

Excitation::Excitation(const InstrumentModel& model, const TreeNode& precursor)
    : a50_(model.af2Scale * model.af2At300 * Pow(precursor.mz / 300, model.af2Exponent) * precursor.excitationFactor),
      width_(model.af2Width * a50_),
      ejection_(model.af2Ejection * a50_),
      ejectionWidth_(model.af2EjectionWidth * width_),
      offResonanceDa_(model.offResonanceDa),
      backgroundShare_(precursor.backgroundShare) {}

double Excitation::EffectiveAmplitude(double amplitude, double distanceDa) const {
    const double ratio = distanceDa / offResonanceDa_;
    return amplitude / std::sqrt(1 + ratio * ratio);
}

double Excitation::DissociatedShare(double effectiveAmplitude) const {
    return (1 - backgroundShare_) * Sigmoid((effectiveAmplitude - a50_) / width_);
}

double Excitation::KeptShare(double effectiveAmplitude) const {
    return Sigmoid((ejection_ - effectiveAmplitude) / ejectionWidth_);
}

}  // namespace orvanel
