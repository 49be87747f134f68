// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <map>
#include <optional>
#include <vector>

#include "orvanel/instrument/Compound.h"
#include "orvanel/instrument/Fragmentation.h"
#include "orvanel/instrument/InstrumentModel.h"
#include "orvanel/instrument/Isotopes.h"

namespace orvanel {

/// Voltages in force, as absolute values in V; AF2 on the model's scale.
struct Voltages {
    double dp = 0;
    double ep = 0;
    std::optional<double> cep;  ///< nothing: no loss
    double ce = 0;
    double ces = 0;
    double af2 = 0;
};

/// A compound with everything that its ions' paths through the instrument need: tree and isotope envelopes. An ion of
/// unknown formula takes the precursor's composition in proportion to its mass.
class IonSource {
  public:
    IonSource(const SprayedCompound& sprayed, ports::ElementTable& elements);
    IonSource(const IonSource&) = delete;
    IonSource& operator=(const IonSource&) = delete;

    const Compound& Ion() const { return sprayed_.compound; }
    double RateCps() const { return sprayed_.amount * sprayed_.compound.intensity; }
    const FragmentationTree& Tree() const { return tree_; }
    const IsotopeEnvelope& Envelope(std::size_t node) const { return envelopes_[node]; }
    double IsotopologueMz(std::size_t node, std::size_t isotopologue) const;
    /// The envelope of what a fragment's parent loses. Computed when first asked for.
    const IsotopeEnvelope& Complement(std::size_t parent, std::size_t fragment) const;

  private:
    SprayedCompound sprayed_;
    ports::ElementTable& elements_;
    FragmentationTree tree_;
    std::vector<Composition> compositions_;
    std::vector<IsotopeEnvelope> envelopes_;
    mutable std::map<std::pair<std::size_t, std::size_t>, IsotopeEnvelope> complements_;
};

/// Ions of one node of one compound. Isotopologue i flows at Envelope(node).share[i] * cps[i].
struct IonPopulation {
    const IonSource* source = nullptr;
    std::size_t node = 0;
    std::vector<double> cps;

    double TotalCps() const { return TransmittedShare(source->Envelope(node), cps); }
    double IsotopologueMz(std::size_t i) const { return source->IsotopologueMz(node, i); }
};

using IonBeam = std::vector<IonPopulation>;

double TotalCps(const IonBeam& beam);

/// What enters the first quadrupole: precursors, and the fragments that form in the source.
/// @param polarity 0 positive, 1 negative; compounds of the other polarity give nothing
IonBeam SprayedBeam(const std::vector<const IonSource*>& sources, const InstrumentModel& model, int polarity,
                    const Voltages& voltages);

/// What passes a quadrupole at a mass.
IonBeam Isolated(IonBeam beam, const InstrumentModel& model, const Q1Window& window, double centreMz);

/// What leaves the collision cell. The same ion from different parents stays in separate populations.
IonBeam Dissociated(const IonBeam& beam, const InstrumentModel& model, double ce, double ces);

/// What the trap holds after isolation and resonant excitation of the second precursor.
/// @param calibrationErrorDa of the trap's mass scale, on which the second precursor's m/z was read
IonBeam Excited(const IonBeam& beam, const InstrumentModel& model, double secondPrecursorMz, double af2,
                double calibrationErrorDa);

}  // namespace orvanel
