// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/quality/NoiseFree.h"

#include <cmath>

#include "orvanel/CompoundFolder.h"
#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/instrument/ScanConditions.h"
#include "orvanel/instrument/Simulator.h"
#include "orvanel/instrument/Transmission.h"
#include "orvanel/methods/MethodFile.h"

namespace quality {
namespace {

std::vector<orvanel::SprayedCompound> SampleOf(const orvanel::OrvanelConfig& config, ports::ElementTable& elements) {
    std::vector<orvanel::SprayedCompound> sample;
    for (const auto& entry : config.sample)
        sample.push_back(
            {orvanel::LoadCompound(orvanel::FindCompoundFile(config.appLocation, entry.compound), elements),
             entry.amount});
    return sample;
}

}  // namespace

NoiseFree::NoiseFree(const WholeRun& run)
    : elements_(orvanel::OpenElementTableFile(orvanel::ElementTablePath(run.config.appLocation))),
      model_(orvanel::LoadInstrumentModels(orvanel::ModelsFolder(run.config.appLocation)).at(run.config.modelCode)),
      sample_(SampleOf(run.config, *elements_)),
      tree_(Ion()),
      precursor_(tree_.IndexOf(Ion().root)) {
    for (const auto& sprayed : sample_)
        sources_.push_back(std::make_unique<orvanel::IonSource>(sprayed, *elements_));
}

orvanel::AcquiredData NoiseFree::Acquire(const orvanel::MassSpecRecord& method) const {
    orvanel::AcquisitionContext context;
    context.noiseLevel = 0;
    context.countingStatistics = false;
    return orvanel::Acquire(method, model_, sample_, *elements_, context);
}

std::vector<IonCount> NoiseFree::ExcitedIons(const orvanel::MassSpecRecord& ms3Method, double secondPrecursor,
                                             double af2) const {
    std::vector<const orvanel::IonSource*> sources;
    for (const auto& source : sources_)
        sources.push_back(source.get());
    const auto& experiment = ms3Method.periods.at(0).experiments.at(0);
    const auto& ranges = experiment.massRanges;
    const auto voltages = orvanel::VoltagesOf(ranges.at(0).compoundParameters, model_);
    const auto selected =
        orvanel::Isolated(orvanel::SprayedBeam(sources, model_, experiment.polarity, voltages), model_,
                          model_.q1Windows[experiment.q1Resolution], experiment.firstPrecursor);
    const auto fragments = orvanel::Dissociated(selected, model_, voltages.ce, voltages.ces);
    std::vector<IonCount> ions;
    for (const auto& population : orvanel::Excited(fragments, model_, secondPrecursor, af2, 0))
        for (std::size_t i = 0; i < population.cps.size(); ++i) {
            const double mz = population.IsotopologueMz(i);
            if (mz < ranges.front().start || mz > ranges.back().stop) continue;
            ions.push_back({mz, population.cps[i] * population.source->Envelope(population.node).share[i], i == 0});
        }
    return ions;
}

double NoiseFree::Yield(const std::string& node, double ce) const {
    return tree_.Dissociate(precursor_, std::abs(ce)).byNode[tree_.IndexOf(node)];
}

double NoiseFree::SpreadYield(const std::string& node, double ce, double ces) const {
    const auto shares = tree_.Dissociate(precursor_, std::abs(ce), ces, model_.minimumCollisionEnergy);
    return shares.byNode[tree_.IndexOf(node)];
}

double NoiseFree::TransitionYield(double q3, double ce) const {
    constexpr std::size_t unitResolution = 1;
    const auto shares = tree_.Dissociate(precursor_, std::abs(ce));
    double yield = 0;
    for (std::size_t i = 0; i < tree_.Size(); ++i)
        yield += shares.byNode[i] *
                 orvanel::QuadrupoleTransmission(model_, model_.q1Windows[unitResolution], tree_.Node(i).mz - q3);
    return yield;
}

double NoiseFree::TransitionShare(double q3, double ce) const {
    const double left = 1 - tree_.Dissociate(precursor_, std::abs(ce)).lost;
    return left > 0 ? TransitionYield(q3, ce) / left : 0;
}

orvanel::MassSpecRecord MethodAt(const std::string& path) {
    const auto document = orvanel::ReadMethodFile(path);
    return document.MassSpec() == nullptr ? orvanel::MassSpecRecord{} : *document.MassSpec();
}

}  // namespace quality
