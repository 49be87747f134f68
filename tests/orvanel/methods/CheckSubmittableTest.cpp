#include <functional>

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
        {[](auto& m) { m.periods[0].experiments[0].massRanges.clear(); },
         "6131: The method cannot be acquired: its experiment has no mass range"},
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
