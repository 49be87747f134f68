// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/Validation.h"
#include "tests/orvanel/methods/MethodTestTools.h"

namespace {

using orvanel::MassSpecRecord;

TEST(CheckSubmittable, NamesWhatKeepsAMethodFromBeingAcquired) {
    const struct {
        std::function<void(MassSpecRecord&)> change;
        const char* expected;
    } cases[] = {
        {[](auto&) {}, ""},
        {[](auto& m) { m.periods.clear(); }, "1121: The method has no experiment to acquire"},
        {[](auto& m) { m.periods[0].experiments[0].massRanges[0].start = 40; },
         "6131: The method cannot be acquired: the start of a mass range is 40, allowed is 50 to 1000"},
        {[](auto& m) { m.periods[0].experiments[0].massRanges.push_back({}); },
         "1120: Dwell time of 0 ms is impossible, allowed is above 0 and up to 10000 ms"},
        {[](auto& m) {
             m.periods[0].experiments[0].massRanges.push_back({0, 0, 0, 50, {}});
         },
         ""},
        {[](auto& m) { m.periods[0].experiments[0].sourceGas[1].value = -6000; },
         "1120: IS of -6000 is impossible on model 27 (Test trap), allowed is a magnitude from 0 to 5500"},
        {[](auto& m) { m.periods[0].ramp->id = "CEP"; },
         "1120: Parameter CEP cannot be ramped, the method has DP, EP, CE, AF2"},
        {[](auto& m) { m.periods[0].cycles = 52; },
         "1121: The ramp of AF2 has 51 values and the period 52 cycles, set fewer cycles"},
        {[](auto& m) { m.periods[0].cycles = 50; }, ""},
        {[](auto& m) {
             m.periods[0].ramp.reset();
             m.periods[0].cycles = 100000;
         },
         "1121: The method would measure 500100000 points, more than the 40000000 of a data file, set fewer cycles or "
         "larger steps"},
        {[](auto& m) {
             auto& experiment = m.periods[0].experiments[0];
             experiment.scansToSum = 1000;
             experiment.fixedFillTimeMs = experiment.excitationTimeMs = 10000;
         },
         "1121: The method would take 289 hours, more than the 168 hours allowed, set fewer cycles or shorter times"},
        {[](auto& m) {  // a range that was not set hides nothing else
             m.periods[0].experiments[0].massRanges.push_back({0, 0, 0, 50, {}});
             m.periods[0].experiments[0].scanRate = 0;
         },
         "1121: The method would take for ever, more than the 168 hours allowed, set fewer cycles or shorter times"},
    };
    for (const auto& one : cases) {
        auto method = *MethodForTests().MassSpec();
        one.change(method);
        EXPECT_EQ(HostErrorOf([&] { orvanel::CheckSubmittable(ModelForTests(), method); }), one.expected);
    }
}

TEST(CheckSubmittable, HalfAStepOfTheRampMayBeLeftOver) {
    auto method = *MethodForTests().MassSpec();
    method.periods[0].ramp = orvanel::RampRecord{"DP", 20, 21, 0.4F};  // 2.5 steps
    method.periods[0].cycles = 4;
    EXPECT_EQ(HostErrorOf([&] { orvanel::CheckSubmittable(ModelForTests(), method); }), "");
    method.periods[0].cycles = 5;
    EXPECT_EQ(HostErrorOf([&] { orvanel::CheckSubmittable(ModelForTests(), method); }),
              "1121: The ramp of DP has 4 values and the period 5 cycles, set fewer cycles");
}

TEST(CheckScanType, AModelWithoutTrapTakesNoTrapScans) {
    auto model = ModelForTests();
    model.linearIonTrap = false;
    EXPECT_EQ(HostErrorOf([&] { orvanel::CheckScanType(model, 13); }),
              "1120: Scan type 13 needs a linear ion trap, which model 27 (Test trap) has not");
    EXPECT_EQ(HostErrorOf([&] { orvanel::CheckScanType(model, 4); }), "");
}

}  // namespace
