// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vector>

#include "orvanel/instrument/PeakShape.h"
#include "orvanel/instrument/ScanConditions.h"
#include "orvanel/instrument/TrapFill.h"

namespace orvanel {

/// Scans that eject ions from the trap by mass: enhanced resolution, enhanced product ion and MS/MS/MS.
class TrapScan {
  public:
    explicit TrapScan(const ScanConditions& conditions);

    /// Fills in the cycle's spectrum.
    /// @param instrumentTimeS nominal instrument time at the cycle's start
    void Cycle(const ParameterTables& parameters, double instrumentTimeS, CycleRecord& record);

  private:
    struct IonPeak {
        double mz;
        double cps;
    };
    /// A mass range with what stays the same from scan to scan.
    struct Segment {
        BinGrid grid;
        double dwellS = 0;
        double nonFillMs = 0;
        std::vector<IonPeak> background;
        std::vector<double> cumulativeBackground;  ///< cps
        double BackgroundCps() const { return cumulativeBackground.empty() ? 0 : cumulativeBackground.back(); }
    };
    /// What a cycle lets into the trap, and what is left there to be scanned.
    struct Ions {
        double enteringCps = 0;
        std::vector<IonPeak> peaks;
    };

    Segment MakeSegment(const MassRangeRecord& range) const;
    Q1Window IsolationWindow(const MassRangeRecord& range) const;
    Ions IonsOf(const MassRangeRecord& range, const Voltages& voltages, double calibrationErrorDa) const;
    void ScanOnce(const Segment& segment, const Ions& ions, double fillMs, double calibrationErrorDa,
                  std::vector<double>& intensity);
    void Count(const Segment& segment, const PeakShape& shape, double errorDa, double ionsPerCps);
    void AddBackground(const Segment& segment, const PeakShape& shape, double errorDa, double ionsPerCps);

    const ScanConditions& at_;
    NormalTable normal_;
    std::vector<Segment> segments_;
    std::vector<double> counts_;  ///< of the scan at work; kept to save allocations
};

}  // namespace orvanel
