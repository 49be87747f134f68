// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/clsTolmBatch.h"

#include <utility>

namespace veltra {

clsTolmBatch::clsTolmBatch(ports::Host& host, std::function<std::string()> currentUserName)
    : currentUserName_(std::move(currentUserName)) {
    Step(
        [&] {
            service_ = host.TolmCreateService();
            Required(service_).TolmInitialize();
        },
        FixedMessage("Tolm Batch: Error during Tolm initialization"));
}

clsTolmBatch::~clsTolmBatch() {
    // A run that ends before its logoff, or whose logoff failed, must not leave a session open.
    if (session_.empty() || !service_) return;
    try {
        service_->TolmLogoff(session_);
    } catch (...) {
        // A destructor has no way to tell it.
    }
}

void clsTolmBatch::Step1_TolmLogon(const std::string& strProjectPath, const std::string& strProjectName) {
    if (ErrorOccurred()) return;
    projectPath_ = strProjectPath;
    projectName_ = strProjectName;
    Step4_TolmLogoff();
    Step(
        [&] {
            session_ = Required(service_).TolmLogon("", "", "", "", "Veltra");
            Required(service_).TolmSelectProject(session_, strProjectPath, strProjectName);
        },
        FixedMessage("Tolm Batch: Error during Tolm logon"));
}

void clsTolmBatch::Step2_CreateNewTolmBatch(const std::string& strBatchFileName, const std::string& strMethodFileName,
                                            const std::string& strVeskFileName) {
    using Field = ports::TolmBatch::SampleField;
    Step(
        [&] {
            Step3c_ClearTolmBatch();
            batch_ = Required(service_).TolmNewBatch(session_);
            auto& batch = Required(batch_);
            batch.TolmSetBatchName(strBatchFileName);
            const std::string userName = GetWindowsUserName();
            if (ErrorOccurred()) return;
            batch.TolmSetBatchUser(userName);
            batch.TolmSetBatchText("");
            batch.TolmSetBatchProject(projectPath_ + projectName_);
            const int set = batch.TolmAddSet("SET1");
            batch.TolmSetSetAcquisitionMethod(set, strMethodFileName);
            batch.TolmSetSetProcessingMethod(set, "none");
            const int sample = batch.TolmAddSample(set);
            batch.TolmSetSampleDataFile(set, sample, strVeskFileName);
            batch.TolmSetSampleField(set, sample, Field::SampleName, "N/A");
            batch.TolmSetSampleField(set, sample, Field::SampleId, "N/A");
            batch.TolmSetSampleField(set, sample, Field::RackPosition, "0");
        },
        FixedMessage("Tolm Batch: Error during creation of new Tolm Batch"));
}

void clsTolmBatch::Step3a_SubmitTolmBatch() {
    Step([&] { Required(service_).TolmSubmitBatch(session_, Required(batch_)); },
         FixedMessage("Tolm Batch: Error submitting Tolm Batch"));
}

std::string clsTolmBatch::Step3b_SaveTolmBatch(const std::string& strBatchFileName) {
    std::string answer;
    Step([&] { answer = Required(service_).TolmSaveBatch(session_, strBatchFileName, Required(batch_)); },
         [&] { return "Tolm Batch: Error saving Tolm Batch " + strBatchFileName; });
    return answer;
}

void clsTolmBatch::Step3c_ClearTolmBatch() {
    batch_.reset();
}

void clsTolmBatch::Step4_TolmLogoff() {
    Step(
        [&] {
            if (session_.empty()) return;
            Required(service_).TolmLogoff(session_);
            session_.clear();
        },
        FixedMessage("Tolm Batch: Error during Tolm logoff"));
}

std::string clsTolmBatch::GetWindowsUserName() {
    std::string name = "Unknown";
    Step(
        [&] {
            const std::string current = currentUserName_();
            if (!current.empty()) name = current;
        },
        FixedMessage("Tolm Batch: Error getting current user name"));
    return name;
}

}  // namespace veltra
