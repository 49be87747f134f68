// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "run/FinalMethodStage.h"

#include <gtest/gtest.h>

#include "support/Files.h"
#include "tests/run/StageBench.h"
#include "tests/support_files/TempFolder.h"

namespace {

using Texts = std::vector<std::string>;

const std::string heading = "--> Generating final MS/MS/MS methods...";
const std::string noOptimal = "No optimal MS3 quantitation path, final optimal method not generated.";
const std::string template_ = "/p/C_MS3_RampAF2_448.5.xmt";
const std::string final195 = "/p/C_FinalMS3_195.125.xmt";
const std::string optimal195 = "/p/C_FinalOptimalMS3_195.125.xmt";

/// As after the MS3 stage: the last acquired method is the template.
class FinalMethodBench : public StageBench {
  public:
    FinalMethodBench() {
        FindParent();
        frame.filePaths.MethodFilePath = template_;
        auto& method = fake.store.methods[template_];
        method.cycles = 51;
        method.scansToSum = 3;
        method.ramp = {"AF2", 0, 100, 2};
        fake.store.highestMassDa = 200;
        auto& results = *run.results;
        results.DP.Current = 70;
        results.EP.Current = 8.5F;
        results.CEP.Current = 32;
    }
    /// A 2nd precursor that has been optimised, with the intensities of its 3rd precursors from m/z 160 on.
    veltra::clsItem_TopPeak& AddOptimised(double mass, const std::vector<double>& intensities) {
        auto& record = AddFragment(mass, 1000);
        record.CEWasOptimized = record.AF2WasOptimized = true;
        record.OptimizedCE = 40;
        record.OptimizedAF2 = 20;
        double peakMass = 160;
        for (const double intensity : intensities)
            record.MS3PeaksCollection.push_back(
                std::make_shared<veltra::clsItem_Peak>(veltra::clsItem_Peak{intensity, peakMass++}));
        return record;
    }
    Texts WrittenMethods() const {
        Texts written;
        for (const auto& [path, method] : fake.store.methods)
            if (path.find("_Final") != std::string::npos) written.push_back(path);
        return written;
    }
};

TEST(FinalMethodStage, LogsTheFirstReasonForHavingNoMethod) {
    FinalMethodBench bench;
    for (double mass = 101.0625; mass < 105; ++mass)
        bench.AddOptimised(mass, {}).MS3PercentBelowThreshold = false;
    auto& records = bench.run.results->TopPeaksInfo;
    records[0]->CEWasOptimized = records[0]->AF2WasOptimized = false;
    records[1]->AF2WasOptimized = false;
    records[2]->MS3PercentBelowThreshold = true;
    veltra::RunFinalMethodStage(bench.frame);
    bench.ExpectReported(
        {}, {heading, "No optimal CE, final method not generated for 101.062 Da.",
             "No optimal AF2, final method not generated for 102.062 Da.",
             "No peaks found, final method not generated for 103.062 Da.",
             "Parent not below 10% total ion count, final method not generated for 104.062 Da.", noOptimal});
    EXPECT_EQ(bench.WrittenMethods(), Texts());
    EXPECT_EQ(bench.Checklist(), (Texts{"UpdateScanProgress(8, 1)", "UpdateScanProgress(8, 2)"}));
}

TEST(FinalMethodStage, PeaksWithoutAnOptimalCEGetNoMethodOfTheirOwnButCompete) {
    FinalMethodBench bench;
    bench.AddOptimised(195.125, {5}).CEWasOptimized = false;
    veltra::RunFinalMethodStage(bench.frame);
    bench.ExpectReported({}, {heading, "No optimal CE, final method not generated for 195.125 Da."});
    EXPECT_EQ(bench.WrittenMethods(), Texts{optimal195});
}

TEST(FinalMethodStage, MostIntenseFirstPeakIsTheOptimalPath) {
    struct Case {
        std::vector<std::vector<double>> intensities;
        std::int16_t optimal;
    };
    const Case cases[] = {{{}, 0},
                          {{{}, {}}, 0},
                          {{{0}, {0, 9}}, 0},
                          {{{}, {1}}, 2},
                          {{{5}, {5}}, 1},
                          {{{5}, {5}, {6}, {6}}, 3},
                          {{{3, 99}, {5, 1}}, 2},
                          {{{7}, {5}, {6}}, 1}};
    for (const auto& [intensities, optimal] : cases) {
        for (const bool saveAll : {false, true}) {
            SCOPED_TRACE(testing::PrintToString(intensities) + (saveAll ? ", all saved" : ""));
            FinalMethodBench bench;
            bench.settings.Advanced_MS3SaveAllFinalMethods = saveAll;
            bench.run.results->OptimalMS3PeakIndex = 9;
            Texts log{heading};
            Texts paths;
            double mass = 101;
            for (const auto& ofOne : intensities) {
                bench.AddOptimised(mass, ofOne);
                const std::string massText = support::GeneralText(mass++);
                paths.push_back("/p/C_FinalOptimalMS3_" + massText + ".xmt");
                if (saveAll)
                    log.push_back(ofOne.empty() ? "No peaks found, final method not generated for " + massText + " Da."
                                                : "/p/C_FinalMS3_" + massText + ".xmt");
            }
            if (optimal == 0) log.push_back(noOptimal);
            veltra::RunFinalMethodStage(bench.frame);
            bench.ExpectReported({}, log);
            EXPECT_EQ(bench.run.results->OptimalMS3PeakIndex, optimal);
            const auto at = static_cast<std::size_t>(optimal);
            EXPECT_EQ(bench.run.results->OptimalMS3Method, optimal == 0 ? "" : paths.at(at - 1));
            if (saveAll) continue;
            EXPECT_EQ(bench.WrittenMethods(), optimal == 0 ? Texts() : Texts{paths.at(at - 1)});
        }
    }
}

/// The calls that tell the two methods apart.
std::string CallsFor(const std::string& path, const std::string& massRange) {
    const std::string save = "HostSaveMethodAs(\"" + path + "\", true)";
    return "HostOpenMethod(\"" + template_ + "\"); HostSetMassRange(" + massRange + ", 0.06); " + save +
           "; HostOpenMethod(\"" + path + "\"); " + save;
}

TEST(FinalMethodStage, BuildsTheMethodsFromTheLastAcquiredOne) {
    FinalMethodBench bench;
    auto& record = bench.AddOptimised(195.125, {5});
    veltra::RunFinalMethodStage(bench.frame);
    bench.ExpectReported({}, {heading, final195});
    EXPECT_EQ(Joined(bench.calls.Only({"HostOpenMethod", "HostSetMassRange", "HostSaveMethodAs", "TolmSubmitBatch"})),
              CallsFor(final195, "50, 200.125") + "; " + CallsFor(optimal195, "150, 170"));
    const Texts messages{"MessageUpdate(Creating final acquisition methods...)",
                         "MessageUpdate(Final acquisition methods created.)"};
    EXPECT_EQ(CallsOf(bench.display, {"MessageUpdate"}), (Texts{messages[0], messages[1], messages[0], messages[1]}));
    EXPECT_EQ(record.FinalMS3Method, final195);
    EXPECT_EQ(bench.run.results->OptimalMS3Method, optimal195);
    EXPECT_EQ(bench.Method(final195).cycles, 51);
    EXPECT_EQ(bench.Method(final195).ranges.at(0).stop, 200) << "clipped by the host";
}

TEST(FinalMethodStage, UsesTheOptimaOfThePrecursorThatAMethodIsFor) {
    FinalMethodBench bench;
    bench.AddOptimised(195.125, {9});
    auto& second = bench.AddOptimised(397.25, {5});
    second.OptimizedCE = 33;
    second.OptimizedAF2 = 44.5;
    veltra::RunFinalMethodStage(bench.frame);
    bench.ExpectReported({}, {heading, final195, "/p/C_FinalMS3_397.25.xmt"});
    const auto& range = bench.Method("/p/C_FinalMS3_397.25.xmt").ranges.at(0);
    EXPECT_EQ(std::pair(range.Value("CE"), range.Value("AF2")), std::pair(33.0F, 44.5F));
    EXPECT_EQ(bench.Method(optimal195).ranges.at(0).Value("CE"), 40);
    EXPECT_EQ(bench.run.results->AF2.Current, 20);
}

/// No message box, and the run goes on to the optimal method. What was saved before the failure goes.
TEST(FinalMethodStage, SaysWhichMethodIsMissingAndWhichCannotBeRemoved) {
    const std::string name = "C_FinalMS3_195.125.xmt";
    for (const bool canBeRemoved : {true, false}) {
        const TempFolder folder;
        FinalMethodBench bench;
        bench.UseModel(26, false);
        bench.settings.StarterMethodFilePath = folder.File("Start.xmt");
        auto& record = bench.AddOptimised(195.125, {5});
        const std::string path = folder.File(name);
        support::WriteWholeFile(path, "as it was saved first");
        bench.calls.Fail(canBeRemoved ? "HostSetExcitationTime" : "HostSaveMethodAs", RunBench::hostError,
                         canBeRemoved ? 1 : 2);
        if (!canBeRemoved) bench.disk.Fail(DiskFault::InputOutput, 2, FaultyDisk::Times::Once);
        veltra::RunFinalMethodStage(bench.frame);
        const std::string why =
            canBeRemoved ? "Error during creation of the final method" : "Acquire: Error during saving of " + path;
        Texts log{heading, why + RunBench::errorSuffix, "Unable to create " + name};
        if (!canBeRemoved)
            log.push_back("Unable to remove " + path +
                          ", which is not finished, please delete it (Error 51: Input/output error).");
        bench.ExpectReported({}, log);
        EXPECT_EQ(support::FileExists(path), !canBeRemoved);
        EXPECT_EQ(record.FinalMS3Method, "\\Unable to create " + name);
        EXPECT_EQ(bench.run.results->UnwrittenFiles, Texts{"Unable to create " + name});
        EXPECT_FALSE(bench.run.AbortRequested);
        EXPECT_TRUE(bench.fake.store.methods.contains(folder.File("C_FinalOptimalMS3_195.125.xmt")));
    }
}

/// Setting the excitation time of a method that was never loaded fails too; what is told is the first failure.
TEST(FinalMethodStage, TellsTheFirstFailure) {
    for (const std::int32_t modelCode : {26, 27}) {
        FinalMethodBench bench;
        bench.UseModel(modelCode, modelCode == 27);
        bench.AddOptimised(195.125, {5});
        bench.fake.store.methods.erase(template_);
        veltra::RunFinalMethodStage(bench.frame);
        const std::string why = "Acquire: Error loading " + template_ + ".  Invalid acquisition method.";
        bench.ExpectReported({}, {heading, why, "Unable to create C_FinalMS3_195.125.xmt", why,
                                  "Unable to create C_FinalOptimalMS3_195.125.xmt"});
        EXPECT_EQ(bench.run.results->OptimalMS3PeakIndex, 1);
        EXPECT_EQ(bench.Checklist().back(), "UpdateScanProgress(8, 2)");
    }
}

}  // namespace
