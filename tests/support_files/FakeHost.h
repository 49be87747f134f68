// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ports/Host.h"
#include "ports/HostError.h"
#include "tests/support_files/FakeExploration.h"
#include "tests/support_files/FakeMethods.h"

/// What is kept of a batch of one set with one sample.
struct FakeBatch {
    std::string name, methodFileName, dataFileName;
};

namespace fake {

class TolmBatch : public ports::TolmBatch {
  public:
    void TolmSetBatchName(const std::string& batchFileName) override { batch.name = batchFileName; }
    void TolmSetBatchUser(const std::string&) override {}
    void TolmSetBatchText(const std::string&) override {}
    void TolmSetBatchProject(const std::string&) override {}
    int TolmAddSet(const std::string&) override { return 3; }
    void TolmSetSetAcquisitionMethod(int, const std::string& name) override { batch.methodFileName = name; }
    void TolmSetSetProcessingMethod(int, const std::string&) override {}
    int TolmAddSample(int) override { return 7; }
    void TolmSetSampleDataFile(int, int, const std::string& name) override { batch.dataFileName = name; }
    void TolmSetSampleField(int, int, SampleField, const std::string&) override {}

    FakeBatch batch;
};

class TolmService : public ports::TolmService {
  public:
    explicit TolmService(std::vector<FakeBatch>& submitted) : submitted_(submitted) {}

    void TolmInitialize() override {}
    std::string TolmLogon(const std::string&, const std::string&, const std::string&, const std::string&,
                          const std::string&) override {
        return "session" + std::to_string(++sessions_);
    }
    void TolmSelectProject(const std::string&, const std::string&, const std::string&) override {}
    void TolmLogoff(const std::string&) override {}
    VELTRA_FAKE_HANDLE(TolmBatch, TolmNewBatch, (const std::string&))
    void TolmSubmitBatch(const std::string&, ports::TolmBatch& batch) override {
        submitted_.push_back(dynamic_cast<TolmBatch&>(batch).batch);
    }
    std::string TolmSaveBatch(const std::string&, const std::string& batchFileName, ports::TolmBatch& batch) override {
        return "saved " + batchFileName + " of " + dynamic_cast<TolmBatch&>(batch).batch.name;
    }

  private:
    std::vector<FakeBatch>& submitted_;
    int sessions_ = 0;
};

class QueueServer : public ports::QueueServer {
  public:
    void HostQueuePrepare() override {}
    void HostQueueReset() override {}
    void HostQueueEnable() override {}
    void HostQueueRun() override {}
};

class Pause : public ports::Pause {
  public:
    void HostSleep(std::int32_t) override {}
};

class InstrumentHelper : public ports::InstrumentHelper {
  public:
    using AcquisitionProblem = std::function<std::string(const ports::PlannedAcquisition&)>;

    InstrumentHelper(std::int32_t modelCode, const std::map<std::string, double>& stepSizes,
                     AcquisitionProblem acquisitionProblem = {})
        : modelCode_(modelCode), stepSizes_(stepSizes), acquisitionProblem_(std::move(acquisitionProblem)) {}

    std::int32_t GetInstrumentModelCode() override { return modelCode_; }
    bool IsLinearIonTrap(std::int32_t) override { return true; }
    double GetStepSizeForScanRate(std::int32_t, int, const std::string& scanRate) override {
        const auto found = stepSizes_.find(scanRate);
        if (found == stepSizes_.end()) throw ports::HostError(5, "no scan rate " + scanRate);
        return found->second;
    }
    std::vector<std::string> HostGetScanRates(std::int32_t, int) override { return {}; }
    std::string HostGetAcquisitionProblem(std::int32_t, const ports::PlannedAcquisition& plan) override {
        return acquisitionProblem_ ? acquisitionProblem_(plan) : "";
    }

  private:
    std::int32_t modelCode_;
    const std::map<std::string, double>& stepSizes_;
    AcquisitionProblem acquisitionProblem_;
};

class ElementTable : public ports::ElementTable {
  public:
    explicit ElementTable(const std::map<std::string, std::vector<ports::Isotope>>& elements) : elements_(elements) {}

    std::vector<ports::Isotope> GetIsotopes(const std::string& symbol) override {
        const auto found = elements_.find(symbol);
        if (found == elements_.end()) throw ports::HostError(5, "no element " + symbol);
        return found->second;
    }

  private:
    const std::map<std::string, std::vector<ports::Isotope>>& elements_;
};

class HostApplication : public ports::HostApplication {
  public:
    explicit HostApplication(FakeMethodStore& store) : store_(store) {}
    VELTRA_FAKE_HANDLE(AcquisitionService, GetAcquisitionService, (), store_)

  private:
    FakeMethodStore& store_;
};

}  // namespace fake

/// A host in memory: methods are kept by path, batches are noted, and all data are what the test has scripted.
class FakeHost : public ports::Host {
  public:
    static constexpr const char* statusPath =
        "HKEY_LOCAL_MACHINE\\SOFTWARE\\Dravik\\Orvanel\\QueueSvr\\Current Sample Status";

    bool applicationIsRunning = true;
    std::int32_t modelCode = 27;
    FakeMethodStore store;
    FakeData data;
    std::vector<FakeBatch> submitted;
    std::map<std::string, double> stepSizes{{"1000", 0.06}, {"4000 Da/s", 0.12}};  ///< Da, by scan rate
    fake::InstrumentHelper::AcquisitionProblem acquisitionProblem;  ///< none: the instrument can do everything
    std::map<std::string, std::vector<ports::Isotope>> elements;
    std::map<std::string, std::string> registry;
    /// The queue's status at one read after the other; the last one stays. Nothing: the value is missing.
    std::vector<std::optional<std::string>> queueStatuses{"4"};

    std::unique_ptr<ports::HostApplication> AttachToRunningApplication() override {
        return applicationIsRunning ? std::make_unique<fake::HostApplication>(store) : nullptr;
    }
    VELTRA_FAKE_HANDLE(TolmService, TolmCreateService, (), submitted)
    VELTRA_FAKE_HANDLE(QueueServer, HostQueueServer, ())
    VELTRA_FAKE_HANDLE(Pause, CreatePause, ())
    VELTRA_FAKE_HANDLE(DataExploration, CreateDataExploration, (), data)
    VELTRA_FAKE_HANDLE(InstrumentHelper, CreateInstrumentHelper, (), modelCode, stepSizes, acquisitionProblem)
    VELTRA_FAKE_HANDLE(ElementTable, OpenElementTable, (const std::string&), elements)
    std::optional<std::string> RegRead(const std::string& path) override {
        if (path == statusPath) {
            const std::size_t last = queueStatuses.size() - 1;
            return queueStatuses.at(std::min(statusReads_++, last));
        }
        const auto found = registry.find(path);
        return found == registry.end() ? std::nullopt : std::optional(found->second);
    }
    bool HostOpenDocument(const std::string&) override { return false; }
    std::string GetDescription() const override { return "Nothing is measured here"; }

  private:
    std::size_t statusReads_ = 0;
};
