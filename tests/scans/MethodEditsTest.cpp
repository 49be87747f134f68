#include <gmock/gmock.h>

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

const std::string starter = RunBench::starterPath;
const std::string saved = "/p/P1/Acquisition Methods/C.xmt";

/// The calls of one edit after the other.
class Edits {
  public:
    Edits(bool isNegative, bool hasCEP) : isNegative_(isNegative), hasCEP_(hasCEP) {}

    std::vector<std::string> calls;
    bool HasCEP() const { return hasCEP_; }

    Edits& Add(const std::vector<std::string>& more) {
        calls.insert(calls.end(), more.begin(), more.end());
        return *this;
    }
    Edits& StepSize(const std::string& scanTypeAndRate) {
        return Add({"CreateInstrumentHelper()",
                    std::string("GetStepSizeForScanRate(") + (hasCEP_ ? "27, " : "22, ") + scanTypeAndRate + ")"});
    }
    Edits& Load(const std::string& path) {
        return Add({"HostOpenMethod(\"" + path + "\")", "HostEnumDeviceMethods(0)", "IsMassSpecMethod()",
                    "HostEnumDeviceMethods(1)", "IsMassSpecMethod()", "AsMassSpecMethod()", "HostGetPeriod(0)",
                    "HostGetExperiment(0)", "HostGetExtendedExperiment(0)"});
    }
    /// The first load, of the object's own service.
    Edits& LoadStarter() { return Add({"GetAcquisitionService()"}).Load(starter); }
    Edits& Initialize(const std::string& scanType, const std::string& scansToSum, const std::string& q1Resolution) {
        return Add({"HostSetScanType(" + scanType + ")", "HostResetExperiment()",
                    "HostSetScansToSum(" + scansToSum + ")",
                    std::string("HostSetPolarity(") + (isNegative_ ? "1)" : "0)"),
                    "HostSetQ1Resolution(" + q1Resolution + ")", "HostResetPeriodParameters()"});
    }
    Edits& Range(const std::string& values) {
        const std::string index = std::to_string(ranges_++);
        return Add({"HostGetMassRangeCount()", "HostAddMassRange()", "HostGetMassRange(" + index + ")",
                    "HostSetMassRange(" + values + ")"});
    }
    /// Where there is no range yet, one is added.
    Edits& Dwell(const std::string& milliseconds) {
        Add({"HostGetMassRangeCount()"});
        if (ranges_ == 0) {
            Add({"HostAddMassRange()", "HostGetMassRangeCount()"});
            ranges_ = 1;
        }
        for (int range = 0; range < ranges_; ++range)
            Add({"HostGetMassRange(" + std::to_string(range) + ")", "HostSetDwellTime(" + milliseconds + ")"});
        return *this;
    }
    /// @param index in the starter method's table
    Edits& Param(const char* id, int index, const std::string& value) {
        Add({"HostGetMassRangeCount()"});
        for (int range = 0; range < ranges_; ++range)
            Add({"HostGetMassRange(" + std::to_string(range) + ")", "HostGetParameterTable()",
                 std::string("HostFindParameter(\"") + id + "\")",
                 "HostSetParameterValue(" + std::to_string(index) + ", " + value + ")"});
        return *this;
    }
    Edits& Voltage(const char* id, int index, const std::string& value) {
        return Param(id, index, (isNegative_ ? "-" : "") + value);
    }
    /// DP, EP, CEP.
    Edits& Precursor() {
        Voltage("DP", 0, "60").Voltage("EP", 1, "11");
        return hasCEP_ ? Voltage("CEP", 2, "16.5") : *this;
    }
    Edits& Params(const std::string& ce) {
        return Precursor().Voltage("CE", 3, ce).Param("AF2", 5, "0.25").Param("CES", 4, "0");
    }
    Edits& Ramp(const std::string& positive, const std::string& negative, const std::string& cycles) {
        return Add(
            {"HostSetRampParameter(" + (isNegative_ ? negative : positive) + ")", "HostSetCycles(" + cycles + ")"});
    }
    Edits& FillTime() {
        return Add({"HostSetFixedFillTime(20.5)", isNegative_ ? "HostSetQ0Trapping(0)" : "HostSetQ0Trapping(1)",
                    "HostSetDynamicFillTime(0)"});
    }
    Edits& Save() { return Add({"HostSaveMethodAs(\"" + saved + "\", true)"}); }
    Edits& Optimize() { return Save().Load(saved).Add({"HostOptimizeMassRange()"}); }

  private:
    bool isNegative_, hasCEP_;
    int ranges_ = 0;
};

TopPeakCollection Fragments(const std::vector<double>& masses) {
    PeakCollection peaks;
    for (const double mass : masses)
        peaks.push_back(std::make_shared<clsItem_Peak>(clsItem_Peak{1, mass}));
    return clsScan3_EPI::RecordsOf(peaks);
}

void ScanMRM(ScanBench& bench, const std::vector<double>& masses) {
    auto records = Fragments(masses);
    clsScan4_MRM(bench.run).Scan(609.281, records, "CE", 10, 130, 2, bench.paths);
}

void ExpectMRM(Edits& edits) {
    edits.Dwell("50").Params("41").Ramp("\"CE\", 10, 130, 2", "\"CE\", -130, -10, 2", "61");
    edits.Save().Add({"HostGetExpectedDuration()"});
}

void ExpectFinal(Edits& edits, const std::string& range) {
    edits.StepSize("13, \"1000\"").LoadStarter().Initialize("13", "1", "2").Range(range);
    edits.Add({"HostSetFirstPrecursor(609.281)", "HostSetSecondPrecursor(448.2)", "HostSetScanRate(1000)"});
    edits.Dwell("0.06").Params("41").FillTime().Optimize();
    if (!edits.HasCEP()) edits.Add({"HostSetExcitationTime(25)"});
    edits.Save();
}

struct Method {
    const char* name;
    void (*build)(ScanBench&);
    void (*expect)(Edits&);
};
const Method methods[] = {
    {"ER", [](auto& b) { clsScan1_ER(b.run).Scan(609.3, b.paths); },
     [](auto& e) {
         e.StepSize("12, \"4000 Da/s\"").LoadStarter().Initialize("12", "3", "3").Range("594.3, 624.3, 0.12");
         e.Add({"HostSetScanRate(4000)"}).Dwell("0.03").Params("10").Add({"HostSetCycles(7)"}).Save();
         e.Add({"HostGetExpectedDuration()"});
     }},
    {"Q1MI, DP again", [](auto& b) { clsScan2_Q1MI(b.run).Scan(609.281, 42, "REOPTDP", 20, 150, 2, b.paths); },
     [](auto& e) {
         e.LoadStarter().Initialize("1", "3", "2").Range("609.281, 609.281, 0").Dwell("42").Params("41");
         e.Ramp("\"DP\", 20, 150, 2", "\"DP\", -150, -20, 2", "66").Save().Add({"HostGetExpectedDuration()"});
     }},
    {"EPI", [](auto& b) { clsScan3_EPI(b.run).Scan(609.281, 40, 15, b.paths); },
     [](auto& e) {
         e.StepSize("11, \"1000\"").LoadStarter().Initialize("11", "3", "2").Range("225.100006103516, 900, 0.06");
         e.Add({"HostSetFirstPrecursor(609.281)", "HostSetScanRate(1000)"}).Dwell("0.06");
         e.Voltage("CE", 3, "40").Param("CES", 4, "15").Precursor().Param("AF2", 5, "0.25").Optimize();
         e.Add({"HostSetCycles(9)"}).Save().Add({"HostGetExpectedDuration()"});
     }},
    {"MRM",
     [](auto& b) {
         ScanMRM(b, {448.2, 195.1});
     },
     [](auto& e) {
         e.LoadStarter().Initialize("4", "3", "2").Range("609.281, 0, 448.2").Range("609.281, 0, 195.1");
         ExpectMRM(e);
     }},
    {"MRM without 2nd precursors", [](auto& b) { ScanMRM(b, {}); },
     [](auto& e) { ExpectMRM(e.LoadStarter().Initialize("4", "3", "2")); }},
    {"MS3", [](auto& b) { clsScan5_MS3(b.run).Scan(609.281, *Fragments({448.2})[0], "AF2", 0, 0.4F, 0.01F, b.paths); },
     [](auto& e) {
         e.StepSize("13, \"1000\"").LoadStarter().Initialize("13", "3", "2").Range("100.099998474121, 800, 0.06");
         e.Add({"HostSetFirstPrecursor(609.281)", "HostSetSecondPrecursor(448.2)", "HostSetScanRate(1000)"});
         e.Dwell("0.06").Params("41").Ramp("\"AF2\", 0, 0.4, 0.01", "\"AF2\", 0, 0.4, 0.01", "41").FillTime();
         e.Optimize().Save().Add({"HostGetExpectedDuration()"});
     }},
    {"final",
     [](auto& b) { EXPECT_TRUE(clsScan_SaveFinalMS3(b.run).GenerateFinalMethod(609.281, 448.2, starter, saved)); },
     [](auto& e) { ExpectFinal(e, "50, 453.2, 0.06"); }},
    {"final optimal",
     [](auto& b) {
         clsScan_SaveFinalMS3 final(b.run);
         EXPECT_TRUE(final.GenerateFinalOptimalMethod(609.281, 448.2, 195.125, starter, saved));
     },
     [](auto& e) { ExpectFinal(e, "185.125, 205.125, 0.06"); }},
};

TEST(MethodEdits, EveryMethodIsBuiltWithTheseCallsInThisOrder) {
    for (const auto& [name, build, expect] : methods) {
        for (const bool isNegative : {false, true}) {
            for (const bool hasCEP : {false, true}) {
                SCOPED_TRACE(std::string(name) + (isNegative ? ", negative" : "") + (hasCEP ? ", with CEP" : ""));
                ScanBench bench;
                auto& settings = bench.settings;
                settings.Polarity = isNegative ? 1 : 0;
                bench.run.EPAndCEPSupported = hasCEP;
                bench.run.InstrumentModelCode = hasCEP ? 27 : 22;
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
                bench.calls.beforeCall = [&](const std::string& text) {
                    if (text == "HostGetExpectedDuration()") bench.run.AbortRequested = true;  // nothing is acquired
                };
                build(bench);
                bench.calls.beforeCall = nullptr;
                Edits edits(isNegative, hasCEP);
                expect(edits);
                EXPECT_THAT(bench.calls.Operations(), testing::ElementsAreArray(edits.calls));
            }
        }
    }
}

}  // namespace
