// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support_files/TunedProject.h"

#include <algorithm>
#include <cmath>

#include "orvanel/CompoundFolder.h"
#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/methods/MethodFile.h"
#include "support/NumberText.h"

namespace {

orvanel::Compound CompoundOf(const NewProject& project) {
    const auto elements = orvanel::OpenElementTableFile(orvanel::ElementTablePath(VELTRA_APP_LOCATION));
    return orvanel::LoadCompound(orvanel::FindCompoundFile(VELTRA_APP_LOCATION, project.name), *elements);
}

}  // namespace

void TuneStarterMethod(const NewProject& project, std::int32_t modelCode) {
    const auto ion = CompoundOf(project);
    const auto model = orvanel::LoadInstrumentModels(orvanel::ModelsFolder(VELTRA_APP_LOCATION)).at(modelCode);
    const double sign = ion.polarity == 1 ? -1 : 1;
    const auto below = [&](double best, double offset) {
        return static_cast<float>(sign * std::max(std::round(best - offset), 0.0));
    };
    auto document = orvanel::ReadMethodFile(project.facts.starterMethodPath);
    for (auto& device : document.devices) {
        if (!device.massSpec) continue;
        for (auto& parameter : device.massSpec->periods.at(0).experiments.at(0).massRanges.at(0).compoundParameters) {
            if (parameter.id == "DP") parameter.value = below((ion.dpLow + ion.dpHigh) / 2, 30);
            if (parameter.id == "CEP") parameter.value = below(model.cepOffset + model.cepSlope * ion.Root().mz, 10);
        }
    }
    orvanel::WriteMethodFile(project.facts.starterMethodPath, document);
}

void TuneSettings(const NewProject& project, veltra::clsInfo_Settings& settings) {
    const auto ion = CompoundOf(project);
    const auto whole = [](double value) { return static_cast<float>(support::RoundHalfEven(value, 0)); };
    double lightest = ion.Root().mz;
    for (const auto& [name, node] : ion.nodes)
        lightest = std::min(lightest, node.mz);
    settings.Advanced_EPIMassStart = settings.Advanced_MS3MassStart = whole(std::max(50.0, lightest - 20));
    settings.Advanced_Q1MIDPRampStop = whole(std::clamp(std::ceil(ion.dpHigh / 10) * 10, 100.0, 200.0));
    double ce = 0;
    for (const auto& planted : ion.truth)
        ce += planted.ce / static_cast<double>(ion.truth.size());
    if (ce > 0) settings.Advanced_EPI_CE = whole(ce);
}
