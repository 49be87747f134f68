// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/ExperimentPorts.h"

#include <algorithm>
#include <cmath>

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/instrument/Timing.h"
#include "orvanel/methods/MethodFile.h"
#include "orvanel/methods/Validation.h"
#include "ports/HostError.h"
#include "support/NumberText.h"

namespace orvanel {

namespace {

class MassRangeHandle : public ports::MassRange {
  public:
    MassRangeHandle(ExperimentPlace place, int index) : place_(std::move(place)), index_(index) { Find(); }

    void HostSetMassRange(double start, double stop, double step) override {
        MassRangeRecord& range = Find();
        CheckMassRange(place_.Model(), place_.Find().scanType, start, stop, step);
        range.start = start;
        range.stop = stop;
        range.step = step;
        place_.MarkChanged();
    }
    void HostSetDwellTime(double dwellTimeMs) override {
        MassRangeRecord& range = Find();
        CheckDwellTime(dwellTimeMs);
        range.dwellTimeMs = dwellTimeMs;
        place_.MarkChanged();
    }
    std::unique_ptr<ports::ParameterTable> HostGetParameterTable() override {
        Find();
        return std::make_unique<DocumentParameterTable>(
            place_.method, [place = place_, index = index_]() -> std::vector<Parameter>& {
                return place.method->MassRange(place.device, place.period, place.experiment, index).compoundParameters;
            });
    }

  private:
    MassRangeRecord& Find() const {
        return place_.method->MassRange(place_.device, place_.period, place_.experiment, index_);
    }

    ExperimentPlace place_;
    int index_;
};

class ExperimentHandle : public ports::Experiment {
  public:
    explicit ExperimentHandle(ExperimentPlace place) : place_(std::move(place)) {}

    void HostSetScanType(int scanType) override {
        CheckScanType(place_.Model(), scanType);
        Change().scanType = scanType;
    }
    void HostResetExperiment() override {
        ExperimentRecord& experiment = Change();
        if (!experiment.massRanges.empty())
            experiment.newRangeParameters = experiment.massRanges.front().compoundParameters;
        experiment.massRanges.clear();
        experiment.firstPrecursor = 0;
        experiment.secondPrecursor = 0;
    }
    void HostSetPolarity(int polarity) override {
        CheckPolarity(polarity);
        Change().polarity = polarity;
    }
    void HostSetQ1Resolution(int resolution) override {
        CheckQ1Resolution(resolution);
        Change().q1Resolution = resolution;
    }
    int HostGetMassRangeCount() const override { return static_cast<int>(place_.Find().massRanges.size()); }
    int HostAddMassRange() override {
        ExperimentRecord& experiment = place_.Find();
        if (experiment.massRanges.size() >= maximumMassRanges)
            throw ports::HostError(errorNumber::impossibleValue, "The experiment has " +
                                                                     std::to_string(maximumMassRanges) +
                                                                     " mass ranges already, more cannot be added");
        MassRangeRecord range;
        range.compoundParameters = TableForNewRanges(experiment);
        experiment.massRanges.push_back(std::move(range));
        experiment.newRangeParameters.clear();  // from here on the first range's table is what further ones start with
        place_.MarkChanged();
        return HostGetMassRangeCount() - 1;
    }
    std::unique_ptr<ports::MassRange> HostGetMassRange(int index) override {
        return std::make_unique<MassRangeHandle>(place_, index);
    }
    void HostSetFirstPrecursor(double mass) override {
        CheckPrecursor(place_.Model(), mass);
        Change().firstPrecursor = mass;
    }
    std::unique_ptr<ports::ParameterTable> HostGetSourceGasTable() override {
        return std::make_unique<DocumentParameterTable>(
            place_.method, [place = place_]() -> std::vector<Parameter>& { return place.Find().sourceGas; });
    }

  private:
    ExperimentRecord& Change() {
        place_.MarkChanged();
        return place_.Find();
    }

    ExperimentPlace place_;
};

class ExtendedExperimentHandle : public ports::ExtendedExperiment {
  public:
    explicit ExtendedExperimentHandle(ExperimentPlace place) : place_(std::move(place)) {}

    void HostSetScansToSum(int count) override {
        CheckScansToSum(count);
        Change().scansToSum = count;
    }
    void HostSetScanRate(double scanRate) override {
        CheckScanRate(place_.Model(), place_.Find().scanType, scanRate);
        Change().scanRate = scanRate;
    }
    void HostSetFixedFillTime(double fillTimeMs) override {
        CheckFillTime(place_.Model(), fillTimeMs);
        Change().fixedFillTimeMs = fillTimeMs;
    }
    void HostSetQ0Trapping(int on) override {
        CheckFlag("Q0 trapping", on);
        Change().q0Trapping = on == 1;
    }
    void HostSetDynamicFillTime(int on) override {
        CheckFlag("Dynamic fill time", on);
        Change().dynamicFillTime = on == 1;
    }
    void HostSetSecondPrecursor(double mass) override {
        CheckPrecursor(place_.Model(), mass);
        Change().secondPrecursor = mass;
    }
    void HostOptimizeMassRange() override {
        ExperimentRecord& experiment = place_.Find();
        if (place_.method->unsavedChanges)
            throw ports::HostError(errorNumber::unsavedChanges,
                                   "The mass range of a changed method cannot be optimised, save the method first");
        if (!IsTrapScan(experiment.scanType)) return;
        auto ranges = experiment.massRanges;
        for (auto& range : ranges)
            range = OptimizedRange(place_.Model(), range);
        Change().massRanges = std::move(ranges);
    }
    void HostSetExcitationTime(double excitationTimeMs) override {
        CheckExcitationTime(excitationTimeMs);
        Change().excitationTimeMs = excitationTimeMs;
    }

  private:
    ExperimentRecord& Change() {
        place_.MarkChanged();
        return place_.Find();
    }

    ExperimentPlace place_;
};

}  // namespace

MassRangeRecord OptimizedRange(const InstrumentModel& model, MassRangeRecord range) {
    using support::GeneralText;
    const double start = std::max(range.start, model.trapMz.minimum);
    const double limit = std::min(range.stop, model.trapMz.maximum);
    const double wholeSteps = std::nearbyint((limit - start) / range.step);
    double stop = start + wholeSteps * range.step;
    if (stop > model.trapMz.maximum) stop -= range.step;
    if (!(range.step > 0 && stop > start))
        throw ports::HostError(errorNumber::notAcquirable,
                               "The mass range from " + GeneralText(range.start) + " to " + GeneralText(range.stop) +
                                   " Da by " + GeneralText(range.step) +
                                   " Da leaves nothing to scan within the trap's " + GeneralText(model.trapMz.minimum) +
                                   " to " + GeneralText(model.trapMz.maximum) + " Da, set another one");
    range.start = start;
    range.stop = stop;
    return range;
}

std::unique_ptr<ports::Experiment> CreateExperiment(const ExperimentPlace& place) {
    place.Find();
    return std::make_unique<ExperimentHandle>(place);
}

std::unique_ptr<ports::ExtendedExperiment> CreateExtendedExperiment(const ExperimentPlace& place) {
    place.Find();
    return std::make_unique<ExtendedExperimentHandle>(place);
}

}  // namespace orvanel
