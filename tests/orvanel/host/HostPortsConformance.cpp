// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/orvanel/host/HostPortsConformance.h"

#include <cmath>

#include "ports/HostError.h"

using ports::HostError;

namespace {
const std::string statusValue = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Dravik\Orvanel\QueueSvr\Current Sample Status)";
constexpr double rampDwellMs = 20;
}  // namespace

std::unique_ptr<ports::AcquisitionMethod> HostPortsConformance::OpenMethod(const std::string& path) {
    return Host().AttachToRunningApplication()->GetAcquisitionService()->HostOpenMethod(path);
}

std::unique_ptr<ports::MassSpecMethod> HostPortsConformance::FindMassSpecMethod(ports::AcquisitionMethod& method) {
    for (int index = 0;; ++index) {
        auto device = method.HostEnumDeviceMethods(index);
        if (!device) return nullptr;
        if (device->IsMassSpecMethod()) return device->AsMassSpecMethod();
    }
}

std::string HostPortsConformance::WriteRampMethod() {
    auto method = OpenMethod(under_.methodPath);
    auto period = FindMassSpecMethod(*method)->HostGetPeriod(0);
    auto experiment = period->HostGetExperiment(0);
    experiment->HostSetScanType(1);
    experiment->HostResetExperiment();
    period->HostGetExtendedExperiment(0)->HostSetScansToSum(1);
    period->HostResetPeriodParameters();
    auto range = experiment->HostGetMassRange(experiment->HostAddMassRange());
    range->HostSetMassRange(under_.expectedMz, under_.expectedMz, 0);
    range->HostSetDwellTime(rampDwellMs);
    period->HostSetRampParameter("DP", 40, 60, 10);
    period->HostSetCycles(3);
    method->HostSaveMethodAs(under_.methodFolder + "/Ramp.xmt", true);
    return "Ramp.xmt";
}

void HostPortsConformance::StartQueue() {
    auto queue = Host().HostQueueServer();
    queue->HostQueuePrepare();
    queue->HostQueueReset();
    queue->HostQueueEnable();
    queue->HostQueueRun();
}

int HostPortsConformance::QueueStatus() {
    return std::stoi(Host().RegRead(statusValue).value());
}

std::string HostPortsConformance::AcquireRamp() {
    const std::string method = WriteRampMethod();
    StartQueue();
    auto service = Host().TolmCreateService();
    service->TolmInitialize();
    const std::string session = service->TolmLogon("", "", "", "", "Conformance");
    service->TolmSelectProject(session, under_.projectPath, under_.projectName);
    auto batch = service->TolmNewBatch(session);
    batch->TolmSetBatchName("Conformance.xbt");
    batch->TolmSetBatchProject(under_.projectPath + under_.projectName);
    EXPECT_EQ(batch->TolmAddSet("SET1"), 0);
    batch->TolmSetSetAcquisitionMethod(0, method);
    EXPECT_EQ(batch->TolmAddSample(0), 0);
    batch->TolmSetSampleDataFile(0, 0, "Conformance.vesk");
    service->TolmSubmitBatch(session, *batch);
    EXPECT_EQ(QueueStatus(), 2);
    batch.reset();  // a submitted batch is no longer needed
    service->TolmLogoff(session);
    auto pause = Host().CreatePause();
    for (int poll = 0; poll < 1000 && QueueStatus() < 4; ++poll)
        pause->HostSleep(100);
    EXPECT_EQ(QueueStatus(), 4);
    return under_.projectPath + under_.projectName + "/Data/Conformance.vesk";
}

TEST_P(HostPortsConformance, RegistryValues) {
    EXPECT_FALSE(Host().RegRead(R"(HKEY_LOCAL_MACHINE\SOFTWARE\Dravik\Orvanel\NoSuchValue)"));
    EXPECT_FALSE(Host().RegRead(""));
    std::string lowerCase = statusValue;
    for (char& c : lowerCase)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_EQ(Host().RegRead(lowerCase), "0");
}

TEST_P(HostPortsConformance, DeviceMethodsEndWithNull) {
    auto method = OpenMethod(under_.methodPath);
    int count = 0;
    while (auto device = method->HostEnumDeviceMethods(count)) {
        ++count;
        if (!device->IsMassSpecMethod()) {
            EXPECT_THROW(device->AsMassSpecMethod(), HostError);
        }
    }
    EXPECT_GE(count, 1);
    EXPECT_EQ(method->HostEnumDeviceMethods(count + 1), nullptr);
    EXPECT_THROW(OpenMethod(under_.methodPath + ".missing"), HostError);
}

TEST_P(HostPortsConformance, ParameterTables) {
    auto method = OpenMethod(under_.methodPath);
    auto table = FindMassSpecMethod(*method)
                     ->HostGetPeriod(0)
                     ->HostGetExperiment(0)
                     ->HostGetMassRange(0)
                     ->HostGetParameterTable();
    EXPECT_EQ(table->HostFindParameter("NoSuchParameter"), -1);
    EXPECT_EQ(table->HostFindParameter("dp"), -1);  // ids are exact
    const int dp = table->HostFindParameter("DP");
    ASSERT_GE(dp, 0);
    EXPECT_EQ(table->HostGetParameterId(dp), "DP");
    table->HostSetParameterValue(dp, 42.5F);
    EXPECT_EQ(table->HostGetParameterValue(dp), 42.5F);
    EXPECT_THROW(table->HostSetParameterValue(dp, std::nanf("")), HostError);
    EXPECT_EQ(table->HostGetParameterValue(dp), 42.5F);
    for (const int index : {-1, table->HostGetParameterCount()}) {
        EXPECT_THROW(table->HostGetParameterId(index), HostError);
        EXPECT_THROW(table->HostGetParameterValue(index), HostError);
        EXPECT_THROW(table->HostSetParameterValue(index, 1), HostError);
    }
}

TEST_P(HostPortsConformance, MethodEditing) {
    auto method = OpenMethod(under_.methodPath);
    auto massSpec = FindMassSpecMethod(*method);
    EXPECT_GT(massSpec->HostGetExpectedDuration(), 0);
    EXPECT_EQ(massSpec->HostGetMethodOperatingMode(), massSpec->HostGetCurrentOperatingMode());
    EXPECT_THROW(massSpec->HostGetPeriod(-1), HostError);
    auto period = massSpec->HostGetPeriod(0);
    EXPECT_THROW(period->HostGetExperiment(1000), HostError);
    EXPECT_THROW(period->HostSetCycles(0), HostError);
    EXPECT_THROW(period->HostSetRampParameter("NoSuchParameter", 0, 1, 1), HostError);
    auto experiment = period->HostGetExperiment(0);
    const int count = experiment->HostGetMassRangeCount();
    EXPECT_EQ(experiment->HostAddMassRange(), count);
    EXPECT_EQ(experiment->HostGetMassRangeCount(), count + 1);
    EXPECT_THROW(experiment->HostGetMassRange(count + 1), HostError);
    EXPECT_THROW(experiment->HostGetMassRange(count)->HostSetDwellTime(0), HostError);
    EXPECT_THROW(experiment->HostSetScanType(99), HostError);
    EXPECT_THROW(experiment->HostSetPolarity(2), HostError);
    EXPECT_THROW(experiment->HostSetQ1Resolution(4), HostError);
    experiment->HostResetExperiment();
    EXPECT_EQ(experiment->HostGetMassRangeCount(), 0);
    auto added = experiment->HostGetMassRange(experiment->HostAddMassRange());
    EXPECT_GE(added->HostGetParameterTable()->HostFindParameter("DP"), 0);
    EXPECT_THROW(method->HostSaveMethodAs(under_.methodPath, false), HostError);
    EXPECT_THROW(method->HostSaveMethodAs(under_.methodFolder + "/none/m.xmt", true), HostError);
}

TEST_P(HostPortsConformance, InstrumentHelper) {
    auto helper = Host().CreateInstrumentHelper();
    const std::int32_t model = helper->GetInstrumentModelCode();
    EXPECT_TRUE(helper->IsLinearIonTrap(model));
    for (const int scanType : {11, 12, 13}) {
        double slower = 0;
        for (const auto& rate : helper->HostGetScanRates(model, scanType)) {
            EXPECT_GT(std::stod(rate), slower);
            slower = std::stod(rate);
            EXPECT_GT(helper->GetStepSizeForScanRate(model, scanType, rate), 0);
        }
        EXPECT_GT(slower, 0);
    }
    ports::PlannedAcquisition plan;
    plan.scanType = 12;
    plan.scanRate = under_.scanRate;
    plan.start = under_.expectedMz - 15;
    plan.stop = under_.expectedMz + 15;
    EXPECT_EQ(helper->HostGetAcquisitionProblem(model, plan), "");
    plan.cycles = 0;
    EXPECT_NE(helper->HostGetAcquisitionProblem(model, plan), "");
    EXPECT_THROW(helper->HostGetAcquisitionProblem(-5, plan), HostError);
    EXPECT_THROW(helper->IsLinearIonTrap(-5), HostError);
    EXPECT_THROW(helper->HostGetScanRates(model, 1), HostError);
    EXPECT_THROW(helper->GetStepSizeForScanRate(model, 12, under_.scanRate + "x"), HostError);
}

TEST_P(HostPortsConformance, ElementTable) {
    auto table = Host().OpenElementTable(under_.elementTablePath);
    double highest = 0;
    for (const auto& isotope : table->GetIsotopes("Cl"))
        highest = std::max(highest, isotope.abundancePercent);
    EXPECT_EQ(highest, 100);
    EXPECT_THROW(table->GetIsotopes("cl"), HostError);
    EXPECT_THROW(Host().OpenElementTable(under_.elementTablePath + ".missing"), HostError);
}

TEST_P(HostPortsConformance, BatchServiceSessions) {
    auto service = Host().TolmCreateService();
    service->TolmInitialize();
    EXPECT_THROW(service->TolmNewBatch("no session"), HostError);
    const std::string session = service->TolmLogon("", "", "", "", "Conformance");
    EXPECT_FALSE(session.empty());
    EXPECT_THROW(service->TolmSelectProject(session, under_.projectPath, "NoSuchProject"), HostError);
    auto batch = service->TolmNewBatch(session);
    EXPECT_THROW(batch->TolmAddSample(0), HostError);
    EXPECT_EQ(batch->TolmAddSet("a"), 0);
    EXPECT_EQ(batch->TolmAddSet("b"), 1);
    batch->TolmSetSetAcquisitionMethod(1, "NeedNotExist.xmt");
    EXPECT_EQ(batch->TolmAddSample(1), 0);
    service->TolmLogoff(session);
    EXPECT_THROW(service->TolmNewBatch(session), HostError);
    EXPECT_THROW(service->TolmLogoff(session), HostError);
    EXPECT_THROW(service->TolmSubmitBatch(session, *batch), HostError);
}

TEST_P(HostPortsConformance, QueueAndPauseRefuseWrongCalls) {
    EXPECT_THROW(Host().HostQueueServer()->HostQueueRun(), HostError);
    EXPECT_THROW(Host().CreatePause()->HostSleep(-1), HostError);
    EXPECT_NO_THROW(Host().CreatePause()->HostSleep(0));
    EXPECT_FALSE(Host().HostOpenDocument(under_.methodPath + ".missing"));
}

TEST_P(HostPortsConformance, AcquiredDataCanBeExplored) {
    const std::string file = AcquireRamp();
    auto exploration = Host().CreateDataExploration();
    auto chromatogram = exploration->CreateChromatogramData();
    chromatogram->ExploreSetDataFile(file);
    chromatogram->ExploreLoadTIC(1, 0, 0);
    EXPECT_EQ(chromatogram->GetXValues(), (std::vector<double>{40, 50, 60}));  // the ramped value
    EXPECT_EQ(chromatogram->GetYValues().size(), 3U);
    EXPECT_EQ(chromatogram->ExplorePointCount(), 3);
    EXPECT_EQ(chromatogram->ExplorePointX(1), 40);  // points count from 1
    EXPECT_EQ(chromatogram->ExplorePointX(3), 60);
    for (const int point : {0, 4})
        EXPECT_THROW(chromatogram->ExplorePointY(point), HostError);
    chromatogram->ExploreSortPoints(true, false);
    EXPECT_EQ(chromatogram->ExplorePointX(1), 60);
    chromatogram->ExploreLoadXICOverlay(1, 0, 0, 0);
    EXPECT_EQ(chromatogram->ExplorePointCount(), 3);
    EXPECT_THROW(chromatogram->ExploreLoadXICOverlay(1, 0, 0, 1), HostError);
    auto missing = exploration->CreateSpectrumData();
    missing->ExploreSetDataFile(file + ".missing");
    EXPECT_THROW(missing->ExploreLoadSpectrumByCycle(1, 1, 1), HostError);
}
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(HostPortsConformance);
