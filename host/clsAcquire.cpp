// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "host/clsAcquire.h"

#include <cmath>

#include "host/InstrumentModels.h"
#include "support/NumberText.h"
#include "support/RunTimeError.h"

namespace veltra {
namespace {

using support::GeneralText;

/// The value that a negative-polarity method holds; never a negative zero.
float Mirrored(float value) {
    return 0.0F - std::abs(value);
}

}  // namespace

std::int32_t RampCycles(float start, float stop, float step) {
    const float span = std::abs(stop - start);
    return support::ToInt32(static_cast<double>(span / step)) + 1;
}

clsAcquire::clsAcquire(RunState& runState) : runState_(runState) {
    IgnoreFailure("without the service the load fails, which is where callers look", [&] {
        if (runState.hostApplication) service_ = runState.hostApplication->GetAcquisitionService();
    });
}

clsAcquire::~clsAcquire() = default;

void clsAcquire::OpenMethod(const std::string& path) {
    extendedExperiment_.reset();
    experiment_.reset();
    period_.reset();
    massSpecMethod_.reset();
    method_.reset();
    IgnoreFailure("the message below names the file, and no run can use it whatever is wrong with it",
                  [&] { method_ = Required(service_).HostOpenMethod(path); });
    if (!method_) Fail("Acquire: Error loading " + path + ".  Invalid acquisition method.");
}

void clsAcquire::Step1_Load(const std::string& strRecentMethodFilePath) {
    if (!ErrorOccurred()) OpenMethod(strRecentMethodFilePath);
    Step([&] { FindMassSpecMethod(); }, FixedMessage("Acquire: Error during getting of mass spec method"));
    Step(
        [&] {
            period_ = Required(massSpecMethod_).HostGetPeriod(0);
            experiment_ = Required(period_).HostGetExperiment(0);
            extendedExperiment_ = period_->HostGetExtendedExperiment(0);
            CheckOperatingMode();
        },
        [&] { return "Acquire: Error loading " + strRecentMethodFilePath; });
}

void clsAcquire::FindMassSpecMethod() {
    constexpr int mostDevices = 1000;  // a list that goes on has no end
    for (int index = 0; index < mostDevices; ++index) {
        const auto device = method_->HostEnumDeviceMethods(index);
        if (!device) break;
        if (!device->IsMassSpecMethod()) continue;
        massSpecMethod_ = device->AsMassSpecMethod();
        return;
    }
    Fail("Acquire: The method doesn't contain a mass spec method.  Method or hardware configuration invalid.");
}

void clsAcquire::CheckOperatingMode() {
    if (!ChecksOperatingMode(runState_.InstrumentModelCode)) return;
    if (massSpecMethod_->HostGetMethodOperatingMode() != massSpecMethod_->HostGetCurrentOperatingMode())
        Fail("Acquire: The loaded method does not match the current mass spectrometer operating mode.");
}

void clsAcquire::Step2_InitializeMethod(std::int16_t intScanType, std::int16_t intScansToSum) {
    constexpr int openResolution = 3;
    Step(
        [&] {
            const bool isER = intScanType == static_cast<std::int16_t>(ScanTypeCode::ER);
            auto& experiment = Required(experiment_);
            experiment.HostSetScanType(intScanType);
            experiment.HostResetExperiment();
            Required(extendedExperiment_).HostSetScansToSum(intScansToSum);
            experiment.HostSetPolarity(runState_.settings.Polarity);
            // An ER scan looks for a parent that may lie off its expected m/z, so nothing is cut away in Q1.
            experiment.HostSetQ1Resolution(isER ? openResolution : runState_.settings.Q1Resolution);
            Required(period_).HostResetPeriodParameters();
        },
        FixedMessage("Acquire: Error during method initialization"));
}

void clsAcquire::Step3a_SetMassRange(double dblStart, double dblStop, double dblStep, std::int32_t& pLngIndex) {
    Step(
        [&] {
            auto& experiment = Required(experiment_);
            pLngIndex = experiment.HostGetMassRangeCount();
            pLngIndex = experiment.HostAddMassRange();
            Required(experiment.HostGetMassRange(pLngIndex)).HostSetMassRange(dblStart, dblStop, dblStep);
        },
        [&] {
            return "Acquire: Error during setting of mass range to " + GeneralText(dblStart) + " start, " +
                   GeneralText(dblStop) + " stop, " + GeneralText(dblStep) + " step";
        });
}

void clsAcquire::Step3b_SetEPIProductOf(double dblMass) {
    Step([&] { Required(experiment_).HostSetFirstPrecursor(dblMass); },
         [&] { return "Acquire: Error during setting EPI Product Of to " + GeneralText(dblMass) + " Da"; });
}

void clsAcquire::Step3c_SetMS3Precursors(double dblFirstPrecursor, double dblSecondPrecursor) {
    Step(
        [&] {
            Required(experiment_).HostSetFirstPrecursor(dblFirstPrecursor);
            Required(extendedExperiment_).HostSetSecondPrecursor(dblSecondPrecursor);
        },
        [&] {
            return "Acquire: Error during setting of MS/MS/MS precursors to " + GeneralText(dblFirstPrecursor) +
                   " Da and " + GeneralText(dblSecondPrecursor) + " Da";
        });
}

void clsAcquire::Step4a_SetScanRate(double dblScanRate) {
    Step([&] { Required(extendedExperiment_).HostSetScanRate(dblScanRate); },
         [&] { return "Acquire: Error during setting of scan rate to " + GeneralText(dblScanRate) + " Da/s"; });
}

int clsAcquire::EnsureMassRange() {
    auto& experiment = Required(experiment_);
    const int count = experiment.HostGetMassRangeCount();
    if (count < 1) experiment.HostAddMassRange();
    return count;
}

void clsAcquire::Step4b_SetDwellTime(double dblDwellTime) {
    Step(
        [&] {
            int count = EnsureMassRange();
            if (count < 1) count = experiment_->HostGetMassRangeCount();
            for (int i = 0; i < count; ++i)
                Required(experiment_->HostGetMassRange(i)).HostSetDwellTime(dblDwellTime);
        },
        [&] { return "Acquire: Error during setting of dwell time to " + GeneralText(dblDwellTime) + " msec"; });
}

void clsAcquire::Step4c_SetCompoundParam(const std::string& strParamId, float sglParamValue) {
    Step(
        [&] {
            const bool keepsSign = strParamId == "AF2" || strParamId == "CES";
            const float value = IsNegative() && !keepsSign ? Mirrored(sglParamValue) : sglParamValue;
            auto& experiment = Required(experiment_);
            const int count = experiment.HostGetMassRangeCount();
            for (int i = 0; i < count; ++i) {
                const auto table = Required(experiment.HostGetMassRange(i)).HostGetParameterTable();
                const int index = Required(table).HostFindParameter(strParamId);
                if (index > -1) table->HostSetParameterValue(index, value);
            }
        },
        [&] { return "Acquire: Error during setting of " + strParamId + " to " + GeneralText(sglParamValue); });
}

void clsAcquire::Step4d_SetRampingParamAndNumCycles(const std::string& strParamId, float sglStart, float sglStop,
                                                    float sglStep) {
    std::int32_t cycles = 0;
    Step(
        [&] {
            const bool mirrored = IsNegative() && strParamId != "AF2";
            const float start = mirrored ? Mirrored(sglStop) : sglStart;
            const float stop = mirrored ? Mirrored(sglStart) : sglStop;
            Required(period_).HostSetRampParameter(strParamId, start, stop, sglStep);
            cycles = RampCycles(start, stop, sglStep);
        },
        [&] {
            return "Acquire: Error during setting of " + strParamId + " ramping parameter to " + GeneralText(sglStart) +
                   " start, " + GeneralText(sglStop) + " stop, " + GeneralText(sglStep) + " step";
        });
    Step4g_SetNumOfCycles(cycles);
}

void clsAcquire::Step4e_SetSourceGasParams(const std::string& strParamId, float sglParamValue) {
    Step(
        [&] {
            const auto table = Required(experiment_).HostGetSourceGasTable();
            const int index = Required(table).HostFindParameter(strParamId);
            table->HostSetParameterValue(index, sglParamValue);
        },
        [&] {
            return "Acquire: Error during setting of " + strParamId + " Source/Gas parameter to " +
                   GeneralText(sglParamValue);
        });
}

void clsAcquire::Step4f_SetFillTime(bool blnDynamicFillTime, bool blnQ0Trap, double dblFillTime) {
    Step(
        [&] {
            auto& experiment = Required(extendedExperiment_);
            experiment.HostSetFixedFillTime(dblFillTime);
            experiment.HostSetQ0Trapping(blnQ0Trap ? 1 : 0);
            experiment.HostSetDynamicFillTime(blnDynamicFillTime ? 1 : 0);
        },
        FixedMessage("Acquire: Error during setting of fill time"));
}

void clsAcquire::Step4g_SetNumOfCycles(std::int32_t lngNumOfCycles) {
    Step([&] { Required(period_).HostSetCycles(lngNumOfCycles); },
         [&] { return "Acquire: Error setting the number of cycles to " + GeneralText(lngNumOfCycles); });
}

void clsAcquire::Step5_SaveAsNewMethod(const std::string& strMethodFilePath) {
    Step([&] { Required(method_).HostSaveMethodAs(strMethodFilePath, true); },
         [&] { return "Acquire: Error during saving of " + strMethodFilePath; });
}

void clsAcquire::OptimizeMassRange() {
    Step([&] { Required(extendedExperiment_).HostOptimizeMassRange(); },
         FixedMessage("Acquire: Error during optimization of mass range"));
}

void clsAcquire::SetExcitationTimeForDasmyrSeries() {
    constexpr double excitationTimeMs = 25;
    if (IsDasmyrSeries(runState_.InstrumentModelCode))
        Required(extendedExperiment_).HostSetExcitationTime(excitationTimeMs);
}

double clsAcquire::GetExpectedDuration() {
    double durationMs = 0;
    Step([&] { durationMs = Finite(Required(massSpecMethod_).HostGetExpectedDuration()); },
         FixedMessage("Acquire: Error getting the expected duration"));
    return ErrorOccurred() ? 0 : durationMs;
}

void clsAcquire::UpdateInitialCompoundParams() {
    Step(
        [&] {
            EnsureMassRange();
            const auto table = Required(experiment_->HostGetMassRange(0)).HostGetParameterTable();
            auto& results = *runState_.results;
            const int count = Required(table).HostGetParameterCount();
            for (int i = 0; i < count; ++i) {
                const std::string id = table->HostGetParameterId(i);
                float value = Finite(table->HostGetParameterValue(i));
                if (IsNegative() && id != "AF2") value = Mirrored(value);
                clsItem_CompoundParam* param = id == "DP"    ? &results.DP
                                               : id == "EP"  ? &results.EP
                                               : id == "CEP" ? &results.CEP
                                               : id == "CE"  ? &results.CE
                                               : id == "AF2" ? &results.AF2
                                                             : nullptr;
                if (param == nullptr) continue;
                param->Initial = value;
                param->Current = value;
            }
        },
        FixedMessage("Acquire: Error during updating of initial compound parameters"));
}

}  // namespace veltra
