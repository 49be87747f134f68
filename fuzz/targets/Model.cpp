// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz/Fuzz.h"
#include "orvanel/instrument/InstrumentModel.h"

void fuzz::Try(std::string_view input) {
    const std::string path = FileWith("m.ini", input);
    const auto model = ReadOrRefuse(path, [&] { return orvanel::LoadInstrumentModel(path); });
    if (!model) return;
    Require(model->code >= 1 && model->quadrupoleMz.minimum < model->quadrupoleMz.maximum, "a model can be told apart");
    for (const auto& [id, limits] : model->parameterLimits)
        Require(limits.minimum < limits.maximum, "a parameter can be set: " + id);
    for (const auto& [scanType, steps] : model->scanRates)
        for (const auto& step : steps) {
            Require(orvanel::FindScanRate(*model, scanType, step.rateText) != nullptr, "a scan rate is found by text");
            Require(step.rate >= 1 && step.stepDa > 0, "a scan ends");
        }
}
