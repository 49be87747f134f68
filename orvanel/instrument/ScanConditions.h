// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/instrument/IonBeam.h"
#include "orvanel/instrument/Noise.h"
#include "orvanel/instrument/Random.h"
#include "orvanel/instrument/Simulator.h"
#include "orvanel/instrument/faults/FaultySpray.h"
#include "orvanel/methods/MethodDocument.h"

namespace orvanel {

/// What all scans of one acquisition share. References must outlive the scans.
struct ScanConditions {
    const ExperimentRecord& experiment;
    const InstrumentModel& model;
    const AcquisitionContext& context;
    const std::vector<const IonSource*>& sources;
    const ChemicalBackground& background;
    FaultySpray& spray;
    Random& random;

    const Q1Window& FirstQuadrupole() const { return model.q1Windows[experiment.q1Resolution]; }
    /// Q3 always stands at unit resolution.
    const Q1Window& ThirdQuadrupole() const { return model.q1Windows[1]; }
    IsolationWidths Widths() const {
        return {FirstQuadrupole().widthDa, ThirdQuadrupole().widthDa, model.trapIsolationWidthDa};
    }
};

/// One table of parameters for each mass range.
using ParameterTables = std::vector<std::vector<Parameter>>;

/// The voltages of a table. What it does not list stands where it does no harm: EP at its optimum, CEP without effect,
/// the others at 0.
Voltages VoltagesOf(const std::vector<Parameter>& table, const InstrumentModel& model);

}  // namespace orvanel
