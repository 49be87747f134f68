// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/MethodPorts.h"

#include <cmath>

#include "orvanel/methods/MethodFile.h"
#include "support/Files.h"
#include "tests/orvanel/methods/MethodTestTools.h"
#include "tests/support_files/TempFolder.h"

namespace {

class MethodPorts : public testing::Test {
  protected:
    MethodPorts() {
        orvanel::WriteMethodFile(path_, MethodForTests());
        Open();
    }
    void Open() {
        service_ =
            orvanel::CreateAcquisitionService(std::make_shared<const orvanel::InstrumentModel>(ModelForTests()), 1);
        method_ = service_->HostOpenMethod(path_);
        massSpec_ = method_->HostEnumDeviceMethods(1)->AsMassSpecMethod();
        period_ = massSpec_->HostGetPeriod(0);
        experiment_ = period_->HostGetExperiment(0);
        extended_ = period_->HostGetExtendedExperiment(0);
    }
    orvanel::PeriodRecord Saved() {
        method_->HostSaveMethodAs(folder_.File("saved.xmt"), true);
        return orvanel::ReadMethodFile(folder_.File("saved.xmt")).MassSpec()->periods.at(0);
    }

    TempFolder folder_;
    std::string path_ = folder_.File("m.xmt");
    std::unique_ptr<ports::AcquisitionService> service_;
    std::unique_ptr<ports::AcquisitionMethod> method_;
    std::unique_ptr<ports::MassSpecMethod> massSpec_;
    std::unique_ptr<ports::Period> period_;
    std::unique_ptr<ports::Experiment> experiment_;
    std::unique_ptr<ports::ExtendedExperiment> extended_;
};

TEST_F(MethodPorts, EditsReachTheSavedFile) {
    experiment_->HostSetScanType(11);
    experiment_->HostSetPolarity(1);
    experiment_->HostSetQ1Resolution(3);
    extended_->HostSetScansToSum(3);
    extended_->HostSetScanRate(250);
    extended_->HostSetFixedFillTime(12.5);
    extended_->HostSetQ0Trapping(1);
    extended_->HostSetDynamicFillTime(0);
    extended_->HostSetSecondPrecursor(300);
    extended_->HostSetExcitationTime(25);
    experiment_->HostSetFirstPrecursor(500);
    auto range = experiment_->HostGetMassRange(0);
    range->HostSetMassRange(60, 90, 0.03);
    range->HostSetDwellTime(0.12);
    auto table = range->HostGetParameterTable();
    table->HostSetParameterValue(table->HostFindParameter("DP"), -120);
    auto gas = experiment_->HostGetSourceGasTable();
    gas->HostSetParameterValue(gas->HostFindParameter("IS"), -4500);
    period_->HostSetRampParameter("DP", -150, -20, 2);
    period_->HostSetCycles(66);

    const auto period = Saved();
    EXPECT_EQ(period.cycles, 66);
    EXPECT_EQ(period.ramp->start, -150.0F);
    const auto& saved = period.experiments[0];
    EXPECT_EQ(std::make_tuple(saved.scanType, saved.polarity, saved.q1Resolution, saved.scansToSum, saved.scanRate),
              std::make_tuple(11, 1, 3, 3, 250.0));
    EXPECT_EQ(std::make_tuple(saved.fixedFillTimeMs, saved.q0Trapping, saved.dynamicFillTime, saved.firstPrecursor,
                              saved.secondPrecursor, saved.excitationTimeMs),
              std::make_tuple(12.5, true, false, 500.0, 300.0, 25.0));
    EXPECT_EQ(saved.massRanges[0].stop, 90);
    EXPECT_EQ(saved.massRanges[0].dwellTimeMs, 0.12);
    EXPECT_EQ(orvanel::FindParameter(saved.massRanges[0].compoundParameters, "DP"), -120.0F);
    EXPECT_EQ(orvanel::FindParameter(saved.sourceGas, "IS"), -4500.0F);
}

TEST_F(MethodPorts, ResetsKeepTheFirstRangesTableForNewRangesAndTheCycles) {
    auto staleRange = experiment_->HostGetMassRange(0);
    auto staleTable = staleRange->HostGetParameterTable();
    experiment_->HostResetExperiment();
    period_->HostResetPeriodParameters();
    EXPECT_EQ(experiment_->HostGetMassRangeCount(), 0);
    EXPECT_EQ(HostErrorOf([&] { staleTable->HostGetParameterCount(); }),
              "1110: There is no mass range 0, the method has 0 counted from 0");
    EXPECT_EQ(HostErrorOf([&] { staleRange->HostSetDwellTime(1); }),
              "1110: There is no mass range 0, the method has 0 counted from 0");
    // Also through a file: the table must survive a method without ranges.
    method_->HostSaveMethodAs(path_, true);
    Open();
    EXPECT_EQ(experiment_->HostAddMassRange(), 0);
    EXPECT_EQ(experiment_->HostAddMassRange(), 1);
    EXPECT_FALSE(Saved().ramp);
    EXPECT_EQ(Saved().cycles, 51);
    const auto saved = Saved().experiments[0];
    EXPECT_EQ(saved.firstPrecursor, 0);
    EXPECT_EQ(saved.secondPrecursor, 0);
    EXPECT_TRUE(saved.newRangeParameters.empty()) << "another scan's, once there is a range";
    const auto expected = MethodForTests().MassSpec()->periods[0].experiments[0].massRanges[0].compoundParameters;
    for (const auto& range : saved.massRanges)
        EXPECT_EQ(range.compoundParameters, expected);
}

TEST_F(MethodPorts, ImpossibleValuesAreRefusedAndChangeNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    const std::string before = support::ReadWholeFile(path_);
    auto range = experiment_->HostGetMassRange(0);
    auto table = range->HostGetParameterTable();
    const int dp = table->HostFindParameter("DP");
    const struct {
        std::function<void()> action;
        const char* expected;
    } cases[] = {
        {[&] { experiment_->HostSetScanType(5); }, "Scan type 5 is not known, there are 1, 4, 11, 12 and 13"},
        {[&] { experiment_->HostSetPolarity(2); },
         "Polarity of 2 is impossible, allowed is a whole number from 0 to 1"},
        {[&] { experiment_->HostSetQ1Resolution(-1); },
         "Q1 resolution of -1 is impossible, allowed is a whole number from 0 to 3"},
        {[&] { experiment_->HostSetFirstPrecursor(nan); },
         "Precursor m/z of NaN Da is impossible, allowed is from 5 to 1250 Da"},
        {[&] { extended_->HostSetSecondPrecursor(1250.1); },
         "Precursor m/z of 1250.1 Da is impossible, allowed is from 5 to 1250 Da"},
        {[&] { extended_->HostSetScansToSum(0); },
         "Number of scans to sum of 0 is impossible, allowed is a whole number from 1 to 1000"},
        {[&] { extended_->HostSetScanRate(4000); },
         "Scan rate 4000 Da/s is not offered by model 27 (Test trap) for scan type 13, which has 250, 1000"},
        {[&] { extended_->HostSetFixedFillTime(0.01); },
         "Fill time of 0.01 ms is impossible, allowed is from 0.05 to 10000 ms"},
        {[&] { extended_->HostSetQ0Trapping(-1); },
         "Q0 trapping of -1 is impossible, allowed is a whole number from 0 to 1"},
        {[&] { extended_->HostSetExcitationTime(0); },
         "Excitation time of 0 ms is impossible, allowed is from 1 to 1000 ms"},
        {[&] { range->HostSetMassRange(400, 100, 0.06); },
         "Mass range 400, 100, 0.06 is no range, expected is a start below the stop, both from 0 to 10000 Da"},
        {[&] { range->HostSetMassRange(100, 400, 0); },
         "Mass range 100, 400, 0 has an impossible step, expected is one above 0 and no larger than the range, with at "
         "most 200000 steps"},
        {[&] { range->HostSetMassRange(100, nan, 1); },
         "Mass range 100, NaN, 1 is no range, expected is a start below the stop, both from 0 to 10000 Da"},
        {[&] { range->HostSetDwellTime(0); },
         "Dwell time of 0 ms is impossible, allowed is above 0 and up to 10000 ms"},
        {[&] { table->HostSetParameterValue(dp, -300.5F); },
         "DP of -300.5 is impossible on model 27 (Test trap), allowed is a magnitude from 0 to 300"},
        {[&] { table->HostSetParameterValue(dp, infinite); }, "DP of Infinity is impossible, expected is a number"},
        {[&] { period_->HostSetCycles(-64); },
         "Number of cycles of -64 is impossible, allowed is a whole number from 1 to 100000"},
        {[&] { period_->HostSetRampParameter("CEP", 0, 10, 1); },
         "Parameter CEP cannot be ramped, the method has DP, EP, CE, AF2"},
        {[&] { period_->HostSetRampParameter("DP", 0, 10, 0); },
         "Ramp of DP from 0 to 10 by 0 has an impossible step, expected is one other than 0"},
        {[&] { period_->HostSetRampParameter("DP", 0, 10, -1); },
         "Ramp of DP from 0 to 10 by -1 runs away from its end, turn the sign of the step"},
        {[&] { period_->HostSetRampParameter("CE", 5, 200, 1); },
         "CE of 200 is impossible on model 27 (Test trap), allowed is a magnitude from 5 to 150.3"},
        {[&] { period_->HostSetRampParameter("DP", 0, 300, 0.001F); },
         "Ramp of DP from 0 to 300 by 0.001 has more than 100000 values, set a larger step"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(HostErrorOf(one.action), std::string("1120: ") + one.expected);
    method_->HostSaveMethodAs(folder_.File("after.xmt"), false);
    EXPECT_EQ(support::ReadWholeFile(folder_.File("after.xmt")), before);
}

TEST_F(MethodPorts, ALimitThatASingleCannotHoldExactlyIsStillAllowed) {
    auto table = experiment_->HostGetMassRange(0)->HostGetParameterTable();
    const int ce = table->HostFindParameter("CE");
    EXPECT_EQ(HostErrorOf([&] { table->HostSetParameterValue(ce, -150.3F); }), "");  // widened, it is 150.30000305
    EXPECT_EQ(HostErrorOf([&] { period_->HostSetRampParameter("CE", 5, 150.3F, 0.1F); }), "");
    EXPECT_NE(HostErrorOf([&] { table->HostSetParameterValue(ce, 150.31F); }), "");
}

TEST_F(MethodPorts, ThreeNumbersOfARangeAreReadByScanType) {
    const struct {
        int scanType;
        double start, stop, step;
        const char* expected;
    } cases[] = {
        {4, 609.28, 0, 397.21, ""},
        {4, 609.28, 397.21, 0,
         "1120: Mass range 609.28, 397.21, 0 is no transition, expected are Q1, 0 and Q3 with Q1 and Q3 from 5 to 1250 "
         "Da"},
        {1, 609.28, 609.28, 0, ""},
        {1, 609.28, 610, 0,
         "1120: Mass range 609.28, 610, 0 is no single mass, expected are mass, mass and 0 with the mass from 5 to "
         "1250 Da"},
        {12, 594.28, 624.28, 0.06, ""},
        {13, 2, 1500, 0.06, ""},  // wider than the trap: clipped by HostOptimizeMassRange
    };
    auto range = experiment_->HostGetMassRange(0);
    for (const auto& one : cases) {
        experiment_->HostSetScanType(one.scanType);
        EXPECT_EQ(HostErrorOf([&] { range->HostSetMassRange(one.start, one.stop, one.step); }), one.expected);
    }
}

TEST_F(MethodPorts, OptimizeMassRangeClipsASavedMethodToWholeSteps) {
    auto range = experiment_->HostGetMassRange(0);
    range->HostSetMassRange(20, 402.24, 0.06);
    EXPECT_EQ(HostErrorOf([&] { extended_->HostOptimizeMassRange(); }),
              "1122: The mass range of a changed method cannot be optimised, save the method first");
    Saved();
    extended_->HostOptimizeMassRange();
    auto optimized = Saved().experiments[0].massRanges[0];
    EXPECT_EQ(optimized.start, 50);
    EXPECT_NEAR(optimized.stop, 402.26, 1e-9);  // 5871 steps of 0.06 from 50
    range->HostSetMassRange(999.99, 1500, 0.06);
    Saved();
    EXPECT_EQ(HostErrorOf([&] { extended_->HostOptimizeMassRange(); }),
              "1121: The mass range from 999.99 to 1500 Da by 0.06 Da leaves nothing to scan within the trap's 50 to "
              "1000 Da, set another one");
}

TEST_F(MethodPorts, SavingObeysFolderNameAndOverwriting) {
    const std::string before = support::ReadWholeFile(path_);
    period_->HostSetCycles(7);
    const struct {
        std::string path;
        bool overwrite;
        std::string reason;
    } cases[] = {
        {path_, false, "the file exists already and must not be overwritten"},
        {folder_.File("none/m.xmt"), true, "its folder does not exist, create it first"},
        {folder_.File("m.txt"), true, "the name of a method ends in .xmt"},
        {folder_.File(".xmt"), true, "the name of a method ends in .xmt"},
        {folder_.File("a*.xmt"), true, "the name of a method cannot hold \"*\""},
        {folder_.File("aux.xmt"), true, "the name of a method cannot be that of the device AUX"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(HostErrorOf([&] { method_->HostSaveMethodAs(one.path, one.overwrite); }),
                  "1103: Cannot save the method as " + one.path + ": " + one.reason);
    EXPECT_EQ(support::ReadWholeFile(path_), before);
    method_->HostSaveMethodAs(path_, true);
    EXPECT_EQ(orvanel::ReadMethodFile(path_).MassSpec()->periods[0].cycles, 7);
}

TEST_F(MethodPorts, PartsThatAreNotThere) {
    EXPECT_FALSE(method_->HostEnumDeviceMethods(0)->IsMassSpecMethod());
    EXPECT_EQ(HostErrorOf([&] { method_->HostEnumDeviceMethods(0)->AsMassSpecMethod(); }),
              "1110: Device 0 (SyringePump) of the method is no mass spectrometer");
    EXPECT_EQ(HostErrorOf([&] { massSpec_->HostGetPeriod(1); }),
              "1110: There is no period 1, the method has 1 counted from 0");
    EXPECT_EQ(HostErrorOf([&] { period_->HostGetExtendedExperiment(-1); }),
              "1110: There is no experiment -1, the method has 1 counted from 0");
    EXPECT_EQ(massSpec_->HostGetMethodOperatingMode(), 0);
    EXPECT_EQ(massSpec_->HostGetCurrentOperatingMode(), 1);
}

TEST_F(MethodPorts, AHandleOfAPartKeepsTheDocumentOpen) {
    auto table = experiment_->HostGetMassRange(0)->HostGetParameterTable();
    method_.reset();
    massSpec_.reset();
    period_.reset();
    extended_.reset();
    service_.reset();
    EXPECT_EQ(experiment_->HostGetMassRangeCount(), 1);
    experiment_.reset();
    EXPECT_EQ(table->HostGetParameterValue(table->HostFindParameter("CE")), 35.3F);
}

}  // namespace
