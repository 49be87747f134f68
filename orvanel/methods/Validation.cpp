// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/Validation.h"

#include <algorithm>
#include <cmath>

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/instrument/MethodCheck.h"
#include "orvanel/instrument/Simulator.h"
#include "orvanel/instrument/Timing.h"
#include "orvanel/methods/Ramp.h"
#include "ports/HostError.h"
#include "support/NumberText.h"

namespace orvanel {

namespace {

using support::GeneralText;

constexpr double largestMassDa = 10000;

[[noreturn]] void Refuse(const std::string& text) {
    throw ports::HostError(errorNumber::impossibleValue, text);
}
[[noreturn]] void RefuseAcquisition(const std::string& text) {
    throw ports::HostError(errorNumber::notAcquirable, text);
}

std::string ModelText(const InstrumentModel& model) {
    return "model " + std::to_string(model.code) + " (" + model.name + ")";
}

std::string Between(double minimum, double maximum) {
    return "from " + GeneralText(minimum) + " to " + GeneralText(maximum);
}

void CheckNumber(const std::string& what, double value, double minimum, double maximum, const std::string& unit) {
    if (!(value >= minimum && value <= maximum))
        Refuse(what + " of " + GeneralText(value) + unit + " is impossible, allowed is " + Between(minimum, maximum) +
               unit);
}

void CheckWhole(const std::string& what, std::int64_t value, std::int64_t minimum, std::int64_t maximum) {
    if (value < minimum || value > maximum)
        Refuse(what + " of " + std::to_string(value) + " is impossible, allowed is a whole number from " +
               std::to_string(minimum) + " to " + std::to_string(maximum));
}

bool IsUnset(const MassRangeRecord& range) {
    return range.start == 0 && range.stop == 0 && range.step == 0;
}

void CheckRampCycles(const RampRecord& ramp, int cycles) {
    const double steps = std::abs((DecimalValue(ramp.stop) - DecimalValue(ramp.start)) / DecimalValue(ramp.step));
    if (cycles - 1 > steps + 0.501)
        RefuseAcquisition("The ramp of " + ramp.id + " has " + GeneralText(std::floor(steps + 0.501) + 1) +
                          " values and the period " + std::to_string(cycles) + " cycles, set fewer cycles");
}

/// Each value may be possible and all of them together keep the instrument busy for years.
void CheckExtent(const InstrumentModel& model, const MassSpecRecord& method, const ExperimentRecord& experiment) {
    double points = 0;
    for (const auto& range : experiment.massRanges)
        points += IsUnset(range) || !IsTrapScan(experiment.scanType)
                      ? 1
                      : std::floor((range.stop - range.start) / range.step + 1e-6) + 1;
    points *= method.periods.front().cycles;
    if (!(points <= maximumPointsPerFile))
        RefuseAcquisition("The method would measure " + GeneralText(points) + " points, more than the " +
                          GeneralText(maximumPointsPerFile) + " of a data file, set fewer cycles or larger steps");
    const double hours = ExpectedDurationMs(method, model) / 3'600'000;
    if (!(hours <= maximumHours))
        RefuseAcquisition(
            "The method would take " + (std::isfinite(hours) ? GeneralText(std::ceil(hours)) + " hours" : "for ever") +
            ", more than the " + GeneralText(maximumHours) + " hours allowed, set fewer cycles or shorter times");
}

}  // namespace

void CheckScanType(const InstrumentModel& model, int scanType) {
    const bool beamScan = scanType == static_cast<int>(ScanType::Q1MultipleIon) ||
                          scanType == static_cast<int>(ScanType::MultipleReaction);
    if (!beamScan && !IsTrapScan(scanType))
        Refuse("Scan type " + std::to_string(scanType) + " is not known, there are 1, 4, 11, 12 and 13");
    if (IsTrapScan(scanType) && !model.linearIonTrap)
        Refuse("Scan type " + std::to_string(scanType) + " needs a linear ion trap, which " + ModelText(model) +
               " has not");
}

void CheckScanRate(const InstrumentModel& model, int scanType, double scanRate) {
    if (std::isfinite(scanRate) && FindScanRate(model, scanType, scanRate) != nullptr) return;
    std::string offered;
    if (const auto found = model.scanRates.find(scanType); found != model.scanRates.end())
        for (const auto& step : found->second)
            offered += (offered.empty() ? "" : ", ") + step.rateText;
    Refuse("Scan rate " + GeneralText(scanRate) + " Da/s is not offered by " + ModelText(model) + " for scan type " +
           std::to_string(scanType) + ", which has " + (offered.empty() ? "no scan rates" : offered));
}

void CheckMassRange(const InstrumentModel& model, int scanType, double start, double stop, double step) {
    const std::string given = "Mass range " + GeneralText(start) + ", " + GeneralText(stop) + ", " + GeneralText(step);
    const auto inQuadrupole = [&](double mass) { return std::isfinite(mass) && model.quadrupoleMz.Contains(mass); };
    const std::string quadrupole = Between(model.quadrupoleMz.minimum, model.quadrupoleMz.maximum) + " Da";
    if (scanType == static_cast<int>(ScanType::MultipleReaction)) {
        if (!inQuadrupole(start) || stop != 0 || !inQuadrupole(step))
            Refuse(given + " is no transition, expected are Q1, 0 and Q3 with Q1 and Q3 " + quadrupole);
    } else if (scanType == static_cast<int>(ScanType::Q1MultipleIon)) {
        if (!inQuadrupole(start) || stop != start || step != 0)
            Refuse(given + " is no single mass, expected are mass, mass and 0 with the mass " + quadrupole);
    } else {
        if (!(start >= 0 && start < stop && stop <= largestMassDa))
            Refuse(given + " is no range, expected is a start below the stop, both " + Between(0, largestMassDa) +
                   " Da");
        if (!(step > 0 && step <= stop - start && (stop - start) / step <= maximumPointsPerRange))
            Refuse(given +
                   " has an impossible step, expected is one above 0 and no larger than the range, with at most " +
                   GeneralText(maximumPointsPerRange) + " steps");
    }
}

void CheckPrecursor(const InstrumentModel& model, double mass) {
    CheckNumber("Precursor m/z", mass, model.quadrupoleMz.minimum, model.quadrupoleMz.maximum, " Da");
}

void CheckParameter(const InstrumentModel& model, const std::string& id, double value) {
    if (!std::isfinite(value)) Refuse(id + " of " + GeneralText(value) + " is impossible, expected is a number");
    const auto found = model.parameterLimits.find(id);
    if (found == model.parameterLimits.end()) return;
    if (!found->second.Contains(std::abs(value)))
        Refuse(id + " of " + GeneralText(value) + " is impossible on " + ModelText(model) +
               ", allowed is a magnitude " + Between(found->second.minimum, found->second.maximum));
}

void CheckRamp(const InstrumentModel& model, const std::vector<Parameter>& table, const RampRecord& ramp) {
    if (!FindParameter(table, ramp.id)) {
        std::string known;
        for (const auto& parameter : table)
            known += (known.empty() ? "" : ", ") + parameter.id;
        Refuse("Parameter " + ramp.id + " cannot be ramped, the method has " + (known.empty() ? "none" : known));
    }
    const double start = DecimalValue(ramp.start);
    const double stop = DecimalValue(ramp.stop);
    const double step = DecimalValue(ramp.step);
    CheckParameter(model, ramp.id, start);
    CheckParameter(model, ramp.id, stop);
    const std::string given =
        "Ramp of " + ramp.id + " from " + GeneralText(start) + " to " + GeneralText(stop) + " by " + GeneralText(step);
    if (!std::isfinite(step) || step == 0) Refuse(given + " has an impossible step, expected is one other than 0");
    if ((stop - start) * step < 0) Refuse(given + " runs away from its end, turn the sign of the step");
    if ((stop - start) / step > maximumCycles - 1)
        Refuse(given + " has more than " + std::to_string(maximumCycles) + " values, set a larger step");
}

void CheckPolarity(int polarity) {
    CheckWhole("Polarity", polarity, 0, 1);
}
void CheckQ1Resolution(int resolution) {
    CheckWhole("Q1 resolution", resolution, 0, 3);
}
void CheckScansToSum(int count) {
    CheckWhole("Number of scans to sum", count, 1, maximumScansToSum);
}
void CheckCycles(std::int64_t count) {
    CheckWhole("Number of cycles", count, 1, maximumCycles);
}

void CheckDwellTime(double dwellTimeMs) {
    if (!(dwellTimeMs > 0 && dwellTimeMs <= maximumDwellTimeMs))
        Refuse("Dwell time of " + GeneralText(dwellTimeMs) + " ms is impossible, allowed is above 0 and up to " +
               GeneralText(maximumDwellTimeMs) + " ms");
}

void CheckFillTime(const InstrumentModel& model, double fillTimeMs) {
    CheckNumber("Fill time", fillTimeMs, model.minimumFillMs, maximumFillTimeMs, " ms");
}

void CheckExcitationTime(double excitationTimeMs) {
    CheckNumber("Excitation time", excitationTimeMs, 1, maximumExcitationTimeMs, " ms");
}

void CheckFlag(const std::string& what, int value) {
    CheckWhole(what, value, 0, 1);
}

void CheckSubmittable(const InstrumentModel& model, const MassSpecRecord& method) {
    if (method.periods.empty() || method.periods.front().experiments.empty())
        RefuseAcquisition("The method has no experiment to acquire");
    const PeriodRecord& period = method.periods.front();
    const ExperimentRecord& experiment = period.experiments.front();
    if (std::none_of(experiment.massRanges.begin(), experiment.massRanges.end(), IsUnset))
        CheckAcquirable(method, model);
    for (const auto& range : experiment.massRanges)
        CheckDwellTime(range.dwellTimeMs);
    for (const auto& parameter : experiment.sourceGas)
        CheckParameter(model, parameter.id, DecimalValue(parameter.value));
    if (period.ramp) {
        CheckRamp(model, experiment.massRanges.front().compoundParameters, *period.ramp);
        CheckRampCycles(*period.ramp, period.cycles);
    }
    CheckExtent(model, method, experiment);
}

}  // namespace orvanel
