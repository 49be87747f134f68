// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "bench/quality/Findings.h"

namespace quality {

/// What a page shows of one run.
struct Section {
    std::string heading;
    std::string html;
};

/// Breakdown curves with the chosen collision energies, ramps and spectra with what was chosen, of a run that was
/// judged.
Section SectionOf(WholeRun& run, const Findings& findings);

/// A page that needs nothing beside it. @param table plain text
std::string PageText(const std::string& table, const std::vector<Section>& sections);

}  // namespace quality
