// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "orvanel/queue/QueueEngine.h"
#include "orvanel/tolm/ProjectFiles.h"
#include "ports/TolmService.h"

namespace orvanel {

/// The batch service of a running host.
class TolmServiceImpl : public ports::TolmService {
  public:
    struct Actions {
        /// Reads a method and makes a sample of it. @throws ports::HostError when it cannot be acquired
        std::function<QueuedSample(const std::string& methodPath)> prepareSample;
        std::function<void(QueuedSample)> enqueue;
        std::function<void(const std::string& projectPath, const std::string& projectName)> projectSelected;
        std::function<void()> loggedOff = [] {};
    };

    /// @param disk must outlive the service
    explicit TolmServiceImpl(Actions actions, const support::Disk& disk = support::SystemDisk())
        : actions_(std::move(actions)), disk_(disk) {}

    void TolmInitialize() override { initialized_ = true; }
    std::string TolmLogon(const std::string& userName, const std::string& password, const std::string& domain,
                          const std::string& options, const std::string& clientName) override;
    void TolmSelectProject(const std::string& session, const std::string& projectPath,
                           const std::string& projectName) override;
    void TolmLogoff(const std::string& session) override;
    std::unique_ptr<ports::TolmBatch> TolmNewBatch(const std::string& session) override;
    void TolmSubmitBatch(const std::string& session, ports::TolmBatch& batch) override;
    std::string TolmSaveBatch(const std::string& session, const std::string& batchFileName,
                              ports::TolmBatch& batch) override;

  private:
    struct Session {
        std::optional<ProjectFiles> project;
    };

    Session& FindSession(const std::string& session);
    const ProjectFiles& FindProject(const std::string& session);

    Actions actions_;
    const support::Disk& disk_;
    bool initialized_ = false;
    std::uint64_t sessionsOpened_ = 0;
    std::map<std::string, Session> sessions_;
};

}  // namespace orvanel
