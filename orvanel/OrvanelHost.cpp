// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/OrvanelHost.h"

#include <utility>

#include "orvanel/HostErrorNumbers.h"
#include "orvanel/HostState.h"
#include "orvanel/InstrumentHelperImpl.h"
#include "orvanel/elements/ElementTableFile.h"
#include "orvanel/explore/Exploration.h"
#include "orvanel/methods/MethodPorts.h"
#include "orvanel/queue/QueueServerHandle.h"
#include "orvanel/tolm/TolmServiceImpl.h"
#include "ports/HostError.h"
#include "support/FileNames.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace orvanel {

namespace {

class ApplicationHandle : public ports::HostApplication {
  public:
    explicit ApplicationHandle(std::shared_ptr<HostState> state) : state_(std::move(state)) {}

    std::unique_ptr<ports::AcquisitionService> GetAcquisitionService() override {
        return CreateAcquisitionService(state_->Model(), state_->Config().operatingMode, state_->Disk());
    }

  private:
    std::shared_ptr<HostState> state_;
};

class ClockPause : public ports::Pause {
  public:
    explicit ClockPause(HostClock& clock) : clock_(clock) {}

    void HostSleep(std::int32_t milliseconds) override {
        if (milliseconds < 0)
            throw ports::HostError(errorNumber::badPause,
                                   "A pause of " + std::to_string(milliseconds) + " ms is impossible");
        clock_.Sleep(milliseconds);
    }

  private:
    HostClock& clock_;
};

class OrvanelHost : public ports::Host {
  public:
    OrvanelHost(const OrvanelConfig& config, HostClock& clock, const support::Disk& disk, DocumentViewers viewers)
        : state_(std::make_shared<HostState>(config, clock, disk)), viewers_(std::move(viewers)) {}

    std::unique_ptr<ports::HostApplication> AttachToRunningApplication() override {
        if (!state_->Config().running) return nullptr;
        return std::make_unique<ApplicationHandle>(state_);
    }

    std::unique_ptr<ports::TolmService> TolmCreateService() override {
        state_->RequireRunning("batch service");
        return std::make_unique<TolmServiceImpl>(
            TolmServiceImpl::Actions{
                [state = state_](const std::string& methodPath) { return state->PrepareSample(methodPath); },
                [state = state_](QueuedSample sample) { state->Queue().Submit(std::move(sample)); },
                [state = state_](const std::string& path, const std::string& name) {
                    state->RememberProject(path, name);
                },
                [state = state_] { state->FlushSaved(); }},
            state_->Disk());
    }

    std::unique_ptr<ports::QueueServer> HostQueueServer() override {
        state_->RequireRunning("acquisition queue");
        return std::make_unique<QueueServerHandle>(std::shared_ptr<QueueEngine>(state_, &state_->Queue()));
    }

    std::unique_ptr<ports::Pause> CreatePause() override { return std::make_unique<ClockPause>(state_->Clock()); }

    std::unique_ptr<ports::DataExploration> CreateDataExploration() override {
        return orvanel::CreateDataExploration(
            state_->Disk(), [state = state_](const std::string& path) { state->RequireAcquired(path); });
    }

    std::unique_ptr<ports::InstrumentHelper> CreateInstrumentHelper() override {
        std::optional<std::int32_t> connected;
        if (state_->Config().running) connected = state_->Config().modelCode;
        return std::make_unique<InstrumentHelperImpl>(
            connected,
            [state = state_]() -> const std::map<std::int32_t, InstrumentModel>& { return state->Models(); });
    }

    std::unique_ptr<ports::ElementTable> OpenElementTable(const std::string& path) override {
        return OpenElementTableFile(path, state_->Disk());
    }

    std::optional<std::string> RegRead(const std::string& path) override {
        const auto isPath = [&](std::string_view known) { return support::EqualIgnoringCase(path, known); };
        if (isPath(registryPath::queueStatus)) {
            if (!state_->Config().running) return std::nullopt;
            return std::to_string(static_cast<int>(state_->Queue().Status()));
        }
        if (auto value = state_->Registry().Read(path)) return value;
        if (isPath(registryPath::dataLocation)) return state_->Config().dataLocation;
        if (isPath(registryPath::appLocation)) return state_->Config().appLocation;
        return std::nullopt;
    }

    bool HostOpenDocument(const std::string& path) override {
        try {
            if (!support::FileExists(path, state_->Disk())) return false;
            // Methods are XML texts: what opens no documents of their kind still shows them as texts.
            const bool isMethod = support::IsFileOfKind(path, ".xmt");
            if (!isMethod && !support::IsFileOfKind(path, ".vesk")) return false;
            return (viewers_.open && viewers_.open(path)) || (isMethod && viewers_.viewText && viewers_.viewText(path));
        } catch (const std::exception&) {
            return false;
        }
    }

    std::string GetDescription() const override {
        std::string sprayed;
        for (const auto& entry : state_->Sample())
            sprayed += (sprayed.empty() ? "" : ", ") + entry.compound.name + " " + entry.compound.adduct + " at m/z " +
                       support::MzText(entry.compound.Root().mz);
        std::string text = "Simulated instrument: nothing here was measured";
        if (state_->Config().running) text += " (spraying " + (sprayed.empty() ? "solvent only" : sprayed) + ")";
        const std::string faults = FaultTexts(state_->Config().faults);
        if (!faults.empty()) text += ", with injected faults: " + faults;
        return text;
    }

  private:
    std::shared_ptr<HostState> state_;
    DocumentViewers viewers_;
};

}  // namespace

std::unique_ptr<ports::Host> CreateOrvanelHost(const OrvanelConfig& config, HostClock& clock, const support::Disk& disk,
                                               DocumentViewers viewers) {
    return std::make_unique<OrvanelHost>(config, clock, disk, std::move(viewers));
}

}  // namespace orvanel
