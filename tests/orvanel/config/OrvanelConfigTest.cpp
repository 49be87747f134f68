// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/config/OrvanelConfig.h"

#include "support/Files.h"
#include "tests/orvanel/methods/MethodTestTools.h"
#include "tests/support_files/TempFolder.h"

namespace {

using orvanel::OrvanelConfig;
using orvanel::ReadOrvanelConfig;

class OrvanelConfigTest : public testing::Test {
  protected:
    OrvanelConfig Read(const std::string& text) {
        support::WriteWholeFile(path_, text);
        return ReadOrvanelConfig(path_, "/opt/orvanel");
    }

    TempFolder folder_;
    std::string path_ = folder_.File("Orvanel.ini");
};

TEST_F(OrvanelConfigTest, ReadsEveryKey) {
    const auto config = Read(
        "[orvanel]\r\nRUNNING=0\r\nModelCode=26\r\nOperatingMode=1\r\nClockFactor=60.5\r\nDataLocation=data\\\r\n"
        "AppLocation=/app/\r\n"
        "[Sample]\r\nCompound10=sub/own.ini\r\nAmount1=0.5\r\ncompound=reserpine\r\nCompound2=caffeine\r\n"
        "[Simulation]\r\nSeed=18446744073709551615\r\nNoiseLevel=0\r\n"
        "[Faults]\r\nDropouts=6\r\nINTERFERENCE=0.5, 1.5\r\nMassOffset=-0.25\r\nNoFragments=1\r\nWrongPolarity=0\r\n");
    EXPECT_EQ(config.iniPath, path_);
    EXPECT_FALSE(config.running);
    EXPECT_EQ(config.modelCode, 26);
    EXPECT_EQ(config.operatingMode, 1);
    EXPECT_EQ(config.clockFactor, 60.5);
    EXPECT_EQ(config.dataLocation, folder_.File("data"));
    EXPECT_EQ(config.appLocation, "/app");
    ASSERT_EQ(config.sample.size(), 3U);
    EXPECT_EQ(config.sample[0].compound, "reserpine");
    EXPECT_EQ(config.sample[0].amount, 0.5);
    EXPECT_EQ(config.sample[1].compound, "caffeine");
    EXPECT_EQ(config.sample[2].compound, folder_.File("sub/own.ini"));
    EXPECT_EQ(config.seed, UINT64_MAX);
    EXPECT_EQ(config.noiseLevel, 0);
    EXPECT_EQ(orvanel::FaultTexts(config.faults), "Dropouts=6; Interference=0.5, 1.5; NoFragments=1; MassOffset=-0.25");
}

TEST_F(OrvanelConfigTest, DefaultsAndAMissingFile) {
    const auto config = Read("; nothing set\n");
    EXPECT_TRUE(config.running);
    EXPECT_EQ(config.dataLocation, folder_.Path());
    EXPECT_EQ(config.appLocation, "/opt/orvanel");
    EXPECT_EQ(config.modelCode, 27);
    EXPECT_TRUE(config.sample.empty());
    EXPECT_EQ(orvanel::FaultTexts(config.faults), "");
    const auto missing = ReadOrvanelConfig(folder_.File("none.ini"), "/opt/orvanel");
    EXPECT_FALSE(missing.running);
    EXPECT_EQ(missing.iniPath, folder_.File("none.ini"));
}

TEST_F(OrvanelConfigTest, ErrorsNameLineKeyAndWhatIsAllowed) {
    const struct {
        const char *text, *expected;
    } cases[] = {
        {"[Orvanel]\nModelCode=abc", "line 2: ModelCode=abc is not allowed, a whole number from 1 to 9999 is"},
        {"[Orvanel]\nModelCode=27.0", "line 2: ModelCode=27.0 is not allowed, a whole number from 1 to 9999 is"},
        {"[Orvanel]\nModelCode=", "line 2: ModelCode= is not allowed, a whole number from 1 to 9999 is"},
        {"[Orvanel]\nRunning=yes", "line 2: Running=yes is not allowed, a whole number from 0 to 1 is"},
        {"[Orvanel]\n\nClockFactor=-1", "line 3: ClockFactor=-1 is not allowed, a number from 0 to 100000 is"},
        {"[Orvanel]\nClockFactor=0.01", "line 2: ClockFactor=0.01 is not allowed, 0 or a number from 0.1 to 100000 is"},
        {"[Orvanel]\nClockFactor=nan", "line 2: ClockFactor=nan is not allowed, a number from 0 to 100000 is"},
        {"[Orvanel]\nModel=27",
         "line 2: unknown key \"Model\", [Orvanel] may hold Running, ModelCode, OperatingMode, ClockFactor, "
         "DataLocation and AppLocation"},
        {"[Orvanel]\nRunning=1\nrunning=1", "line 3: [Orvanel] running: occurs twice; remove one"},
        {"[Simulation]\n[SIMULATION]", "line 2: Section [SIMULATION] occurs twice; join the two"},
        {"[Other]", "line 1: unknown section [Other], there may be [Orvanel], [Sample], [Simulation] and [Faults]"},
        {"[Sample]\nCompound21=x",
         "line 2: unknown key \"Compound21\", [Sample] may hold Compound1 to Compound20 and Amount1 to Amount20"},
        {"[Sample]\nCompound01=x",
         "line 2: unknown key \"Compound01\", [Sample] may hold Compound1 to Compound20 and Amount1 to Amount20"},
        {"[Sample]\nCompound=x\nCompound1=y", "line 3: compound 1 is given twice, remove one"},
        {"[Sample]\nCompound3=x\nAmount3=0", "line 3: Amount3=0 is not allowed, a number above 0 is"},
        {"[Sample]\nAmount3=1", "line 2: Amount3 belongs to no compound, add Compound3 or remove it"},
        {"[Simulation]\nSeed=-1", "line 2: Seed=-1 is not allowed, a whole number from 0 to 18446744073709551615 is"},
        {"[Simulation]\nNoiseLevel=101", "line 2: NoiseLevel=101 is not allowed, a number from 0 to 100 is"},
        {"[Faults]\nSaturation=0.5", "line 2: Saturation=0.5 is not allowed, a number from 1 to 10000 is"},
        {"[Faults]\nSaturation=100, 2", "line 2: Saturation=100, 2 is not allowed, a number from 1 to 10000 is"},
        {"[Faults]\nNoFragments=1.0", "line 2: NoFragments=1.0 is not allowed, a whole number from 0 to 1 is"},
        {"[Faults]\nInterference=0.5",
         "line 2: Interference=0.5 is not allowed, a number from 0.3 to 0.9, a number from 0.2 to 2 is"},
        {"[Faults]\nInterference=0.5, nan",
         "line 2: Interference=0.5, nan is not allowed, a number from 0.3 to 0.9, a number from 0.2 to 2 is"},
        {"[Faults]\nSaturation=2\nNoise=1",
         "line 3: unknown key \"Noise\", [Faults] may hold SprayInstability, Dropouts, SignalLoss, BackgroundIon, "
         "Interference, SodiumAdduct, WrongPolarity, NoFragments, StablePrecursor, Saturation, MassOffset, "
         "EquilibrationDelay and FailingAcquisition"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(HostErrorOf([&] { Read(one.text); }), "1010: " + path_ + ", " + one.expected);
}

}  // namespace
