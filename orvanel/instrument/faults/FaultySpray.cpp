// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/faults/FaultySpray.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "orvanel/instrument/Random.h"

namespace orvanel {
namespace {

constexpr std::uint64_t dropoutStream = 0xD0;
constexpr double shortestDropoutS = 0.2;
constexpr double longestDropoutS = 1;
constexpr double blockS = 60;

}  // namespace

double DropoutShare(std::uint64_t seed, double perMinute, double fromS, double toS) {
    if (perMinute == 0) return 0;
    std::vector<std::pair<double, double>> dropouts;
    const double firstBlock = std::max(0.0, std::floor((fromS - longestDropoutS) / blockS));
    for (double block = firstBlock; block * blockS < toS; ++block) {
        Random random{seed, dropoutStream, static_cast<std::uint64_t>(block)};
        for (double left = random.Poisson(perMinute); left > 0; --left) {
            const double startS = (block + random.Uniform()) * blockS;
            const double endS = startS + shortestDropoutS + (longestDropoutS - shortestDropoutS) * random.Uniform();
            dropouts.emplace_back(startS, endS);
        }
    }
    std::sort(dropouts.begin(), dropouts.end());
    double interruptedS = 0;
    double coveredToS = fromS;
    for (const auto& [startS, endS] : dropouts) {
        const double clippedStartS = std::max(startS, coveredToS);
        const double clippedEndS = std::min(endS, toS);
        if (clippedEndS <= clippedStartS) continue;
        interruptedS += clippedEndS - clippedStartS;
        coveredToS = clippedEndS;
    }
    return interruptedS / (toS - fromS);
}

void FaultySpray::StartCycle(double instrumentTimeS, double rampShare) {
    nowS_ = instrumentTimeS;
    lost_ = faults_.signalLoss != 0 && rampShare >= faults_.signalLoss;
}

double FaultySpray::Advance(double stepS) {
    const double steady = spray_.Advance(stepS);
    const double fromS = nowS_;
    nowS_ += stepS;
    if (lost_) return 0;
    return steady * (1 - DropoutShare(seed_, faults_.dropoutsPerMinute, fromS, nowS_));
}

}  // namespace orvanel
