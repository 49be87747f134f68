#include "orvanel/tolm/BatchFile.h"

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/XmlReader.h"
#include "ports/HostError.h"
#include "support/Files.h"

namespace orvanel {

namespace {

using pugi::xml_node;

constexpr std::size_t textLimit = 65536;

XmlFormat BatchFormat() {
    return {"an acquisition batch", "OrvanelBatch", 1, errorNumber::batchFileDamaged, errorNumber::batchFileDamaged};
}

BatchSample ReadSample(const XmlReader& reader, xml_node element) {
    reader.CheckAttributes(element, {"dataFile", "sampleName", "sampleId", "rackPosition"});
    reader.CheckChildren(element, {});
    return {reader.Text(element, "dataFile"), reader.Text(element, "sampleName"), reader.Text(element, "sampleId"),
            reader.Text(element, "rackPosition")};
}

void SetText(xml_node element, const char* attribute, const std::string& text) {
    if (!IsXmlText(text))
        throw ports::HostError(errorNumber::batchNotSaved,
                               "The batch's " + std::string(attribute) + " holds a control character or is not UTF-8");
    element.append_attribute(attribute) = text.c_str();
}

}  // namespace

BatchRecord ReadBatchFile(const std::string& path) {
    const XmlReader reader(path, BatchFormat());
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
        BatchSet set{reader.Text(element, "name"),
                     reader.Text(element, "acquisitionMethod"),
                     reader.Text(element, "processingMethod"),
                     {}};
        for (const auto& sample : element.children("Sample"))
            set.samples.push_back(ReadSample(reader, sample));
        batch.sets.push_back(std::move(set));
    }
    return batch;
}

void WriteBatchFile(const std::string& path, const BatchRecord& batch) {
    pugi::xml_document xml;
    xml_node root = AppendXmlRoot(xml, BatchFormat());
    SetText(root, "name", batch.name);
    SetText(root, "user", batch.user);
    SetText(root, "text", batch.text);
    SetText(root, "project", batch.project);
    for (const auto& set : batch.sets) {
        xml_node setElement = root.append_child("Set");
        SetText(setElement, "name", set.name);
        SetText(setElement, "acquisitionMethod", set.acquisitionMethod);
        SetText(setElement, "processingMethod", set.processingMethod);
        for (const auto& sample : set.samples) {
            xml_node element = setElement.append_child("Sample");
            SetText(element, "dataFile", sample.dataFile);
            SetText(element, "sampleName", sample.sampleName);
            SetText(element, "sampleId", sample.sampleId);
            SetText(element, "rackPosition", sample.rackPosition);
        }
    }
    try {
        support::WriteWholeFile(path, XmlDocumentText(xml));
    } catch (const support::FileError& error) {
        throw ports::HostError(errorNumber::batchNotSaved, error.what());
    }
}

}  // namespace orvanel
