// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/tolm/TolmServiceImpl.h"

#include <set>

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/tolm/TolmBatchImpl.h"
#include "ports/HostError.h"
#include "support/Paths.h"

namespace orvanel {

namespace {

const BatchRecord& RecordOf(const ports::TolmBatch& batch) {
    const auto* own = dynamic_cast<const TolmBatchImpl*>(&batch);
    if (own == nullptr) throw ports::HostError(errorNumber::badBatch, "The batch was not made by this host");
    return own->Record();
}

void CheckComplete(const BatchRecord& batch, const ProjectFiles& project) {
    const auto fail = [](const std::string& text) { throw ports::HostError(errorNumber::badBatch, text); };
    if (batch.name.empty()) fail("The batch has no name, set it first");
    if (support::NativePath(batch.project) != project.Folder())
        fail("The batch belongs to project \"" + batch.project + "\" and not to the selected project " +
             project.Folder());
    if (batch.sets.empty()) fail("The batch has no set, add one");
    for (const auto& set : batch.sets) {
        if (set.acquisitionMethod.empty()) fail("Set \"" + set.name + "\" has no acquisition method, set it first");
        if (set.samples.empty()) fail("Set \"" + set.name + "\" has no sample, add one");
        for (const auto& sample : set.samples)
            if (sample.dataFile.empty()) fail("A sample of set \"" + set.name + "\" has no data file, set it first");
    }
}

}  // namespace

std::string TolmServiceImpl::TolmLogon(const std::string& userName, const std::string& password,
                                       const std::string& domain, const std::string& options,
                                       const std::string& clientName) {
    if (!initialized_)
        throw ports::HostError(errorNumber::notInitialized,
                               "The batch service is not initialised, initialise it first");
    if (!userName.empty() || !password.empty() || !domain.empty() || !options.empty())
        throw ports::HostError(errorNumber::logonRefused,
                               "This host logs on the current user only, leave user, password, domain and options "
                               "empty");
    if (clientName.empty())
        throw ports::HostError(errorNumber::logonRefused, "The logon names no client program, give its name");
    std::string session = "session-" + std::to_string(++sessionsOpened_);
    sessions_.emplace(session, Session{});
    return session;
}

void TolmServiceImpl::TolmSelectProject(const std::string& session, const std::string& projectPath,
                                        const std::string& projectName) {
    Session& found = FindSession(session);
    found.project.emplace(projectPath, projectName, disk_);
    actions_.projectSelected(projectPath, projectName);
}

void TolmServiceImpl::TolmLogoff(const std::string& session) {
    FindSession(session);
    sessions_.erase(session);
    actions_.loggedOff();
}

std::unique_ptr<ports::TolmBatch> TolmServiceImpl::TolmNewBatch(const std::string& session) {
    FindSession(session);
    return std::make_unique<TolmBatchImpl>();
}

void TolmServiceImpl::TolmSubmitBatch(const std::string& session, ports::TolmBatch& batch) {
    const ProjectFiles& project = FindProject(session);
    const BatchRecord& record = RecordOf(batch);
    CheckComplete(record, project);

    // Nothing is queued and no file is written before everything has been found in order.
    std::vector<QueuedSample> samples;
    std::set<std::string> dataFiles;
    for (const auto& set : record.sets) {
        const QueuedSample prepared = actions_.prepareSample(project.FindMethod(set.acquisitionMethod));
        for (const auto& sample : set.samples) {
            samples.push_back(prepared);
            samples.back().dataFilePath = project.DataFile(sample.dataFile);
            if (!dataFiles.insert(samples.back().dataFilePath).second)
                throw ports::HostError(errorNumber::badBatch, "Two samples of the batch go to data file " +
                                                                  samples.back().dataFilePath + ", rename one");
        }
    }
    WriteBatchFile(project.BatchFile(record.name), record, disk_);
    for (auto& sample : samples)
        actions_.enqueue(std::move(sample));
}

std::string TolmServiceImpl::TolmSaveBatch(const std::string& session, const std::string& batchFileName,
                                           ports::TolmBatch& batch) {
    const ProjectFiles& project = FindProject(session);
    BatchRecord record = RecordOf(batch);
    std::string path = project.BatchFile(batchFileName);
    record.name = batchFileName;
    WriteBatchFile(path, record, disk_);
    return path;
}

TolmServiceImpl::Session& TolmServiceImpl::FindSession(const std::string& session) {
    const auto found = sessions_.find(session);
    if (found == sessions_.end())
        throw ports::HostError(errorNumber::noSession, "There is no session \"" + session + "\", log on first");
    return found->second;
}

const ProjectFiles& TolmServiceImpl::FindProject(const std::string& session) {
    const auto& project = FindSession(session).project;
    if (!project) throw ports::HostError(errorNumber::projectNotFound, "No project is selected, select one first");
    return *project;
}

}  // namespace orvanel
