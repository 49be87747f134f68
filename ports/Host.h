// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ports/AcquisitionMethods.h"
#include "ports/DataExploration.h"
#include "ports/ElementTable.h"
#include "ports/InstrumentHelper.h"
#include "ports/Pause.h"
#include "ports/QueueServer.h"
#include "ports/TolmService.h"

namespace ports {

/// The running host application. Released by its destructor; that never ends the application.
class HostApplication {
  public:
    virtual ~HostApplication() = default;
    virtual std::unique_ptr<AcquisitionService> GetAcquisitionService() = 0;
};

/// Everything that can be had of the host, running or not. The handles that it gives out must be released before it.
/// Every operation throws HostError on failure unless it says otherwise. One thread only.
class Host {
  public:
    virtual ~Host() = default;

    /// Never starts an application.
    /// @return nothing when no host application is running
    virtual std::unique_ptr<HostApplication> AttachToRunningApplication() = 0;

    virtual std::unique_ptr<TolmService> TolmCreateService() = 0;
    virtual std::unique_ptr<QueueServer> HostQueueServer() = 0;
    virtual std::unique_ptr<Pause> CreatePause() = 0;
    virtual std::unique_ptr<DataExploration> CreateDataExploration() = 0;
    virtual std::unique_ptr<InstrumentHelper> CreateInstrumentHelper() = 0;
    /// @param path full path of the element-data file, UTF-8
    virtual std::unique_ptr<ElementTable> OpenElementTable(const std::string& path) = 0;

    /// @param path hive, key and value name joined by "\", without regard to case
    /// @return nothing when there is no such value
    virtual std::optional<std::string> RegRead(const std::string& path) = 0;

    /// Opens a method or data file in the host's own editor or viewer.
    /// @return false when the host cannot open it; never throws
    virtual bool HostOpenDocument(const std::string& path) = 0;

    /// @return what the user must know of this host at all times, such as that nothing is measured; empty for a real
    /// instrument; never throws
    virtual std::string GetDescription() const = 0;
};

}  // namespace ports
