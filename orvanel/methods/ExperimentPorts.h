// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "orvanel/methods/OpenDocument.h"
#include "ports/AcquisitionMethods.h"

namespace orvanel {

/// Where an experiment is found in its open method.
struct ExperimentPlace {
    std::shared_ptr<OpenDocument> method;
    std::size_t device = 0;
    int period = 0;
    int experiment = 0;

    ExperimentRecord& Find() const { return method->Experiment(device, period, experiment); }
    const InstrumentModel& Model() const { return *method->model; }
    void MarkChanged() const { method->unsavedChanges = true; }
};

/// The range clipped to what the trap scans, its stop moved to a whole number of steps.
/// @throws ports::HostError when nothing of it is left
MassRangeRecord OptimizedRange(const InstrumentModel& model, MassRangeRecord range);

/// Both @throws ports::HostError when there is no such experiment.
std::unique_ptr<ports::Experiment> CreateExperiment(const ExperimentPlace& place);
std::unique_ptr<ports::ExtendedExperiment> CreateExtendedExperiment(const ExperimentPlace& place);

}  // namespace orvanel
