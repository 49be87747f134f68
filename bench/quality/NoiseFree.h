// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>

#include "orvanel/data/AcquiredData.h"
#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/Fragmentation.h"
#include "orvanel/instrument/InstrumentModel.h"
#include "tests/support_files/WholeRun.h"

namespace quality {

/// The instrument and the ion of a run without any noise: what its findings are held against.
class NoiseFree {
  public:
    /// @param run whose configuration, methods and output folder are used; must outlive the object
    explicit NoiseFree(WholeRun& run);

    const orvanel::Compound& Ion() const { return sample_.front().compound; }
    const orvanel::InstrumentModel& Model() const { return model_; }

    /// What the method would measure if ions came without statistics, spray and chemical noise.
    orvanel::AcquiredData Acquire(const orvanel::MassSpecRecord& method) const;
    /// The same with a method of the run, as a data file that the run's own analysis can open.
    /// @return the file's path, in the run's output folder
    std::string AcquireToFile(const std::string& methodPath) const;

    /// The share of precursor ions that arrive as the node, by the tree alone. @param ce in V
    double Yield(const std::string& node, double ce) const;
    /// The mean yield over CE - CES, CE and CE + CES, as an EPI scan applies them.
    double SpreadYield(const std::string& node, double ce, double ces) const;
    /// What a transition's Q3 lets through at a collision energy: the fragment, and a little of what lies beside it.
    double TransitionYield(double q3, double ce) const;

  private:
    WholeRun& run_;
    std::unique_ptr<ports::ElementTable> elements_;
    orvanel::InstrumentModel model_;
    std::vector<orvanel::SprayedCompound> sample_;
    orvanel::FragmentationTree tree_;
    std::size_t precursor_;
};

/// The run's method document at a path. @throws ports::HostError
orvanel::MassSpecRecord MethodAt(const std::string& path);

}  // namespace quality
