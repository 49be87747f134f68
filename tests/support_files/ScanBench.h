// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/clsItem_FilePaths.h"
#include "model/clsItem_TopPeak.h"
#include "tests/support_files/RecordedGraphControl.h"
#include "tests/support_files/RunBench.h"

/// Records of 2nd precursors as the EPI stage leaves them.
inline veltra::TopPeakCollection Fragments(const std::vector<double>& masses) {
    veltra::TopPeakCollection records;
    for (const double mass : masses) {
        records.push_back(std::make_shared<veltra::clsItem_TopPeak>());
        records.back()->SecondPrecursor->CentroidMass = mass;
    }
    return records;
}

/// A run that is logged on and ready for one acquisition. Its current parameters differ from the starter method's.
class ScanBench : public RunBench {
  public:
    ScanBench() {
        run.batch = std::make_unique<veltra::clsTolmBatch>(host);
        run.batch->Step1_TolmLogon("/p/", "P1");
        auto& results = *run.results;
        results.DP.Current = 60;
        results.EP.Current = 11;
        results.CEP.Current = 16.5F;
        results.CE.Current = 41;
        results.AF2.Current = 0.25F;
        fake.store.methods[starterPath].expectedDurationMs = 12500;
        fake.store.methods[starterPath].ramp = {"DP", 0, 1, 1};
        fake.queueStatuses = {"3", "4"};
        settings.Q1Resolution = 2;
        // A failure has stopped the run before it is told; that nothing was found is told first.
        boxes.onShow = [this](const auto& box) {
            ExpectNotLogged(box.text);
            EXPECT_EQ(run.AbortRequested, box.icon == ports::MessageIcon::Critical) << box.text;
        };
        calls.Forget();
    }

    /// The x values of what every graph of the stage holds.
    std::vector<std::vector<double>> Graphs(ports::enumVeltraScanType scanType, std::int16_t ms3Index = 1) const {
        RecordedGraphControl control(0);
        run.scans->GetGraphData(scanType, control, ms3Index);
        std::vector<std::vector<double>> graphs;
        for (const auto* data : control.panes)
            if (data != nullptr) graphs.push_back(data->GetXValues());
        return graphs;
    }

    const veltra::clsItem_FilePaths paths{starterPath, "C.xbt", "/p/P1/Acquisition Methods/C.xmt",
                                          "/p/P1/Data/C Veltra (run)/C.vesk"};
};
