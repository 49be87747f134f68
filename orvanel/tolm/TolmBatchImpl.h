// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "orvanel/tolm/BatchFile.h"
#include "ports/TolmService.h"

namespace orvanel {

/// A batch under construction.
class TolmBatchImpl : public ports::TolmBatch {
  public:
    void TolmSetBatchName(const std::string& batchFileName) override;
    void TolmSetBatchUser(const std::string& userName) override;
    void TolmSetBatchText(const std::string& text) override;
    void TolmSetBatchProject(const std::string& project) override;
    int TolmAddSet(const std::string& setName) override;
    void TolmSetSetAcquisitionMethod(int set, const std::string& methodFileName) override;
    void TolmSetSetProcessingMethod(int set, const std::string& methodName) override;
    int TolmAddSample(int set) override;
    void TolmSetSampleDataFile(int set, int sample, const std::string& dataFileName) override;
    void TolmSetSampleField(int set, int sample, SampleField field, const std::string& text) override;

    const BatchRecord& Record() const { return record_; }

  private:
    BatchSet& Set(int index);
    BatchSample& Sample(int set, int index);

    BatchRecord record_;
};

}  // namespace orvanel
