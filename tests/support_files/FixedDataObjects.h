// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ports/DataExploration.h"

/// Points and ranges that a test sets; loading nothing.
template <class Kind>
class FixedDataObject : public Kind {
  public:
    FixedDataObject() = default;
    FixedDataObject(ports::AxisRange ofX, ports::AxisRange ofY) : xRange(ofX), yRange(ofY) {}
    FixedDataObject(std::vector<double> xValues, std::vector<double> yValues)
        : x(std::move(xValues)), y(std::move(yValues)) {}

    std::vector<double> GetXValues() const override { return x; }
    std::vector<double> GetYValues() const override { return y; }
    ports::AxisRange GetXAxisRange() const override { return xRange; }
    ports::AxisRange GetYValueRange() const override { return yRange; }
    void SetXValues(const std::vector<double>& values) override { x = values; }
    void SetYValues(const std::vector<double>& values) override { y = values; }
    void SetXAxisRange(const ports::AxisRange& range) override { xRange = range; }
    void SetYValueRange(const ports::AxisRange& range) override { yRange = range; }
    void ExploreSetDataFile(const std::string&) override { NotHere(); }

    std::vector<double> x;
    std::vector<double> y;
    ports::AxisRange xRange;
    ports::AxisRange yRange;

  protected:
    [[noreturn]] static void NotHere() { throw std::logic_error("a fixed data object loads no file"); }
};

class FixedSpectrum : public FixedDataObject<ports::SpectrumData> {
  public:
    using FixedDataObject::FixedDataObject;
    void ExploreLoadSpectrumByTime(int, int, int, float, float) override { NotHere(); }
    void ExploreLoadSpectrumByCycle(int, int, int) override { NotHere(); }
};

class FixedChromatogram : public FixedDataObject<ports::ChromatogramData> {
  public:
    using FixedDataObject::FixedDataObject;
    void ExploreLoadTIC(int, int, int) override { NotHere(); }
    void ExploreLoadXIC(int, int, int, double, double) override { NotHere(); }
    void ExploreLoadXICOverlay(int, int, int, int) override { NotHere(); }
    int ExplorePointCount() const override { return static_cast<int>(x.size()); }
    double ExplorePointX(int point) const override { return x.at(static_cast<std::size_t>(point - 1)); }
    double ExplorePointY(int point) const override { return y.at(static_cast<std::size_t>(point - 1)); }
    void ExploreSortPoints(bool, bool) override { NotHere(); }
};
