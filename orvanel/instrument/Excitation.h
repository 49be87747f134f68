// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/InstrumentModel.h"

namespace orvanel {

/// Resonant excitation of one precursor in the trap. Amplitudes are on the model's own AF2 scale.
class Excitation {
  public:
    Excitation(const InstrumentModel& model, const TreeNode& precursor);

    /// A50 = af2At300 * (m/300)^exponent * k, at which half has dissociated.
    double HalfAmplitude() const { return a50_; }
    double Width() const { return width_; }

    /// The amplitude that acts on an ion off resonance: A / sqrt(1 + (dm / G)^2).
    double EffectiveAmplitude(double amplitude, double distanceDa) const;
    /// (1 - beta) * sigma((A - A50) / s)
    double DissociatedShare(double effectiveAmplitude) const;
    /// 1 - DissociatedShare: what is left to be seen as the precursor.
    double RemainingShare(double effectiveAmplitude) const { return 1 - DissociatedShare(effectiveAmplitude); }
    /// The share of the dissociated ions whose fragments are kept: their parent was not ejected before.
    double KeptShare(double effectiveAmplitude) const;

    /// Fragments at or below this m/z are not trapped.
    static double LowMassCutoff(const InstrumentModel& model, double precursorMz) {
        return model.lowMassCutoff * precursorMz;
    }

  private:
    double a50_;
    double width_;
    double ejection_;
    double ejectionWidth_;
    double offResonanceDa_;
    double backgroundShare_;
};

}  // namespace orvanel
