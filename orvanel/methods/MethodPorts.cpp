// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/MethodPorts.h"

#include "orvanel/FileFailure.h"
#include "orvanel/HostErrorNumbers.h"
#include "orvanel/instrument/Simulator.h"
#include "orvanel/methods/ExperimentPorts.h"
#include "orvanel/methods/MethodFile.h"
#include "orvanel/methods/OpenDocument.h"
#include "orvanel/methods/Validation.h"
#include "ports/HostError.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace orvanel {

namespace {

using MethodPtr = std::shared_ptr<OpenDocument>;

class PeriodHandle : public ports::Period {
  public:
    PeriodHandle(MethodPtr method, std::size_t device, int index)
        : method_(std::move(method)), device_(device), index_(index) {
        Find();
    }

    std::unique_ptr<ports::Experiment> HostGetExperiment(int index) override {
        return CreateExperiment({method_, device_, index_, index});
    }
    std::unique_ptr<ports::ExtendedExperiment> HostGetExtendedExperiment(int index) override {
        return CreateExtendedExperiment({method_, device_, index_, index});
    }
    void HostResetPeriodParameters() override {
        Find().ramp.reset();
        method_->unsavedChanges = true;
    }
    void HostSetRampParameter(const std::string& id, float start, float stop, float step) override {
        const RampRecord ramp{id, start, stop, step};
        const ExperimentRecord& experiment = method_->Experiment(device_, index_, 0);
        CheckRamp(*method_->model,
                  experiment.massRanges.empty() ? experiment.newRangeParameters
                                                : experiment.massRanges.front().compoundParameters,
                  ramp);
        Find().ramp = ramp;
        method_->unsavedChanges = true;
    }
    void HostSetCycles(std::int32_t count) override {
        CheckCycles(count);
        Find().cycles = count;
        method_->unsavedChanges = true;
    }

  private:
    PeriodRecord& Find() const { return method_->Period(device_, index_); }

    MethodPtr method_;
    std::size_t device_;
    int index_;
};

class MassSpecMethodHandle : public ports::MassSpecMethod {
  public:
    MassSpecMethodHandle(MethodPtr method, std::size_t device) : method_(std::move(method)), device_(device) {}

    std::unique_ptr<ports::Period> HostGetPeriod(int index) override {
        return std::make_unique<PeriodHandle>(method_, device_, index);
    }
    int HostGetMethodOperatingMode() const override { return method_->MassSpec(device_).operatingMode; }
    int HostGetCurrentOperatingMode() const override { return method_->currentOperatingMode; }
    double HostGetExpectedDuration() const override {
        method_->Experiment(device_, 0, 0);
        return ExpectedDurationMs(method_->MassSpec(device_), *method_->model);
    }

  private:
    MethodPtr method_;
    std::size_t device_;
};

class DeviceMethodHandle : public ports::DeviceMethod {
  public:
    DeviceMethodHandle(MethodPtr method, std::size_t device) : method_(std::move(method)), device_(device) {}

    bool IsMassSpecMethod() const override { return Device().massSpec.has_value(); }
    std::unique_ptr<ports::MassSpecMethod> AsMassSpecMethod() override {
        if (!IsMassSpecMethod())
            throw ports::HostError(errorNumber::noSuchPart, "Device " + std::to_string(device_) + " (" + Device().kind +
                                                                ") of the method is no mass spectrometer");
        return std::make_unique<MassSpecMethodHandle>(method_, device_);
    }

  private:
    const DeviceRecord& Device() const { return method_->document.devices.at(device_); }

    MethodPtr method_;
    std::size_t device_;
};

class AcquisitionMethodHandle : public ports::AcquisitionMethod {
  public:
    AcquisitionMethodHandle(MethodPtr method, const support::Disk& disk) : method_(std::move(method)), disk_(disk) {}

    std::unique_ptr<ports::DeviceMethod> HostEnumDeviceMethods(int index) override {
        if (index < 0)
            throw ports::HostError(errorNumber::noSuchPart,
                                   "Device method " + std::to_string(index) + " was asked for, they count from 0");
        if (static_cast<std::size_t>(index) >= method_->document.devices.size()) return nullptr;
        return std::make_unique<DeviceMethodHandle>(method_, static_cast<std::size_t>(index));
    }
    void HostSaveMethodAs(const std::string& path, bool overwrite) override {
        const std::string name = support::FileNameOf(path);
        if (!support::IsFileOfKind(name, ".xmt")) Fail(path, "the name of a method ends in .xmt");
        if (const std::string problem = support::FileNameProblem(name); !problem.empty())
            Fail(path, "the name of a method " + problem);
        if (!Exists(support::FolderExists, support::FolderOf(path)))
            Fail(path, "its folder does not exist, create it first");
        if (!overwrite && Exists(support::FileExists, path))
            Fail(path, "the file exists already and must not be overwritten");
        WriteMethodFile(path, method_->document, disk_);
        method_->unsavedChanges = false;
    }

  private:
    [[noreturn]] static void Fail(const std::string& path, const std::string& reason) {
        throw ports::HostError(errorNumber::methodNotSaved, "Cannot save the method as " + path + ": " + reason);
    }

    bool Exists(bool (*exists)(const std::string&, const support::Disk&), const std::string& path) const {
        return AsHostError(errorNumber::methodNotSaved, [&] { return exists(path, disk_); });
    }

    MethodPtr method_;
    const support::Disk& disk_;
};

class AcquisitionServiceHandle : public ports::AcquisitionService {
  public:
    AcquisitionServiceHandle(std::shared_ptr<const InstrumentModel> model, int currentOperatingMode,
                             const support::Disk& disk)
        : model_(std::move(model)), currentOperatingMode_(currentOperatingMode), disk_(disk) {}

    std::unique_ptr<ports::AcquisitionMethod> HostOpenMethod(const std::string& path) override {
        auto method = std::make_shared<OpenDocument>();
        method->document = ReadMethodFile(path, disk_);
        method->model = model_;
        method->currentOperatingMode = currentOperatingMode_;
        return std::make_unique<AcquisitionMethodHandle>(std::move(method), disk_);
    }

  private:
    std::shared_ptr<const InstrumentModel> model_;
    int currentOperatingMode_;
    const support::Disk& disk_;
};

}  // namespace

std::unique_ptr<ports::AcquisitionService> CreateAcquisitionService(std::shared_ptr<const InstrumentModel> model,
                                                                    int currentOperatingMode,
                                                                    const support::Disk& disk) {
    return std::make_unique<AcquisitionServiceHandle>(std::move(model), currentOperatingMode, disk);
}

}  // namespace orvanel
