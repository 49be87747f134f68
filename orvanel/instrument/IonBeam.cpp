// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/instrument/IonBeam.h"

#include "orvanel/instrument/Excitation.h"
#include "orvanel/instrument/Transmission.h"

namespace orvanel {
namespace {

constexpr double negligibleShare = 1e-9;

/// The ions of a parent population that arrive as a fragment, given by share.
IonPopulation AsFragment(const IonPopulation& parent, std::size_t fragment, double share) {
    if (fragment == parent.node) {
        IonPopulation rest = parent;
        for (double& cps : rest.cps)
            cps *= share;
        return rest;
    }
    const IonSource& source = *parent.source;
    IonPopulation population{parent.source, fragment,
                             FragmentTransmission(source.Envelope(parent.node), parent.cps, source.Envelope(fragment),
                                                  source.Complement(parent.node, fragment))};
    for (double& cps : population.cps)
        cps *= share;
    return population;
}

void AddFragments(IonBeam& beam, const IonPopulation& parent, const IonShares& shares) {
    for (std::size_t node = 0; node < shares.byNode.size(); ++node)
        if (shares.byNode[node] > negligibleShare) beam.push_back(AsFragment(parent, node, shares.byNode[node]));
}

}  // namespace

IonSource::IonSource(const SprayedCompound& sprayed, ports::ElementTable& elements)
    : sprayed_(sprayed), elements_(elements), tree_(sprayed_.compound) {
    const Composition precursor = ParseFormula(Ion().Root().formula.empty() ? Ion().ionFormula : Ion().Root().formula);
    const double precursorMass = Ion().Root().mz * Ion().Root().charge;
    for (std::size_t i = 0; i < tree_.Size(); ++i) {
        const TreeNode& node = tree_.Node(i);
        compositions_.push_back(node.formula.empty() ? Scaled(precursor, node.mz * node.charge / precursorMass)
                                                     : ParseFormula(node.formula));
        envelopes_.push_back(EnvelopeOf(compositions_.back(), elements_));
    }
}

double IonSource::IsotopologueMz(std::size_t node, std::size_t isotopologue) const {
    const TreeNode& ion = tree_.Node(node);
    return ion.mz + envelopes_[node].offsetDa[isotopologue] / ion.charge;
}

const IsotopeEnvelope& IonSource::Complement(std::size_t parent, std::size_t fragment) const {
    const std::pair key{parent, fragment};
    auto found = complements_.find(key);
    if (found == complements_.end())
        found =
            complements_.emplace(key, EnvelopeOf(Without(compositions_[parent], compositions_[fragment]), elements_))
                .first;
    return found->second;
}

double TotalCps(const IonBeam& beam) {
    double sum = 0;
    for (const IonPopulation& population : beam)
        sum += population.TotalCps();
    return sum;
}

IonBeam SprayedBeam(const std::vector<const IonSource*>& sources, const InstrumentModel& model, int polarity,
                    const Voltages& voltages) {
    IonBeam beam;
    for (const IonSource* source : sources) {
        const Compound& compound = source->Ion();
        if (compound.polarity != polarity) continue;
        const double rate = source->RateCps() * EpTransmission(model, voltages.ep);
        IonBeam formed;
        const IonPopulation precursor{source, 0, std::vector<double>(source->Envelope(0).Size(), rate)};
        formed.push_back(AsFragment(precursor, 0, DpTransmission(compound, voltages.dp)));
        IonShares products = source->Tree().Products(0);
        for (double& share : products.byNode)
            share *= InSourceShare(compound, voltages.dp);
        AddFragments(formed, precursor, products);
        for (IonPopulation& population : formed) {
            const double mz = source->Tree().Node(population.node).mz;
            const double share = voltages.cep ? CepTransmission(model, *voltages.cep, mz) : 1;
            for (double& cps : population.cps)
                cps *= share;
            beam.push_back(std::move(population));
        }
    }
    return beam;
}

IonBeam Isolated(IonBeam beam, const InstrumentModel& model, const Q1Window& window, double centreMz) {
    IonBeam passed;
    for (IonPopulation& population : beam) {
        for (std::size_t i = 0; i < population.cps.size(); ++i)
            population.cps[i] *= QuadrupoleTransmission(model, window, population.IsotopologueMz(i) - centreMz);
        if (population.TotalCps() > 0) passed.push_back(std::move(population));
    }
    return passed;
}

IonBeam Dissociated(const IonBeam& beam, const InstrumentModel& model, double ce, double ces) {
    IonBeam products;
    for (const IonPopulation& population : beam)
        AddFragments(products, population,
                     population.source->Tree().Dissociate(population.node, ce, ces, model.minimumCollisionEnergy));
    return products;
}

IonBeam Excited(const IonBeam& beam, const InstrumentModel& model, double secondPrecursorMz, double af2,
                double calibrationErrorDa) {
    IonBeam trapped;
    const double cutoffMz = Excitation::LowMassCutoff(model, secondPrecursorMz);
    for (IonPopulation population : beam) {
        const FragmentationTree& tree = population.source->Tree();
        const Excitation excitation(model, tree.Node(population.node));
        IonPopulation forming = population;
        for (std::size_t i = 0; i < population.cps.size(); ++i) {
            const double distanceDa = population.IsotopologueMz(i) + calibrationErrorDa - secondPrecursorMz;
            const double isolated = WindowShare(distanceDa, model.trapIsolationWidthDa, model.trapIsolationSigmaDa);
            const double amplitude = excitation.EffectiveAmplitude(af2, distanceDa);
            forming.cps[i] *= isolated * excitation.DissociatedShare(amplitude) * excitation.KeptShare(amplitude);
            population.cps[i] *= isolated * excitation.RemainingShare(amplitude);
        }
        if (population.TotalCps() + forming.TotalCps() <= 0) continue;
        IonShares products = tree.Products(population.node);
        for (std::size_t i = 0; i < tree.Size(); ++i)
            if (tree.Node(i).mz <= cutoffMz) products.byNode[i] = 0;
        AddFragments(trapped, forming, products);
        trapped.push_back(std::move(population));
    }
    return trapped;
}

}  // namespace orvanel
