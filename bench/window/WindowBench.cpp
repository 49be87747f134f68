// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include <benchmark/benchmark.h>
#include <qcustomplot.h>

#include <QApplication>
#include <algorithm>
#include <chrono>
#include <cmath>

#include "app/frmMain.h"
#include "tests/support_files/FixedDataObjects.h"
#include "tests/support_files/WholeRun.h"

/// How quickly the window shows what it is to show, on the offscreen platform.

namespace {

using Stage = ports::enumVeltraScanType;
using SteadyClock = std::chrono::steady_clock;

/// The window with all that it drives, which knows how long it once did not look at waiting events.
class TimedWindow : public app::frmMain {
  public:
    TimedWindow() {
        Attach(run, startButton, [](const std::string&) { return true; });
        show();
        QApplication::processEvents();
    }
    void ProcessPendingEvents() override {
        const auto now = SteadyClock::now();
        if (isTiming_) longestGap = std::max(longestGap, now - lastLook_);
        app::frmMain::ProcessPendingEvents();
        isTiming_ = true;
        lastLook_ = SteadyClock::now();
    }

    WholeRun bench{{}};
    veltra::RunState run{{bench.host, *this, bench.boxes, bench.chooser, bench.clock}, bench.settings};
    veltra::StartButton startButton{run};
    SteadyClock::duration longestGap{};

  private:
    bool isTiming_ = false;
    SteadyClock::time_point lastLook_;
};

void WindowFromNothingToFirstPaint(benchmark::State& state) {
    for (auto _ : state) {
        TimedWindow window;
        benchmark::DoNotOptimize(window.grab());
    }
}
BENCHMARK(WindowFromNothingToFirstPaint)->Unit(benchmark::kMillisecond);

void RedrawSpectrum(benchmark::State& state) {
    std::vector<double> mz, intensity;
    for (int i = 0; i < state.range(0); ++i) {
        mz.push_back(50 + i * 0.01);
        intensity.push_back(1e5 * std::pow(std::sin(i * 0.03), 2) + i % 97);
    }
    app::ResultsGraphControl graph;
    graph.resize(417, 201);
    graph.AddPane();
    graph.SetPaneData(1, FixedSpectrum(mz, intensity));
    graph.SetXAxisLimits({mz.front(), mz.back()});
    graph.SetYAxisLimits({0, 1e5});
    graph.SetLabels({"m/z (Da)", "Intensity (cps)", {}, true, {}, ""});
    graph.show();
    auto* plot = graph.findChild<QCustomPlot*>();
    for (auto _ : state)
        plot->replot(QCustomPlot::rpImmediateRefresh);
}
BENCHMARK(RedrawSpectrum)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void SwitchStage(benchmark::State& state) {
    TimedWindow window;
    window.startButton.Click();
    const Stage stages[] = {Stage::ER, Stage::Q1MI_DP, Stage::EPI, Stage::MRM, Stage::MS3};
    std::size_t next = 0;
    for (auto _ : state) {
        window.UpdateResultsGraphControl(stages[next++ % std::size(stages)], 1);
        QApplication::processEvents();
    }
}
BENCHMARK(SwitchStage)->Unit(benchmark::kMillisecond);

/// Host calls included, which the shipped host answers by computing the data; pauses take no time on a virtual clock.
void WholeRunInTheWindow(benchmark::State& state) {
    std::chrono::duration<double, std::milli> longest{};
    for (auto _ : state) {
        TimedWindow window;
        window.startButton.Click();
        longest = std::max<decltype(longest)>(longest, window.longestGap);
    }
    state.counters["longest ms without events"] = longest.count();
}
BENCHMARK(WholeRunInTheWindow)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
