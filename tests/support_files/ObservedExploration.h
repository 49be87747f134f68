#pragma once

#include <vector>

#include "ports/DataExploration.h"
#include "tests/support_files/Observed.h"

/// What both kinds of data object have in common.
template <class Kind>
class ObservedDataObject : public Observed<Kind> {
  public:
    using Observed<Kind>::Observed;
    std::vector<double> GetXValues() const override { return this->Pass("GetXValues", &Kind::GetXValues); }
    std::vector<double> GetYValues() const override { return this->Pass("GetYValues", &Kind::GetYValues); }
    ports::AxisRange GetXAxisRange() const override { return this->Pass("GetXAxisRange", &Kind::GetXAxisRange); }
    ports::AxisRange GetYValueRange() const override { return this->Pass("GetYValueRange", &Kind::GetYValueRange); }
    void SetXValues(const std::vector<double>& values) override { this->Pass("SetXValues", &Kind::SetXValues, values); }
    void SetYValues(const std::vector<double>& values) override { this->Pass("SetYValues", &Kind::SetYValues, values); }
    void SetXAxisRange(const ports::AxisRange& range) override {
        this->Pass("SetXAxisRange", &Kind::SetXAxisRange, range);
    }
    void SetYValueRange(const ports::AxisRange& range) override {
        this->Pass("SetYValueRange", &Kind::SetYValueRange, range);
    }
    void ExploreSetDataFile(const std::string& path) override {
        this->Pass("ExploreSetDataFile", &Kind::ExploreSetDataFile, path);
    }
};

class ObservedChromatogramData : public ObservedDataObject<ports::ChromatogramData> {
    using Port = ports::ChromatogramData;

  public:
    using ObservedDataObject::ObservedDataObject;
    void ExploreLoadTIC(int sample, int period, int experiment) override {
        Pass("ExploreLoadTIC", &Port::ExploreLoadTIC, sample, period, experiment);
    }
    void ExploreLoadXIC(int sample, int period, int experiment, double massStart, double massStop) override {
        Pass("ExploreLoadXIC", &Port::ExploreLoadXIC, sample, period, experiment, massStart, massStop);
    }
    void ExploreLoadXICOverlay(int sample, int period, int experiment, int massNumber) override {
        Pass("ExploreLoadXICOverlay", &Port::ExploreLoadXICOverlay, sample, period, experiment, massNumber);
    }
    int ExplorePointCount() const override { return Pass("ExplorePointCount", &Port::ExplorePointCount); }
    double ExplorePointX(int point) const override { return Pass("ExplorePointX", &Port::ExplorePointX, point); }
    double ExplorePointY(int point) const override { return Pass("ExplorePointY", &Port::ExplorePointY, point); }
    void ExploreSortPoints(bool byX, bool ascending) override {
        Pass("ExploreSortPoints", &Port::ExploreSortPoints, byX, ascending);
    }
};

class ObservedSpectrumData : public ObservedDataObject<ports::SpectrumData> {
    using Port = ports::SpectrumData;

  public:
    using ObservedDataObject::ObservedDataObject;
    void ExploreLoadSpectrumByTime(int sample, int period, int experiment, float startSeconds,
                                   float stopSeconds) override {
        Pass("ExploreLoadSpectrumByTime", &Port::ExploreLoadSpectrumByTime, sample, period, experiment, startSeconds,
             stopSeconds);
    }
    void ExploreLoadSpectrumByCycle(int sample, int firstCycle, int lastCycle) override {
        Pass("ExploreLoadSpectrumByCycle", &Port::ExploreLoadSpectrumByCycle, sample, firstCycle, lastCycle);
    }
};

class ObservedSmoothingProcessor : public Observed<ports::SmoothingProcessor> {
  public:
    using Observed::Observed;
    void ExploreSmooth(ports::ChromatogramData& data, const ports::SmoothingParameters& parameters) override {
        calls_.Before("ExploreSmooth");
        Inner().ExploreSmooth(Unwrapped<ObservedChromatogramData>(data), parameters);
    }
};

class ObservedPeakList : public Observed<ports::PeakList> {
    using Port = ports::PeakList;

  public:
    using Observed::Observed;
    int ExplorePeakCount() const override { return Pass("ExplorePeakCount", &Port::ExplorePeakCount); }
    int ExploreFindHighestInRange(double lowMz, double highMz) const override {
        return Pass("ExploreFindHighestInRange", &Port::ExploreFindHighestInRange, lowMz, highMz);
    }
    int ExploreFindNearest(double mz, double tolerance) const override {
        return Pass("ExploreFindNearest", &Port::ExploreFindNearest, mz, tolerance);
    }
    double ExplorePeakAttribute(int peak, int attribute) const override {
        return Pass("ExplorePeakAttribute", &Port::ExplorePeakAttribute, peak, attribute);
    }
    double ExplorePeakCentroid(int peak, int which) const override {
        return Pass("ExplorePeakCentroid", &Port::ExplorePeakCentroid, peak, which);
    }
};

class ObservedDataExploration : public Observed<ports::DataExploration> {
    using Port = ports::DataExploration;

  public:
    using Observed::Observed;
    std::unique_ptr<ports::ChromatogramData> CreateChromatogramData() override {
        return Wrap<ObservedChromatogramData>("ChromatogramData",
                                              Pass("CreateChromatogramData", &Port::CreateChromatogramData));
    }
    std::unique_ptr<ports::SpectrumData> CreateSpectrumData() override {
        return Wrap<ObservedSpectrumData>("SpectrumData", Pass("CreateSpectrumData", &Port::CreateSpectrumData));
    }
    std::unique_ptr<ports::SmoothingProcessor> CreateSmoothingProcessor() override {
        return Wrap<ObservedSmoothingProcessor>("SmoothingProcessor",
                                                Pass("CreateSmoothingProcessor", &Port::CreateSmoothingProcessor));
    }
    std::unique_ptr<ports::PeakList> ExplorePeakList(const std::string& dataFilePath, int sample,
                                                     const ports::SpectrumData& spectrum) override {
        calls_.Before("ExplorePeakList", dataFilePath, sample);
        return Wrap<ObservedPeakList>(
            "PeakList", Inner().ExplorePeakList(dataFilePath, sample, Unwrapped<const ObservedSpectrumData>(spectrum)));
    }
};
