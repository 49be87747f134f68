#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "ports/Host.h"
#include "tests/support_files/ObservedExploration.h"
#include "tests/support_files/ObservedMethods.h"

class ObservedTolmBatch : public Observed<ports::TolmBatch> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(void, TolmSetBatchName, (const std::string& batchFileName), override, batchFileName)
    VELTRA_OBSERVED(void, TolmSetBatchUser, (const std::string& userName), override, userName)
    VELTRA_OBSERVED(void, TolmSetBatchText, (const std::string& text), override, text)
    VELTRA_OBSERVED(void, TolmSetBatchProject, (const std::string& project), override, project)
    VELTRA_OBSERVED(int, TolmAddSet, (const std::string& setName), override, setName)
    VELTRA_OBSERVED(void, TolmSetSetAcquisitionMethod, (int set, const std::string& methodFileName), override, set,
                    methodFileName)
    VELTRA_OBSERVED(void, TolmSetSetProcessingMethod, (int set, const std::string& methodName), override, set,
                    methodName)
    VELTRA_OBSERVED(int, TolmAddSample, (int set), override, set)
    VELTRA_OBSERVED(void, TolmSetSampleDataFile, (int set, int sample, const std::string& dataFileName), override, set,
                    sample, dataFileName)
    VELTRA_OBSERVED(void, TolmSetSampleField, (int set, int sample, SampleField field, const std::string& text),
                    override, set, sample, field, text)
};

class ObservedTolmService : public Observed<ports::TolmService> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(void, TolmInitialize, (), override)
    VELTRA_OBSERVED(std::string, TolmLogon,
                    (const std::string& userName, const std::string& password, const std::string& domain,
                     const std::string& options, const std::string& clientName),
                    override, userName, password, domain, options, clientName)
    VELTRA_OBSERVED(void, TolmSelectProject,
                    (const std::string& session, const std::string& projectPath, const std::string& projectName),
                    override, session, projectPath, projectName)
    VELTRA_OBSERVED(void, TolmLogoff, (const std::string& session), override, session)
    VELTRA_OBSERVED_HANDLE(TolmBatch, TolmNewBatch, (const std::string& session), session)
    void TolmSubmitBatch(const std::string& session, ports::TolmBatch& batch) override {
        calls_.Before("TolmSubmitBatch", session);
        calls_.Answer("TolmSubmitBatch",
                      [&] { Inner().TolmSubmitBatch(session, Unwrapped<ObservedTolmBatch>(batch)); });
    }
    std::string TolmSaveBatch(const std::string& session, const std::string& batchFileName,
                              ports::TolmBatch& batch) override {
        calls_.Before("TolmSaveBatch", session, batchFileName);
        return Inner().TolmSaveBatch(session, batchFileName, Unwrapped<ObservedTolmBatch>(batch));
    }
};

class ObservedQueueServer : public Observed<ports::QueueServer> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(void, HostQueuePrepare, (), override)
    VELTRA_OBSERVED(void, HostQueueReset, (), override)
    VELTRA_OBSERVED(void, HostQueueEnable, (), override)
    VELTRA_OBSERVED(void, HostQueueRun, (), override)
};

class ObservedPause : public Observed<ports::Pause> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(void, HostSleep, (std::int32_t milliseconds), override, milliseconds)
};

class ObservedInstrumentHelper : public Observed<ports::InstrumentHelper> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(std::int32_t, GetInstrumentModelCode, (), override)
    VELTRA_OBSERVED(bool, IsLinearIonTrap, (std::int32_t modelCode), override, modelCode)
    VELTRA_OBSERVED(double, GetStepSizeForScanRate, (std::int32_t modelCode, int scanType, const std::string& scanRate),
                    override, modelCode, scanType, scanRate)
    VELTRA_OBSERVED(std::vector<std::string>, HostGetScanRates, (std::int32_t modelCode, int scanType), override,
                    modelCode, scanType)
};

class ObservedElementTable : public Observed<ports::ElementTable> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(std::vector<ports::Isotope>, GetIsotopes, (const std::string& symbol), override, symbol)
};

class ObservedHostApplication : public Observed<ports::HostApplication> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED_HANDLE(AcquisitionService, GetAcquisitionService, ())
};

/// A whole host, every call of which goes through HostCalls first. The two operations that never fail by contract are
/// recorded, but no failure can be asked of them.
class ObservedHost : public ports::Host {
  public:
    /// Both outlive the observed host.
    ObservedHost(ports::Host& inner, HostCalls& calls) : inner_(inner), calls_(calls) {}

    std::unique_ptr<ports::HostApplication> AttachToRunningApplication() override {
        return Handle<ObservedHostApplication>("AttachToRunningApplication", "HostApplication",
                                               &ports::Host::AttachToRunningApplication);
    }
    std::unique_ptr<ports::TolmService> TolmCreateService() override {
        return Handle<ObservedTolmService>("TolmCreateService", "TolmService", &ports::Host::TolmCreateService);
    }
    std::unique_ptr<ports::QueueServer> HostQueueServer() override {
        return Handle<ObservedQueueServer>("HostQueueServer", "QueueServer", &ports::Host::HostQueueServer);
    }
    std::unique_ptr<ports::Pause> CreatePause() override {
        return Handle<ObservedPause>("CreatePause", "Pause", &ports::Host::CreatePause);
    }
    std::unique_ptr<ports::DataExploration> CreateDataExploration() override {
        return Handle<ObservedDataExploration>("CreateDataExploration", "DataExploration",
                                               &ports::Host::CreateDataExploration);
    }
    std::unique_ptr<ports::InstrumentHelper> CreateInstrumentHelper() override {
        return Handle<ObservedInstrumentHelper>("CreateInstrumentHelper", "InstrumentHelper",
                                                &ports::Host::CreateInstrumentHelper);
    }
    std::unique_ptr<ports::ElementTable> OpenElementTable(const std::string& path) override {
        return Handle<ObservedElementTable>("OpenElementTable", "ElementTable", &ports::Host::OpenElementTable, path);
    }
    std::optional<std::string> RegRead(const std::string& path) override {
        calls_.Before("RegRead", path);
        return calls_.Answer("RegRead", [&] { return inner_.RegRead(path); });
    }
    bool HostOpenDocument(const std::string& path) override {
        calls_.Note("HostOpenDocument(\"" + path + "\")");
        return inner_.HostOpenDocument(path);
    }
    std::string GetDescription() const override {
        calls_.Note("GetDescription()");
        return inner_.GetDescription();
    }

  private:
    template <class Wrapper, class Port, class... Params, class... Args>
    std::unique_ptr<Port> Handle(const char* name, const char* kind,
                                 std::unique_ptr<Port> (ports::Host::*operation)(Params...), const Args&... args) {
        calls_.Before(name, args...);
        auto handle = calls_.Answer(name, [&] { return std::invoke(operation, inner_, args...); });
        if (!handle) return nullptr;
        return std::make_unique<Wrapper>(kind, std::move(handle), calls_);
    }

    ports::Host& inner_;
    HostCalls& calls_;
};
