// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/explore/DataPoints.h"

#include <algorithm>

#include "orvanel/data/DataErrors.h"
#include "ports/HostError.h"

namespace orvanel {
namespace {

ports::AxisRange RangeOf(const std::vector<double>& values) {
    if (values.empty()) return {};
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    return {*lowest, *highest};
}

}  // namespace

std::shared_ptr<const DataFileContent> DataPoints::Open() const {
    if (path_.empty()) throw ports::HostError(exploreNoDataFile, "No data file was set, so nothing can be loaded");
    return files_->Open(path_);
}

void DataPoints::SetX(std::vector<double> values) {
    x = std::move(values);
    xRange = RangeOf(x);
}

void DataPoints::SetY(std::vector<double> values) {
    y = std::move(values);
    yRange = RangeOf(y);
}

void DataPoints::RequirePairs() const {
    if (x.size() != y.size())
        throw ports::HostError(exploreUnequalArrays, "There are " + std::to_string(x.size()) + " x values but " +
                                                         std::to_string(y.size()) + " y values");
}

void RequireExperiment(int sample, int period, int experiment) {
    if (sample != 1 || period != 0 || experiment != 0)
        throw ports::HostError(exploreNoSuchExperiment,
                               "A data file holds sample 1, period 0, experiment 0 only; asked for were sample " +
                                   std::to_string(sample) + ", period " + std::to_string(period) + ", experiment " +
                                   std::to_string(experiment));
}

}  // namespace orvanel
