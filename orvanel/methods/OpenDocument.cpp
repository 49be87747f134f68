// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/OpenDocument.h"

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/methods/Ramp.h"
#include "orvanel/methods/Validation.h"
#include "ports/HostError.h"

namespace orvanel {

namespace {

template <typename Part>
Part& PartAt(std::vector<Part>& parts, int index, const std::string& what) {
    if (index < 0 || static_cast<std::size_t>(index) >= parts.size())
        throw ports::HostError(errorNumber::noSuchPart, "There is no " + what + " " + std::to_string(index) +
                                                            ", the method has " + std::to_string(parts.size()) +
                                                            " counted from 0");
    return parts[static_cast<std::size_t>(index)];
}

}  // namespace

MassSpecRecord& OpenDocument::MassSpec(std::size_t device) {
    return document.devices.at(device).massSpec.value();
}

PeriodRecord& OpenDocument::Period(std::size_t device, int index) {
    return PartAt(MassSpec(device).periods, index, "period");
}

ExperimentRecord& OpenDocument::Experiment(std::size_t device, int period, int index) {
    return PartAt(Period(device, period).experiments, index, "experiment");
}

MassRangeRecord& OpenDocument::MassRange(std::size_t device, int period, int experiment, int index) {
    return PartAt(Experiment(device, period, experiment).massRanges, index, "mass range");
}

const std::vector<Parameter>& TableForNewRanges(const ExperimentRecord& experiment) {
    if (experiment.newRangeParameters.empty() && !experiment.massRanges.empty())
        return experiment.massRanges.front().compoundParameters;
    return experiment.newRangeParameters;
}

DocumentParameterTable::DocumentParameterTable(std::shared_ptr<OpenDocument> method,
                                               std::function<std::vector<Parameter>&()> locate)
    : method_(std::move(method)), locate_(std::move(locate)) {}

int DocumentParameterTable::HostGetParameterCount() const {
    return static_cast<int>(locate_().size());
}

int DocumentParameterTable::HostFindParameter(const std::string& id) const {
    const auto& table = locate_();
    for (std::size_t index = 0; index < table.size(); ++index)
        if (table[index].id == id) return static_cast<int>(index);
    return -1;
}

std::string DocumentParameterTable::HostGetParameterId(int index) const {
    return At(index).id;
}
float DocumentParameterTable::HostGetParameterValue(int index) const {
    return At(index).value;
}

void DocumentParameterTable::HostSetParameterValue(int index, float value) {
    Parameter& parameter = At(index);
    CheckParameter(*method_->model, parameter.id, DecimalValue(value));
    parameter.value = value;
    method_->unsavedChanges = true;
}

Parameter& DocumentParameterTable::At(int index) const {
    return PartAt(locate_(), index, "parameter");
}

}  // namespace orvanel
