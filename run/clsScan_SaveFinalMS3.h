// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "host/RunState.h"
#include "host/clsAcquire.h"
#include "scans/MethodSteps.h"

namespace veltra {

/// Writes final MS/MS/MS quantitation methods from a template method and the current compound parameters.
class clsScan_SaveFinalMS3 {
  public:
    explicit clsScan_SaveFinalMS3(RunState& runState) : runState_(runState) {}

    /// A method that scans from 50 Da to 5 Da above the 2nd precursor. All m/z in Da.
    /// @return false when it could not be written; the reason is in the run log
    bool GenerateFinalMethod(double dblFirstPrecursor, double dblSecondPrecursor,
                             const std::string& strTemplateMethodFilePath, const std::string& strNewMethodFilePath);

    /// A method that scans 20 Da around the 3rd precursor.
    bool GenerateFinalOptimalMethod(double dblFirstPrecursor, double dblSecondPrecursor, double dblThirdPrecursor,
                                    const std::string& strTemplateMethodFilePath,
                                    const std::string& strNewMethodFilePath);

  private:
    struct FinalMethod {
        double firstPrecursor;
        double secondPrecursor;
        double massStart;
        double massStop;
        const std::string& templatePath;
        const std::string& newPath;
    };
    bool Generate(const FinalMethod& method);
    /// @param isSaved gets whether there is a file, finished or not
    void Build(clsAcquire& acquire, const ScanRate& scanRate, const FinalMethod& method, bool& isSaved);
    /// Removes what was saved before its range was optimised: it must not be taken for a final method.
    void RemoveUnfinished(const std::string& path);
    /// Logs why a method could not be created. @return false
    bool NotCreated(const FinalMethod& method, const std::string& description);

    RunState& runState_;
};

}  // namespace veltra
