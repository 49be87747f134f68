// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/OrvanelHost.h"

#include <filesystem>

#include "orvanel/methods/MethodFile.h"
#include "support/Files.h"
#include "tests/orvanel/host/HostPortsConformance.h"
#include "tests/orvanel/methods/MethodTestTools.h"
#include "tests/support_files/TempFolder.h"

namespace {

constexpr const char* installKey = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Dravik\Orvanel\Install\)";
constexpr const char* lastFilesKey = R"(HKEY_CURRENT_USER\Software\Dravik\Orvanel\Orvanel\LastFiles\)";
constexpr const char* statusValue = R"(HKEY_LOCAL_MACHINE\SOFTWARE\Dravik\Orvanel\QueueSvr\Current Sample Status)";

/// A new project for reserpine in its own folder, with a virtual clock that starts at 2024-05-13 15:45:12 UTC.
struct Surroundings {
    explicit Surroundings(const std::string& compound = "reserpine", std::int32_t modelCode = 27)
        : facts(orvanel::CreateProject({folder.Path(), "Study1", compound, VELTRA_APP_LOCATION, modelCode})) {}

    std::unique_ptr<ports::Host> Host() {
        return orvanel::CreateOrvanelHost(orvanel::ReadOrvanelConfig(facts.orvanelIniPath, VELTRA_APP_LOCATION), clock);
    }
    /// Logs on and selects the project.
    std::string SessionIn(ports::TolmService& service) {
        service.TolmInitialize();
        std::string session = service.TolmLogon("", "", "", "", "Test");
        service.TolmSelectProject(session, folder.File("Projects/"), "Study1");
        return session;
    }
    /// Submits the starter method. @return the text of the refusal, or an empty one
    std::string SubmitStarter(ports::Host& host, const std::string& dataFile) {
        return HostErrorOf([&] {
            auto service = host.TolmCreateService();
            const std::string session = SessionIn(*service);
            auto batch = service->TolmNewBatch(session);
            batch->TolmSetBatchName("b.xbt");
            batch->TolmSetBatchProject(folder.File("Projects/Study1"));
            batch->TolmSetSetAcquisitionMethod(batch->TolmAddSet("S"), "Start.xmt");
            batch->TolmSetSampleDataFile(0, batch->TolmAddSample(0), dataFile);
            service->TolmSubmitBatch(session, *batch);
        });
    }

    TempFolder folder;
    orvanel::ProjectFacts facts;
    orvanel::HostClock clock{
        0, std::chrono::sys_days(std::chrono::year(2024) / 5 / 13) + std::chrono::seconds(56712), {}, true};
};

HostUnderTest OrvanelUnderTest() {
    auto surroundings = std::make_shared<Surroundings>();
    return {.surroundings = surroundings,
            .host = surroundings->Host(),
            .projectPath = surroundings->folder.File("Projects/"),
            .projectName = "Study1",
            .methodFolder = surroundings->folder.File("Projects/Study1/Acquisition Methods"),
            .methodPath = surroundings->facts.starterMethodPath,
            .expectedMz = surroundings->facts.expectedMz,
            .elementTablePath = std::string(VELTRA_APP_LOCATION) + "/bin/QvElements.ini",
            .scanRate = "1000"};
}

INSTANTIATE_TEST_SUITE_P(Orvanel, HostPortsConformance,
                         testing::Values(HostUnderTestFactory{"Orvanel", OrvanelUnderTest}),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

class OrvanelHost : public testing::Test, protected Surroundings {
  protected:
    void StartQueue() {
        auto queue = host->HostQueueServer();
        queue->HostQueuePrepare();
        queue->HostQueueEnable();
        queue->HostQueueRun();
    }
    std::unique_ptr<ports::Host> host = Host();
};

TEST_F(OrvanelHost, AcquiresLogsAndPublishes) {
    const auto registry = [&] { return support::ReadWholeFile(folder.File("Orvanel.registry.ini")); };
    StartQueue();
    EXPECT_EQ(SubmitStarter(*host, "d.vesk"), "");
    EXPECT_NE(registry().find("Current Sample Status=2\r\n"), std::string::npos);
    auto method = host->AttachToRunningApplication()->GetAcquisitionService()->HostOpenMethod(facts.starterMethodPath);
    const double durationMs = method->HostEnumDeviceMethods(1)->AsMassSpecMethod()->HostGetExpectedDuration();
    // All of the announced duration is seen as acquiring, and nothing else.
    clock.Sleep(1);
    EXPECT_EQ(host->RegRead(statusValue), "3");
    clock.Sleep(durationMs - 2);
    EXPECT_EQ(host->RegRead(statusValue), "3");
    clock.Sleep(1);
    EXPECT_EQ(host->RegRead(statusValue), "4");
    EXPECT_NE(registry().find("Current Sample Status=4\r\n"), std::string::npos);

    const std::string data = folder.File("Projects/Study1/Data/d.vesk");
    const std::string log = support::ReadWholeFile(folder.File("Orvanel.log"));
    const std::string heading = "Samples of a simulated instrument: nothing here was measured\r\n";
    EXPECT_EQ(log.substr(log.find('\t')), "\t" + facts.starterMethodPath + "\t" + data + "\tfinished\r\n");
    EXPECT_EQ(log.rfind(heading + "5/13/2024 3:", 0), 0U) << log;
    EXPECT_NE(support::ReadWholeFile(data).find("2024-05-13T15:45:2"), std::string::npos);
}

TEST_F(OrvanelHost, AnAcquisitionThatCannotBeWrittenFails) {
    StartQueue();
    support::CreateFolders(folder.File("Projects/Study1/Data/Run"));
    EXPECT_EQ(SubmitStarter(*host, "Run/d.vesk"), "");
    std::filesystem::remove_all(folder.File("Projects/Study1/Data/Run"));
    clock.Sleep(1e6);
    EXPECT_EQ(host->RegRead(statusValue), "6");
    EXPECT_NE(support::ReadWholeFile(folder.File("Orvanel.log")).find("d.vesk\tfailed: "), std::string::npos);
}

TEST_F(OrvanelHost, SubmittingRefusesMethodsThatCannotBeAcquired) {
    const std::string path = facts.starterMethodPath;
    auto document = orvanel::ReadMethodFile(path);
    document.devices[1].massSpec->periods[0].experiments[0].massRanges[0].compoundParameters[0].value = 1000;
    orvanel::WriteMethodFile(path, document);
    EXPECT_EQ(SubmitStarter(*host, "d.vesk").rfind("6131: " + path + ": The method cannot", 0), 0U);
    document.devices.pop_back();
    orvanel::WriteMethodFile(path, document);
    EXPECT_EQ(SubmitStarter(*host, "d.vesk"), "1121: " + path + ": the method has no mass spectrometer part");
    EXPECT_EQ(host->RegRead(statusValue), "0");
}

TEST_F(OrvanelHost, RegistryValues) {
    const std::string dataLocation = std::string(installKey) + "DataLocation";
    EXPECT_EQ(host->RegRead(dataLocation), folder.Path());
    EXPECT_EQ(host->RegRead(std::string(installKey) + "AppLocation"), VELTRA_APP_LOCATION);
    support::WriteWholeFile(folder.File("Orvanel.registry.ini"),
                            "[hkey_local_machine\\software\\dravik\\orvanel\\install]\r\ndatalocation=/elsewhere\r\n");
    EXPECT_EQ(host->RegRead(dataLocation), "/elsewhere");

    const std::string project = std::string(lastFilesKey) + "Project";
    const std::string subProject = std::string(lastFilesKey) + "SubProject";
    EXPECT_EQ(host->RegRead(project), std::nullopt);
    auto service = host->TolmCreateService();
    const std::string session = SessionIn(*service);
    EXPECT_EQ(host->RegRead(project), "Study1");
    EXPECT_EQ(host->RegRead(subProject), "");
    support::CreateFolders(folder.File("Projects/Study1/Sub"));
    service->TolmSelectProject(session, folder.File("Projects/Study1/"), "Sub");
    EXPECT_EQ(host->RegRead(project), "Study1");
    EXPECT_EQ(host->RegRead(subProject), "Sub");
    EXPECT_EQ(host->RegRead(dataLocation), "/elsewhere");  // other values of the file are kept
}

TEST_F(OrvanelHost, NotRunning) {
    host = orvanel::CreateOrvanelHost(orvanel::ReadOrvanelConfig(folder.File("none.ini"), VELTRA_APP_LOCATION), clock);
    EXPECT_EQ(host->AttachToRunningApplication(), nullptr);
    EXPECT_EQ(host->RegRead(statusValue), std::nullopt);
    EXPECT_EQ(host->GetDescription(), "Simulated instrument: nothing here was measured");
    EXPECT_EQ(HostErrorOf([&] { host->TolmCreateService(); }),
              "1001: Orvanel is not running, so that there is no batch service, start it first");
    EXPECT_EQ(HostErrorOf([&] { host->HostQueueServer(); }),
              "1001: Orvanel is not running, so that there is no acquisition queue, start it first");
    auto helper = host->CreateInstrumentHelper();
    EXPECT_EQ(HostErrorOf([&] { helper->GetInstrumentModelCode(); }),
              "1001: Orvanel is not running, so that no instrument is connected, start it first");
    EXPECT_TRUE(helper->IsLinearIonTrap(27));
    EXPECT_EQ(HostErrorOf([&] { helper->GetStepSizeForScanRate(27, 12, "1e3"); }),
              "1502: Scan rate \"1e3\" is not offered by model 27 for scan type 12, which has 250, 1000, 4000, 10000");
}

TEST_F(OrvanelHost, TellsBeforehandWhatItWouldRefuse) {
    const auto helper = host->CreateInstrumentHelper();
    const ports::PlannedAcquisition er{
        .scanType = 12, .scanRate = "1000", .start = 594, .stop = 624, .scansToSum = 3, .cycles = 20};
    const ports::PlannedAcquisition ramp{
        .scanType = 1, .start = 609, .stop = 609, .dwellTimeMs = 100, .cycles = 21, .ramp{{"DP", 0, 100, 5}}};
    const ports::PlannedAcquisition mrm{.scanType = 4, .start = 609, .step = 195, .dwellTimeMs = 50};
    const ports::PlannedAcquisition ms3{.scanType = 13,
                                        .scanRate = "1000",
                                        .start = 10,
                                        .stop = 9000,
                                        .optimizesMassRange = true,
                                        .fixedFillTimeMs = 20,
                                        .firstPrecursor = 609,
                                        .secondPrecursor = 195,
                                        .parameters = {{"CE", 40}}};
    const struct {
        ports::PlannedAcquisition plan;
        std::function<void(ports::PlannedAcquisition&)> change;
        const char* problem;
    } cases[] = {
        {er, [](auto&) {}, ""},
        {ramp, [](auto&) {}, ""},
        {mrm, [](auto&) {}, ""},
        {ms3, [](auto&) {}, ""},
        {er, [](auto& plan) { plan.scanType = 2; }, "Scan type 2 is not known, there are 1, 4, 11, 12 and 13"},
        {er, [](auto& plan) { plan.scanRate = "fast"; },
         "Scan rate \"fast\" is not offered by model 27 for scan type 12, which has 250, 1000, 4000, 10000"},
        {er, [](auto& plan) { plan.start = 35; },
         "The method cannot be acquired: the start of a mass range is 35, allowed is 50 to 1700"},
        {er, [](auto& plan) { plan.cycles = 0; },
         "Number of cycles of 0 is impossible, allowed is a whole number from 1 to 100000"},
        {er, [](auto& plan) { plan.cycles = 90'000; },
         "The method would measure 45090000 points, more than the 40000000 of a data file, set fewer cycles or larger "
         "steps"},
        {ramp, [](auto& plan) { plan.ramp->step = 0.001F; },
         "Ramp of DP from 0 to 100 by 0.001 has more than 100000 values, set a larger step"},
        {ramp, [](auto& plan) { plan.dwellTimeMs = 0; },
         "Dwell time of 0 ms is impossible, allowed is above 0 and up to 10000 ms"},
        {ramp, [](auto& plan) { plan.start = plan.stop = 1801; },
         "Mass range 1801, 1801, 0 is no single mass, expected are mass, mass and 0 with the mass from 5 to 1800 Da"},
        {mrm, [](auto& plan) { plan.step = 4; },
         "Mass range 609, 0, 4 is no transition, expected are Q1, 0 and Q3 with Q1 and Q3 from 5 to 1800 Da"},
        {ms3, [](auto& plan) { plan.fixedFillTimeMs = 0.01; },
         "Fill time of 0.01 ms is impossible, allowed is from 0.05 to 10000 ms"},
        {ms3, [](auto& plan) { plan.parameters[0].value = 400; },
         "CE of 400 is impossible on model 27 (Orvanel LIT), allowed is a magnitude from 0 to 200"},
        {ms3, [](auto& plan) { plan.start = 1800; },
         "The mass range from 1800 to 9000 Da by 0.06 Da leaves nothing to scan within the trap's 50 to 1700 Da, set "
         "another one"},
        {ms3, [](auto& plan) { plan.firstPrecursor = 2000; },
         "Precursor m/z of 2000 Da is impossible, allowed is from 5 to 1800 Da"},
    };
    for (const auto& one : cases) {
        auto plan = one.plan;
        one.change(plan);
        EXPECT_EQ(helper->HostGetAcquisitionProblem(27, plan), one.problem);
    }
}

TEST_F(OrvanelHost, AWrongSetUpIsRefused) {
    const auto config = orvanel::ReadOrvanelConfig(facts.orvanelIniPath, VELTRA_APP_LOCATION);
    const auto errorWith = [&](const std::function<void(orvanel::OrvanelConfig&)>& change) {
        auto wrong = config;
        change(wrong);
        return HostErrorOf([&] { orvanel::CreateOrvanelHost(wrong, clock); });
    };
    EXPECT_EQ(errorWith([](auto& wrong) { wrong.modelCode = 5; }),
              "1501: Instrument model 5 is not known, there are 14, 22, 24, 26, 27, 29, 31, 33, 99");
    EXPECT_EQ(errorWith([](auto& wrong) { wrong.operatingMode = 9; }),
              "1010: " + config.iniPath + ": OperatingMode=9 is not allowed, model 27 has no such mode");
    EXPECT_TRUE(errorWith([](auto& wrong) {
                    wrong.sample = {{"unobtainium", 1}};
                }).starts_with("1010: There is no compound \"unobtainium\" in "));
}

TEST_F(OrvanelHost, DescriptionNamesWhatIsSprayedAndWhatIsMadeToGoWrong) {
    EXPECT_EQ(host->GetDescription(),
              "Simulated instrument: nothing here was measured (spraying reserpine [M+H]+ at m/z 609.281)");
    host.reset();  // a project has one host at a time
    auto config = orvanel::ReadOrvanelConfig(facts.orvanelIniPath, VELTRA_APP_LOCATION);
    config.faults.sodiumAdduct = 5;
    config.faults.saturation = 100;
    EXPECT_EQ(orvanel::CreateOrvanelHost(config, clock)->GetDescription(),
              "Simulated instrument: nothing here was measured (spraying reserpine [M+H]+ at m/z 609.281, reserpine "
              "sodium adduct [M+Na]+ at m/z 631.263), with injected faults: SodiumAdduct=5; Saturation=100");
    config.faults = {};
    config.sample.clear();
    EXPECT_EQ(orvanel::CreateOrvanelHost(config, clock)->GetDescription(),
              "Simulated instrument: nothing here was measured (spraying solvent only)");
    config.faults.sodiumAdduct = 5;
    config.sample = {{"warfarin", 1}};
    EXPECT_EQ(HostErrorOf([&] { orvanel::CreateOrvanelHost(config, clock); }),
              "6121: SodiumAdduct is not possible for warfarin [M-H]-, spray an [M+H]+ ion or remove the key from "
              "[Faults]");
}

TEST(CreateProject, EveryCompoundStartsOnEveryTrap) {
    for (const auto& compound : orvanel::ListCompounds(VELTRA_APP_LOCATION)) {
        for (const std::int32_t model : {27, 14, 31}) {
            Surroundings surroundings(compound.name, model);
            EXPECT_EQ(surroundings.facts.expectedMz, compound.mz);
            EXPECT_EQ(surroundings.facts.polarity, compound.polarity);
            EXPECT_EQ(surroundings.SubmitStarter(*surroundings.Host(), "d.vesk"), "") << compound.name << model;
            const auto document = orvanel::ReadMethodFile(surroundings.facts.starterMethodPath);
            EXPECT_EQ(document.devices[0].kind, "SyringePump");
            const auto& table = document.MassSpec()->periods[0].experiments[0].massRanges[0].compoundParameters;
            EXPECT_EQ(orvanel::FindParameter(table, "CEP").has_value(), model == 27);
            EXPECT_EQ(*orvanel::FindParameter(table, "EP"), compound.polarity == 1 ? -10.0F : 10.0F);
            EXPECT_GT(*orvanel::FindParameter(table, "AF2"), 0);
        }
    }
}

TEST(CreateProject, StarterVoltagesAndFacts) {
    const Surroundings surroundings;
    const auto& facts = surroundings.facts;
    EXPECT_EQ(facts.starterMethodPath, surroundings.folder.File("Projects/Study1/Acquisition Methods/Start.xmt"));
    EXPECT_EQ(facts.orvanelIniPath, surroundings.folder.File("Orvanel.ini"));
    const auto document = orvanel::ReadMethodFile(facts.starterMethodPath);
    const std::vector<orvanel::Parameter> expected = {{"DP", 50}, {"EP", 10}, {"CEP", 20},
                                                      {"CE", 10}, {"CES", 0}, {"AF2", 30}};
    EXPECT_EQ(document.MassSpec()->periods[0].experiments[0].massRanges[0].compoundParameters, expected);
}

TEST(CreateProject, RefusesWhatWouldOverwriteOrCannotWork) {
    Surroundings surroundings;
    const auto create = [&](const std::string& folder, const std::string& name, const std::string& compound,
                            std::int32_t model = 27) {
        return HostErrorOf([&] { orvanel::CreateProject({folder, name, compound, VELTRA_APP_LOCATION, model}); });
    };
    const std::string before = support::ReadWholeFile(surroundings.facts.orvanelIniPath);
    EXPECT_EQ(create(surroundings.folder.Path(), "Study2", "caffeine"),
              "1020: The file " + surroundings.facts.orvanelIniPath + " exists already, choose another folder or name");
    EXPECT_EQ(support::ReadWholeFile(surroundings.facts.orvanelIniPath), before);
    EXPECT_EQ(create(surroundings.folder.File("x"), "../Study", "caffeine"),
              "1020: \"../Study\" is no name of a project, expected is a folder's name");
    EXPECT_EQ(create(surroundings.folder.File("x"), "Study", "caffeine", 99),
              "1020: Model 99 scans no linear ion trap, choose another instrument model for the project");
    const std::string longName(220, 'n');
    EXPECT_NE(create(surroundings.folder.Path(), longName, "caffeine").find("bytes, more than the 255 allowed"),
              std::string::npos);
    EXPECT_FALSE(support::FolderExists(surroundings.folder.File("x")));
    EXPECT_FALSE(support::FolderExists(surroundings.folder.File("Projects/" + longName)));
}

/// A machine that slept an hour in the second that its monotonic clock has counted.
TEST(HostClock, RealTimeShowsTheDateAndMeasuresWithoutIt) {
    using namespace std::chrono_literals;
    const std::chrono::sys_seconds date = std::chrono::sys_days(std::chrono::year(2024) / 2 / 29) + 20h;
    for (const auto& [factor, shown] : {std::pair{1.0, "3/1/2024 9:00:01 AM"}, {60.0, "3/1/2024 8:01:00 AM"}}) {
        std::chrono::hours slept{0};
        std::chrono::seconds measured{0};
        const orvanel::HostClock clock(
            factor, date + 12h, {}, true,
            {[&] { return date + slept + measured; }, [&] { return std::chrono::steady_clock::time_point(measured); }});
        slept = 1h;
        measured = 1s;
        EXPECT_EQ(clock.Now().generalDate, shown);
        EXPECT_EQ(clock.ElapsedMs(), 1000 * factor);
    }
}

TEST(HostClock, VirtualTimeMovesByPausesOnly) {
    orvanel::HostClock clock(0, std::chrono::sys_days(std::chrono::year(2024) / 2 / 29) + std::chrono::hours(23), {},
                             true);
    EXPECT_EQ(clock.ElapsedMs(), 0);
    clock.Sleep(-5);
    for (int k = 0; k < 36000; ++k)
        clock.Sleep(100);
    EXPECT_EQ(clock.ElapsedMs(), 3.6e6);
    const auto now = clock.Now();
    EXPECT_EQ(now.generalDate, "3/1/2024 12:00:00 AM");
    EXPECT_EQ(now.longTime, "12:00:00 AM");
    EXPECT_EQ(now.weekdayName + " " + now.monthName, "Friday March");
    EXPECT_EQ(now.dayOfMonth * 10000 + now.year, 12024);
}

}  // namespace
