// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <filesystem>

#include "orvanel/tolm/BatchFile.h"
#include "orvanel/tolm/TolmServiceImpl.h"
#include "support/Files.h"
#include "support/Text.h"
#include "tests/orvanel/methods/MethodTestTools.h"
#include "tests/support_files/TempFolder.h"

namespace {

using orvanel::QueuedSample;

class TolmService : public testing::Test {
  protected:
    TolmService() {
        for (const char* folder : {"Projects/P1/Acquisition Methods", "Projects/P1/Data/Run 1"})
            support::CreateFolders(folder_.File(folder));
        support::WriteWholeFile(folder_.File("Projects/P1/Acquisition Methods/m.xmt"), "");
        service_.TolmInitialize();
        session_ = service_.TolmLogon("", "", "", "", "Veltra");
    }
    void Select() { service_.TolmSelectProject(session_, projects_, "P1"); }
    std::unique_ptr<ports::TolmBatch> Batch(const std::string& method = "m.xmt",
                                            const std::string& dataFile = "Run 1\\d.vesk") {
        auto batch = service_.TolmNewBatch(session_);
        batch->TolmSetBatchName("b.xbt");
        batch->TolmSetBatchUser("user");
        batch->TolmSetBatchProject(projects_ + "P1");
        batch->TolmSetSetAcquisitionMethod(batch->TolmAddSet("SET1"), method);
        batch->TolmSetSampleDataFile(0, batch->TolmAddSample(0), dataFile);
        return batch;
    }

    TempFolder folder_;
    std::string projects_ = folder_.File("Projects/");
    std::vector<QueuedSample> queued_;
    std::string refuseMethod_;
    std::vector<std::string> selected_;
    orvanel::TolmServiceImpl service_{
        {[this](const std::string& methodPath) {
             if (!refuseMethod_.empty()) throw ports::HostError(9, refuseMethod_);
             QueuedSample sample;
             sample.methodPath = methodPath;
             return sample;
         },
         [this](QueuedSample sample) { queued_.push_back(std::move(sample)); },
         [this](const std::string& path, const std::string& name) { selected_.push_back(path + "|" + name); }}};
    std::string session_;
};

TEST_F(TolmService, SubmittingQueuesTheSamplesAndKeepsTheBatch) {
    Select();
    EXPECT_EQ(selected_, std::vector<std::string>{projects_ + "|P1"});
    auto batch = Batch();
    batch->TolmSetSetProcessingMethod(0, "none");
    batch->TolmSetSampleField(0, 0, ports::TolmBatch::SampleField::RackPosition, "7");
    batch->TolmSetSampleDataFile(0, batch->TolmAddSample(0), "second.vesk");
    service_.TolmSubmitBatch(session_, *batch);
    ASSERT_EQ(queued_.size(), 2U);
    EXPECT_EQ(queued_[0].methodPath, folder_.File("Projects/P1/Acquisition Methods/m.xmt"));
    EXPECT_EQ(queued_[0].dataFilePath, folder_.File("Projects/P1/Data/Run 1/d.vesk"));
    EXPECT_EQ(queued_[1].dataFilePath, folder_.File("Projects/P1/Data/second.vesk"));
    const auto saved = orvanel::ReadBatchFile(folder_.File("Projects/P1/Batch/b.xbt"));
    EXPECT_EQ(saved.user, "user");
    EXPECT_EQ(saved.sets.at(0).samples.at(0).rackPosition, "7");
}

TEST_F(TolmService, MethodsAreLookedForInThreeFolders) {
    Select();
    const std::string last = folder_.File("Projects/P1/x.xmt");
    const std::string parent = folder_.File("Projects/Acquisition Methods/x.xmt");
    const std::string own = folder_.File("Projects/P1/Acquisition Methods/x.xmt");
    support::CreateFolders(folder_.File("Projects/Acquisition Methods"));
    for (const auto& path : {last, parent, own}) {  // each goes before those created earlier
        support::WriteWholeFile(path, "");
        service_.TolmSubmitBatch(session_, *Batch("x.xmt"));
        EXPECT_EQ(queued_.back().methodPath, path);
    }
}

TEST_F(TolmService, ASubProjectUsesItsParentsDataFolder) {
    support::CreateFolders(folder_.File("Projects/P1/Sub"));
    service_.TolmSelectProject(session_, folder_.File("Projects/P1/"), "Sub");
    auto batch = Batch();
    batch->TolmSetBatchProject(folder_.File("Projects/P1/Sub"));
    service_.TolmSubmitBatch(session_, *batch);
    EXPECT_EQ(queued_.at(0).dataFilePath, folder_.File("Projects/P1/Data/Run 1/d.vesk"));
}

TEST_F(TolmService, ARefusedBatchLeavesNothingBehind) {
    Select();
    const std::string project = folder_.File("Projects/P1");
    const struct {
        std::function<void(ports::TolmBatch&)> change;
        std::string expected;
    } cases[] = {
        {[](auto& b) { b.TolmSetSetAcquisitionMethod(0, "none.xmt"); },
         "1206: There is no method none.xmt in " + project + "/Acquisition Methods, " + projects_ +
             "Acquisition Methods or " + project},
        {[](auto& b) { b.TolmSetSampleDataFile(0, 0, "Run 2/d.vesk"); },
         "1207: The folder of data file " + project + "/Data/Run 2/d.vesk does not exist, create it first"},
        {[](auto& b) { b.TolmSetBatchProject("/other/P1"); },
         "1205: The batch belongs to project \"/other/P1\" and not to the selected project " + project},
        {[](auto& b) { b.TolmAddSet("SET2"); }, "1205: Set \"SET2\" has no acquisition method, set it first"},
        {[](auto& b) { b.TolmSetSetAcquisitionMethod(b.TolmAddSet("SET2"), "m.xmt"); },
         "1205: Set \"SET2\" has no sample, add one"},
        {[](auto& b) { b.TolmAddSample(0); }, "1205: A sample of set \"SET1\" has no data file, set it first"},
        {[](auto& b) { b.TolmSetSampleDataFile(0, b.TolmAddSample(0), "Run 1/d.vesk"); },
         "1205: Two samples of the batch go to data file " + project + "/Data/Run 1/d.vesk, rename one"},
        {[this](auto&) { refuseMethod_ = "cannot be acquired"; }, "9: cannot be acquired"},
    };
    for (const auto& one : cases) {
        auto batch = Batch();
        one.change(*batch);
        EXPECT_EQ(HostErrorOf([&] { service_.TolmSubmitBatch(session_, *batch); }), one.expected);
    }
    EXPECT_TRUE(queued_.empty());
    EXPECT_FALSE(support::FolderExists(folder_.File("Projects/P1/Batch")));
}

TEST_F(TolmService, NamesStayInTheProject) {
    auto batch = Batch();
    for (const char* name : {"", ".vesk", "d.raw", "../d.vesk", "a/../d.vesk", "/d.vesk", "C:\\d.vesk", "a//d.vesk",
                             "NUL.vesk", "com1/d.vesk", "a /d.vesk", "a./d.vesk", "a?b.vesk", "a\nb.vesk", "\xFF.vesk"})
        EXPECT_EQ(HostErrorOf([&] { batch->TolmSetSampleDataFile(0, 0, name); }),
                  "1207: \"" + support::Excerpt(name) +
                      "\" is no name of a data file, expected is a path within the project's data folder that ends in "
                      ".vesk");
    for (const char* name : {"Caf\xC3\xA9 Veltra (5-13-2024, 3h45m12 PM)\\d.vesk", "Console.VESK", "a.b/c.vesk"})
        EXPECT_EQ(HostErrorOf([&] { batch->TolmSetSampleDataFile(0, 0, name); }), "");
    EXPECT_EQ(
        HostErrorOf([&] { batch->TolmSetBatchName("../b.xbt"); }),
        "1205: \"../b.xbt\" is no name of a batch file, expected is a file name without folder that ends in .xbt");
    EXPECT_NE(HostErrorOf([&] { batch->TolmSetSetAcquisitionMethod(0, "sub/m.xmt"); }), "");
    Select();
    EXPECT_NE(HostErrorOf([&] { service_.TolmSaveBatch(session_, "b.txt", *batch); }), "");

    // A link below the data is a way out of the project, the data folder itself may lie anywhere.
    std::filesystem::create_directories(folder_.File("elsewhere/in"));
    std::filesystem::create_directory_symlink(folder_.File("elsewhere"), folder_.File("Projects/P1/Data/out"));
    const auto out = Batch("m.xmt", "out/in/d.vesk");
    EXPECT_EQ(HostErrorOf([&] { service_.TolmSubmitBatch(session_, *out); }),
              "1207: The folder of data file " + folder_.File("Projects/P1/Data/out/in/d.vesk") +
                  " lies behind a link that leads out of the project's data, replace that by a folder");
    EXPECT_TRUE(queued_.empty());
    std::filesystem::remove_all(folder_.File("Projects/P1/Data"));
    std::filesystem::create_directory_symlink(folder_.File("elsewhere"), folder_.File("Projects/P1/Data"));
    const auto in = Batch("m.xmt", "in/d.vesk");
    EXPECT_EQ(HostErrorOf([&] { service_.TolmSubmitBatch(session_, *in); }), "");
}

TEST_F(TolmService, WrongCallsAreAnswered) {
    auto batch = Batch();
    const struct {
        std::function<void()> action;
        std::string expected;
    } cases[] = {
        {[&] { service_.TolmNewBatch(""); }, "1202: There is no session \"\", log on first"},
        {[&] { service_.TolmLogoff("x"); }, "1202: There is no session \"x\", log on first"},
        {[&] { service_.TolmSubmitBatch(session_, *batch); }, "1204: No project is selected, select one first"},
        {[&] { service_.TolmSelectProject(session_, projects_, "P2"); },
         "1204: There is no project folder " + projects_ + "P2"},
        {[&] { service_.TolmSelectProject(session_, "", ""); }, "1204: \"\" is no path of a project"},
        {[&] { service_.TolmSelectProject(session_, projects_, ".."); },
         "1204: \"" + projects_ + "..\" is no path of a project"},
        {[&] { service_.TolmLogon("user", "", "", "", "Veltra"); },
         "1203: This host logs on the current user only, leave user, password, domain and options empty"},
        {[&] { service_.TolmLogon("", "", "", "", ""); }, "1203: The logon names no client program, give its name"},
        {[&] { batch->TolmAddSample(1); }, "1205: There is no set 1, the batch has 1 counted from 0"},
        {[&] { batch->TolmSetSampleDataFile(0, -1, "d.vesk"); },
         "1205: There is no sample -1, the batch has 1 counted from 0"},
        {[&] { batch->TolmSetSetProcessingMethod(0, "quant"); },
         "1205: Processing method \"quant\" cannot be run, this host knows \"none\" only"},
        {[&] { batch->TolmSetBatchText("bell\x07"); },
         "1205: The batch text holds a control character or is not UTF-8"},
        {[] { orvanel::TolmServiceImpl({}).TolmLogon("", "", "", "", "Veltra"); },
         "1201: The batch service is not initialised, initialise it first"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(HostErrorOf(one.action), one.expected);
}

TEST_F(TolmService, SavingNeedsNoMethodOrDataFile) {
    Select();
    auto batch = Batch("none.xmt", "nowhere/d.vesk");
    const std::string path = service_.TolmSaveBatch(session_, "other.xbt", *batch);
    EXPECT_EQ(path, folder_.File("Projects/P1/Batch/other.xbt"));
    EXPECT_EQ(orvanel::ReadBatchFile(path).name, "other.xbt");
    EXPECT_TRUE(queued_.empty());
}

}  // namespace
