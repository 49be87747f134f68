// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <vector>

#include "ports/GraphControl.h"
#include "ports/HostError.h"

/// Keeps what each pane shows and the order of the calls, and can fail at one of them.
class RecordedGraphControl : public ports::GraphControl {
  public:
    explicit RecordedGraphControl(int paneCount) : panes(static_cast<std::size_t>(paneCount)) {}

    int GetPaneCount() const override { return static_cast<int>(panes.size()); }
    void AddPane() override {
        Record("AddPane");
        panes.push_back(nullptr);
    }
    void ClearPaneData(int pane) override {
        Record("Clear " + std::to_string(pane));
        panes.at(static_cast<std::size_t>(pane - 1)) = nullptr;
    }
    void SetPaneData(int pane, const ports::DataObject& data) override {
        Record("Data " + std::to_string(pane));
        panes.at(static_cast<std::size_t>(pane - 1)) = &data;
    }
    void SetXAxisLimits(const ports::AxisRange& range) override {
        Record("X");
        xAxis = range;
    }
    void SetYAxisLimits(const ports::AxisRange& range) override {
        Record("Y");
        yAxis = range;
    }
    void Redraw() override { Record("Redraw"); }

    std::vector<const ports::DataObject*> panes;  ///< what is shown; null in an empty pane
    ports::AxisRange xAxis;
    ports::AxisRange yAxis;
    std::vector<std::string> calls;
    std::string failAt;  ///< the call that fails

  private:
    void Record(const std::string& call) {
        if (call == failAt) throw ports::HostError(5, "no such pane");
        calls.push_back(call);
    }
};
