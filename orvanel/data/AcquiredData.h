// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "orvanel/methods/MethodDocument.h"

namespace orvanel {

/// One cycle of an acquisition, counted from 1, its scans already summed.
struct CycleRecord {
    int cycle = 1;
    double timeMinutes = 0;  ///< start of the cycle since the start of the acquisition
    /// One table a mass range: every compound parameter in force, the ramped one at this cycle's value.
    std::vector<std::vector<Parameter>> applied;
    double rampValue = 0;           ///< the ramped value where the method ramps one
    std::vector<double> mz;         ///< trap scans: ascending, profile points; a run of zeros keeps its two ends only
    std::vector<double> intensity;  ///< cps, one for each mz
};

/// The trace of one mass (Q1 multiple ion) or one transition (MRM) over all cycles.
struct MassTrace {
    double q1 = 0;  ///< m/z in Da
    double q3 = 0;  ///< m/z in Da, 0 for a single mass
    double dwellTimeMs = 0;
    std::vector<double> intensity;  ///< cps, one a cycle
};

/// Full widths of the windows that the ions passed, Da.
struct IsolationWidths {
    double q1 = 0;
    double q3 = 0;    ///< of transitions
    double trap = 0;  ///< around the second precursor
};

/// Everything that one acquisition leaves: cycles with spectra (scan types 11, 12, 13) or cycles without and traces
/// (scan types 1 and 4).
struct AcquiredData {
    std::string startTimestamp;  ///< ISO 8601, UTC, on the host's clock
    std::string methodName;      ///< file name of the method
    std::string methodText;      ///< the method document; its checksum goes into the data file
    std::int32_t modelCode = 0;
    std::string modelName;
    std::uint64_t seed = 0;
    std::vector<std::string> compounds;  ///< what was sprayed
    std::string faults;                  ///< what was made to go wrong, empty when nothing was
    ExperimentRecord experiment;
    IsolationWidths isolation;
    std::optional<RampRecord> ramp;
    std::vector<CycleRecord> cycles;
    std::vector<MassTrace> traces;  ///< one a mass range
};

}  // namespace orvanel
