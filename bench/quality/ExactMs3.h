// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "bench/quality/NoiseFree.h"

namespace quality {

/// What the rules of the MS3 stage give where ions are counted exactly, without a scan or a peak list.
struct ExactMs3 {
    std::optional<double> af2;  ///< where exactly 5 % of the precursor is left; nothing when the ramp never gets there
    double ruleAf2 = 0;         ///< the point of the ramp that the rule takes
    double shareAround = 0;     ///< of all monoisotopic ions there, what is around the precursor
    double thirdMz = 0;         ///< the strongest other ion there; 0 when there is none or too much is left
    double thirdCps = 0;
};

/// The exact response of an MS3 scan to its AF2 ramp.
class Ms3Response {
  public:
    /// @param method of the scan, with its ramp. @param node its 2nd precursor. The objects must outlive this one
    Ms3Response(const NoiseFree& truth, const orvanel::MassSpecRecord& method, const std::string& node);

    /// The share of the precursor that is left, in closed form. Ions of the same mass count by how many there are.
    double PrecursorLeft(double af2) const;
    /// The share that is left of all that is seen at the precursor's mass, whatever it is.
    double SignalLeft(double af2) const;
    ExactMs3 ByRule() const;

  private:
    struct Precursor {
        const orvanel::TreeNode* node;
        double weight;
    };
    double SignalCps(double af2) const;
    std::optional<double> WhereFivePercentAreLeft() const;
    double ByRuleOnRamp() const;

    const NoiseFree& truth_;
    const orvanel::MassSpecRecord& method_;
    double mz_;
    std::vector<double> ramp_;
    std::vector<Precursor> precursors_;
    double signalAtStart_ = 0;
};

}  // namespace quality
