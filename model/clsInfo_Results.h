// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/clsInfo_Settings.h"
#include "model/clsItem_CompoundParam.h"
#include "model/clsItem_TopPeak.h"
#include "ports/Clock.h"
#include "support/Disk.h"

namespace veltra {

/// What the report reads besides the results themselves.
struct ReportContext {
    const clsInfo_Settings& settings;
    const ports::Clock& clock;
    bool AbortRequested = false;
    bool EPAndCEPSupported = true;
    const support::Disk& disk = support::SystemDisk();
};

/// The findings of one run.
class clsInfo_Results {
  public:
    std::shared_ptr<clsItem_Peak> ActualPeak;  ///< nothing until the ER scan has found the parent
    TopPeakCollection TopPeaksInfo;            ///< in stage order
    std::int16_t OptimalMS3PeakIndex = 0;      ///< position in TopPeaksInfo from 1; 0 for no optimal path
    std::string OptimalMS3Method;              ///< full path
    std::string StartTime;
    std::string VeskOutputFilePath;  ///< the run's output folder, ending in a separator
    std::string LogFilePath;
    std::string UnwrittenLogLines;            ///< what the disk did not take; goes before the next line
    std::string UnwrittenReport;              ///< the report's text where "Results.txt" could not be written
    std::vector<std::string> UnwrittenFiles;  ///< which of log, report and final methods are missing or incomplete
    clsItem_CompoundParam DP, EP, CEP, CE, AF2;

    /// Writes "Results.txt" into the output folder, replacing an older one. Best effort: never throws.
    /// @return why it could not be written; empty when it was
    std::string GenerateResults(const ReportContext& context) const;
    /// The report's text.
    std::string ReportText(const ReportContext& context) const;
    /// What the user is told at the run's end where not everything could be written; empty where it could.
    std::string UnwrittenMessage() const;
};

}  // namespace veltra
