// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <memory>
#include <string>

#include "host/HostWrapper.h"
#include "ports/Host.h"
#include "ports/TolmService.h"
#include "support/Platform.h"

namespace veltra {

/// The host's batch service: log on once, then for every acquisition one batch of one set with one sample, submit, and
/// log off at the end.
class clsTolmBatch : public HostWrapper {
  public:
    /// @param host must outlive the object
    /// @param currentUserName gives the name that batches carry; empty when it is not known
    explicit clsTolmBatch(ports::Host& host, std::function<std::string()> currentUserName = support::CurrentUserName);
    /// Logs off where that is still to be done.
    ~clsTolmBatch();

    /// @param strProjectPath the folder that holds the project, ending in a separator
    void Step1_TolmLogon(const std::string& strProjectPath, const std::string& strProjectName);
    /// @param strVeskFileName the data file, relative to the data folder
    void Step2_CreateNewTolmBatch(const std::string& strBatchFileName, const std::string& strMethodFileName,
                                  const std::string& strVeskFileName);
    void Step3a_SubmitTolmBatch();
    /// @return the service's answer; empty when the step did not run
    std::string Step3b_SaveTolmBatch(const std::string& strBatchFileName);
    void Step3c_ClearTolmBatch();
    void Step4_TolmLogoff();

  private:
    std::string GetWindowsUserName();

    std::function<std::string()> currentUserName_;
    std::unique_ptr<ports::TolmService> service_;
    std::unique_ptr<ports::TolmBatch> batch_;
    std::string session_;  ///< empty when logged off
    std::string projectPath_;
    std::string projectName_;
};

}  // namespace veltra
