// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <vector>

namespace ports {

struct AxisRange {
    double minimum = 0;
    double maximum = 0;
    friend bool operator==(const AxisRange&, const AxisRange&) = default;
};

/// Data that a graph can show: points with an x and a y, and the ranges of both axes.
///
/// A chromatogram's x is minutes, or the ramped value where the experiment ramps one; a spectrum's x is m/z in Da.
/// y is intensity in cps. Both arrays have the same length. Values are handed over as copies. The caller owns the
/// handle. Every operation throws HostError on failure. One thread only.
class DataObject {
  public:
    virtual ~DataObject() = default;

    virtual std::vector<double> GetXValues() const = 0;
    virtual std::vector<double> GetYValues() const = 0;
    virtual AxisRange GetXAxisRange() const = 0;
    virtual AxisRange GetYValueRange() const = 0;

    virtual void SetXValues(const std::vector<double>& values) = 0;
    virtual void SetYValues(const std::vector<double>& values) = 0;
    virtual void SetXAxisRange(const AxisRange& range) = 0;
    virtual void SetYValueRange(const AxisRange& range) = 0;

    /// @param path full path of a data file, UTF-8; the file is opened by the first load
    virtual void ExploreSetDataFile(const std::string& path) = 0;
};

/// Samples count from 1, periods and experiments from 0, point numbers from 1.
class ChromatogramData : public DataObject {
  public:
    virtual void ExploreLoadTIC(int sample, int period, int experiment) = 0;
    /// The sum over m/z from massStart to massStop, both included.
    virtual void ExploreLoadXIC(int sample, int period, int experiment, double massStart, double massStop) = 0;
    /// @param massNumber the position in the experiment's list of masses or transitions, counted from 0
    virtual void ExploreLoadXICOverlay(int sample, int period, int experiment, int massNumber) = 0;

    virtual int ExplorePointCount() const = 0;
    virtual double ExplorePointX(int point) const = 0;
    virtual double ExplorePointY(int point) const = 0;
    /// Sorts the points in place; points with equal keys keep their order.
    virtual void ExploreSortPoints(bool byX, bool ascending) = 0;
};

class SpectrumData : public DataObject {
  public:
    /// The mean of the spectra between the two times (both included, with half a cycle of tolerance).
    /// @param startSeconds, stopSeconds the chromatogram's x times 60, whatever that x is
    virtual void ExploreLoadSpectrumByTime(int sample, int period, int experiment, float startSeconds,
                                           float stopSeconds) = 0;
    /// The mean of the spectra of these cycles, counted from 1, both included.
    virtual void ExploreLoadSpectrumByCycle(int sample, int firstCycle, int lastCycle) = 0;
};

struct SmoothingParameters {};  ///< the host's defaults: one pass of (1, 2, 1)/4 in x order, ends kept

class SmoothingProcessor {
  public:
    virtual ~SmoothingProcessor() = default;
    /// Applies one smoothing pass in place.
    virtual void ExploreSmooth(ChromatogramData& data, const SmoothingParameters& parameters) = 0;
};

/// The peaks of one spectrum, numbered from 1 in order of m/z. A number of 0 means "no peak".
class PeakList {
  public:
    virtual ~PeakList() = default;

    static constexpr int attributeMz = 0;
    static constexpr int attributeCharge = 3;         ///< 0 when the charge is not known
    static constexpr int attributeArea = 4;           ///< cps times Da
    static constexpr int attributeSignalToNoise = 5;  ///< height by the background's there; 0 where none is seen
    static constexpr int attributeIsotopeMarker = 8;  ///< 1 for a peak taken as monoisotopic, else 0
    static constexpr int centroidMz = 0;
    static constexpr int centroidIntensity = 1;

    virtual int ExplorePeakCount() const = 0;
    /// @return the number of the most intense peak with m/z between the two limits, both included; 0 when there is none
    virtual int ExploreFindHighestInRange(double lowMz, double highMz) const = 0;
    /// @return the number of the peak nearest to the m/z within the tolerance; 0 when there is none
    virtual int ExploreFindNearest(double mz, double tolerance) const = 0;
    virtual double ExplorePeakAttribute(int peak, int attribute) const = 0;
    virtual double ExplorePeakCentroid(int peak, int which) const = 0;
};

/// The host's data-exploration library.
class DataExploration {
  public:
    virtual ~DataExploration() = default;

    virtual std::unique_ptr<ChromatogramData> CreateChromatogramData() = 0;
    virtual std::unique_ptr<SpectrumData> CreateSpectrumData() = 0;
    virtual std::unique_ptr<SmoothingProcessor> CreateSmoothingProcessor() = 0;
    /// @param spectrum a loaded spectrum of that file
    virtual std::unique_ptr<PeakList> ExplorePeakList(const std::string& dataFilePath, int sample,
                                                      const SpectrumData& spectrum) = 0;
};

}  // namespace ports
