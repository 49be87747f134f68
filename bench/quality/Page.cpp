// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "bench/quality/Page.h"

#include <algorithm>

#include "bench/quality/SvgPlot.h"
#include "ports/GraphControl.h"
#include "support/NumberText.h"

namespace quality {
namespace {

using Stage = ports::enumVeltraScanType;
using support::MzText;

/// A graph control that keeps the points of its panes.
class PointKeeper : public ports::GraphControl {
  public:
    int GetPaneCount() const override { return static_cast<int>(panes.size()); }
    void AddPane() override { panes.emplace_back(); }
    void ClearPaneData(int pane) override { panes.at(static_cast<std::size_t>(pane - 1)) = {}; }
    void SetPaneData(int pane, const ports::DataObject& data) override {
        panes.at(static_cast<std::size_t>(pane - 1)) = {"", data.GetXValues(), data.GetYValues()};
    }
    void SetXAxisLimits(const ports::AxisRange&) override {}
    void SetYAxisLimits(const ports::AxisRange&) override {}
    void Redraw() override {}

    std::vector<Series> panes;
};

std::vector<Series> PanesOf(WholeRun& run, Stage stage, std::int16_t ms3Index = 0) {
    PointKeeper keeper;
    run.run.scans->GetGraphData(stage, keeper, ms3Index);
    auto panes = keeper.panes;
    std::erase_if(panes, [](const Series& pane) { return pane.x.empty(); });
    return panes;
}

SvgPlot RampPlot(WholeRun& run, Stage stage, const std::string& id) {
    SvgPlot plot{id + " ramp", id + " (V)", "intensity (cps)", PanesOf(run, stage), {}};
    if (plot.series.empty()) return plot;
    const auto& ramp = plot.series.front();
    const auto apex = std::max_element(ramp.y.begin(), ramp.y.end()) - ramp.y.begin();
    const double found = ramp.x[static_cast<std::size_t>(apex)];
    plot.marks.push_back({found, support::GeneralText(found)});
    return plot;
}

SvgPlot BreakdownPlot(const NoiseFree& truth, const Findings& findings) {
    constexpr double highestCe = 130;
    constexpr double stepV = 1;
    SvgPlot plot{"Breakdown curves, without noise", "CE (V)", "share of precursor ions", {}, {}};
    std::vector<std::string> nodes{truth.Ion().root};
    for (const auto& fragment : findings.fragments)
        if (!fragment.node.empty()) nodes.push_back(fragment.node);
    for (const auto& node : nodes) {
        Series curve{MzText(truth.Ion().nodes.at(node).mz), {}, {}};
        for (double ce = 0; ce <= highestCe; ce += stepV) {
            curve.x.push_back(ce);
            curve.y.push_back(truth.Yield(node, ce));
        }
        plot.series.push_back(std::move(curve));
    }
    for (const auto& fragment : findings.fragments)
        if (fragment.ce > 0) plot.marks.push_back({fragment.ce, ""});
    return plot;
}

SvgPlot MrmPlot(WholeRun& run) {
    SvgPlot plot{"MRM ramps of CE", "CE (V)", "intensity (cps)", PanesOf(run, Stage::MRM), {}};
    const auto& records = run.run.results->TopPeaksInfo;
    for (std::size_t i = 0; i < plot.series.size() && i < records.size(); ++i) {
        plot.series[i].name = MzText(records[i]->SecondPrecursor->CentroidMass);
        plot.marks.push_back({records[i]->OptimizedCE, ""});
    }
    return plot;
}

SvgPlot SpectrumPlot(WholeRun& run, const std::string& title, Stage stage, std::int16_t ms3Index,
                     const veltra::PeakCollection& chosen) {
    SvgPlot plot{title, "m/z (Da)", "intensity (cps)", PanesOf(run, stage, ms3Index), {}};
    for (const auto& peak : chosen)
        plot.marks.push_back({peak->CentroidMass, MzText(peak->CentroidMass)});
    return plot;
}

/// The number of the MS3 acquisition that belongs to a record: those without a collision energy have none.
std::int16_t AcquisitionOf(const veltra::TopPeakCollection& records, std::size_t position) {
    const auto end = records.begin() + static_cast<std::ptrdiff_t>(position) + 1;
    return static_cast<std::int16_t>(
        std::count_if(records.begin(), end, [](const auto& record) { return record->CEWasOptimized; }));
}

}  // namespace

Section SectionOf(WholeRun& run, const Findings& findings) {
    Section section{findings.compound + ", seed " + std::to_string(findings.seed), ""};
    if (!findings.completed) {
        section.html = "<p>" + Escaped(findings.lastMessage) + "</p>";
        return section;
    }
    const NoiseFree truth(run);
    const auto& results = *run.run.results;
    veltra::PeakCollection chosen;
    for (const auto& record : results.TopPeaksInfo)
        chosen.push_back(record->SecondPrecursor);
    std::vector<SvgPlot> plots{BreakdownPlot(truth, findings),
                               MrmPlot(run),
                               RampPlot(run, Stage::Q1MI_DP, "DP"),
                               RampPlot(run, Stage::Q1MI_EP, "EP"),
                               RampPlot(run, Stage::Q1MI_CEP, "CEP"),
                               SpectrumPlot(run, "ER", Stage::ER, 0, {results.ActualPeak}),
                               SpectrumPlot(run, "EPI with the 2nd precursors", Stage::EPI, 0, chosen)};
    if (results.OptimalMS3PeakIndex > 0) {
        const auto position = static_cast<std::size_t>(results.OptimalMS3PeakIndex - 1);
        const auto& record = *results.TopPeaksInfo[position];
        plots.push_back(SpectrumPlot(run, "MS3 of " + MzText(record.SecondPrecursor->CentroidMass), Stage::MS3,
                                     AcquisitionOf(results.TopPeaksInfo, position), record.MS3PeaksCollection));
    }
    for (const auto& plot : plots)
        if (!plot.series.empty()) section.html += plot.Text();
    return section;
}

std::string PageText(const std::string& table, const std::vector<Section>& sections) {
    std::string text =
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Quality of the findings</title>\n"
        "<style>:root{color-scheme:light dark}body{font:14px sans-serif;margin:2em}pre{overflow-x:auto}"
        ".plots{display:grid;grid-template-columns:repeat(auto-fill,minmax(400px,1fr));gap:1em}"
        "svg{font:10px sans-serif;width:100%}text{fill:currentColor}</style></head>\n<body><h1>Quality of the "
        "findings</h1><p>Simulated instrument: nothing here was measured.</p>\n<pre>";
    text += Escaped(table) + "</pre>\n";
    for (const auto& section : sections)
        text += "<h2>" + Escaped(section.heading) + "</h2>\n<div class=\"plots\">" + section.html + "</div>\n";
    return text + "</body></html>\n";
}

}  // namespace quality
