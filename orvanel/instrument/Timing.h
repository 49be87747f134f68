// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/methods/MethodDocument.h"

namespace orvanel {

/// Nominal times in milliseconds. With dynamic fill time the fixed one stands for it: it is the most that a fill may
/// take.

/// A trap scan over one mass range, its fill included, the pause between scans not.
double SegmentMs(const InstrumentModel& model, const ExperimentRecord& experiment, const MassRangeRecord& range);
/// One scan of the experiment with its pauses.
double ScanMs(const InstrumentModel& model, const ExperimentRecord& experiment);
/// All scans that one cycle sums.
double CycleMs(const InstrumentModel& model, const ExperimentRecord& experiment);

inline bool IsTrapScan(int scanType) {
    return scanType >= 11 && scanType <= 13;
}

}  // namespace orvanel
