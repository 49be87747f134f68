// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz/Fuzz.h"
#include "orvanel/config/OrvanelConfig.h"
#include "support/Paths.h"

void fuzz::Try(std::string_view input) {
    const std::string path = FileWith("Orvanel.ini", input);
    const auto config = ReadOrRefuse(path, [&] { return orvanel::ReadOrvanelConfig(path, Shipped("")); });
    if (!config) return;
    Require(config->modelCode >= 1 && config->noiseLevel >= 0 && config->noiseLevel <= 100, "values are in range");
    Require(config->clockFactor == 0 || config->clockFactor >= 0.1, "the clock runs, or is asked to stand");
    Require(config->sample.size() <= 20, "so many compounds can be sprayed");
    for (const auto& sample : config->sample)
        Require(sample.amount > 0 && !sample.compound.empty(), "a compound has name and amount");
    Require(!config->dataLocation.empty(), "data have a place");
}
