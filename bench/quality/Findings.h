// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "bench/quality/ExactMs3.h"
#include "bench/quality/NoiseFree.h"

namespace quality {

/// A collision energy against a response that falls to both sides of its best.
struct CeResponse {
    double share = 0;  ///< of the response's best, at the found CE; 0 for what is no ion of the compound
    double low80 = 0;  ///< V without sign, between which the response keeps 80 % of its best
    double high80 = -1;
    bool Keeps80(double ce) const { return std::abs(ce) >= low80 && std::abs(ce) <= high80; }
};

/// One chosen 2nd precursor, held against the truth.
struct FragmentFindings {
    std::string node;  ///< of the compound file; empty when no ion of it lies within 0.1 Da
    double foundMz = 0;
    double ce = 0;                   ///< V, found, signed as applied
    CeResponse ceCounts;             ///< ions that arrive
    CeResponse ceShare;              ///< share of the ions that are left
    std::optional<double> af2;       ///< found
    double af2Step = 0;              ///< 0 when no AF2 was looked for
    ExactMs3 exact;                  ///< of the node
    double precursorAtAf2 = 0;       ///< share of the precursor that is truly left at the found AF2
    double signalAtAf2 = 0;          ///< the same of all that is seen at its mass
    bool tooMuchLeft = false;        ///< the run looked for no 3rd precursors because more than 10 % was left
    int thirdPrecursors = 0;         ///< chosen
    int foreignThirdPrecursors = 0;  ///< of them, no ion of the compound within 0.1 Da

    bool IsIon() const { return !node.empty(); }
    /// Found within one step of where exactly 5 % of the precursor is left, of an ion, and with ions as 3rd precursors.
    bool Af2Agrees() const;
    /// Found elsewhere because the signal at the mass stays near 5 % over a long stretch, or never falls to it.
    bool IsOnFlatTail() const;
};

/// What one run found, held against the noise-free instrument.
struct Findings {
    std::string compound;
    std::uint64_t seed = 0;
    double noiseLevel = 1;
    bool completed = false;
    std::string lastMessage;  ///< of a run that did not complete
    bool parentFound = false;
    double parentErrorDa = 0;        ///< found minus true
    double dp = 0, ep = 0, cep = 0;  ///< response at the found voltage, as a share of the best that the ramp allows
    std::vector<FragmentFindings> fragments;
    std::string strongestNode;  ///< truly strongest under the EPI conditions, in range and outside the window
    bool strongestChosen = false;
    std::vector<std::string> missedNodes;  ///< among the truly strongest as many as were asked for, not chosen
    int optimalPath = 0;                   ///< position of the 2nd precursor from 1; 0 for none
    double optimalThirdMz = 0;
    int bestPath = 0;  ///< what the same rule chooses on exact ion counts
    double bestThirdMz = 0;
    std::optional<double> gain;  ///< noise-free signal of the 3rd precursor: final method over the starter's voltages

    bool EndsWithPath() const { return completed && optimalPath > 0; }
    /// Both the run and the exact counts lead to a path. "None" on both sides is no agreement on a path.
    bool SamePath() const;
    bool NoPathEither() const { return completed && optimalPath == 0 && bestPath == 0; }
    /// No path, and at least one 2nd precursor was given up because more than 10 % of it was left.
    bool PathLostToLimit() const;
};

/// Runs the optimisation and judges it.
Findings Judge(WholeRun& run);

}  // namespace quality
