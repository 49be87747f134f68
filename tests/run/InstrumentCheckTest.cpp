// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/InstrumentCheck.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/run/OtherInstrumentHost.h"
#include "tests/support_files/RunBench.h"

namespace {

using ports::MessageIcon;

TEST(InstrumentCheck, ModelCodeDecidesAboutEPAndCEP) {
    const std::set<std::int32_t> without{14, 22, 24, 26, 29, 31, 33};
    for (std::int32_t modelCode = 1; modelCode <= 40; ++modelCode) {
        SCOPED_TRACE(modelCode);
        RunBench bench;
        bench.run.InstrumentModelCode = 0;
        bench.run.EPAndCEPSupported = without.contains(modelCode);
        bench.fake.modelCode = modelCode;
        EXPECT_TRUE(veltra::CheckInstrument(bench.run));
        EXPECT_EQ(bench.run.InstrumentModelCode, modelCode);
        EXPECT_EQ(bench.run.EPAndCEPSupported, !without.contains(modelCode));
    }
}

TEST(InstrumentCheck, OtherInstrumentsAreRefusedAndStayUnknown) {
    RunBench bench;
    OtherInstrumentHost other;
    veltra::RunState state{{other, bench.display, bench.boxes, bench.chooser, bench.clock}, bench.settings};
    EXPECT_FALSE(veltra::CheckInstrument(state));
    bench.ExpectReported({{"This script only works on Linear Ion Trap instruments", MessageIcon::Critical}}, {});
    EXPECT_EQ(state.InstrumentModelCode, 0);
}

TEST(InstrumentCheck, AHostThatIsNotThereIsNoFailure) {
    for (const std::string operation : {"CreateInstrumentHelper", "GetInstrumentModelCode"}) {
        SCOPED_TRACE(operation);
        RunBench bench;
        bench.run.InstrumentModelCode = 26;
        bench.run.EPAndCEPSupported = false;
        bench.calls.Fail(operation, std::runtime_error("no connection"));
        EXPECT_TRUE(veltra::CheckInstrument(bench.run));
        EXPECT_EQ(bench.calls.FiredCount(), 1);
        EXPECT_EQ(bench.run.InstrumentModelCode, 0);
        EXPECT_TRUE(bench.run.EPAndCEPSupported);
    }
}

}  // namespace
