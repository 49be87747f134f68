// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "bench/quality/NoiseFree.h"

namespace quality {

/// One chosen 2nd precursor, held against the truth.
struct FragmentFindings {
    std::string node;  ///< of the compound file; empty when no fragment of it lies within 0.1 Da
    double foundMz = 0;
    double ce = 0;          ///< V, found, signed as applied
    double ceResponse = 0;  ///< of the transition at the found CE, as a share of its best
    double ce80Low = 0;     ///< V without sign, where the transition keeps 80 % of its best
    double ce80High = 0;
    std::optional<double> af2;      ///< found
    std::optional<double> ruleAf2;  ///< what the same rule gives on noise-free data of the same method
    double exactAf2 = 0;            ///< where exactly 5 % of the precursor is left
    double af2Step = 0;

    bool CeKeeps80() const { return std::abs(ce) >= ce80Low && std::abs(ce) <= ce80High; }
    bool Af2Agrees() const;
};

/// What one run found, held against the noise-free instrument.
struct Findings {
    std::string compound;
    std::uint64_t seed = 0;
    double noiseLevel = 1;
    bool completed = false;
    std::string lastMessage;         ///< of a run that did not complete
    double parentErrorDa = 0;        ///< found minus true
    double dp = 0, ep = 0, cep = 0;  ///< response at the found voltage, as a share of the best that the ramp allows
    std::vector<FragmentFindings> fragments;
    std::string strongestNode;  ///< truly strongest under the EPI conditions, in range and outside the window
    bool strongestChosen = false;
    std::vector<std::string> missedNodes;  ///< among the truly strongest as many as were asked for, not chosen
    int optimalPath = 0;                   ///< position of the 2nd precursor from 1; 0 for none
    int bestPath = 0;                      ///< what the same rule chooses on noise-free data
    std::optional<double> gain;  ///< noise-free signal of the 3rd precursor: final method over the starter's voltages
};

/// Runs the optimisation and judges it.
Findings Judge(WholeRun& run);

}  // namespace quality
