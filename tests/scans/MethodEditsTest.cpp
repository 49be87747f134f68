// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <gtest/gtest.h>

#include "run/clsScan_SaveFinalMS3.h"
#include "scans/clsScan1_ER.h"
#include "scans/clsScan2_Q1MI.h"
#include "scans/clsScan3_EPI.h"
#include "scans/clsScan4_MRM.h"
#include "scans/clsScan5_MS3.h"
#include "tests/support_files/ScanBench.h"

/// Every method that a run writes, as the host's calls from the first to the last, with their values.

namespace {

using namespace veltra;
using std::string;

const string starter = RunBench::starterPath;
const string saved = "/p/P1/Acquisition Methods/C.xmt";

/// The host's calls of one edit after the other, on the starter method's table of parameters.
struct Edits {
    bool isNegative, hasCEP;
    int ranges = 0;
    string calls{};

    Edits& Then(const string& more) {
        calls += (calls.empty() ? "" : "; ") + more;
        return *this;
    }
    Edits& InEachRange(const string& more) {
        Then("HostGetMassRangeCount()");
        if (ranges == 0) Then("HostAddMassRange(); HostGetMassRangeCount()");  // dwell times want one
        ranges = std::max(ranges, 1);
        for (int range = 0; range < ranges; ++range)
            Then("HostGetMassRange(" + std::to_string(range) + "); " + more);
        return *this;
    }
    Edits& StepSize(const string& scanTypeAndRate) {
        return Then(string("CreateInstrumentHelper(); GetStepSizeForScanRate(") + (hasCEP ? "27, " : "22, ") +
                    scanTypeAndRate + ")");
    }
    Edits& Load(const string& path) {
        return Then("HostOpenMethod(\"" + path +
                    "\"); HostEnumDeviceMethods(0); IsMassSpecMethod(); HostEnumDeviceMethods(1); IsMassSpecMethod(); "
                    "AsMassSpecMethod(); HostGetPeriod(0); HostGetExperiment(0); HostGetExtendedExperiment(0)");
    }
    Edits& Start(const string& scanType, const string& scansToSum, const string& q1Resolution) {
        Then("GetAcquisitionService()").Load(starter);
        return Then("HostSetScanType(" + scanType + "); HostResetExperiment(); HostSetScansToSum(" + scansToSum +
                    "); HostSetPolarity(" + (isNegative ? "1" : "0") + "); HostSetQ1Resolution(" + q1Resolution +
                    "); HostResetPeriodParameters()");
    }
    Edits& Range(const string& values) {
        return Then("HostGetMassRangeCount(); HostAddMassRange(); HostGetMassRange(" + std::to_string(ranges++) +
                    "); HostSetMassRange(" + values + ")");
    }
    Edits& Dwell(const string& milliseconds) { return InEachRange("HostSetDwellTime(" + milliseconds + ")"); }
    Edits& Param(const string& id, int index, const string& value) {
        return InEachRange("HostGetParameterTable(); HostFindParameter(\"" + id + "\"); HostSetParameterValue(" +
                           std::to_string(index) + ", " + value + ")");
    }
    Edits& Voltage(const string& id, int index, const string& value) {
        return Param(id, index, (isNegative ? "-" : "") + value);
    }
    Edits& Precursor() {
        Voltage("DP", 0, "60").Voltage("EP", 1, "11");
        return hasCEP ? Voltage("CEP", 2, "16.5") : *this;
    }
    Edits& Params(const string& ce) {
        return Precursor().Voltage("CE", 3, ce).Param("AF2", 5, "0.25").Param("CES", 4, "0");
    }
    Edits& Ramp(const string& positive, const string& negative, const string& cycles) {
        return Then("HostSetRampParameter(" + (isNegative ? negative : positive) + "); HostSetCycles(" + cycles + ")");
    }
    Edits& FillTime() {
        return Then(string("HostSetFixedFillTime(20.5); HostSetQ0Trapping(") + (isNegative ? "0" : "1") +
                    "); HostSetDynamicFillTime(0)");
    }
    Edits& Save() { return Then("HostSaveMethodAs(\"" + saved + "\", true)"); }
    Edits& Optimize() { return Save().Load(saved).Then("HostOptimizeMassRange()"); }
    void SaveForGood() { Save().Then("HostGetExpectedDuration()"); }
};

void ScanMRM(ScanBench& bench, const std::vector<double>& masses) {
    auto records = Fragments(masses);
    clsScan4_MRM(bench.run).Scan(609.281, records, "CE", 10, 130, 2, bench.paths);
}

void ExpectMRM(Edits& e) {
    e.Dwell("50").Params("41").Ramp("\"CE\", 10, 130, 2", "\"CE\", -130, -10, 2", "61").SaveForGood();
}

const string ms3Precursors = "HostSetFirstPrecursor(609.281); HostSetSecondPrecursor(448.2); HostSetScanRate(1000)";

void ExpectFinal(Edits& e, const string& range) {
    e.StepSize("13, \"1000\"").Start("13", "1", "2").Range(range).Then(ms3Precursors).Dwell("0.06").Params("41");
    e.FillTime().Optimize();
    if (!e.hasCEP) e.Then("HostSetExcitationTime(25)");
    e.Save();
}

const struct {
    const char* name;
    void (*build)(ScanBench& bench);
    void (*expect)(Edits& e);
} methods[] = {
    {"ER", [](auto& bench) { clsScan1_ER(bench.run).Scan(609.3, bench.paths); },
     [](auto& e) {
         e.StepSize("12, \"4000 Da/s\"").Start("12", "3", "3").Range("594.3, 624.3, 0.12");
         e.Then("HostSetScanRate(4000)").Dwell("0.03").Params("10").Then("HostSetCycles(7)").SaveForGood();
     }},
    {"Q1MI", [](auto& bench) { clsScan2_Q1MI(bench.run).Scan(609.281, 42, "REOPTDP", 20, 150, 2, bench.paths); },
     [](auto& e) {
         e.Start("1", "3", "2").Range("609.281, 609.281, 0").Dwell("42").Params("41");
         e.Ramp("\"DP\", 20, 150, 2", "\"DP\", -150, -20, 2", "66").SaveForGood();
     }},
    {"EPI", [](auto& bench) { clsScan3_EPI(bench.run).Scan(609.281, 40, 15, bench.paths); },
     [](auto& e) {
         e.StepSize("11, \"1000\"").Start("11", "3", "2").Range("225.100006103516, 900, 0.06");
         e.Then("HostSetFirstPrecursor(609.281); HostSetScanRate(1000)").Dwell("0.06").Voltage("CE", 3, "40");
         e.Param("CES", 4, "15").Precursor().Param("AF2", 5, "0.25").Optimize().Then("HostSetCycles(9)").SaveForGood();
     }},
    {"MRM",
     [](auto& bench) {
         ScanMRM(bench, {448.2, 195.1});
     },
     [](auto& e) { ExpectMRM(e.Start("4", "3", "2").Range("609.281, 0, 448.2").Range("609.281, 0, 195.1")); }},
    {"MRM without 2nd precursors", [](auto& bench) { ScanMRM(bench, {}); },
     [](auto& e) { ExpectMRM(e.Start("4", "3", "2")); }},
    {"MS3",
     [](auto& bench) {
         clsScan5_MS3(bench.run).Scan(609.281, *Fragments({448.2})[0], "AF2", 0, 0.4F, 0.01F, bench.paths);
     },
     [](auto& e) {
         e.StepSize("13, \"1000\"").Start("13", "3", "2").Range("100.099998474121, 800, 0.06").Then(ms3Precursors);
         e.Dwell("0.06").Params("41").Ramp("\"AF2\", 0, 0.4, 0.01", "\"AF2\", 0, 0.4, 0.01", "41").FillTime();
         e.Optimize().SaveForGood();
     }},
    {"final", [](auto& bench) { clsScan_SaveFinalMS3(bench.run).GenerateFinalMethod(609.281, 448.2, starter, saved); },
     [](auto& e) { ExpectFinal(e, "50, 453.2, 0.06"); }},
    {"final optimal",
     [](auto& bench) {
         clsScan_SaveFinalMS3(bench.run).GenerateFinalOptimalMethod(609.281, 448.2, 195.125, starter, saved);
     },
     [](auto& e) { ExpectFinal(e, "185.125, 205.125, 0.06"); }},
};

TEST(MethodEdits, EveryMethodIsBuiltWithTheseCallsInThisOrder) {
    for (const auto& [name, build, expect] : methods) {
        for (const auto& [isNegative, hasCEP] : {std::pair{false, true}, {false, false}, {true, true}, {true, false}}) {
            SCOPED_TRACE(string(name) + (isNegative ? ", negative" : "") + (hasCEP ? ", with CEP" : ""));
            ScanBench bench;
            bench.run.EPAndCEPSupported = hasCEP;
            bench.run.InstrumentModelCode = hasCEP ? 27 : 22;
            auto& settings = bench.settings;
            settings.Polarity = isNegative ? 1 : 0;
            settings.Advanced_ERScanRate = "4000 Da/s";
            settings.Advanced_ERCycles = 7;
            settings.Advanced_EPIMassStart = 225.1F;
            settings.Advanced_EPIMassEnd = 900;
            settings.Advanced_EPICycles = 9;
            settings.Advanced_MRMDwellTime = 50;
            settings.Advanced_MS3MassStart = 100.1F;
            settings.Advanced_MS3MassEnd = 800;
            settings.Advanced_MS3UseQ0Trapping = !isNegative;
            settings.Advanced_MS3FixedFillTime = 20.5;
            bench.calls.beforeCall = [&](const string& text) {
                if (text == "HostGetExpectedDuration()") bench.run.AbortRequested = true;  // nothing is acquired
            };
            build(bench);
            bench.calls.beforeCall = nullptr;
            Edits edits{isNegative, hasCEP};
            expect(edits);
            EXPECT_EQ(Joined(bench.calls.Operations()), edits.calls);
        }
    }
}

}  // namespace
