// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/clsAcquire.h"

#include <gmock/gmock.h>

#include <cmath>

#include "host/InstrumentModels.h"
#include "tests/host/StepTable.h"

namespace {

using testing::ElementsAre;
using veltra::clsAcquire;
using Calls = std::vector<std::string>;

const std::string newPath = "/p/New.xmt";

/// A builder that has loaded the starter method.
class LoadedBench : public RunBench {
  public:
    void Load() {
        acquire.Step1_Load(starterPath);
        EXPECT_EQ(acquire.ErrorDescription(), "");
        calls.Forget();
    }
    FakeMethod Saved() {
        acquire.Step5_SaveAsNewMethod(newPath);
        EXPECT_EQ(acquire.ErrorDescription(), "");
        return fake.store.methods[newPath];
    }
    clsAcquire acquire{run};
};

TEST(clsAcquire, LoadFindsTheFirstMassSpecMethodAndLooksAtModesOfThreeModelsOnly) {
    const std::string load =
        "HostOpenMethod(\"/p/Starter.xmt\"); HostEnumDeviceMethods(0); IsMassSpecMethod(); HostEnumDeviceMethods(1); "
        "IsMassSpecMethod(); AsMassSpecMethod(); HostGetPeriod(0); HostGetExperiment(0); HostGetExtendedExperiment(0)";
    for (const int code : {14, 22, 24, 26, 27, 29, 31, 33, 0}) {
        for (const int currentMode : {1, 2}) {
            SCOPED_TRACE(code * 10 + currentMode);
            RunBench bench;
            bench.fake.store.methods[RunBench::starterPath].devicesAreMassSpec = {false, true, true};
            bench.fake.store.currentOperatingMode = currentMode;
            bench.run.InstrumentModelCode = code;
            const bool checks = code == 26 || code == 29 || code == 31;
            clsAcquire acquire(bench.run);
            EXPECT_THAT(bench.calls.Operations(), ElementsAre("GetAcquisitionService()"));
            bench.calls.Forget();
            acquire.Step1_Load(RunBench::starterPath);
            const char* const check = checks ? "; HostGetMethodOperatingMode(); HostGetCurrentOperatingMode()" : "";
            EXPECT_EQ(Joined(bench.calls.Operations()), load + check);
            EXPECT_EQ(acquire.ErrorDescription(),
                      checks && currentMode == 2
                          ? "Acquire: The loaded method does not match the current mass spectrometer operating mode."
                          : "");
        }
    }
}

/// Two mass ranges, the second one without CE; negative, so that what is told is seen to be what was given.
class StepBench : public LoadedBench {
  public:
    StepBench() {
        settings.Q1Resolution = 2;
        settings.Polarity = 1;
        fake.store.methods[starterPath].ranges.push_back({1, 2, 3, 4, {{"DP", 1.0F}}});
        Load();
    }
};

TEST(clsAcquire, StepsAskTheHostInThisOrderAndTellOfEveryFailureWithTheCallersValues) {
    const auto initialization = [](const std::string& scanType, const std::string& q1Resolution) {
        return "HostSetScanType(" + scanType + "); HostResetExperiment(); HostSetScansToSum(3); HostSetPolarity(1); " +
               "HostSetQ1Resolution(" + q1Resolution + "); HostResetPeriodParameters()";
    };
    const std::string notInitialized = "Acquire: Error during method initialization";
    const std::string setting = "Acquire: Error during setting of ";
    ExpectSteps<StepBench, clsAcquire>(
        &StepBench::acquire,
        {{[](auto& a) { a.Step2_InitializeMethod(12, 3); }, initialization("12", "3"), notInitialized},
         {[](auto& a) { a.Step2_InitializeMethod(13, 3); }, initialization("13", "2"), notInitialized},
         {[](auto& a) {
              std::int32_t index = 2;
              a.Step3a_SetMassRange(594.3, 1e15, 0.06, index);
              EXPECT_EQ(index, 2);
          },
          "HostGetMassRangeCount(); HostAddMassRange(); HostGetMassRange(2); HostSetMassRange(594.3, 1E+15, 0.06)",
          setting + "mass range to 594.3 start, 1E+15 stop, 0.06 step"},
         {[](auto& a) { a.Step3b_SetEPIProductOf(609.2812); }, "HostSetFirstPrecursor(609.2812)",
          "Acquire: Error during setting EPI Product Of to 609.2812 Da"},
         {[](auto& a) { a.Step3c_SetMS3Precursors(609.25, 195.1); },
          "HostSetFirstPrecursor(609.25); HostSetSecondPrecursor(195.1)",
          setting + "MS/MS/MS precursors to 609.25 Da and 195.1 Da"},
         {[](auto& a) { a.Step4a_SetScanRate(250.5); }, "HostSetScanRate(250.5)", setting + "scan rate to 250.5 Da/s"},
         {[](auto& a) { a.Step4b_SetDwellTime(0.06 / 1000 * 1000); },
          "HostGetMassRangeCount(); HostGetMassRange(0); HostSetDwellTime(0.06); HostGetMassRange(1); "
          "HostSetDwellTime(0.06)",
          setting + "dwell time to 0.06 msec"},
         {[](auto& a) { a.Step4c_SetCompoundParam("CE", 35.1F); },
          "HostGetMassRangeCount(); HostGetMassRange(0); HostGetParameterTable(); HostFindParameter(\"CE\"); "
          "HostSetParameterValue(3, -35.1); HostGetMassRange(1); HostGetParameterTable(); HostFindParameter(\"CE\")",
          setting + "CE to 35.1"},
         {[](auto& a) { a.Step4d_SetRampingParamAndNumCycles("CES", 20, 150, 2.5F); },
          "HostSetRampParameter(\"CES\", -150, -20, 2.5); HostSetCycles(53)",
          setting + "CES ramping parameter to 20 start, 150 stop, 2.5 step",
          "Acquire: Error setting the number of cycles to 53"},
         {[](auto& a) { a.Step4e_SetSourceGasParams("GS1", 40.5F); },
          "HostGetSourceGasTable(); HostFindParameter(\"GS1\"); HostSetParameterValue(1, 40.5)",
          setting + "GS1 Source/Gas parameter to 40.5"},
         {[](auto& a) { a.Step4f_SetFillTime(true, false, 20); },
          "HostSetFixedFillTime(20); HostSetQ0Trapping(0); HostSetDynamicFillTime(1)", setting + "fill time"},
         {[](auto& a) { a.Step4f_SetFillTime(false, true, 0.5); },
          "HostSetFixedFillTime(0.5); HostSetQ0Trapping(1); HostSetDynamicFillTime(0)", setting + "fill time"},
         {[](auto& a) { a.Step4g_SetNumOfCycles(70000); }, "HostSetCycles(70000)",
          "Acquire: Error setting the number of cycles to 70000"},
         {[](auto& a) { a.Step5_SaveAsNewMethod(newPath); }, "HostSaveMethodAs(\"/p/New.xmt\", true)",
          "Acquire: Error during saving of /p/New.xmt"},
         {[](auto& a) { a.OptimizeMassRange(); }, "HostOptimizeMassRange()",
          "Acquire: Error during optimization of mass range"},
         {[](auto& a) {
              const double durationMs = a.GetExpectedDuration();
              EXPECT_EQ(durationMs, a.ErrorOccurred() ? 0 : 60000);
          },
          "HostGetExpectedDuration()", "Acquire: Error getting the expected duration"}});
}

TEST(clsAcquire, NegativePolarityWritesMinusTheAbsoluteValueButNoNegativeZero) {
    struct Case {
        int polarity;
        std::string id;
        float given;
        std::string written;  // the sign included
    };
    for (const auto& [polarity, id, given, written] :
         {Case{0, "CE", -35, "-35"}, Case{1, "CE", -35, "-35"}, Case{1, "DP", 0, "0"}, Case{1, "AF2", -0.5F, "-0.5"}}) {
        LoadedBench bench;
        bench.settings.Polarity = polarity;
        bench.Load();
        bench.acquire.Step4c_SetCompoundParam(id, given);
        EXPECT_TRUE(bench.calls.Operations().back().ends_with(", " + written + ")"));
        EXPECT_FALSE(given == 0 && std::signbit(bench.Saved().ranges[0].Value(id)));
    }
}

TEST(clsAcquire, CyclesAreTheStepsInSinglePrecisionHalfToEvenPlusOne) {
    struct Case {
        float start, stop, step;
        std::int32_t cycles;
    };
    for (const auto& c : {Case{0, 0.35F, 0.01F, 36}, Case{0, 0.35F, 0.1F, 5}, Case{0, 5, 2, 3}, Case{0, 7, 2, 5},
                          Case{100, 20, -5, -15}, Case{5, 5, 1, 1}}) {
        SCOPED_TRACE(c.stop);
        LoadedBench bench;
        bench.Load();
        bench.acquire.Step4d_SetRampingParamAndNumCycles("AF2", c.start, c.stop, c.step);
        EXPECT_EQ(bench.Saved().cycles, c.cycles);
    }
}

TEST(clsAcquire, ARampWithoutAStepFailsBeforeCyclesAreSet) {
    LoadedBench bench;
    bench.Load();
    bench.acquire.Step4d_SetRampingParamAndNumCycles("DP", 20, 150, 0);
    EXPECT_EQ(
        bench.acquire.ErrorDescription(),
        "Acquire: Error during setting of DP ramping parameter to 20 start, 150 stop, 0 step (Error 6: Overflow).");
    EXPECT_EQ(bench.calls.CountOf("HostSetCycles"), 0);
}

TEST(clsAcquire, AMissingMassRangeIsAddedForDwellTimesAndInitialValuesOnly) {
    LoadedBench bench;
    bench.fake.store.methods[RunBench::starterPath].ranges.clear();
    bench.Load();
    bench.acquire.Step4c_SetCompoundParam("CE", 1);
    EXPECT_EQ(bench.calls.CountOf("HostAddMassRange"), 0);
    bench.acquire.UpdateInitialCompoundParams();
    EXPECT_EQ(bench.run.results->DP.Initial, 50.0F);
    bench.acquire.Step4b_SetDwellTime(25);
    EXPECT_EQ(bench.Saved().ranges.at(0).dwellTimeMs, 25);
    EXPECT_EQ(bench.calls.CountOf("HostAddMassRange"), 1);
}

TEST(clsAcquire, InitialCompoundParamsGoToInitialAndCurrentInBothPolarities) {
    for (const int polarity : {0, 1}) {
        LoadedBench bench;
        bench.settings.Polarity = polarity;
        auto& ranges = bench.fake.store.methods[RunBench::starterPath].ranges;
        ranges[0].parameters = {{"XYZ", 99.0F},  {"CE", 35.0F}, {"DP", -50.0F},
                                {"AF2", 0.125F}, {"CES", 5.0F}, {"EP", 0.0F}};
        ranges.push_back({1, 2, 3, 4, {{"DP", 7.0F}}});
        bench.run.results->CEP = {1.5F, 2.5F};
        bench.Load();
        bench.acquire.UpdateInitialCompoundParams();
        EXPECT_EQ(bench.acquire.ErrorDescription(), "");
        EXPECT_EQ(bench.calls.CountOf("HostGetMassRangeCount"), 1);
        const auto& results = *bench.run.results;
        EXPECT_EQ(results.CE.Initial, polarity == 1 ? -35.0F : 35.0F);
        EXPECT_EQ(results.DP.Initial, -50.0F);
        EXPECT_EQ(results.AF2.Initial, 0.125F);
        for (const auto* param : {&results.DP, &results.EP, &results.CE, &results.AF2})
            EXPECT_EQ(param->Current, param->Initial);
        EXPECT_FALSE(std::signbit(results.EP.Initial));
        EXPECT_EQ(results.CEP.Current, 1.5F) << "not in the table, so left alone";
        EXPECT_EQ(results.CEP.Initial, 2.5F);
    }
}

TEST(clsAcquire, AMethodWithoutMassSpecMethodFailsAndDisablesAllSteps) {
    std::vector<bool> withoutEnd(5000, false);
    withoutEnd.push_back(true);  // nobody looks so far
    for (const auto& devices : {std::vector<bool>{}, std::vector<bool>{false, false}, withoutEnd}) {
        RunBench bench;
        bench.fake.store.methods[RunBench::starterPath].devicesAreMassSpec = devices;
        clsAcquire acquire(bench.run);
        acquire.Step1_Load(RunBench::starterPath);
        EXPECT_EQ(acquire.ErrorDescription(),
                  "Acquire: The method doesn't contain a mass spec method.  Method or hardware configuration invalid.");
        bench.calls.Forget();
        acquire.Step4a_SetScanRate(1);
        EXPECT_THAT(bench.calls.Operations(), ElementsAre());
    }
}

TEST(clsAcquire, AStepBeforeAnyLoadIsAnErrorToo) {
    RunBench bench;
    clsAcquire acquire(bench.run);
    acquire.Step4a_SetScanRate(1000);
    EXPECT_EQ(acquire.ErrorDescription(),
              "Acquire: Error during setting of scan rate to 1000 Da/s (Error 91: Object variable or With block "
              "variable not set).");

    bench.run.hostApplication.reset();
    clsAcquire withoutHost(bench.run);
    EXPECT_FALSE(withoutHost.ErrorOccurred()) << "creation itself tells nothing";
    withoutHost.Step1_Load(RunBench::starterPath);
    EXPECT_EQ(withoutHost.ErrorDescription(), "Acquire: Error loading /p/Starter.xmt.  Invalid acquisition method.");
}

TEST(clsAcquire, LoadingAgainEditsTheOtherMethodAndReleasesTheFirst) {
    LoadedBench bench;
    bench.fake.store.methods["/p/Other.xmt"].ranges.clear();
    bench.Load();
    bench.acquire.Step4a_SetScanRate(77);
    bench.calls.Forget();
    bench.acquire.Step1_Load("/p/Other.xmt");
    EXPECT_THAT(bench.calls.Only({"~ExtendedExperiment", "~Experiment", "~Period", "~MassSpecMethod",
                                  "~AcquisitionMethod", "HostOpenMethod"}),
                ElementsAre("~ExtendedExperiment", "~Experiment", "~Period", "~MassSpecMethod", "~AcquisitionMethod",
                            "HostOpenMethod(\"/p/Other.xmt\")"));
    EXPECT_EQ(bench.Saved().scanRate, 0);
    EXPECT_TRUE(bench.Saved().ranges.empty());
}

TEST(clsAcquire, TheExcitationTimeIsSetOnSixModelsEvenThoughTheObjectHasFailed) {
    for (const int code : {0, 14, 22, 24, 26, 27, 29, 31, 33, 34}) {
        SCOPED_TRACE(code);
        LoadedBench bench;
        bench.run.InstrumentModelCode = code;
        bench.Load();
        bench.acquire.ErrorOccurred(true);
        bench.acquire.SetExcitationTimeForDasmyrSeries();
        const bool isSet = code >= 22 && code != 27 && code != 34;
        EXPECT_EQ(bench.calls.Operations(), isSet ? Calls{"HostSetExcitationTime(25)"} : Calls{});
        EXPECT_EQ(veltra::SupportsEPAndCEP(code), !isSet && code != 14);

        clsAcquire failed(bench.run);
        failed.Step1_Load("/p/none.xmt");
        if (isSet)
            EXPECT_THROW(failed.SetExcitationTimeForDasmyrSeries(), std::exception);
        else
            EXPECT_NO_THROW(failed.SetExcitationTimeForDasmyrSeries());
        EXPECT_EQ(failed.ErrorDescription(), "Acquire: Error loading /p/none.xmt.  Invalid acquisition method.");
    }
}

}  // namespace
