// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/HostWrapper.h"
#include "host/RunState.h"
#include "ports/AcquisitionMethods.h"

namespace veltra {

/// How many cycles a ramp takes, in single precision; 0 and fewer for a step that runs away from the stop.
/// @throws support::RunTimeError 6 "Overflow" when there is no such number
std::int32_t RampCycles(float start, float stop, float step);

/// Turns one method file into the method of one scan: load, initialise, the step 3 and step 4 operations that the scan
/// needs, save. One object serves one method; once it has failed it stays failed.
class clsAcquire : public HostWrapper {
  public:
    explicit clsAcquire(RunState& runState);
    ~clsAcquire();

    /// Opens the method file and finds its mass-spectrometer method, that one's first period and first experiment.
    void Step1_Load(const std::string& strRecentMethodFilePath);
    /// Sets scan type, scans to sum, polarity and Q1 resolution, and clears mass ranges, precursors and ramp.
    void Step2_InitializeMethod(std::int16_t intScanType, std::int16_t intScansToSum);
    /// @param pLngIndex gets the new range's index
    void Step3a_SetMassRange(double dblStart, double dblStop, double dblStep, std::int32_t& pLngIndex);
    void Step3b_SetEPIProductOf(double dblMass);
    void Step3c_SetMS3Precursors(double dblFirstPrecursor, double dblSecondPrecursor);
    /// @param dblScanRate Da/s
    void Step4a_SetScanRate(double dblScanRate);
    /// @param dblDwellTime ms, for every mass range
    void Step4b_SetDwellTime(double dblDwellTime);
    /// Sets a parameter of every mass range that has it. In negative polarity minus its absolute value is written,
    /// except for "AF2" and "CES".
    void Step4c_SetCompoundParam(const std::string& strParamId, float sglParamValue);
    /// Ramps a parameter, one cycle a step. In negative polarity the ramp is mirrored, except for "AF2".
    void Step4d_SetRampingParamAndNumCycles(const std::string& strParamId, float sglStart, float sglStop,
                                            float sglStep);
    void Step4e_SetSourceGasParams(const std::string& strParamId, float sglParamValue);
    /// @param dblFillTime ms
    void Step4f_SetFillTime(bool blnDynamicFillTime, bool blnQ0Trap, double dblFillTime);
    void Step4g_SetNumOfCycles(std::int32_t lngNumOfCycles);
    /// Overwrites.
    void Step5_SaveAsNewMethod(const std::string& strMethodFilePath);

    void OptimizeMassRange();
    /// Has no error handling of its own and does not look at earlier failures: it throws what the host throws, and when
    /// no method is loaded.
    void SetExcitationTimeForDasmyrSeries();
    /// @return ms; 0 when the object has failed
    double GetExpectedDuration();
    /// Copies the method's compound parameters into the results, as initial and as current values.
    void UpdateInitialCompoundParams();

  private:
    bool IsNegative() const { return runState_.settings.Polarity == 1; }
    void OpenMethod(const std::string& path);
    void FindMassSpecMethod();
    void CheckOperatingMode();
    /// Adds a mass range where there is none. @return how many there were
    int EnsureMassRange();

    RunState& runState_;
    std::unique_ptr<ports::AcquisitionService> service_;
    std::unique_ptr<ports::AcquisitionMethod> method_;
    std::unique_ptr<ports::MassSpecMethod> massSpecMethod_;
    std::unique_ptr<ports::Period> period_;
    std::unique_ptr<ports::Experiment> experiment_;
    std::unique_ptr<ports::ExtendedExperiment> extendedExperiment_;
};

}  // namespace veltra
