// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/methods/MethodFile.h"

#include <limits>
#include <set>

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/XmlReader.h"
#include "orvanel/XmlWriter.h"
#include "support/NumberText.h"

namespace orvanel {

namespace {

using pugi::xml_node;

constexpr const char* massSpecKind = "MassSpectrometer";
constexpr int largestWhole = std::numeric_limits<int>::max();

XmlFormat MethodFormat() {
    return {.what = "an acquisition method",
            .rootElement = "OrvanelMethod",
            .unreadableNumber = errorNumber::methodFileUnreadable,
            .damagedNumber = errorNumber::methodFileDamaged,
            .notSavedNumber = errorNumber::methodNotSaved};
}

// Reading.

std::vector<Parameter> ReadParameters(const XmlReader& reader, xml_node table) {
    std::vector<Parameter> parameters;
    std::set<std::string> ids;
    for (const auto& element : table.children("Parameter")) {
        reader.CheckAttributes(element, {"id", "value"});
        reader.CheckChildren(element, {});
        Parameter parameter{reader.Text(element, "id", 64), reader.Single(element, "value")};
        if (parameter.id.empty()) reader.Fail(element, "a parameter's id is empty");
        if (!ids.insert(parameter.id).second)
            reader.Fail(element, "parameter \"" + parameter.id + "\" is in the table twice");
        parameters.push_back(std::move(parameter));
    }
    return parameters;
}

std::vector<Parameter> ReadTable(const XmlReader& reader, xml_node table) {
    if (!table) return {};
    reader.CheckAttributes(table, {});
    reader.CheckChildren(table, {"Parameter"}, maximumParameters);
    return ReadParameters(reader, table);
}

MassRangeRecord ReadMassRange(const XmlReader& reader, xml_node element) {
    reader.CheckAttributes(element, {"start", "stop", "step", "dwellTimeMs"});
    reader.CheckChildren(element, {"Parameter"}, maximumParameters);
    MassRangeRecord range;
    range.start = reader.Number(element, "start");
    range.stop = reader.Number(element, "stop");
    range.step = reader.Number(element, "step");
    range.dwellTimeMs = reader.Number(element, "dwellTimeMs");
    range.compoundParameters = ReadParameters(reader, element);
    return range;
}

ExperimentRecord ReadExperiment(const XmlReader& reader, xml_node element) {
    reader.CheckAttributes(
        element, {"scanType", "scansToSum", "polarity", "q1Resolution", "firstPrecursor", "secondPrecursor", "scanRate",
                  "fixedFillTimeMs", "q0Trapping", "dynamicFillTime", "excitationTimeMs"});
    reader.CheckChildren(element, {"SourceGas", "NewRange", "MassRange"}, maximumMassRanges);
    ExperimentRecord experiment;
    experiment.scanType = reader.Whole(element, "scanType", 0, largestWhole);
    experiment.scansToSum = reader.Whole(element, "scansToSum", 0, largestWhole);
    experiment.polarity = reader.Whole(element, "polarity", 0, 1);
    experiment.q1Resolution = reader.Whole(element, "q1Resolution", 0, 3);
    experiment.firstPrecursor = reader.Number(element, "firstPrecursor");
    experiment.secondPrecursor = reader.Number(element, "secondPrecursor");
    experiment.scanRate = reader.Number(element, "scanRate");
    experiment.fixedFillTimeMs = reader.Number(element, "fixedFillTimeMs");
    experiment.q0Trapping = reader.Flag(element, "q0Trapping");
    experiment.dynamicFillTime = reader.Flag(element, "dynamicFillTime");
    experiment.excitationTimeMs = reader.Number(element, "excitationTimeMs");
    for (const char* table : {"SourceGas", "NewRange"})
        if (const xml_node first = element.child(table); first && first.next_sibling(table))
            reader.Fail(first.next_sibling(table), "an experiment has one " + std::string(table) + " table only");
    experiment.sourceGas = ReadTable(reader, element.child("SourceGas"));
    experiment.newRangeParameters = ReadTable(reader, element.child("NewRange"));
    for (const auto& range : element.children("MassRange"))
        experiment.massRanges.push_back(ReadMassRange(reader, range));
    return experiment;
}

PeriodRecord ReadPeriod(const XmlReader& reader, xml_node element) {
    reader.CheckAttributes(element, {"cycles"});
    reader.CheckChildren(element, {"Ramp", "Experiment"}, maximumExperiments);
    PeriodRecord period;
    period.cycles = reader.Whole(element, "cycles", 1, largestWhole);
    if (const xml_node ramp = element.child("Ramp")) {
        if (ramp.next_sibling("Ramp")) reader.Fail(ramp.next_sibling("Ramp"), "a period has one ramp only");
        reader.CheckAttributes(ramp, {"id", "start", "stop", "step"});
        reader.CheckChildren(ramp, {});
        period.ramp = RampRecord{reader.Text(ramp, "id", 64), reader.Single(ramp, "start"), reader.Single(ramp, "stop"),
                                 reader.Single(ramp, "step")};
    }
    for (const auto& experiment : element.children("Experiment"))
        period.experiments.push_back(ReadExperiment(reader, experiment));
    return period;
}

DeviceRecord ReadDevice(const XmlReader& reader, xml_node element) {
    reader.CheckAttributes(element, {"kind", "name"});
    reader.CheckChildren(element, {"Setting", "MassSpec"}, maximumSettings);
    DeviceRecord device;
    device.kind = reader.Text(element, "kind", 64);
    device.name = reader.Text(element, "name");
    for (const auto& setting : element.children("Setting")) {
        reader.CheckAttributes(setting, {"name", "value"});
        reader.CheckChildren(setting, {});
        device.settings.push_back({reader.Text(setting, "name"), reader.Text(setting, "value")});
    }
    const xml_node massSpec = element.child("MassSpec");
    if (!massSpec.empty() != (device.kind == massSpecKind) || massSpec.next_sibling("MassSpec"))
        reader.Fail(element,
                    "a device of kind \"MassSpectrometer\" has exactly one MassSpec element, others have none");
    if (massSpec) {
        reader.CheckAttributes(massSpec, {"operatingMode"});
        reader.CheckChildren(massSpec, {"Period"}, maximumPeriods);
        device.massSpec.emplace();
        device.massSpec->operatingMode = reader.Whole(massSpec, "operatingMode", 0, largestWhole);
        for (const auto& period : massSpec.children("Period"))
            device.massSpec->periods.push_back(ReadPeriod(reader, period));
    }
    return device;
}

// Writing.

void WriteParameters(const XmlWriter& writer, xml_node table, const std::vector<Parameter>& parameters) {
    for (const auto& parameter : parameters) {
        xml_node element = table.append_child("Parameter");
        writer.Text(element, "id", parameter.id);
        writer.Number(element, "value", parameter.value);
    }
}

void WriteExperiment(const XmlWriter& writer, xml_node period, const ExperimentRecord& experiment) {
    xml_node element = period.append_child("Experiment");
    writer.Whole(element, "scanType", experiment.scanType);
    writer.Whole(element, "scansToSum", experiment.scansToSum);
    writer.Whole(element, "polarity", experiment.polarity);
    writer.Whole(element, "q1Resolution", experiment.q1Resolution);
    writer.Number(element, "firstPrecursor", experiment.firstPrecursor);
    writer.Number(element, "secondPrecursor", experiment.secondPrecursor);
    writer.Number(element, "scanRate", experiment.scanRate);
    writer.Number(element, "fixedFillTimeMs", experiment.fixedFillTimeMs);
    writer.Whole(element, "q0Trapping", experiment.q0Trapping ? 1 : 0);
    writer.Whole(element, "dynamicFillTime", experiment.dynamicFillTime ? 1 : 0);
    writer.Number(element, "excitationTimeMs", experiment.excitationTimeMs);
    WriteParameters(writer, element.append_child("SourceGas"), experiment.sourceGas);
    if (!experiment.newRangeParameters.empty())
        WriteParameters(writer, element.append_child("NewRange"), experiment.newRangeParameters);
    for (const auto& range : experiment.massRanges) {
        xml_node rangeElement = element.append_child("MassRange");
        writer.Number(rangeElement, "start", range.start);
        writer.Number(rangeElement, "stop", range.stop);
        writer.Number(rangeElement, "step", range.step);
        writer.Number(rangeElement, "dwellTimeMs", range.dwellTimeMs);
        WriteParameters(writer, rangeElement, range.compoundParameters);
    }
}

void WritePeriod(const XmlWriter& writer, xml_node massSpec, const PeriodRecord& period) {
    xml_node element = massSpec.append_child("Period");
    writer.Whole(element, "cycles", period.cycles);
    if (period.ramp) {
        xml_node ramp = element.append_child("Ramp");
        writer.Text(ramp, "id", period.ramp->id);
        writer.Number(ramp, "start", period.ramp->start);
        writer.Number(ramp, "stop", period.ramp->stop);
        writer.Number(ramp, "step", period.ramp->step);
    }
    for (const auto& experiment : period.experiments)
        WriteExperiment(writer, element, experiment);
}

}  // namespace

MethodDocument ReadMethodFile(const std::string& path, const support::Disk& disk) {
    const XmlReader reader(path, MethodFormat(), disk);
    const xml_node root = reader.Root();
    reader.CheckAttributes(root, {"version", "instrument"}, {"comment"});
    reader.CheckChildren(root, {"Device"}, maximumDevices);
    MethodDocument document;
    if (root.attribute("comment")) document.comment = reader.Text(root, "comment", 65536);
    for (const auto& device : root.children("Device"))
        document.devices.push_back(ReadDevice(reader, device));
    return document;
}

void WriteMethodFile(const std::string& path, const MethodDocument& document, const support::Disk& disk) {
    const XmlWriter writer(MethodFormat());
    xml_node root = writer.Root();
    if (!document.comment.empty()) writer.Text(root, "comment", document.comment);
    for (const auto& device : document.devices) {
        xml_node element = root.append_child("Device");
        writer.Text(element, "kind", device.kind);
        writer.Text(element, "name", device.name);
        for (const auto& setting : device.settings) {
            xml_node settingElement = element.append_child("Setting");
            writer.Text(settingElement, "name", setting.name);
            writer.Text(settingElement, "value", setting.value);
        }
        if (!device.massSpec) continue;
        xml_node massSpec = element.append_child("MassSpec");
        writer.Whole(massSpec, "operatingMode", device.massSpec->operatingMode);
        for (const auto& period : device.massSpec->periods)
            WritePeriod(writer, massSpec, period);
    }
    writer.Save(path, disk);
}

}  // namespace orvanel
