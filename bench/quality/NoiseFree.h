// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orvanel/data/AcquiredData.h"
#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/Fragmentation.h"
#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/instrument/IonBeam.h"
#include "tests/support_files/WholeRun.h"

namespace quality {

/// One isotopologue of one ion.
struct IonCount {
    double mz = 0;
    double cps = 0;
    bool isMonoisotopic = true;
};

/// The instrument and the ion of a run without any noise: what its findings are held against.
class NoiseFree {
  public:
    /// @param run whose model and sample are used
    explicit NoiseFree(const WholeRun& run);

    const orvanel::Compound& Ion() const { return sample_.front().compound; }
    const orvanel::InstrumentModel& Model() const { return model_; }

    /// What the method would measure if ions came without statistics, spray and chemical noise.
    orvanel::AcquiredData Acquire(const orvanel::MassSpecRecord& method) const;
    /// The ions that the trap holds after excitation, each by its exact m/z: no scan and no peak list between.
    /// @param secondPrecursor what is excited, Da. @param af2 on the model's scale
    std::vector<IonCount> ExcitedIons(const orvanel::MassSpecRecord& ms3Method, double secondPrecursor,
                                      double af2) const;

    /// The share of precursor ions that arrive as the node, by the tree alone. @param ce in V
    double Yield(const std::string& node, double ce) const;
    /// The mean yield over CE - CES, CE and CE + CES, as an EPI scan applies them.
    double SpreadYield(const std::string& node, double ce, double ces) const;
    /// What a transition's Q3 lets through at a collision energy: the fragment, and a little of what lies beside it.
    double TransitionYield(double q3, double ce) const;
    /// The same as a share of the ions that are left, which is what a spectrum divided by its sum shows.
    double TransitionShare(double q3, double ce) const;

  private:
    std::unique_ptr<ports::ElementTable> elements_;
    orvanel::InstrumentModel model_;
    std::vector<orvanel::SprayedCompound> sample_;
    std::vector<std::unique_ptr<orvanel::IonSource>> sources_;
    orvanel::FragmentationTree tree_;
    std::size_t precursor_;
};

/// The run's method document at a path. @throws ports::HostError
orvanel::MassSpecRecord MethodAt(const std::string& path);

}  // namespace quality
