// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/Simulator.h"

#include <memory>
#include <optional>

#include "orvanel/instrument/MethodCheck.h"
#include "orvanel/instrument/QuadrupoleScan.h"
#include "orvanel/instrument/Timing.h"
#include "orvanel/instrument/TrapScan.h"
#include "orvanel/methods/Ramp.h"

namespace orvanel {
namespace {

constexpr std::uint64_t acquisitionStream = 0xAC;

AcquiredData Described(const PeriodRecord& period, const InstrumentModel& model,
                       const std::vector<SprayedCompound>& sample, const AcquisitionContext& context) {
    AcquiredData data;
    data.modelCode = model.code;
    data.modelName = model.name;
    data.seed = context.seed;
    data.faults = FaultTexts(context.faults);
    for (const SprayedCompound& sprayed : sample)
        data.compounds.push_back(sprayed.compound.name);
    data.experiment = period.experiments[0];
    data.ramp = period.ramp;
    if (!IsTrapScan(data.experiment.scanType)) {
        const bool transitions = data.experiment.scanType == static_cast<int>(ScanType::MultipleReaction);
        for (const MassRangeRecord& range : data.experiment.massRanges)
            data.traces.push_back({range.start, transitions ? range.step : 0, range.dwellTimeMs, {}});
    }
    return data;
}

void Put(std::vector<Parameter>& table, const std::string& id, float value) {
    for (Parameter& parameter : table)
        if (parameter.id == id) {
            parameter.value = value;
            return;
        }
    table.push_back({id, value});
}

}  // namespace

AcquiredData Acquire(const MassSpecRecord& method, const InstrumentModel& model,
                     const std::vector<SprayedCompound>& sample, ports::ElementTable& elements,
                     const AcquisitionContext& context) {
    CheckAcquirable(method, model);
    const PeriodRecord& period = method.periods[0];
    const ExperimentRecord& experiment = period.experiments[0];
    std::vector<std::unique_ptr<IonSource>> owned;
    std::vector<const IonSource*> sources;
    for (const SprayedCompound& sprayed : sample) {
        owned.push_back(std::make_unique<IonSource>(sprayed, elements));
        sources.push_back(owned.back().get());
    }
    Random random{context.seed, acquisitionStream, context.acquisitionNumber};
    const double sprayRsd =
        context.faults.sprayInstability != 0 ? context.faults.sprayInstability : model.sprayRsd * context.noiseLevel;
    FaultySpray spray({sprayRsd, model.sprayCorrelationS, random}, context.faults, context.seed);
    const ChemicalBackground background(model, context.seed, context.noiseLevel);
    const ScanConditions conditions{experiment, model, context, sources, background, spray, random};

    AcquiredData data = Described(period, model, sample, context);
    data.isolation = conditions.Widths();
    QuadrupoleScan quadrupoles(conditions);
    std::optional<TrapScan> trap;
    if (IsTrapScan(experiment.scanType)) trap.emplace(conditions);
    const auto rampValues = period.ramp ? RampValues(*period.ramp, period.cycles) : std::vector<double>();
    ParameterTables parameters;
    for (const MassRangeRecord& range : experiment.massRanges)
        parameters.push_back(range.compoundParameters);
    const double cycleMs = CycleMs(model, experiment);
    for (int cycle = 0; cycle < period.cycles; ++cycle) {
        CycleRecord record;
        record.cycle = cycle + 1;
        record.timeMinutes = cycle * cycleMs / 60000;
        if (period.ramp) {
            record.rampValue = rampValues.at(static_cast<std::size_t>(cycle));
            for (auto& table : parameters)
                Put(table, period.ramp->id, static_cast<float>(record.rampValue));
        }
        record.applied = parameters;
        const double timeS = context.instrumentTimeS + (PreparationMs(method, model) + cycle * cycleMs) / 1000;
        spray.StartCycle(timeS, period.ramp ? static_cast<double>(cycle) / period.cycles : 0);
        if (trap) {
            trap->Cycle(parameters, timeS, record);
        } else {
            const auto intensity = quadrupoles.Cycle(parameters);
            for (std::size_t i = 0; i < intensity.size(); ++i)
                data.traces[i].intensity.push_back(intensity[i]);
        }
        data.cycles.push_back(std::move(record));
    }
    return data;
}

}  // namespace orvanel
