#include "tests/support_files/ObservedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support_files/FakeHost.h"

namespace {

using testing::ElementsAre;

/// Which of six sleeps fail.
std::string FailedSleeps(HostCalls& calls) {
    FakeHost fake;
    ObservedHost host(fake, calls);
    const auto pause = host.CreatePause();
    std::string failed;
    for (int i = 1; i <= 6; ++i) {
        try {
            pause->HostSleep(i);
        } catch (const ports::HostError& error) {
            failed += std::to_string(i) + "h";
        } catch (const std::runtime_error&) {
            failed += std::to_string(i) + "r";
        }
    }
    return failed;
}

TEST(ObservedHost, CallsFailWhereTheyAreToldTo) {
    using Times = HostCalls::Times;
    const ports::HostError hostError{1, "x"};
    HostCalls calls;
    EXPECT_EQ(FailedSleeps(calls), "");
    calls.Fail("HostSleep", hostError, 3);
    calls.Fail("HostSleep", std::runtime_error("x"), 5, Times::FromThenOn);
    calls.Fail("HostRun", hostError);
    calls.Fail(HostCalls::anyOperation, hostError, 2);  // the first is CreatePause
    EXPECT_EQ(FailedSleeps(calls), "1h3h5r6r");
    EXPECT_EQ(calls.FiredCount(), 4);
    EXPECT_EQ(calls.CountOf("HostSleep"), 12) << "a call that fails is recorded too";
}

TEST(ObservedHost, WhatNoWrapperUsesPassesThroughAsWell) {
    FakeHost fake;
    fake.elements["Cl"] = {{34.97, 100}, {36.97, 31.96}};
    fake.registry["K"] = "v";
    fake.store.methods["a.xmt"] = FakeMethod();
    HostCalls calls;
    ObservedHost host(fake, calls);
    EXPECT_EQ(host.OpenElementTable("e.ini")->GetIsotopes("Cl").size(), 2U);
    const auto helper = host.CreateInstrumentHelper();
    EXPECT_EQ(helper->GetInstrumentModelCode(), 27);
    EXPECT_TRUE(helper->IsLinearIonTrap(27));
    EXPECT_THAT(helper->HostGetScanRates(27, 12), ElementsAre("1000", "4000 Da/s"));
    EXPECT_EQ(host.RegRead("K"), "v");
    EXPECT_EQ(host.RegRead("L"), std::nullopt);
    EXPECT_TRUE(host.HostOpenDocument("a.xmt"));
    EXPECT_EQ(host.GetDescription(), "Nothing is measured here");
    fake.applicationIsRunning = false;
    EXPECT_EQ(host.AttachToRunningApplication(), nullptr);
    EXPECT_THAT(calls.Operations(),
                ElementsAre("OpenElementTable(\"e.ini\")", "GetIsotopes(\"Cl\")", "CreateInstrumentHelper()",
                            "GetInstrumentModelCode()", "IsLinearIonTrap(27)", "HostGetScanRates(27, 12)",
                            "RegRead(\"K\")", "RegRead(\"L\")", "HostOpenDocument(\"a.xmt\")", "GetDescription()",
                            "AttachToRunningApplication()"));
}

}  // namespace
