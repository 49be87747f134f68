// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

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
    VELTRA_OBSERVED(std::string, HostGetAcquisitionProblem,
                    (std::int32_t modelCode, const ports::PlannedAcquisition& plan), override, modelCode, plan)
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
class ObservedHost : public Observed<ports::Host> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED_HANDLE(HostApplication, AttachToRunningApplication, ())
    VELTRA_OBSERVED_HANDLE(TolmService, TolmCreateService, ())
    VELTRA_OBSERVED_HANDLE(QueueServer, HostQueueServer, ())
    VELTRA_OBSERVED_HANDLE(Pause, CreatePause, ())
    VELTRA_OBSERVED_HANDLE(DataExploration, CreateDataExploration, ())
    VELTRA_OBSERVED_HANDLE(InstrumentHelper, CreateInstrumentHelper, ())
    VELTRA_OBSERVED_HANDLE(ElementTable, OpenElementTable, (const std::string& path), path)
    VELTRA_OBSERVED(std::optional<std::string>, RegRead, (const std::string& path), override, path)
    bool HostOpenDocument(const std::string& path) override {
        calls_.Note("HostOpenDocument(\"" + path + "\")");
        return Inner().HostOpenDocument(path);
    }
    std::string GetDescription() const override {
        calls_.Note("GetDescription()");
        return Inner().GetDescription();
    }
};
