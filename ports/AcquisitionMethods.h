// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ports/ParameterTable.h"

namespace ports {

/// The host's method editing. All objects are handles: the caller owns the handle and releases it by destroying it, the
/// host owns the method. A handle of a part keeps the document it belongs to open. Every operation throws HostError on
/// failure and leaves the document as it was. One thread only, the one that opened the method.

/// One mass range (or one transition, or one single mass) of an experiment.
class MassRange {
  public:
    virtual ~MassRange() = default;

    /// What the three numbers mean depends on the experiment's scan type: start, stop and step of a range in Da; in an
    /// MRM experiment (scan type 4) Q1, 0 and Q3 in Da; in a Q1 multiple ion experiment (scan type 1) mass, mass and 0.
    virtual void HostSetMassRange(double start, double stop, double step) = 0;
    /// @param dwellTimeMs above 0
    virtual void HostSetDwellTime(double dwellTimeMs) = 0;
    virtual std::unique_ptr<ParameterTable> HostGetParameterTable() = 0;
};

class Experiment {
  public:
    virtual ~Experiment() = default;

    /// @param scanType 1 Q1 multiple ion, 4 MRM, 11 enhanced product ion, 12 enhanced resolution, 13 MS/MS/MS
    virtual void HostSetScanType(int scanType) = 0;
    /// Clears mass ranges and precursors. A range added later starts with a copy of the parameter table that the first
    /// range had before.
    virtual void HostResetExperiment() = 0;
    /// @param polarity 0 positive, 1 negative
    virtual void HostSetPolarity(int polarity) = 0;
    /// @param resolution 0 low, 1 unit, 2 high, 3 open
    virtual void HostSetQ1Resolution(int resolution) = 0;
    virtual int HostGetMassRangeCount() const = 0;
    /// @return the index of the new range, counted from 0
    virtual int HostAddMassRange() = 0;
    virtual std::unique_ptr<MassRange> HostGetMassRange(int index) = 0;
    /// @param mass the precursor of a product-ion scan, or the first one of an MS/MS/MS scan; m/z in Da
    virtual void HostSetFirstPrecursor(double mass) = 0;
    virtual std::unique_ptr<ParameterTable> HostGetSourceGasTable() = 0;
};

/// The same experiment seen through its extended interface.
class ExtendedExperiment {
  public:
    virtual ~ExtendedExperiment() = default;

    virtual void HostSetScansToSum(int count) = 0;
    /// @param scanRate Da/s, one that the instrument model offers for the experiment's scan type
    virtual void HostSetScanRate(double scanRate) = 0;
    /// @param fillTimeMs the trap's fixed fill time
    virtual void HostSetFixedFillTime(double fillTimeMs) = 0;
    /// @param on 0 or 1
    virtual void HostSetQ0Trapping(int on) = 0;
    /// @param on 0 or 1
    virtual void HostSetDynamicFillTime(int on) = 0;
    /// @param mass m/z in Da
    virtual void HostSetSecondPrecursor(double mass) = 0;
    /// Clips the mass range to what the instrument can scan and rounds it to whole steps. Works on a saved method.
    virtual void HostOptimizeMassRange() = 0;
    virtual void HostSetExcitationTime(double excitationTimeMs) = 0;
};

class Period {
  public:
    virtual ~Period() = default;

    virtual std::unique_ptr<Experiment> HostGetExperiment(int index) = 0;
    virtual std::unique_ptr<ExtendedExperiment> HostGetExtendedExperiment(int index) = 0;
    /// Clears the ramp of the period; the cycle count stays.
    virtual void HostResetPeriodParameters() = 0;
    /// One cycle a step, from start to stop. The sign of step is the direction.
    virtual void HostSetRampParameter(const std::string& id, float start, float stop, float step) = 0;
    virtual void HostSetCycles(std::int32_t count) = 0;
};

class MassSpecMethod {
  public:
    virtual ~MassSpecMethod() = default;

    virtual std::unique_ptr<Period> HostGetPeriod(int index) = 0;
    /// @return the operating mode stored in the method
    virtual int HostGetMethodOperatingMode() const = 0;
    /// @return the operating mode that the mass spectrometer is in now
    virtual int HostGetCurrentOperatingMode() const = 0;
    /// @return the expected acquisition time in milliseconds, from when the queue says that it acquires (3)
    virtual double HostGetExpectedDuration() const = 0;
};

class DeviceMethod {
  public:
    virtual ~DeviceMethod() = default;

    virtual bool IsMassSpecMethod() const = 0;
    /// @throws HostError when this is another device's method
    virtual std::unique_ptr<MassSpecMethod> AsMassSpecMethod() = 0;
};

class AcquisitionMethod {
  public:
    virtual ~AcquisitionMethod() = default;

    /// The device methods one by one.
    /// @param index from 0 upwards
    /// @return nothing behind the last one
    virtual std::unique_ptr<DeviceMethod> HostEnumDeviceMethods(int index) = 0;
    /// Writes the whole document, or leaves an existing file untouched when it fails.
    /// @param path full path, UTF-8
    virtual void HostSaveMethodAs(const std::string& path, bool overwrite) = 0;
};

class AcquisitionService {
  public:
    virtual ~AcquisitionService() = default;

    /// @param path full path of a ".xmt" file, UTF-8
    /// @throws HostError that says what is wrong with the file and where
    virtual std::unique_ptr<AcquisitionMethod> HostOpenMethod(const std::string& path) = 0;
};

}  // namespace ports
