// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/quality/NoiseFree.h"

#include <cmath>

#include "orvanel/CompoundFolder.h"
#include "orvanel/data/DataFile.h"
#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/instrument/Simulator.h"
#include "orvanel/instrument/Transmission.h"
#include "orvanel/methods/MethodFile.h"
#include "support/Paths.h"

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

NoiseFree::NoiseFree(WholeRun& run)
    : run_(run),
      elements_(orvanel::OpenElementTableFile(orvanel::ElementTablePath(run.config.appLocation))),
      model_(orvanel::LoadInstrumentModels(orvanel::ModelsFolder(run.config.appLocation)).at(run.config.modelCode)),
      sample_(SampleOf(run.config, *elements_)),
      tree_(Ion()),
      precursor_(tree_.IndexOf(Ion().root)) {}

orvanel::AcquiredData NoiseFree::Acquire(const orvanel::MassSpecRecord& method) const {
    orvanel::AcquisitionContext context;
    context.noiseLevel = 0;
    context.countingStatistics = false;
    return orvanel::Acquire(method, model_, sample_, *elements_, context);
}

std::string NoiseFree::AcquireToFile(const std::string& methodPath) const {
    auto data = Acquire(MethodAt(methodPath));
    data.startTimestamp = "2024-05-13T15:45:12Z";
    const std::string path =
        support::JoinPath(run_.run.results->VeskOutputFilePath, support::FileNameOf(methodPath) + "_noise_free.vesk");
    orvanel::WriteDataFile(path, data);
    return path;
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

orvanel::MassSpecRecord MethodAt(const std::string& path) {
    const auto document = orvanel::ReadMethodFile(path);
    return document.MassSpec() == nullptr ? orvanel::MassSpecRecord{} : *document.MassSpec();
}

}  // namespace quality
