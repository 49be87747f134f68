#pragma once

#include "ports/AcquisitionMethods.h"
#include "tests/support_files/Observed.h"

class ObservedParameterTable : public Observed<ports::ParameterTable> {
    using Port = ports::ParameterTable;

  public:
    using Observed::Observed;
    int HostGetParameterCount() const override { return Pass("HostGetParameterCount", &Port::HostGetParameterCount); }
    int HostFindParameter(const std::string& id) const override {
        return Pass("HostFindParameter", &Port::HostFindParameter, id);
    }
    std::string HostGetParameterId(int index) const override {
        return Pass("HostGetParameterId", &Port::HostGetParameterId, index);
    }
    float HostGetParameterValue(int index) const override {
        return Pass("HostGetParameterValue", &Port::HostGetParameterValue, index);
    }
    void HostSetParameterValue(int index, float value) override {
        Pass("HostSetParameterValue", &Port::HostSetParameterValue, index, value);
    }
};

class ObservedMassRange : public Observed<ports::MassRange> {
    using Port = ports::MassRange;

  public:
    using Observed::Observed;
    void HostSetMassRange(double start, double stop, double step) override {
        Pass("HostSetMassRange", &Port::HostSetMassRange, start, stop, step);
    }
    void HostSetDwellTime(double dwellTimeMs) override {
        Pass("HostSetDwellTime", &Port::HostSetDwellTime, dwellTimeMs);
    }
    std::unique_ptr<ports::ParameterTable> HostGetParameterTable() override {
        return Wrap<ObservedParameterTable>("ParameterTable",
                                            Pass("HostGetParameterTable", &Port::HostGetParameterTable));
    }
};

class ObservedExperiment : public Observed<ports::Experiment> {
    using Port = ports::Experiment;

  public:
    using Observed::Observed;
    void HostSetScanType(int scanType) override { Pass("HostSetScanType", &Port::HostSetScanType, scanType); }
    void HostResetExperiment() override { Pass("HostResetExperiment", &Port::HostResetExperiment); }
    void HostSetPolarity(int polarity) override { Pass("HostSetPolarity", &Port::HostSetPolarity, polarity); }
    void HostSetQ1Resolution(int resolution) override {
        Pass("HostSetQ1Resolution", &Port::HostSetQ1Resolution, resolution);
    }
    int HostGetMassRangeCount() const override { return Pass("HostGetMassRangeCount", &Port::HostGetMassRangeCount); }
    int HostAddMassRange() override { return Pass("HostAddMassRange", &Port::HostAddMassRange); }
    std::unique_ptr<ports::MassRange> HostGetMassRange(int index) override {
        return Wrap<ObservedMassRange>("MassRange", Pass("HostGetMassRange", &Port::HostGetMassRange, index));
    }
    void HostSetFirstPrecursor(double mass) override {
        Pass("HostSetFirstPrecursor", &Port::HostSetFirstPrecursor, mass);
    }
    std::unique_ptr<ports::ParameterTable> HostGetSourceGasTable() override {
        return Wrap<ObservedParameterTable>("ParameterTable",
                                            Pass("HostGetSourceGasTable", &Port::HostGetSourceGasTable));
    }
};

class ObservedExtendedExperiment : public Observed<ports::ExtendedExperiment> {
    using Port = ports::ExtendedExperiment;

  public:
    using Observed::Observed;
    void HostSetScansToSum(int count) override { Pass("HostSetScansToSum", &Port::HostSetScansToSum, count); }
    void HostSetScanRate(double scanRate) override { Pass("HostSetScanRate", &Port::HostSetScanRate, scanRate); }
    void HostSetFixedFillTime(double fillTimeMs) override {
        Pass("HostSetFixedFillTime", &Port::HostSetFixedFillTime, fillTimeMs);
    }
    void HostSetQ0Trapping(int on) override { Pass("HostSetQ0Trapping", &Port::HostSetQ0Trapping, on); }
    void HostSetDynamicFillTime(int on) override { Pass("HostSetDynamicFillTime", &Port::HostSetDynamicFillTime, on); }
    void HostSetSecondPrecursor(double mass) override {
        Pass("HostSetSecondPrecursor", &Port::HostSetSecondPrecursor, mass);
    }
    void HostOptimizeMassRange() override { Pass("HostOptimizeMassRange", &Port::HostOptimizeMassRange); }
    void HostSetExcitationTime(double excitationTimeMs) override {
        Pass("HostSetExcitationTime", &Port::HostSetExcitationTime, excitationTimeMs);
    }
};

class ObservedPeriod : public Observed<ports::Period> {
    using Port = ports::Period;

  public:
    using Observed::Observed;
    std::unique_ptr<ports::Experiment> HostGetExperiment(int index) override {
        return Wrap<ObservedExperiment>("Experiment", Pass("HostGetExperiment", &Port::HostGetExperiment, index));
    }
    std::unique_ptr<ports::ExtendedExperiment> HostGetExtendedExperiment(int index) override {
        return Wrap<ObservedExtendedExperiment>(
            "ExtendedExperiment", Pass("HostGetExtendedExperiment", &Port::HostGetExtendedExperiment, index));
    }
    void HostResetPeriodParameters() override { Pass("HostResetPeriodParameters", &Port::HostResetPeriodParameters); }
    void HostSetRampParameter(const std::string& id, float start, float stop, float step) override {
        Pass("HostSetRampParameter", &Port::HostSetRampParameter, id, start, stop, step);
    }
    void HostSetCycles(std::int32_t count) override { Pass("HostSetCycles", &Port::HostSetCycles, count); }
};

class ObservedMassSpecMethod : public Observed<ports::MassSpecMethod> {
    using Port = ports::MassSpecMethod;

  public:
    using Observed::Observed;
    std::unique_ptr<ports::Period> HostGetPeriod(int index) override {
        return Wrap<ObservedPeriod>("Period", Pass("HostGetPeriod", &Port::HostGetPeriod, index));
    }
    int HostGetMethodOperatingMode() const override {
        return Pass("HostGetMethodOperatingMode", &Port::HostGetMethodOperatingMode);
    }
    int HostGetCurrentOperatingMode() const override {
        return Pass("HostGetCurrentOperatingMode", &Port::HostGetCurrentOperatingMode);
    }
    double HostGetExpectedDuration() const override {
        return Pass("HostGetExpectedDuration", &Port::HostGetExpectedDuration);
    }
};

class ObservedDeviceMethod : public Observed<ports::DeviceMethod> {
    using Port = ports::DeviceMethod;

  public:
    using Observed::Observed;
    bool IsMassSpecMethod() const override { return Pass("IsMassSpecMethod", &Port::IsMassSpecMethod); }
    std::unique_ptr<ports::MassSpecMethod> AsMassSpecMethod() override {
        return Wrap<ObservedMassSpecMethod>("MassSpecMethod", Pass("AsMassSpecMethod", &Port::AsMassSpecMethod));
    }
};

class ObservedAcquisitionMethod : public Observed<ports::AcquisitionMethod> {
    using Port = ports::AcquisitionMethod;

  public:
    using Observed::Observed;
    std::unique_ptr<ports::DeviceMethod> HostEnumDeviceMethods(int index) override {
        return Wrap<ObservedDeviceMethod>("DeviceMethod",
                                          Pass("HostEnumDeviceMethods", &Port::HostEnumDeviceMethods, index));
    }
    void HostSaveMethodAs(const std::string& path, bool overwrite) override {
        Pass("HostSaveMethodAs", &Port::HostSaveMethodAs, path, overwrite);
    }
};

class ObservedAcquisitionService : public Observed<ports::AcquisitionService> {
    using Port = ports::AcquisitionService;

  public:
    using Observed::Observed;
    std::unique_ptr<ports::AcquisitionMethod> HostOpenMethod(const std::string& path) override {
        return Wrap<ObservedAcquisitionMethod>("AcquisitionMethod",
                                               Pass("HostOpenMethod", &Port::HostOpenMethod, path));
    }
};
