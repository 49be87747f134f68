// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace veltra {

/// One centroided peak.
struct clsItem_Peak {
    double CentroidIntensity = 0;  ///< cps
    double CentroidMass = 0;       ///< m/z in Da
};

}  // namespace veltra
