// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ports/DataExploration.h"

namespace ports {

/// The host's graph control. Panes are numbered from 1. One thread only, that of the user interface.
class GraphControl {
  public:
    virtual ~GraphControl() = default;

    virtual int GetPaneCount() const = 0;
    virtual void AddPane() = 0;
    virtual void ClearPaneData(int pane) = 0;
    /// The control copies what it shows.
    virtual void SetPaneData(int pane, const DataObject& data) = 0;
    virtual void SetXAxisLimits(const AxisRange& range) = 0;
    virtual void SetYAxisLimits(const AxisRange& range) = 0;
    virtual void Redraw() = 0;
};

}  // namespace ports
