// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/ScanConditions.h"

#include <cmath>

#include "orvanel/methods/Ramp.h"

namespace orvanel {

Voltages VoltagesOf(const std::vector<Parameter>& table, const InstrumentModel& model) {
    const auto absolute = [&table](const char* id) -> std::optional<double> {
        const auto value = FindParameter(table, id);
        if (!value) return std::nullopt;
        return std::fabs(DecimalValue(*value));
    };
    Voltages voltages;
    voltages.dp = absolute("DP").value_or(0);
    voltages.ep = absolute("EP").value_or(model.epOptimum);
    voltages.cep = absolute("CEP");
    voltages.ce = absolute("CE").value_or(0);
    voltages.ces = absolute("CES").value_or(0);
    voltages.af2 = absolute("AF2").value_or(0);
    return voltages;
}

}  // namespace orvanel
