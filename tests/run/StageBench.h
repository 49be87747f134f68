// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "run/StageFrame.h"
#include "tests/support_files/RunBench.h"

/// What a whole run measures on FakeHost: a parent of m/z 609.297 with three fragments. The masses of the fragments
/// are exact in binary, so that the names of their chromatograms are.
class PlantedSample {
  public:
    /// Takes the bench's beforeCall.
    explicit PlantedSample(RunBench& bench) : bench_(bench), data_(bench.fake.data) {
        data_.chromatograms["TIC"] = {{1}, {1}};
        data_.spectra["time"].peaks = {{195.125, 8.891e5}, {397.25, 6.25e5}, {448.5, 5.57e5}, {609.2969, 3.219e6}};
        PlantCE(0, 50);
        PlantCE(2, 40);
        PlantAF2(195.125, 20, 11, {{100.5, 2e5}, {150.25, 3e5}});
        PlantAF2(448.5, 30, 16, {{253.375, 4.5e5}});
        bench.calls.beforeCall = [this](const std::string& text) {
            if (text.starts_with("HostSetRampParameter(\"DP\"") || text.starts_with("HostSetRampParameter(\"EP\"") ||
                text.starts_with("HostSetRampParameter(\"CEP\""))
                AnswerNextRamp();
            if (onCall) onCall(text);
        };
    }

    ~PlantedSample() { bench_.calls.beforeCall = nullptr; }  // the bench still logs off when it goes
    PlantedSample(const PlantedSample&) = delete;
    PlantedSample& operator=(const PlantedSample&) = delete;

    void PlantCE(int fragment, double ce) {
        data_.chromatograms["overlay " + std::to_string(fragment)] = {{10, ce}, {1, 7}};
    }
    /// @param cycle of the spectrum that holds the peaks
    void PlantAF2(double mass, double af2, int cycle, std::vector<FakePeak> peaks) {
        const std::string limits = support::GeneralText(mass) + " " + support::GeneralText(mass + 0.5);
        data_.chromatograms["XIC " + limits] = {{0, af2}, {1000, 60}};
        data_.spectra["cycle " + std::to_string(cycle)].peaks = std::move(peaks);
    }

    std::vector<double> optima{85, 8.5, 70, 32};  ///< of the Q1 multiple ion ramps one by one; none: no signal
    std::function<void(const std::string& text)> onCall;

  private:
    RunBench& bench_;
    void AnswerNextRamp() {
        auto& chromatogram = data_.chromatograms["TIC"];
        chromatogram = {};
        if (optima.empty()) return;
        chromatogram = {{0, optima.front()}, {1, 9}};
        optima.erase(optima.begin());
    }
    FakeData& data_;
};

/// The display's calls whose names are given, in their order.
inline std::vector<std::string> CallsOf(const RecordedDisplay& display, std::initializer_list<std::string_view> names) {
    std::vector<std::string> found;
    for (const auto& call : display.calls)
        for (const auto& name : names)
            if (std::string_view(call).substr(0, call.find('(')) == name) found.push_back(call);
    return found;
}

/// A run of the planted sample that is initialised and about to enter a stage.
class StageBench : public RunBench {
  public:
    StageBench() {
        settings.StarterMethodFilePath = starterPath;
        settings.CompoundName = "C";
        settings.ExpectedMZ = 609.3;
        run.results->VeskOutputFilePath = "/p/Data/C Veltra (now)/";
        run.batch = std::make_unique<veltra::clsTolmBatch>(host);
        run.batch->Step1_TolmLogon("/", "p");
        calls.Forget();
    }

    void UseModel(std::int32_t modelCode, bool epAndCepSupported) {
        run.InstrumentModelCode = modelCode;
        run.EPAndCEPSupported = epAndCepSupported;
    }
    /// As after the ER stage.
    void FindParent() {
        run.results->ActualPeak = std::make_shared<veltra::clsItem_Peak>(veltra::clsItem_Peak{3.219e6, 609.2969});
        frame.filePaths.MethodFilePath = starterPath;
    }
    /// As after the EPI stage.
    veltra::clsItem_TopPeak& AddFragment(double mass, double intensity) {
        auto record = std::make_shared<veltra::clsItem_TopPeak>();
        *record->SecondPrecursor = {intensity, mass};
        run.results->TopPeaksInfo.push_back(record);
        return *record;
    }
    void AddFragments() {
        AddFragment(195.125, 8.891e5);
        AddFragment(397.25, 6.25e5);
        AddFragment(448.5, 5.57e5);
    }
    std::vector<std::string> Checklist() const {
        return CallsOf(display, {"UpdateScanProgress", "UpdateMS3Label", "UpdateResultsGraphControl"});
    }
    const FakeMethod& Method(const std::string& path) const { return fake.store.methods.at(path); }

    PlantedSample sample{*this};
    veltra::StageFrame frame{run};
};
