// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ports/AcquisitionMethods.h"
#include "tests/support_files/Observed.h"

class ObservedParameterTable : public Observed<ports::ParameterTable> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(int, HostGetParameterCount, (), const override)
    VELTRA_OBSERVED(int, HostFindParameter, (const std::string& id), const override, id)
    VELTRA_OBSERVED(std::string, HostGetParameterId, (int index), const override, index)
    VELTRA_OBSERVED(float, HostGetParameterValue, (int index), const override, index)
    VELTRA_OBSERVED(void, HostSetParameterValue, (int index, float value), override, index, value)
};

class ObservedMassRange : public Observed<ports::MassRange> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(void, HostSetMassRange, (double start, double stop, double step), override, start, stop, step)
    VELTRA_OBSERVED(void, HostSetDwellTime, (double dwellTimeMs), override, dwellTimeMs)
    VELTRA_OBSERVED_HANDLE(ParameterTable, HostGetParameterTable, ())
};

class ObservedExperiment : public Observed<ports::Experiment> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(void, HostSetScanType, (int scanType), override, scanType)
    VELTRA_OBSERVED(void, HostResetExperiment, (), override)
    VELTRA_OBSERVED(void, HostSetPolarity, (int polarity), override, polarity)
    VELTRA_OBSERVED(void, HostSetQ1Resolution, (int resolution), override, resolution)
    VELTRA_OBSERVED(int, HostGetMassRangeCount, (), const override)
    VELTRA_OBSERVED(int, HostAddMassRange, (), override)
    VELTRA_OBSERVED_HANDLE(MassRange, HostGetMassRange, (int index), index)
    VELTRA_OBSERVED(void, HostSetFirstPrecursor, (double mass), override, mass)
    VELTRA_OBSERVED_HANDLE(ParameterTable, HostGetSourceGasTable, ())
};

class ObservedExtendedExperiment : public Observed<ports::ExtendedExperiment> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(void, HostSetScansToSum, (int count), override, count)
    VELTRA_OBSERVED(void, HostSetScanRate, (double scanRate), override, scanRate)
    VELTRA_OBSERVED(void, HostSetFixedFillTime, (double fillTimeMs), override, fillTimeMs)
    VELTRA_OBSERVED(void, HostSetQ0Trapping, (int on), override, on)
    VELTRA_OBSERVED(void, HostSetDynamicFillTime, (int on), override, on)
    VELTRA_OBSERVED(void, HostSetSecondPrecursor, (double mass), override, mass)
    VELTRA_OBSERVED(void, HostOptimizeMassRange, (), override)
    VELTRA_OBSERVED(void, HostSetExcitationTime, (double excitationTimeMs), override, excitationTimeMs)
};

class ObservedPeriod : public Observed<ports::Period> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED_HANDLE(Experiment, HostGetExperiment, (int index), index)
    VELTRA_OBSERVED_HANDLE(ExtendedExperiment, HostGetExtendedExperiment, (int index), index)
    VELTRA_OBSERVED(void, HostResetPeriodParameters, (), override)
    VELTRA_OBSERVED(void, HostSetRampParameter, (const std::string& id, float start, float stop, float step), override,
                    id, start, stop, step)
    VELTRA_OBSERVED(void, HostSetCycles, (std::int32_t count), override, count)
};

class ObservedMassSpecMethod : public Observed<ports::MassSpecMethod> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED_HANDLE(Period, HostGetPeriod, (int index), index)
    VELTRA_OBSERVED(int, HostGetMethodOperatingMode, (), const override)
    VELTRA_OBSERVED(int, HostGetCurrentOperatingMode, (), const override)
    VELTRA_OBSERVED(double, HostGetExpectedDuration, (), const override)
};

class ObservedDeviceMethod : public Observed<ports::DeviceMethod> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED(bool, IsMassSpecMethod, (), const override)
    VELTRA_OBSERVED_HANDLE(MassSpecMethod, AsMassSpecMethod, ())
};

class ObservedAcquisitionMethod : public Observed<ports::AcquisitionMethod> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED_HANDLE(DeviceMethod, HostEnumDeviceMethods, (int index), index)
    VELTRA_OBSERVED(void, HostSaveMethodAs, (const std::string& path, bool overwrite), override, path, overwrite)
};

class ObservedAcquisitionService : public Observed<ports::AcquisitionService> {
  public:
    using Observed::Observed;
    VELTRA_OBSERVED_HANDLE(AcquisitionMethod, HostOpenMethod, (const std::string& path), path)
};
