// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "ports/DataExploration.h"
#include "tests/support_files/Observed.h"

/// What both kinds of data object have in common.
template <class Kind>
class ObservedDataObject : public Observed<Kind> {
  public:
    using Port = Kind;
    using Observed<Kind>::Observed;
    VELTRA_OBSERVED(std::vector<double>, GetXValues, (), const override)
    VELTRA_OBSERVED(std::vector<double>, GetYValues, (), const override)
    VELTRA_OBSERVED(ports::AxisRange, GetXAxisRange, (), const override)
    VELTRA_OBSERVED(ports::AxisRange, GetYValueRange, (), const override)
    VELTRA_OBSERVED(void, SetXValues, (const std::vector<double>& values), override, values)
    VELTRA_OBSERVED(void, SetYValues, (const std::vector<double>& values), override, values)
    VELTRA_OBSERVED(void, SetXAxisRange, (const ports::AxisRange& range), override, range)
    VELTRA_OBSERVED(void, SetYValueRange, (const ports::AxisRange& range), override, range)
    VELTRA_OBSERVED(void, ExploreSetDataFile, (const std::string& path), override, path)
};

class ObservedChromatogramData : public ObservedDataObject<ports::ChromatogramData> {
  public:
    using ObservedDataObject::ObservedDataObject;
    VELTRA_OBSERVED(void, ExploreLoadTIC, (int sample, int period, int experiment), override, sample, period,
                    experiment)
    VELTRA_OBSERVED(void, ExploreLoadXIC, (int sample, int period, int experiment, double massStart, double massStop),
                    override, sample, period, experiment, massStart, massStop)
    VELTRA_OBSERVED(void, ExploreLoadXICOverlay, (int sample, int period, int experiment, int massNumber), override,
                    sample, period, experiment, massNumber)
    VELTRA_OBSERVED(int, ExplorePointCount, (), const override)
    VELTRA_OBSERVED(double, ExplorePointX, (int point), const override, point)
    VELTRA_OBSERVED(double, ExplorePointY, (int point), const override, point)
    VELTRA_OBSERVED(void, ExploreSortPoints, (bool byX, bool ascending), override, byX, ascending)
};

class ObservedSpectrumData : public ObservedDataObject<ports::SpectrumData> {
  public:
    using ObservedDataObject::ObservedDataObject;
    VELTRA_OBSERVED(void, ExploreLoadSpectrumByTime,
                    (int sample, int period, int experiment, float startSeconds, float stopSeconds), override, sample,
                    period, experiment, startSeconds, stopSeconds)
    VELTRA_OBSERVED(void, ExploreLoadSpectrumByCycle, (int sample, int firstCycle, int lastCycle), override, sample,
                    firstCycle, lastCycle)
};

class ObservedSmoothingProcessor : public Observed<ports::SmoothingProcessor> {
  public:
    using Observed::Observed;
    void ExploreSmooth(ports::ChromatogramData& data, const ports::SmoothingParameters& parameters) override {
        calls_.Before("ExploreSmooth");
        calls_.Answer("ExploreSmooth",
                      [&] { Inner().ExploreSmooth(Unwrapped<ObservedChromatogramData>(data), parameters); });
    }
};

class ObservedPeakList : public Observed<ports::PeakList> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(int, ExplorePeakCount, (), const override)
    VELTRA_OBSERVED(int, ExploreFindHighestInRange, (double lowMz, double highMz), const override, lowMz, highMz)
    VELTRA_OBSERVED(int, ExploreFindNearest, (double mz, double tolerance), const override, mz, tolerance)
    VELTRA_OBSERVED(double, ExplorePeakAttribute, (int peak, int attribute), const override, peak, attribute)
    VELTRA_OBSERVED(double, ExplorePeakCentroid, (int peak, int which), const override, peak, which)
};

class ObservedDataExploration : public Observed<ports::DataExploration> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED_HANDLE(ChromatogramData, CreateChromatogramData, ())
    VELTRA_OBSERVED_HANDLE(SpectrumData, CreateSpectrumData, ())
    VELTRA_OBSERVED_HANDLE(SmoothingProcessor, CreateSmoothingProcessor, ())
    std::unique_ptr<ports::PeakList> ExplorePeakList(const std::string& dataFilePath, int sample,
                                                     const ports::SpectrumData& spectrum) override {
        calls_.Before("ExplorePeakList", dataFilePath, sample);
        return Wrap<ObservedPeakList>("PeakList", calls_.Answer("ExplorePeakList", [&] {
            return Inner().ExplorePeakList(dataFilePath, sample, Unwrapped<const ObservedSpectrumData>(spectrum));
        }));
    }
};
