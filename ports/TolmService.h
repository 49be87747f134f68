// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>

namespace ports {

/// A batch under construction. The caller owns the handle; a batch that was submitted no longer needs it.
/// Indexes count from 0. Every operation throws HostError on failure. One thread only.
class TolmBatch {
  public:
    virtual ~TolmBatch() = default;

    virtual void TolmSetBatchName(const std::string& batchFileName) = 0;
    virtual void TolmSetBatchUser(const std::string& userName) = 0;
    virtual void TolmSetBatchText(const std::string& text) = 0;
    /// @param project project path and name, joined
    virtual void TolmSetBatchProject(const std::string& project) = 0;
    /// @return the set's index
    virtual int TolmAddSet(const std::string& setName) = 0;
    /// @param methodFileName a bare file name; it need not exist before the batch is submitted
    virtual void TolmSetSetAcquisitionMethod(int set, const std::string& methodFileName) = 0;
    virtual void TolmSetSetProcessingMethod(int set, const std::string& methodName) = 0;
    /// @return the sample's index in its set
    virtual int TolmAddSample(int set) = 0;
    /// @param dataFileName relative to the project's data folder
    virtual void TolmSetSampleDataFile(int set, int sample, const std::string& dataFileName) = 0;

    enum class SampleField { SampleName, SampleId, RackPosition };
    virtual void TolmSetSampleField(int set, int sample, SampleField field, const std::string& text) = 0;
};

/// The host's batch automation. The caller owns the service. Every operation throws HostError on failure: no session,
/// unknown project, a method or data folder that is not there. One thread only.
class TolmService {
  public:
    virtual ~TolmService() = default;

    virtual void TolmInitialize() = 0;
    /// @param userName, password, domain, options may all be empty: the current user
    /// @return the session's token, never empty
    virtual std::string TolmLogon(const std::string& userName, const std::string& password, const std::string& domain,
                                  const std::string& options, const std::string& clientName) = 0;
    /// @param projectPath the folder that holds the project, ending in a separator
    /// @param projectName the project's folder name
    virtual void TolmSelectProject(const std::string& session, const std::string& projectPath,
                                   const std::string& projectName) = 0;
    virtual void TolmLogoff(const std::string& session) = 0;
    virtual std::unique_ptr<TolmBatch> TolmNewBatch(const std::string& session) = 0;
    /// Puts the batch's samples at the end of the acquisition queue. The batch file is written too, so that what was
    /// acquired can be looked up later.
    virtual void TolmSubmitBatch(const std::string& session, TolmBatch& batch) = 0;
    /// @return the path of the file that was written
    virtual std::string TolmSaveBatch(const std::string& session, const std::string& batchFileName,
                                      TolmBatch& batch) = 0;
};

}  // namespace ports
