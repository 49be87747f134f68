// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/tolm/BatchFile.h"

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/XmlReader.h"
#include "orvanel/XmlWriter.h"
#include "orvanel/tolm/ProjectFiles.h"
#include "ports/HostError.h"

namespace orvanel {

namespace {

using pugi::xml_node;

constexpr std::size_t textLimit = 65536;

XmlFormat BatchFormat() {
    return {.what = "an acquisition batch",
            .rootElement = "OrvanelBatch",
            .unreadableNumber = errorNumber::batchFileDamaged,
            .damagedNumber = errorNumber::batchFileDamaged,
            .notSavedNumber = errorNumber::batchNotSaved};
}

/// What is given must be a name that stays in its folder; a batch that is not complete yet has none.
template <class Check>
std::string Name(const XmlReader& reader, xml_node element, const char* attribute, Check check) {
    std::string name = reader.Text(element, attribute);
    if (name.empty()) return name;
    try {
        check(name);
    } catch (const ports::HostError& error) {
        reader.Fail(element, error.what());
    }
    return name;
}

BatchSample ReadSample(const XmlReader& reader, xml_node element) {
    reader.CheckAttributes(element, {"dataFile", "sampleName", "sampleId", "rackPosition"});
    reader.CheckChildren(element, {});
    return {Name(reader, element, "dataFile", CheckDataFileName), reader.Text(element, "sampleName"),
            reader.Text(element, "sampleId"), reader.Text(element, "rackPosition")};
}

}  // namespace

BatchRecord ReadBatchFile(const std::string& path, const support::Disk& disk) {
    const XmlReader reader(path, BatchFormat(), disk);
    const xml_node root = reader.Root();
    reader.CheckAttributes(root, {"version", "instrument", "name", "user", "text", "project"});
    reader.CheckChildren(root, {"Set"}, maximumBatchSets);
    BatchRecord batch{reader.Text(root, "name"),
                      reader.Text(root, "user"),
                      reader.Text(root, "text", textLimit),
                      reader.Text(root, "project", textLimit),
                      {}};
    for (const auto& element : root.children("Set")) {
        reader.CheckAttributes(element, {"name", "acquisitionMethod", "processingMethod"});
        reader.CheckChildren(element, {"Sample"}, maximumSamplesPerSet);
        BatchSet set{
            reader.Text(element, "name"),
            Name(reader, element, "acquisitionMethod",
                 [](const std::string& name) { CheckFileName(errorNumber::batchFileDamaged, "method", name, ".xmt"); }),
            reader.Text(element, "processingMethod"),
            {}};
        for (const auto& sample : element.children("Sample"))
            set.samples.push_back(ReadSample(reader, sample));
        batch.sets.push_back(std::move(set));
    }
    return batch;
}

void WriteBatchFile(const std::string& path, const BatchRecord& batch, const support::Disk& disk) {
    const XmlWriter writer(BatchFormat());
    xml_node root = writer.Root();
    writer.Text(root, "name", batch.name);
    writer.Text(root, "user", batch.user);
    writer.Text(root, "text", batch.text);
    writer.Text(root, "project", batch.project);
    for (const auto& set : batch.sets) {
        xml_node setElement = root.append_child("Set");
        writer.Text(setElement, "name", set.name);
        writer.Text(setElement, "acquisitionMethod", set.acquisitionMethod);
        writer.Text(setElement, "processingMethod", set.processingMethod);
        for (const auto& sample : set.samples) {
            xml_node element = setElement.append_child("Sample");
            writer.Text(element, "dataFile", sample.dataFile);
            writer.Text(element, "sampleName", sample.sampleName);
            writer.Text(element, "sampleId", sample.sampleId);
            writer.Text(element, "rackPosition", sample.rackPosition);
        }
    }
    writer.Save(path, disk);
}

}  // namespace orvanel
