// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <cmath>

#include "fuzz/Fuzz.h"
#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/instrument/Simulator.h"
#include "orvanel/methods/MethodFile.h"
#include "orvanel/methods/Ramp.h"
#include "orvanel/methods/Validation.h"

namespace {

const orvanel::InstrumentModel& Model() {
    static const auto model = orvanel::LoadInstrumentModel(fuzz::Shipped("models/orvanel_lit.ini"));
    return model;
}

/// A method that may be queued ends, and its ramp has a value for every cycle.
void CheckQueued(const orvanel::MassSpecRecord& method) {
    try {
        orvanel::CheckSubmittable(Model(), method);
    } catch (const ports::HostError&) {
        return;
    }
    const auto& period = method.periods.front();
    const double durationMs = orvanel::ExpectedDurationMs(method, Model());
    fuzz::Require(std::isfinite(durationMs) && durationMs > 0, "the duration of a method that is queued is known");
    if (!period.ramp) return;
    for (const double value : orvanel::RampValues(*period.ramp, period.cycles))
        fuzz::Require(std::isfinite(value), "a ramp's values are numbers");
}

}  // namespace

void fuzz::Try(std::string_view input) {
    const std::string path = FileWith("m.xmt", input);
    const auto method = ReadOrRefuse(path, [&] { return orvanel::ReadMethodFile(path); });
    if (!method) return;
    const std::string first = PathOf("first.xmt");
    const std::string second = PathOf("second.xmt");
    orvanel::WriteMethodFile(first, *method);
    orvanel::WriteMethodFile(second, orvanel::ReadMethodFile(first));
    Require(BytesOf(first) == BytesOf(second), "a method that was read and written reads the same");
    if (method->MassSpec() != nullptr) CheckQueued(*method->MassSpec());
}
