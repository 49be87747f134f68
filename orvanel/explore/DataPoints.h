// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orvanel/data/DataReader.h"
#include "ports/DataExploration.h"

namespace orvanel {

/// The points and axis ranges behind a data handle, and the file it loads from. A range is minimum and maximum of its
/// values, 0 to 0 without any, until it is set by hand; new values set it anew.
class DataPoints {
  public:
    explicit DataPoints(std::shared_ptr<DataFileCache> files) : files_(std::move(files)) {}

    void SetFile(const std::string& path) { path_ = path; }
    /// @throws ports::HostError when no file was set or it cannot be read
    std::shared_ptr<const DataFileContent> Open() const;

    void SetX(std::vector<double> values);
    void SetY(std::vector<double> values);
    /// @throws ports::HostError when there are not as many y values as x values
    void RequirePairs() const;

    std::vector<double> x;
    std::vector<double> y;
    ports::AxisRange xRange;
    ports::AxisRange yRange;

  private:
    std::shared_ptr<DataFileCache> files_;
    std::string path_;
};

/// The part of a data handle that chromatograms and spectra have in common.
template <class Interface>
class DataHandle : public Interface {
  public:
    explicit DataHandle(std::shared_ptr<DataFileCache> files) : points_(std::move(files)) {}

    std::vector<double> GetXValues() const override { return points_.x; }
    std::vector<double> GetYValues() const override { return points_.y; }
    ports::AxisRange GetXAxisRange() const override { return points_.xRange; }
    ports::AxisRange GetYValueRange() const override { return points_.yRange; }
    void SetXValues(const std::vector<double>& values) override { points_.SetX(values); }
    void SetYValues(const std::vector<double>& values) override { points_.SetY(values); }
    void SetXAxisRange(const ports::AxisRange& range) override { points_.xRange = range; }
    void SetYValueRange(const ports::AxisRange& range) override { points_.yRange = range; }
    void ExploreSetDataFile(const std::string& path) override { points_.SetFile(path); }

  protected:
    DataPoints points_;
};

/// @throws ports::HostError unless this is sample 1, period 0, experiment 0
void RequireExperiment(int sample, int period, int experiment);

}  // namespace orvanel
