// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/tolm/TolmBatchImpl.h"

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/XmlReader.h"
#include "orvanel/tolm/ProjectFiles.h"
#include "ports/HostError.h"
#include "support/Text.h"

namespace orvanel {

namespace {

constexpr std::size_t textLimit = 1024;

[[noreturn]] void Fail(const std::string& text) {
    throw ports::HostError(errorNumber::badBatch, text);
}

const std::string& Checked(const std::string& what, const std::string& text) {
    if (text.size() > textLimit)
        Fail(what + " has " + std::to_string(text.size()) + " bytes, more than the " + std::to_string(textLimit) +
             " allowed");
    if (!support::IsPlainText(text)) Fail(what + " holds a control character or is not UTF-8");
    return text;
}

template <typename Part>
Part& PartAt(std::vector<Part>& parts, int index, const std::string& what) {
    if (index < 0 || static_cast<std::size_t>(index) >= parts.size())
        Fail("There is no " + what + " " + std::to_string(index) + ", the batch has " + std::to_string(parts.size()) +
             " counted from 0");
    return parts[static_cast<std::size_t>(index)];
}

}  // namespace

void TolmBatchImpl::TolmSetBatchName(const std::string& batchFileName) {
    CheckFileName(errorNumber::badBatch, "batch", batchFileName, ".xbt");
    record_.name = batchFileName;
}

void TolmBatchImpl::TolmSetBatchUser(const std::string& userName) {
    record_.user = Checked("The user name", userName);
}

void TolmBatchImpl::TolmSetBatchText(const std::string& text) {
    record_.text = Checked("The batch text", text);
}

void TolmBatchImpl::TolmSetBatchProject(const std::string& project) {
    record_.project = Checked("The project's path", project);
}

int TolmBatchImpl::TolmAddSet(const std::string& setName) {
    if (record_.sets.size() >= maximumBatchSets)
        Fail("The batch has " + std::to_string(maximumBatchSets) + " sets already, more cannot be added");
    BatchSet set;
    set.name = Checked("The name of a set", setName);
    set.processingMethod = "none";
    record_.sets.push_back(std::move(set));
    return static_cast<int>(record_.sets.size()) - 1;
}

void TolmBatchImpl::TolmSetSetAcquisitionMethod(int set, const std::string& methodFileName) {
    BatchSet& record = Set(set);
    CheckFileName(errorNumber::badBatch, "method", methodFileName, ".xmt");
    record.acquisitionMethod = methodFileName;
}

void TolmBatchImpl::TolmSetSetProcessingMethod(int set, const std::string& methodName) {
    BatchSet& record = Set(set);
    if (!methodName.empty() && !support::EqualIgnoringCase(methodName, "none"))
        Fail("Processing method \"" + methodName + "\" cannot be run, this host knows \"none\" only");
    record.processingMethod = methodName;
}

int TolmBatchImpl::TolmAddSample(int set) {
    BatchSet& record = Set(set);
    if (record.samples.size() >= maximumSamplesPerSet)
        Fail("The set has " + std::to_string(maximumSamplesPerSet) + " samples already, more cannot be added");
    record.samples.emplace_back();
    return static_cast<int>(record.samples.size()) - 1;
}

void TolmBatchImpl::TolmSetSampleDataFile(int set, int sample, const std::string& dataFileName) {
    BatchSample& record = Sample(set, sample);
    CheckDataFileName(dataFileName);
    record.dataFile = dataFileName;
}

void TolmBatchImpl::TolmSetSampleField(int set, int sample, SampleField field, const std::string& text) {
    BatchSample& record = Sample(set, sample);
    Checked("A field of a sample", text);
    switch (field) {
        case SampleField::SampleName:
            record.sampleName = text;
            return;
        case SampleField::SampleId:
            record.sampleId = text;
            return;
        case SampleField::RackPosition:
            record.rackPosition = text;
            return;
    }
    Fail("There is no such field of a sample");
}

BatchSet& TolmBatchImpl::Set(int index) {
    return PartAt(record_.sets, index, "set");
}

BatchSample& TolmBatchImpl::Sample(int set, int index) {
    return PartAt(Set(set).samples, index, "sample");
}

}  // namespace orvanel
