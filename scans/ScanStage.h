// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <string>

#include "host/RunState.h"
#include "host/clsAcquire.h"
#include "host/clsExplore.h"
#include "model/clsItem_FilePaths.h"
#include "scans/MethodSteps.h"

namespace veltra {

inline constexpr std::int16_t scansToSum = 3;  ///< of every optimisation scan

/// The shape that all scan classes share: build a method, submit it as a one-sample batch, wait for the data, explore
/// them. A failing step tells the user once, writes the log and sets AbortRequested, which ends the run.
class ScanStage {
  protected:
    explicit ScanStage(RunState& runState) : runState_(runState) {}
    ~ScanStage() = default;
    ScanStage(const ScanStage&) = delete;
    ScanStage& operator=(const ScanStage&) = delete;

    using MethodBuild = std::function<void(clsAcquire&)>;
    using TrapMethodBuild = std::function<void(clsAcquire&, const ScanRate&)>;

    /// Lets the given steps build the method (load LastMethodFilePath, edit, save as MethodFilePath) and acquires with
    /// it.
    /// @return false when the run is to stop; there is nothing to explore then
    bool Acquire(const clsItem_FilePaths& filePaths, const MethodBuild& buildMethod);
    /// The same for a scan of the trap, whose step the host is asked for before a method is opened.
    /// @param strScanRate the settings' text
    bool AcquireTrapScan(const clsItem_FilePaths& filePaths, ScanTypeCode scanType, const std::string& strScanRate,
                         const TrapMethodBuild& buildMethod);

    /// Opens a data file and runs the steps on it.
    /// @return false after a failure
    bool Explore(const std::string& strVeskFilePath, const std::function<void(clsExplore&)>& steps);

    /// Ends the run because a finding is missing, not because something failed: a plain box and a log line.
    void StopWithoutFinding(const std::string& text);

    /// Reports a failed wrapper and ends the run.
    void StopAfterFailure(HostWrapper& wrapper);

    RunState& runState_;

  private:
    /// @param createMethod gives the expected duration, ms
    bool AcquireWith(const clsItem_FilePaths& filePaths, const std::function<double()>& createMethod);
    double CreateMethod(const clsItem_FilePaths& filePaths, const MethodBuild& buildMethod);
    void CreateAndSubmitBatch(const clsItem_FilePaths& filePaths);
    void WaitForAcquisition(double expectedDurationMs);
    /// Runs one step; what it does not report by itself counts like a reported failure.
    /// @param message what the failure is told as
    /// @return false after such a failure
    bool Guarded(const std::string& message, const std::function<void()>& step);
    void LogMethodNotCreated(const clsItem_FilePaths& filePaths) const;
};

}  // namespace veltra
