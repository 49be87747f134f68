// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ports/AcquisitionMethods.h"
#include "ports/HostError.h"
#include "tests/support_files/FakeHandle.h"

/// An acquisition method as FakeHost keeps it: one mass-spectrometer method of one period with one experiment.
struct FakeMethod {
    using Parameters = std::vector<std::pair<std::string, float>>;
    struct Range {
        double start = 0, stop = 0, step = 0, dwellTimeMs = 0;
        Parameters parameters;

        float Value(const std::string& id) const {
            for (const auto& [name, value] : parameters)
                if (name == id) return value;
            throw ports::HostError(404, "no parameter " + id);
        }
        friend bool operator==(const Range&, const Range&) = default;
    };
    struct Ramp {
        std::string id;
        float start = 0, stop = 0, step = 0;
        friend bool operator==(const Ramp&, const Ramp&) = default;
    };

    std::vector<bool> devicesAreMassSpec{false, true};
    int operatingMode = 1;
    double expectedDurationMs = 60000;
    int scanType = 0, polarity = 0, q1Resolution = 1, scansToSum = 1;
    double scanRate = 0, fixedFillTimeMs = 0, excitationTimeMs = 0;
    double firstPrecursor = 0, secondPrecursor = 0;
    int q0Trapping = 0, dynamicFillTime = 1;
    std::int32_t cycles = 1;
    std::optional<Ramp> ramp;
    Parameters sourceGas{{"CUR", 20.0F}, {"GS1", 30.0F}};
    /// What a new range starts with.
    Parameters defaults{{"DP", 50.0F}, {"EP", 10.0F}, {"CEP", 15.5F}, {"CE", 35.0F}, {"CES", 5.0F}, {"AF2", 0.125F}};
    std::vector<Range> ranges{{100, 200, 0.1, 10, defaults}};
};

/// What all handles of the fake's method service share.
struct FakeMethodStore {
    std::map<std::string, FakeMethod> methods;  ///< by path
    int currentOperatingMode = 1;
    double highestMassDa = 950;  ///< where the optimisation of a mass range clips it
};

namespace fake {

struct Document {
    FakeMethodStore& store;
    FakeMethod method;
};
using DocumentHandle = std::shared_ptr<Document>;

/// What holds an open document, such as a handle of one of its parts.
template <class Port>
class PartOf : public Port {
  public:
    explicit PartOf(DocumentHandle document) : document_(std::move(document)) {}

  protected:
    FakeMethod& Method() const { return document_->method; }
    const DocumentHandle document_;
};

class ParameterTable : public PartOf<ports::ParameterTable> {
  public:
    /// @param range -1 for the source/gas table
    ParameterTable(DocumentHandle document, int range) : PartOf(std::move(document)), range_(range) {}

    int HostGetParameterCount() const override { return static_cast<int>(Table().size()); }
    int HostFindParameter(const std::string& id) const override {
        for (int i = 0; i < HostGetParameterCount(); ++i)
            if (At(i).first == id) return i;
        return -1;
    }
    std::string HostGetParameterId(int index) const override { return At(index).first; }
    float HostGetParameterValue(int index) const override { return At(index).second; }
    void HostSetParameterValue(int index, float value) override { At(index).second = value; }

  private:
    FakeMethod::Parameters& Table() const {
        return range_ < 0 ? Method().sourceGas : Method().ranges.at(static_cast<std::size_t>(range_)).parameters;
    }
    std::pair<std::string, float>& At(int index) const { return Table().at(static_cast<std::size_t>(index)); }
    int range_;
};

class MassRange : public PartOf<ports::MassRange> {
  public:
    MassRange(DocumentHandle document, int index) : PartOf(std::move(document)), index_(index) { Range(); }

    void HostSetMassRange(double start, double stop, double step) override {
        Range().start = start;
        Range().stop = stop;
        Range().step = step;
    }
    void HostSetDwellTime(double dwellTimeMs) override { Range().dwellTimeMs = dwellTimeMs; }
    VELTRA_FAKE_HANDLE(ParameterTable, HostGetParameterTable, (), document_, index_)

  private:
    FakeMethod::Range& Range() { return Method().ranges.at(static_cast<std::size_t>(index_)); }
    int index_;
};

class Experiment : public PartOf<ports::Experiment> {
  public:
    using PartOf::PartOf;
    void HostSetScanType(int scanType) override { Method().scanType = scanType; }
    void HostResetExperiment() override {
        if (!Method().ranges.empty()) Method().defaults = Method().ranges.front().parameters;
        Method().ranges.clear();
        Method().firstPrecursor = Method().secondPrecursor = 0;
    }
    void HostSetPolarity(int polarity) override { Method().polarity = polarity; }
    void HostSetQ1Resolution(int resolution) override { Method().q1Resolution = resolution; }
    int HostGetMassRangeCount() const override { return static_cast<int>(Method().ranges.size()); }
    int HostAddMassRange() override {
        Method().ranges.push_back({0, 0, 0, 0, Method().defaults});
        return HostGetMassRangeCount() - 1;
    }
    VELTRA_FAKE_HANDLE(MassRange, HostGetMassRange, (int index), document_, index)
    void HostSetFirstPrecursor(double mass) override { Method().firstPrecursor = mass; }
    VELTRA_FAKE_HANDLE(ParameterTable, HostGetSourceGasTable, (), document_, -1)
};

class ExtendedExperiment : public PartOf<ports::ExtendedExperiment> {
  public:
    using PartOf::PartOf;
    void HostSetScansToSum(int count) override { Method().scansToSum = count; }
    void HostSetScanRate(double scanRate) override { Method().scanRate = scanRate; }
    void HostSetFixedFillTime(double fillTimeMs) override { Method().fixedFillTimeMs = fillTimeMs; }
    void HostSetQ0Trapping(int on) override { Method().q0Trapping = on; }
    void HostSetDynamicFillTime(int on) override { Method().dynamicFillTime = on; }
    void HostSetSecondPrecursor(double mass) override { Method().secondPrecursor = mass; }
    void HostOptimizeMassRange() override {
        for (auto& range : Method().ranges)
            range.stop = std::min(range.stop, document_->store.highestMassDa);
    }
    void HostSetExcitationTime(double excitationTimeMs) override { Method().excitationTimeMs = excitationTimeMs; }
};

class Period : public PartOf<ports::Period> {
  public:
    using PartOf::PartOf;
    VELTRA_FAKE_HANDLE(Experiment, HostGetExperiment, (int), document_)
    VELTRA_FAKE_HANDLE(ExtendedExperiment, HostGetExtendedExperiment, (int), document_)
    void HostResetPeriodParameters() override { Method().ramp.reset(); }
    void HostSetRampParameter(const std::string& id, float start, float stop, float step) override {
        Method().ramp = FakeMethod::Ramp{id, start, stop, step};
    }
    void HostSetCycles(std::int32_t count) override { Method().cycles = count; }
};

class MassSpecMethod : public PartOf<ports::MassSpecMethod> {
  public:
    using PartOf::PartOf;
    VELTRA_FAKE_HANDLE(Period, HostGetPeriod, (int), document_)
    int HostGetMethodOperatingMode() const override { return Method().operatingMode; }
    int HostGetCurrentOperatingMode() const override { return document_->store.currentOperatingMode; }
    double HostGetExpectedDuration() const override { return Method().expectedDurationMs; }
};

class DeviceMethod : public PartOf<ports::DeviceMethod> {
  public:
    DeviceMethod(DocumentHandle document, bool isMassSpec) : PartOf(std::move(document)), isMassSpec_(isMassSpec) {}

    bool IsMassSpecMethod() const override { return isMassSpec_; }
    std::unique_ptr<ports::MassSpecMethod> AsMassSpecMethod() override {
        if (!isMassSpec_) throw ports::HostError(13, "another device's method");
        return std::make_unique<MassSpecMethod>(document_);
    }

  private:
    bool isMassSpec_;
};

class AcquisitionMethod : public PartOf<ports::AcquisitionMethod> {
  public:
    using PartOf::PartOf;
    std::unique_ptr<ports::DeviceMethod> HostEnumDeviceMethods(int index) override {
        const auto& devices = Method().devicesAreMassSpec;
        if (index >= static_cast<int>(devices.size())) return nullptr;
        return std::make_unique<DeviceMethod>(document_, devices[static_cast<std::size_t>(index)]);
    }
    void HostSaveMethodAs(const std::string& path, bool) override { document_->store.methods[path] = Method(); }
};

class AcquisitionService : public ports::AcquisitionService {
  public:
    explicit AcquisitionService(FakeMethodStore& store) : store_(store) {}

    std::unique_ptr<ports::AcquisitionMethod> HostOpenMethod(const std::string& path) override {
        const auto found = store_.methods.find(path);
        if (found == store_.methods.end()) throw ports::HostError(53, "no such method");
        return std::make_unique<AcquisitionMethod>(std::make_shared<Document>(Document{store_, found->second}));
    }

  private:
    FakeMethodStore& store_;
};

}  // namespace fake
