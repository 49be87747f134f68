// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/HostState.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "orvanel/CompoundFolder.h"
#include "orvanel/HostErrorNumbers.h"
#include "orvanel/InstrumentHelperImpl.h"
#include "orvanel/data/DataFile.h"
#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/instrument/Simulator.h"
#include "orvanel/instrument/faults/FaultySample.h"
#include "orvanel/methods/MethodFile.h"
#include "orvanel/methods/Validation.h"
#include "ports/HostError.h"
#include "support/Files.h"
#include "support/Paths.h"
#include "support/Platform.h"
#include "support/Text.h"

namespace orvanel {

namespace {

constexpr const char* simulatedMark = "simulated instrument: nothing here was measured";

std::string WithoutSeparatorAtEnd(std::string path) {
    while (!path.empty() && support::IsPathSeparator(path.back()))
        path.pop_back();
    return path;
}

std::string BesideIni(const OrvanelConfig& config, const std::string& name) {
    return support::JoinPath(support::FolderOf(config.iniPath), name);
}

}  // namespace

std::string IsoTimestamp(HostClock::TimePoint time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time - seconds).count();
    const std::tm utc = support::UtcTime(std::chrono::system_clock::to_time_t(seconds));
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", utc.tm_year + 1900, utc.tm_mon + 1,
                  utc.tm_mday, utc.tm_hour, utc.tm_min, utc.tm_sec, static_cast<int>(milliseconds));
    return text.data();
}

HostState::HostState(OrvanelConfig config, HostClock& clock, const support::Disk& disk)
    : config_(std::move(config)),
      clock_(clock),
      disk_(disk),
      documentDisk_(disk),
      registry_(BesideIni(config_, "Orvanel.registry.ini"), documentDisk_) {
    if (!config_.running) return;
    LoadInstrument();
    try {
        soleUse_ = support::HoldFile(config_.iniPath, "Orvanel");
        support::RemoveLeftoversIn(support::FolderOf(config_.iniPath), 0, disk_);
    } catch (const support::FileError& error) {
        throw ports::HostError(errorNumber::filesInUse, error.what());
    }
    queue_ = std::make_unique<QueueEngine>(
        clock_, QueueEngine::Actions{[this](const QueuedSample& sample) { AcquireAndWrite(sample); },
                                     [this](QueueStatus status) { PublishStatus(status); },
                                     [this](const QueuedSample& sample, QueueStatus outcome,
                                            const std::string& failure) { EndSample(sample, outcome, failure); }});
}

HostState::~HostState() {
    if (!queue_) return;
    queue_.reset();  // it may publish that it has stopped
    FlushSaved();
}

void HostState::FlushSaved() noexcept {
    if (std::exchange(hasUnflushedFiles_, false)) {
        support::FlushFile(LogPath(), disk_);
        registry_.Flush();
    }
    documentDisk_.FlushDeferred();
}

std::string HostState::LogPath() const {
    return BesideIni(config_, "Orvanel.log");
}

/// It tells those who look on now, and is published anew at the next start, so that no power cut need spare it.
void HostState::PublishStatus(QueueStatus status) {
    registry_.Write(registryPath::queueStatus, std::to_string(static_cast<int>(status)), support::Durability::Process);
    hasUnflushedFiles_ = true;
}

const std::map<std::int32_t, InstrumentModel>& HostState::Models() {
    if (models_.empty()) models_ = LoadInstrumentModels(ModelsFolder(config_.appLocation), disk_);
    return models_;
}

void HostState::LoadInstrument() {
    model_ = std::make_shared<const InstrumentModel>(FindModel(Models(), config_.modelCode));
    const auto& modes = model_->operatingModes;
    if (!modes.empty() && std::find(modes.begin(), modes.end(), config_.operatingMode) == modes.end())
        throw ports::HostError(errorNumber::badConfiguration,
                               config_.iniPath + ": OperatingMode=" + std::to_string(config_.operatingMode) +
                                   " is not allowed, model " + std::to_string(config_.modelCode) + " has no such mode");
    elements_ = OpenElementTableFile(ElementTablePath(config_.appLocation), disk_);
    for (const auto& entry : config_.sample)
        sample_.push_back(
            {LoadCompound(FindCompoundFile(config_.appLocation, entry.compound, disk_), *elements_, disk_),
             entry.amount});
    sample_ = WithFaults(sample_, config_.faults, *elements_);
}

void HostState::RequireRunning(const std::string& what) const {
    if (!config_.running)
        throw ports::HostError(errorNumber::hostNotRunning,
                               "Orvanel is not running, so that there is no " + what + ", start it first");
}

QueuedSample HostState::PrepareSample(const std::string& methodPath) const {
    const MethodDocument document = ReadMethodFile(methodPath, disk_);
    const MassSpecRecord* massSpec = document.MassSpec();
    if (massSpec == nullptr)
        throw ports::HostError(errorNumber::notAcquirable, methodPath + ": the method has no mass spectrometer part");
    try {
        CheckSubmittable(*model_, *massSpec);
    } catch (const ports::HostError& error) {
        throw ports::HostError(error.Number(), methodPath + ": " + error.what());
    }
    QueuedSample sample;
    sample.methodPath = methodPath;
    sample.method = *massSpec;
    try {
        sample.methodText = support::ReadWholeFile(methodPath, support::anySize, disk_);
    } catch (const support::FileError& error) {
        throw ports::HostError(errorNumber::methodFileUnreadable, error.what());
    }
    sample.delayMs = config_.faults.equilibrationDelayS * 1000;
    sample.durationMs = ExpectedDurationMs(*massSpec, *model_);
    return sample;
}

void HostState::RememberProject(const std::string& projectPath, const std::string& projectName) const {
    const std::string projects = support::NativePath(support::JoinPath(config_.dataLocation, "Projects"));
    const std::string folder = WithoutSeparatorAtEnd(support::NativePath(projectPath));
    const bool isSubProject = WithoutSeparatorAtEnd(support::FolderOf(folder)) == projects;
    registry_.Write(registryPath::lastProject, isSubProject ? support::FileNameOf(folder) : projectName);
    registry_.Write(registryPath::lastSubProject, isSubProject ? projectName : "");
}

void HostState::AcquireAndWrite(const QueuedSample& sample) const {
    if (static_cast<double>(sample.acquisitionNumber) == config_.faults.failingAcquisition)
        throw ports::HostError(errorNumber::acquisitionFailed,
                               "The acquisition failed as FailingAcquisition in " + config_.iniPath + " asks");
    AcquisitionContext context;
    context.seed = config_.seed;
    context.acquisitionNumber = sample.acquisitionNumber;
    context.instrumentTimeS = sample.nominalTimeMs / 1000;
    context.noiseLevel = config_.noiseLevel;
    context.faults = config_.faults;
    AcquiredData data = Acquire(sample.method, *model_, sample_, *elements_, context);
    const double agoMs = clock_.ElapsedMs() - (sample.startedMs + PreparationMs(sample.method, *model_));
    data.startTimestamp = IsoTimestamp(clock_.Time() - std::chrono::duration_cast<HostClock::TimePoint::duration>(
                                                           std::chrono::duration<double, std::milli>(agoMs)));
    data.methodName = support::FileNameOf(sample.methodPath);
    data.methodText = sample.methodText;
    WriteDataFile(sample.dataFilePath, data, disk_);
}

void HostState::EndSample(const QueuedSample& sample, QueueStatus outcome, const std::string& failure) {
    if (outcome == QueueStatus::Failed)
        failedDataFiles_[sample.dataFilePath] = failure;
    else
        failedDataFiles_.erase(sample.dataFilePath);
    LogSample(sample, outcome, failure);
    hasUnflushedFiles_ = true;
}

void HostState::RequireAcquired(const std::string& dataFilePath) const {
    const auto failed = failedDataFiles_.find(support::NativePath(dataFilePath));
    if (failed != failedDataFiles_.end())
        throw ports::HostError(errorNumber::acquisitionFailed,
                               "The acquisition of data file \"" + failed->first + "\" failed: " + failed->second);
}

void HostState::LogSample(const QueuedSample& sample, QueueStatus outcome, const std::string& failure) const {
    const std::string text = outcome == QueueStatus::Finished ? "finished"
                             : outcome == QueueStatus::Failed ? "failed: " + failure
                                                              : "stopped";
    try {
        const std::string path = LogPath();
        const std::string heading =
            support::FileExists(path, disk_) ? "" : std::string("Samples of a ") + simulatedMark + support::crLf;
        support::AppendToFile(path,
                              heading + clock_.Now().generalDate + "\t" + sample.methodPath + "\t" +
                                  sample.dataFilePath + "\t" + text + support::crLf,
                              disk_, support::Durability::Process);
    } catch (const support::FileError&) {
        // A log that cannot be written must not fail the acquisition, whose data are there.
    }
}

}  // namespace orvanel
