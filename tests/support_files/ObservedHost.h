#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "ports/Host.h"
#include "tests/support_files/ObservedExploration.h"
#include "tests/support_files/ObservedMethods.h"

class ObservedTolmBatch : public Observed<ports::TolmBatch> {
    using Port = ports::TolmBatch;

  public:
    using Observed::Observed;
    void TolmSetBatchName(const std::string& batchFileName) override {
        Pass("TolmSetBatchName", &Port::TolmSetBatchName, batchFileName);
    }
    void TolmSetBatchUser(const std::string& userName) override {
        Pass("TolmSetBatchUser", &Port::TolmSetBatchUser, userName);
    }
    void TolmSetBatchText(const std::string& text) override { Pass("TolmSetBatchText", &Port::TolmSetBatchText, text); }
    void TolmSetBatchProject(const std::string& project) override {
        Pass("TolmSetBatchProject", &Port::TolmSetBatchProject, project);
    }
    int TolmAddSet(const std::string& setName) override { return Pass("TolmAddSet", &Port::TolmAddSet, setName); }
    void TolmSetSetAcquisitionMethod(int set, const std::string& methodFileName) override {
        Pass("TolmSetSetAcquisitionMethod", &Port::TolmSetSetAcquisitionMethod, set, methodFileName);
    }
    void TolmSetSetProcessingMethod(int set, const std::string& methodName) override {
        Pass("TolmSetSetProcessingMethod", &Port::TolmSetSetProcessingMethod, set, methodName);
    }
    int TolmAddSample(int set) override { return Pass("TolmAddSample", &Port::TolmAddSample, set); }
    void TolmSetSampleDataFile(int set, int sample, const std::string& dataFileName) override {
        Pass("TolmSetSampleDataFile", &Port::TolmSetSampleDataFile, set, sample, dataFileName);
    }
    void TolmSetSampleField(int set, int sample, SampleField field, const std::string& text) override {
        Pass("TolmSetSampleField", &Port::TolmSetSampleField, set, sample, field, text);
    }
};

class ObservedTolmService : public Observed<ports::TolmService> {
    using Port = ports::TolmService;

  public:
    using Observed::Observed;
    void TolmInitialize() override { Pass("TolmInitialize", &Port::TolmInitialize); }
    std::string TolmLogon(const std::string& userName, const std::string& password, const std::string& domain,
                          const std::string& options, const std::string& clientName) override {
        return Pass("TolmLogon", &Port::TolmLogon, userName, password, domain, options, clientName);
    }
    void TolmSelectProject(const std::string& session, const std::string& projectPath,
                           const std::string& projectName) override {
        Pass("TolmSelectProject", &Port::TolmSelectProject, session, projectPath, projectName);
    }
    void TolmLogoff(const std::string& session) override { Pass("TolmLogoff", &Port::TolmLogoff, session); }
    std::unique_ptr<ports::TolmBatch> TolmNewBatch(const std::string& session) override {
        return Wrap<ObservedTolmBatch>("TolmBatch", Pass("TolmNewBatch", &Port::TolmNewBatch, session));
    }
    void TolmSubmitBatch(const std::string& session, ports::TolmBatch& batch) override {
        calls_.Before("TolmSubmitBatch", session);
        Inner().TolmSubmitBatch(session, Unwrapped<ObservedTolmBatch>(batch));
    }
    std::string TolmSaveBatch(const std::string& session, const std::string& batchFileName,
                              ports::TolmBatch& batch) override {
        calls_.Before("TolmSaveBatch", session, batchFileName);
        return Inner().TolmSaveBatch(session, batchFileName, Unwrapped<ObservedTolmBatch>(batch));
    }
};

class ObservedQueueServer : public Observed<ports::QueueServer> {
    using Port = ports::QueueServer;

  public:
    using Observed::Observed;
    void HostQueuePrepare() override { Pass("HostQueuePrepare", &Port::HostQueuePrepare); }
    void HostQueueReset() override { Pass("HostQueueReset", &Port::HostQueueReset); }
    void HostQueueEnable() override { Pass("HostQueueEnable", &Port::HostQueueEnable); }
    void HostQueueRun() override { Pass("HostQueueRun", &Port::HostQueueRun); }
};

class ObservedPause : public Observed<ports::Pause> {
  public:
    using Observed::Observed;
    void HostSleep(std::int32_t milliseconds) override { Pass("HostSleep", &ports::Pause::HostSleep, milliseconds); }
};

class ObservedInstrumentHelper : public Observed<ports::InstrumentHelper> {
    using Port = ports::InstrumentHelper;

  public:
    using Observed::Observed;
    std::int32_t GetInstrumentModelCode() override {
        return Pass("GetInstrumentModelCode", &Port::GetInstrumentModelCode);
    }
    bool IsLinearIonTrap(std::int32_t modelCode) override {
        return Pass("IsLinearIonTrap", &Port::IsLinearIonTrap, modelCode);
    }
    double GetStepSizeForScanRate(std::int32_t modelCode, int scanType, const std::string& scanRate) override {
        return Pass("GetStepSizeForScanRate", &Port::GetStepSizeForScanRate, modelCode, scanType, scanRate);
    }
    std::vector<std::string> HostGetScanRates(std::int32_t modelCode, int scanType) override {
        return Pass("HostGetScanRates", &Port::HostGetScanRates, modelCode, scanType);
    }
};

class ObservedElementTable : public Observed<ports::ElementTable> {
  public:
    using Observed::Observed;
    std::vector<ports::Isotope> GetIsotopes(const std::string& symbol) override {
        return Pass("GetIsotopes", &ports::ElementTable::GetIsotopes, symbol);
    }
};

class ObservedHostApplication : public Observed<ports::HostApplication> {
  public:
    using Observed::Observed;
    std::unique_ptr<ports::AcquisitionService> GetAcquisitionService() override {
        return Wrap<ObservedAcquisitionService>(
            "AcquisitionService", Pass("GetAcquisitionService", &ports::HostApplication::GetAcquisitionService));
    }
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
        return inner_.RegRead(path);
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
        auto handle = (inner_.*operation)(args...);
        if (!handle) return nullptr;
        return std::make_unique<Wrapper>(kind, std::move(handle), calls_);
    }

    ports::Host& inner_;
    HostCalls& calls_;
};
