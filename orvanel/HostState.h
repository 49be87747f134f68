// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "orvanel/clock/HostClock.h"
#include "orvanel/config/OrvanelConfig.h"
#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/queue/QueueEngine.h"
#include "orvanel/registry/RegistryFile.h"
#include "ports/ElementTable.h"
#include "support/FolderDeferringDisk.h"

namespace orvanel {

/// What the host's services share: configuration, clock, instrument, what is sprayed, queue and registry file.
class HostState {
  public:
    /// Loads model, compounds and element table when the host runs, and keeps other hosts off its files.
    /// @throws ports::HostError
    HostState(OrvanelConfig config, HostClock& clock, const support::Disk& disk);
    ~HostState();
    HostState(const HostState&) = delete;
    HostState& operator=(const HostState&) = delete;

    const OrvanelConfig& Config() const { return config_; }
    HostClock& Clock() const { return clock_; }
    /// For documents: their content is flushed when they are saved, their folders by FlushSaved.
    const support::Disk& Disk() const { return documentDisk_; }
    const RegistryFile& Registry() const { return registry_; }
    const std::vector<SprayedCompound>& Sample() const { return sample_; }

    /// All models by code, loaded at the first call. @throws ports::HostError
    const std::map<std::int32_t, InstrumentModel>& Models();
    /// The connected instrument; only while the host runs.
    std::shared_ptr<const InstrumentModel> Model() const { return model_; }
    /// Only while the host runs.
    QueueEngine& Queue() const { return *queue_; }

    /// @throws ports::HostError
    void RequireRunning(const std::string& what) const;

    /// A method as a sample for the queue. @throws ports::HostError when it cannot be acquired
    QueuedSample PrepareSample(const std::string& methodPath) const;
    /// @throws ports::HostError saying why when the last acquisition for that data file has failed
    void RequireAcquired(const std::string& dataFilePath) const;
    /// Keeps the project as the one used last; failures are ignored.
    void RememberProject(const std::string& projectPath, const std::string& projectName) const;
    /// Lets everything that was saved, logged and published so far outlast a power cut. To be called when a session is
    /// logged off; data files do so as soon as their sample is finished.
    void FlushSaved() noexcept;

  private:
    std::string LogPath() const;
    void LoadInstrument();
    void PublishStatus(QueueStatus status);
    void AcquireAndWrite(const QueuedSample& sample) const;
    void EndSample(const QueuedSample& sample, QueueStatus outcome, const std::string& failure);
    void LogSample(const QueuedSample& sample, QueueStatus outcome, const std::string& failure) const;

    OrvanelConfig config_;
    HostClock& clock_;
    const support::Disk& disk_;
    support::FolderDeferringDisk documentDisk_;
    RegistryFile registry_;
    bool hasUnflushedFiles_ = false;                      ///< of registry file and log
    std::shared_ptr<void> soleUse_;                       ///< of Orvanel.ini and the files beside it, while running
    std::map<std::string, std::string> failedDataFiles_;  ///< by full path: why the last acquisition failed
    std::map<std::int32_t, InstrumentModel> models_;
    std::shared_ptr<const InstrumentModel> model_;
    std::vector<SprayedCompound> sample_;
    std::unique_ptr<ports::ElementTable> elements_;
    std::unique_ptr<QueueEngine> queue_;
};

/// A time as ISO 8601 in UTC with milliseconds, such as "2024-05-13T15:45:12.250Z".
std::string IsoTimestamp(HostClock::TimePoint time);

}  // namespace orvanel
