#pragma once

#include <string>
#include <vector>

#include "tests/support_files/WholeRun.h"

/// What a run's findings are worth on the noise-free instrument, as shares of the best that their ramps allow.
struct Response {
    double dp = 0;
    double ep = 0;
    double cep = 0;
    struct Fragment {
        std::string node;  ///< of the compound file; empty when no planted fragment lies within 0.1 Da
        double foundMz = 0;
        double foundCe = 0;
        double share = 0;  ///< response of the transition at the found CE
    };
    std::vector<Fragment> fragments;           ///< the chosen 2nd precursors
    std::vector<std::string> missedFragments;  ///< planted, in the scanned range, not chosen
};

/// @param run a completed run on a model with EP and CEP
Response ResponseOf(const WholeRun& run);
